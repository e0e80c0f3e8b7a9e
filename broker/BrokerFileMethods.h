#pragma once
// The broker's file family as plain logic: open, close, seek, read, write,
// delete, move, directories, attributes, listing, history, and the unsafe
// mark. Each method takes the interface's arguments in portable types and
// answers its HRESULT; the COM object converts BSTRs and out-pointers and
// calls straight through. Everything runs with the server's own rights on its
// one apartment thread; what protects the machine is the path policy and the
// sniffing of the first write.
//
// Out-pointers follow the interface: null where the method doesn't test for
// null is skipped, never written through.
#include <cstdint>
#include <string>

#include "broker/BrokerCookieTable.h"
#include "broker/BrokerFilePlatform.h"
#include "broker/BrokerFileRules.h"
#include "broker/BrokerPathPolicy.h"
#include "broker/EnterpriseIdentityList.h"
#include "broker/EnterpriseProtectionPlatform.h"
#include "broker/ExecutableSniffer.h"
#include "broker/InternetMarkPlatform.h"

namespace SASM {

class BrokerFileMethods {
 public:
  // CLSCTX_INPROC_SERVER: BrokerMarkFileUnsafe's attachment services.
  static constexpr uint32_t kMarkUnsafeClassContext = 1;
  static constexpr const char16_t* kSharedObjectsLeaf = u"\\#SharedObjects";

  // serverIdentities belongs to the broker object, which built it for the
  // process when it was made.
  BrokerFileMethods(BrokerFilePlatform& files, EnterpriseProtectionPlatform& protection, InternetMarkPlatform& marks,
                    BrokerPathPolicy& policy, BrokerCookieTable& cookies,
                    const EnterpriseIdentityList& serverIdentities);
  BrokerFileMethods(const BrokerFileMethods&) = delete;
  BrokerFileMethods& operator=(const BrokerFileMethods&) = delete;

  int32_t CreateFile(const char16_t* pFileName, int32_t p_readOnly, int32_t p_truncateOnOpen,
                     uint32_t* p_fileCookie);
  int32_t CloseHandle(uint32_t p_fileCookie);
  int32_t SetFilePointer(uint32_t p_fileCookie, int32_t p_distanceToMove, uint32_t p_moveMethod,
                         uint32_t* p_newPosition);
  // *p_data gets the reply array as soon as it exists.
  int32_t ReadFile(uint32_t p_fileCookie, uint32_t p_numToRead, uint32_t* p_numRead,
                   BrokerFilePlatform::ByteArray* p_data);
  int32_t WriteFile(uint32_t p_fileCookie, BrokerFilePlatform::ByteArray p_data, uint32_t* p_numWritten);
  int32_t DeleteFile(const char16_t* p_fileName);
  int32_t RemoveDirectory(const char16_t* p_dirName);
  int32_t MoveFileEx(const char16_t* p_oldFileName, const char16_t* p_newFileName, int32_t dwFlags);
  int32_t CreateDirectory(const char16_t* p_dirName);
  // `attributes` null stands for any null out-argument of the interface.
  int32_t GetFileAttributesEx(const char16_t* p_fileName, FileAttributeData* attributes);
  // A null leaf name or attribute pointer stands for a null out-argument.
  int32_t FindFirstFile(const char16_t* p_searchPath, std::u16string* p_fileLeafName, uint32_t* p_fileAttrs,
                        uint32_t* p_findCookie);
  int32_t FindNextFile(uint32_t p_findCookie, std::u16string* p_fileLeafName, uint32_t* p_fileAttrs);
  int32_t FindClose(uint32_t p_findCookie);
  int32_t DeleteBrowsingHistory(const char16_t* pRootPathName);
  // Only ever adds a mark, so no path test applies.
  int32_t MarkFileUnsafe(const char16_t* p_filePath, const char16_t* p_sourceURL, const char16_t* p_refURL);

  const EnterpriseIdentityList& ServerIdentities() const { return serverIdentities_; }

 private:
  // The enterprise checks of an open: 0 to go on, an HRESULT to stop with.
  // May turn the disposition into OPEN_EXISTING for a protected new file.
  int32_t CheckProtection(const char16_t* path, bool forReading, BrokerFileRules::OpenArguments& open);
  bool IsProtectedToOthers(const char16_t* path, const EnterpriseIdentityList& callerIdentities);
  // The shared tail of DeleteFile, RemoveDirectory and CreateDirectory.
  int32_t ChangeEntry(const char16_t* path, bool creating, BrokerFilePlatform::Function function,
                      uint32_t (BrokerFilePlatform::*change)(const char16_t*));
  static int32_t PlatformResult(uint32_t error);

  BrokerFilePlatform& files_;
  EnterpriseProtectionPlatform& protection_;
  InternetMarkPlatform& marks_;
  BrokerPathPolicy& policy_;
  BrokerCookieTable& cookies_;
  const EnterpriseIdentityList& serverIdentities_;
  ExecutableSniffer sniffer_;
};

}  // namespace SASM
