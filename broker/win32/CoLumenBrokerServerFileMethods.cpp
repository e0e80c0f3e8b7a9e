// The file family and the file protection methods on the live object. Each
// converts the interface's types and calls the portable family, where every
// rule lives: a BSTR is read as UTF-16 text (a null one is an absent path),
// ULONG outs pass through 32-bit values of the family's own, and byte arrays
// go through as the automation arrays they are.
#include "broker/win32/CoLumenBrokerServer.h"

#include <oleauto.h>

#include <cstdint>
#include <string>

#include "broker/BrokerHresult.h"

namespace SASM {
namespace {

const char16_t* Text(BSTR text) { return reinterpret_cast<const char16_t*>(text); }

// Mirrors an out-argument through a value of the family's type: it starts as
// the caller's and is copied back when the call is over, so an out the family
// leaves alone stays as it came. A null out stays null.
template <typename Outer, typename Inner>
class Mirrored {
 public:
  explicit Mirrored(Outer* out) : out_(out) {
    if (out_) value_ = static_cast<Inner>(*out_);
  }
  Mirrored(const Mirrored&) = delete;
  Mirrored& operator=(const Mirrored&) = delete;
  ~Mirrored() {
    if (out_) *out_ = static_cast<Outer>(value_);
  }
  Inner* get() { return out_ ? &value_ : nullptr; }

