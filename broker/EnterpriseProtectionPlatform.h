#pragma once
// What enterprise data protection asks of the system: a token's enterprise
// identities, a file's protection, protecting a file to an identity, and the
// user's audited consent to let a protected file go. The services are absent
// under Wine and on systems before them; the Win32 side then answers "not
// bound" or fails, and the decisions above it treat the files as unprotected.
#include <cstdint>

namespace SASM {

class BrokerFileProtectionInfo;

class EnterpriseProtectionPlatform {
 public:
  // A token handle, as HANDLE.
  using Token = void*;

  static constexpr uint32_t kTokenQuery = 8;

  virtual ~EnterpriseProtectionPlatform() = default;

  // Whether SrpGetEnterpriseIds was found ("srpapi.dll").
  virtual bool CanGetEnterpriseIds() = 0;
  // CoImpersonateClient and CoRevertToSelf.
  virtual int32_t ImpersonateClient() = 0;
  virtual void RevertToSelf() = 0;
  // OpenThreadToken of the calling thread, opened as self; OpenProcessToken of this process.
  virtual bool OpenThreadToken(uint32_t access, Token& token) = 0;
  virtual bool OpenProcessToken(uint32_t access, Token& token) = 0;
  virtual void CloseToken(Token token) = 0;
  // SrpGetEnterpriseIds. A null block asks for the size; the block holds `count`
  // string pointers followed by the strings they point at.
  virtual int32_t GetEnterpriseIds(Token token, uint32_t& bytes, void* block, uint32_t& count) = 0;

  // GetFileAttributesExW bound and succeeding for the path.
  virtual bool FileExists(const char16_t* path) = 0;
  // Starts the asynchronous protection query of a path. Its answer reaches
  // `info` exactly once, through OnProtectionStatus or OnQueryFailed, on any
  // thread; OnQueryRunning may come first.
  virtual void BeginProtectionQuery(const char16_t* path, BrokerFileProtectionInfo& info) = 0;

  // Whether ProtectFileToEnterpriseIdentity was found ("efswrt.dll").
  virtual bool CanProtectToIdentity() = 0;
  virtual int32_t ProtectToIdentity(const char16_t* path, const char16_t* identity) = 0;

  // Asks the policy manager whether content protected to `sourceIdentity` may
  // go to `targetIdentity`, with an audit record of the file's leaf name and
  // the address it is for, the user's consent owned by `window`. Waits for the
  // answer while the calling thread's messages are dispatched. True only when
  // the answer is "allowed"; a manager that can't be reached refuses.
  virtual bool RequestAccessWithAudit(const char16_t* sourceIdentity, const char16_t* targetIdentity, uint64_t window,
                                      const char16_t* leafName, const char16_t* remoteUrl) = 0;
};

}  // namespace SASM
