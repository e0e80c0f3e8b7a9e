#include "broker/BrokerFileMethods.h"

#include "broker/BrokerFileProtectionInfo.h"
#include "broker/BrokerFileRules.h"
#include "broker/BrokerHresult.h"

namespace SASM {

namespace {

using Function = BrokerFilePlatform::Function;
using Handle = BrokerFilePlatform::Handle;

}  // namespace

BrokerFileMethods::BrokerFileMethods(BrokerFilePlatform& files, EnterpriseProtectionPlatform& protection,
                                     InternetMarkPlatform& marks, BrokerPathPolicy& policy, BrokerCookieTable& cookies,
                                     const EnterpriseIdentityList& serverIdentities)
    : files_(files),
      protection_(protection),
      marks_(marks),
      policy_(policy),
      cookies_(cookies),
      serverIdentities_(serverIdentities),
      sniffer_(files) {}

int32_t BrokerFileMethods::CreateFile(const char16_t* pFileName, int32_t p_readOnly, int32_t p_truncateOnOpen,
                                      uint32_t* p_fileCookie) {
  MString path = policy_.ExpandBrokerPath(pFileName);
  if (p_fileCookie) *p_fileCookie = 0;
  if (!files_.IsBound(Function::kCreateFile)) return BrokerHresult::kFail;

  bool forReading = p_readOnly != 0;
  BrokerFileRules::OpenArguments open = BrokerFileRules::ForOpen(p_readOnly, p_truncateOnOpen);
  // Reading is otherwise open to any path, but never the settings through an alias.
  if (policy_.IsSettingsAliasPath(path.Data())) return BrokerHresult::kAccessDenied;
  int32_t refusal = CheckProtection(path.Data(), forReading, open);
  if (refusal != BrokerHresult::kOk) return refusal;

  Handle handle = BrokerFilePlatform::kInvalidHandle;
  uint32_t error = forReading ? BrokerFileRules::OpenForReading(files_, path.Data(), open.access, open.disposition,
                                                                open.flags, handle)
                              : files_.CreateFile(path.Data(), open.access, FileShare::kRead, open.disposition,
                                                  open.flags, handle);
  if (BrokerFileRules::IsOpenFailure(handle)) return PlatformResult(error);
  // What the player writes came from the internet; the mark's own result doesn't matter.
  if (!forReading) marks_.MarkFromInternet(path.Data());

  // Reads are sniffed too; the sniffing only ever runs on a write.
  uint32_t cookie = 0;
  if (!cookies_.AddFileCookie(handle, cookie, true, path.Data(), nullptr)) {
    files_.CloseHandle(handle);
    return BrokerHresult::kFail;
  }
  if (p_fileCookie) *p_fileCookie = cookie;
  return BrokerHresult::kOk;
}

int32_t BrokerFileMethods::CheckProtection(const char16_t* path, bool forReading,
                                           BrokerFileRules::OpenArguments& open) {
  EnterpriseIdentityList callerIdentities(protection_, EnterpriseIdentityList::kCallingClient);
  if (callerIdentities.HasIdentity()) {
    if (forReading) return IsProtectedToOthers(path, callerIdentities) ? BrokerHresult::kAccessDenied : BrokerHresult::kOk;

    bool shared = false;
    if (!policy_.IsWritableDataPath(path, true, &shared)) return BrokerHresult::kAccessDenied;
    if (shared && !serverIdentities_.IsEmpty()) {
      FileAttributeData attributes;
      if (files_.GetFileAttributesEx(path, attributes) != 0) {
        Handle created = BrokerFilePlatform::kInvalidHandle;
        uint32_t error =
            files_.CreateFile(path, open.access, FileShare::kRead, open.disposition, FileFlag::kRandomAccess, created);
        if (BrokerFileRules::IsOpenFailure(created)) return PlatformResult(error);
        files_.CloseHandle(created);
      }
      // The file exists now and is to keep the protection it is about to get.
      open.disposition = FileDisposition::kOpenExisting;
      if (protection_.CanProtectToIdentity()) {
        int32_t result = protection_.ProtectToIdentity(path, callerIdentities.Identity(0).data());
        if (result < 0) return result;
      }
    }
    return BrokerHresult::kOk;
  }

  if (!forReading) {
    return policy_.IsWritableDataPath(path, true, nullptr) ? BrokerHresult::kOk : BrokerHresult::kAccessDenied;
  }
  // A caller without an identity has no business with a protected file; with
  // no server identities nothing here can be protected, and nobody asks.
  if (!serverIdentities_.IsEmpty()) {
    BrokerFileProtectionInfo info(protection_, path);
    if (info.IsProtected()) return BrokerHresult::kAccessDenied;
  }
  return BrokerHresult::kOk;
}

bool BrokerFileMethods::IsProtectedToOthers(const char16_t* path, const EnterpriseIdentityList& callerIdentities) {
  BrokerFileProtectionInfo info(protection_, path);
  uint32_t length = 0;
  const char16_t* identity = info.GetIdentity(length);
  if (!info.IsProtected() || length == 0) return false;
  return !callerIdentities.Contains(std::u16string_view(identity, length));
}

int32_t BrokerFileMethods::CloseHandle(uint32_t p_fileCookie) {
  Handle handle = BrokerFilePlatform::kInvalidHandle;
  if (!cookies_.ResolveFileHandle(p_fileCookie, handle, true)) return BrokerHresult::kInvalidArgument;
  // A failed close isn't the client's concern.
  if (!BrokerFileRules::IsOpenFailure(handle)) files_.CloseHandle(handle);
  cookies_.FreeCookie(p_fileCookie);
  return BrokerHresult::kOk;
}

int32_t BrokerFileMethods::SetFilePointer(uint32_t p_fileCookie, int32_t p_distanceToMove, uint32_t p_moveMethod,
                                          uint32_t* p_newPosition) {
  Handle handle = BrokerFilePlatform::kInvalidHandle;
  BrokerCookieRecord* record = cookies_.ResolveFileHandle(p_fileCookie, handle, false);
  if (!record || !p_newPosition) return BrokerHresult::kInvalidArgument;
  // The sniffing's idea of where the next slice lands, whatever the method.
  record->seekBase = p_distanceToMove;
  uint32_t error = 0;
  uint32_t position = files_.SetFilePointer(handle, p_distanceToMove, p_moveMethod, error);
  *p_newPosition = position;
  if (position == ~uint32_t{0}) return PlatformResult(error);
  return BrokerHresult::kOk;
}

int32_t BrokerFileMethods::ReadFile(uint32_t p_fileCookie, uint32_t p_numToRead, uint32_t* p_numRead,
                                    BrokerFilePlatform::ByteArray* p_data) {
  Handle handle = BrokerFilePlatform::kInvalidHandle;
  if (!cookies_.ResolveRawHandle(p_fileCookie, handle) || !p_numRead || !p_data) {
    return BrokerHresult::kInvalidArgument;
  }
  BrokerFilePlatform::ByteArray array = files_.CreateByteArray(p_numToRead);
  *p_data = array;
  if (!array) return BrokerHresult::kFail;
  uint8_t* data = nullptr;
  // The array goes back allocated and p_numRead untouched, as success.
  if (files_.AccessByteArray(array, data) < 0) return BrokerHresult::kOk;

  *p_numRead = 0;
  uint32_t read = 0;
  uint32_t error = files_.ReadFile(handle, data, p_numToRead, read);
  *p_numRead = read;
  files_.UnaccessByteArray(array);
  if (error != 0) {
    files_.DestroyByteArray(array);
    *p_data = nullptr;
    return PlatformResult(error);
  }
  // The array keeps the length asked for; p_numRead says how much of it counts.
  return BrokerHresult::kOk;
}

int32_t BrokerFileMethods::WriteFile(uint32_t p_fileCookie, BrokerFilePlatform::ByteArray p_data,
                                     uint32_t* p_numWritten) {
  Handle handle = BrokerFilePlatform::kInvalidHandle;
  BrokerCookieRecord* record = cookies_.ResolveFileHandle(p_fileCookie, handle, false);
  if (!record || !p_numWritten || !p_data) return BrokerHresult::kInvalidArgument;
  *p_numWritten = 0;

  ByteArrayShape shape;
  if (!files_.DescribeByteArray(p_data, shape) || !BrokerFileRules::IsWellFormedByteArray(shape)) {
    return BrokerHresult::kFail;
  }
  uint8_t* data = nullptr;
  int32_t access = files_.AccessByteArray(p_data, data);
  if (access < 0) return access;
  uint32_t written = 0;
  int32_t result = sniffer_.WriteSlice(*record, handle, data, shape.count, written);
  *p_numWritten = written;
  files_.UnaccessByteArray(p_data);
  return result;
}

int32_t BrokerFileMethods::DeleteFile(const char16_t* p_fileName) {
  return ChangeEntry(p_fileName, false, Function::kDeleteFile, &BrokerFilePlatform::DeleteFile);
}

int32_t BrokerFileMethods::RemoveDirectory(const char16_t* p_dirName) {
  return ChangeEntry(p_dirName, false, Function::kRemoveDirectory, &BrokerFilePlatform::RemoveDirectory);
}

int32_t BrokerFileMethods::CreateDirectory(const char16_t* p_dirName) {
  return ChangeEntry(p_dirName, true, Function::kCreateDirectory, &BrokerFilePlatform::CreateDirectory);
}

int32_t BrokerFileMethods::ChangeEntry(const char16_t* path, bool creating, BrokerFilePlatform::Function function,
                                       uint32_t (BrokerFilePlatform::*change)(const char16_t*)) {
  MString expanded = policy_.ExpandBrokerPath(path);
  // A refusal here is a plain failure, not access denied.
  bool allowed = creating ? policy_.IsCreatableDirectory(expanded.Data())
                          : policy_.IsWritableDataPath(expanded.Data(), false, nullptr);
  if (!allowed || !files_.IsBound(function)) return BrokerHresult::kFail;
  return PlatformResult((files_.*change)(expanded.Data()));
}

int32_t BrokerFileMethods::MoveFileEx(const char16_t* p_oldFileName, const char16_t* p_newFileName,
                                      int32_t dwFlags) {
  MString from = policy_.ExpandBrokerPath(p_oldFileName);
  MString to = policy_.ExpandBrokerPath(p_newFileName);
  if (!BrokerFileRules::IsMoveAllowed(dwFlags)) return BrokerHresult::kFail;
  // Directories don't move through the broker. A missing file answers all
  // ones, which carries the directory bit as well.
  if (files_.GetFileAttributes(from.Data()) & 0x10) return BrokerHresult::kFail;
  if (!policy_.IsWritableDataPath(from.Data(), true, nullptr) || !policy_.IsWritableDataPath(to.Data(), true, nullptr) ||
      !files_.IsBound(Function::kMoveFileEx)) {
    return BrokerHresult::kFail;
  }

  // Holding the target's directory open pins it for the length of the move.
  std::u16string directory = to.ToU16();
  if (!files_.PathIsDirectory(directory.c_str())) files_.RemoveFileSpec(directory);
  Handle pin = BrokerFilePlatform::kInvalidHandle;
  files_.CreateFile(directory.c_str(), FileAccess::kGenericRead, FileShare::kReadWrite, FileDisposition::kOpenExisting,
                    FileFlag::kDirectoryHandle, pin);
  if (BrokerFileRules::IsOpenFailure(pin)) return BrokerHresult::kFail;
  uint32_t error = files_.MoveFileEx(from.Data(), to.Data(), static_cast<uint32_t>(dwFlags));
  files_.CloseHandle(pin);
  return PlatformResult(error);
}

int32_t BrokerFileMethods::GetFileAttributesEx(const char16_t* p_fileName, FileAttributeData* attributes) {
  MString path = policy_.ExpandBrokerPath(p_fileName);
  if (!attributes) return BrokerHresult::kInvalidArgument;
  if (!files_.IsBound(Function::kGetFileAttributesEx)) return BrokerHresult::kFail;
  if (policy_.IsSettingsAliasPath(path.Data())) return BrokerHresult::kAccessDenied;
  FileAttributeData data;
  uint32_t error = files_.GetFileAttributesEx(path.Data(), data);
  if (error != 0) return PlatformResult(error);
  *attributes = data;
  return BrokerHresult::kOk;
}

int32_t BrokerFileMethods::FindFirstFile(const char16_t* p_searchPath, std::u16string* p_fileLeafName,
                                         uint32_t* p_fileAttrs, uint32_t* p_findCookie) {
  MString path = policy_.ExpandBrokerPath(p_searchPath);
  if (path.IsNull() || !p_fileLeafName || !p_fileAttrs || !p_findCookie) return BrokerHresult::kInvalidArgument;
  if (!files_.IsBound(Function::kFindFirstFile) || !files_.IsBound(Function::kFindNextFile)) {
    return BrokerHresult::kFail;
  }
  if (!policy_.IsSearchablePath(path.Data())) return BrokerHresult::kAccessDenied;

  Handle find = BrokerFilePlatform::kInvalidHandle;
  FileFindData entry;
  uint32_t error = files_.FindFirstFile(path.Data(), find, entry);
  if (BrokerFileRules::IsOpenFailure(find)) return PlatformResult(error);
  uint32_t cookie = 0;
  bool added = cookies_.AddFileCookie(find, cookie, false, nullptr, nullptr);
  *p_findCookie = cookie;
  // Without a cookie the search stays open until the process ends.
  if (!added) return BrokerHresult::kFail;
  *p_fileLeafName = entry.leafName;
  *p_fileAttrs = entry.attributes;
  return BrokerHresult::kOk;
}

int32_t BrokerFileMethods::FindNextFile(uint32_t p_findCookie, std::u16string* p_fileLeafName, uint32_t* p_fileAttrs) {
  Handle find = BrokerFilePlatform::kInvalidHandle;
  if (!cookies_.ResolveRawHandle(p_findCookie, find) || !p_fileLeafName || !p_fileAttrs) {
    return BrokerHresult::kInvalidArgument;
  }
  if (!files_.IsBound(Function::kFindFirstFile) || !files_.IsBound(Function::kFindNextFile)) {
    return BrokerHresult::kFail;
  }
  FileFindData entry;
  // The end of the listing is the platform's error 18.
  uint32_t error = files_.FindNextFile(find, entry);
  if (error != 0) return PlatformResult(error);
  *p_fileLeafName = entry.leafName;
  *p_fileAttrs = entry.attributes;
  return BrokerHresult::kOk;
}

int32_t BrokerFileMethods::FindClose(uint32_t p_findCookie) {
  Handle find = BrokerFilePlatform::kInvalidHandle;
  if (!cookies_.ResolveRawHandle(p_findCookie, find)) return BrokerHresult::kInvalidArgument;
  cookies_.FreeCookie(p_findCookie);
  // Whatever the cookie held goes to FindClose, a file handle included.
  return PlatformResult(files_.FindClose(find));
}

int32_t BrokerFileMethods::DeleteBrowsingHistory(const char16_t* pRootPathName) {
  MString root = policy_.ExpandBrokerPath(pRootPathName);
  if (!policy_.IsCreatableDirectory(root.Data())) return BrokerHresult::kFail;
  std::u16string target = root.ToU16() + kSharedObjectsLeaf;
  // The shell's list of names ends with an empty one.
  std::u16string from = target;
  from.push_back(u'\0');
  int32_t deleted = files_.FileOperation(BrokerFileRules::kTreeDeleteOperation, from, BrokerFileRules::kTreeDeleteFlags);
  // Back again, empty; whether that worked doesn't change the answer.
  CreateDirectory(target.c_str());
  return BrokerFileRules::IsTreeDeleteDone(deleted) ? BrokerHresult::kOk : BrokerHresult::kFail;
}

int32_t BrokerFileMethods::MarkFileUnsafe(const char16_t* p_filePath, const char16_t* p_sourceURL,
                                          const char16_t* p_refURL) {
  MString path = policy_.ExpandBrokerPath(p_filePath);
  if (path.IsNull()) return BrokerHresult::kInvalidArgument;
  int32_t initialized = marks_.InitializeCom();
  if (initialized < 0) return initialized;
  int32_t result = marks_.CreateAttachmentServices(kMarkUnsafeClassContext);
  if (result >= 0) {
    marks_.SetLocalPath(path.Data());
    if (p_refURL && *p_refURL) marks_.SetReferrer(p_refURL);
    if (p_sourceURL && *p_sourceURL) marks_.SetSource(p_sourceURL);
    result = marks_.Save();
    marks_.ReleaseAttachmentServices();
  }
  marks_.UninitializeCom();
  return result;
}

int32_t BrokerFileMethods::PlatformResult(uint32_t error) {
  return BrokerHresult::FromPlatformError(static_cast<int32_t>(error));
}

}  // namespace SASM