 private:
  Outer* out_;
  Inner value_{};
};

using UlongOut = Mirrored<ULONG, uint32_t>;
using ArrayOut = Mirrored<SAFEARRAY*, BrokerFilePlatform::ByteArray>;

// A leaf name handed to the client, which frees it.
void GiveLeafName(const std::u16string& leaf, BSTR* out) {
  *out = SysAllocString(reinterpret_cast<const OLECHAR*>(leaf.c_str()));
}

}  // namespace

HRESULT CoLumenBrokerServer::BrokerCreateFile(BSTR pFileName, LONG p_readOnly, LONG p_truncateOnOpen,
                                              ULONG* p_fileCookie) {
  UlongOut cookie(p_fileCookie);
  return fileMethods_.CreateFile(Text(pFileName), p_readOnly, p_truncateOnOpen, cookie.get());
}

HRESULT CoLumenBrokerServer::BrokerCloseHandle(ULONG p_fileCookie) { return fileMethods_.CloseHandle(p_fileCookie); }

HRESULT CoLumenBrokerServer::BrokerSetFilePointer(ULONG p_fileCookie, LONG p_distanceToMove, ULONG p_moveMethod,
                                                  ULONG* p_newPosition) {
  UlongOut position(p_newPosition);
  return fileMethods_.SetFilePointer(p_fileCookie, p_distanceToMove, p_moveMethod, position.get());
}

HRESULT CoLumenBrokerServer::BrokerReadFile(ULONG p_fileCookie, ULONG p_numToRead, ULONG* p_numRead,
                                            SAFEARRAY** p_data) {
  UlongOut read(p_numRead);
  ArrayOut data(p_data);
  return fileMethods_.ReadFile(p_fileCookie, p_numToRead, read.get(), data.get());
}

HRESULT CoLumenBrokerServer::BrokerWriteFile(ULONG p_fileCookie, SAFEARRAY* p_data, ULONG* p_numWritten) {
  UlongOut written(p_numWritten);
  return fileMethods_.WriteFile(p_fileCookie, p_data, written.get());
}

HRESULT CoLumenBrokerServer::BrokerDeleteFile(BSTR p_fileName) { return fileMethods_.DeleteFile(Text(p_fileName)); }

HRESULT CoLumenBrokerServer::BrokerRemoveDirectory(BSTR p_dirName) {
  return fileMethods_.RemoveDirectory(Text(p_dirName));
}

HRESULT CoLumenBrokerServer::BrokerMoveFileEx(BSTR p_oldFileName, BSTR p_newFileName, LONG dwFlags) {
  return fileMethods_.MoveFileEx(Text(p_oldFileName), Text(p_newFileName), dwFlags);
}

HRESULT CoLumenBrokerServer::BrokerCreateDirectory(BSTR p_dirName) {
  return fileMethods_.CreateDirectory(Text(p_dirName));
}

HRESULT CoLumenBrokerServer::BrokerGetFileAttributesEx(BSTR p_fileName, ULONG* p_dwFileAttributes,
                                                       ULONG* p_ftCreationTimeLo, ULONG* p_ftCreationTimeHi,
                                                       ULONG* p_ftLastAccessTimeLo, ULONG* p_ftLastAccessTimeHi,
                                                       ULONG* p_ftLastWriteTimeLo, ULONG* p_ftLastWriteTimeHi,
                                                       ULONG* p_nFileSizeLo, ULONG* p_nFileSizeHi) {
  ULONG* const outs[] = {p_dwFileAttributes,   p_ftCreationTimeLo,   p_ftCreationTimeHi,
                         p_ftLastAccessTimeLo, p_ftLastAccessTimeHi, p_ftLastWriteTimeLo,
                         p_ftLastWriteTimeHi,  p_nFileSizeLo,        p_nFileSizeHi};
  bool allOuts = true;
  for (ULONG* out : outs) allOuts = allOuts && out != nullptr;
  FileAttributeData data;
  HRESULT result = fileMethods_.GetFileAttributesEx(Text(p_fileName), allOuts ? &data : nullptr);
  if (result != BrokerHresult::kOk) return result;
  *p_dwFileAttributes = data.attributes;
  *p_ftCreationTimeLo = data.creationTimeLow;
  *p_ftCreationTimeHi = data.creationTimeHigh;
  *p_ftLastAccessTimeLo = data.lastAccessTimeLow;
  *p_ftLastAccessTimeHi = data.lastAccessTimeHigh;
  *p_ftLastWriteTimeLo = data.lastWriteTimeLow;
  *p_ftLastWriteTimeHi = data.lastWriteTimeHigh;
  *p_nFileSizeLo = data.sizeLow;
  *p_nFileSizeHi = data.sizeHigh;
  return result;
}

HRESULT CoLumenBrokerServer::BrokerFindFirstFile(BSTR p_searchPath, BSTR* p_fileLeafName, ULONG* p_fileAttrs,
                                                 ULONG* p_findCookie) {
  std::u16string leaf;
  UlongOut attributes(p_fileAttrs);
  UlongOut cookie(p_findCookie);
  HRESULT result =
      fileMethods_.FindFirstFile(Text(p_searchPath), p_fileLeafName ? &leaf : nullptr, attributes.get(), cookie.get());
  if (result == BrokerHresult::kOk) GiveLeafName(leaf, p_fileLeafName);
  return result;
}

HRESULT CoLumenBrokerServer::BrokerFindNextFile(ULONG p_findCookie, BSTR* p_fileLeafName, ULONG* p_fileAttrs) {
  std::u16string leaf;
  UlongOut attributes(p_fileAttrs);
  HRESULT result = fileMethods_.FindNextFile(p_findCookie, p_fileLeafName ? &leaf : nullptr, attributes.get());
  if (result == BrokerHresult::kOk) GiveLeafName(leaf, p_fileLeafName);
  return result;
}

HRESULT CoLumenBrokerServer::BrokerFindClose(ULONG p_findCookie) { return fileMethods_.FindClose(p_findCookie); }

HRESULT CoLumenBrokerServer::BrokerDeleteBrowsingHistory(BSTR pRootPathName) {
  return fileMethods_.DeleteBrowsingHistory(Text(pRootPathName));
}

HRESULT CoLumenBrokerServer::BrokerMarkFileUnsafe(BSTR p_filePath, BSTR p_sourceURL, BSTR p_refURL) {
  return fileMethods_.MarkFileUnsafe(Text(p_filePath), Text(p_sourceURL), Text(p_refURL));
}

HRESULT CoLumenBrokerServer::BrokerOpenFileWithAuditingInfo(BSTR pFileName, BSTR pRemoteUrl, ULONG p_hwnd,
                                                            ULONG* p_fileCookie) {
  UlongOut cookie(p_fileCookie);
  return auditedOpener_.Open(Text(pFileName), Text(pRemoteUrl), p_hwnd, cookie.get());
}

}  // namespace SASM
