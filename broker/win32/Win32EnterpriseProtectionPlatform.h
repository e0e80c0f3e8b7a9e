#pragma once
// Enterprise data protection through the platform: identities from
// "srpapi.dll", protection from "efswrt.dll", the protection query through the
// runtime, consent through the policy manager. Each is found at run time and
// is simply absent where the system lacks it.
#include "broker/EnterpriseProtectionPlatform.h"
#include "engine/win32/Edpwin32DllHelper.h"
#include "engine/win32/Kernel32DllHelper.h"
#include "engine/win32/SrpapiDllHelper.h"

namespace SASM {

class Win32EnterpriseProtectionPlatform : public EnterpriseProtectionPlatform {
 public:
  bool CanGetEnterpriseIds() override;
  int32_t ImpersonateClient() override;
  void RevertToSelf() override;
  bool OpenThreadToken(uint32_t access, Token& token) override;
  bool OpenProcessToken(uint32_t access, Token& token) override;
  void CloseToken(Token token) override;
  int32_t GetEnterpriseIds(Token token, uint32_t& bytes, void* block, uint32_t& count) override;
  bool FileExists(const char16_t* path) override;
  void BeginProtectionQuery(const char16_t* path, BrokerFileProtectionInfo& info) override;
  bool CanProtectToIdentity() override;
  int32_t ProtectToIdentity(const char16_t* path, const char16_t* identity) override;
  bool RequestAccessWithAudit(const char16_t* sourceIdentity, const char16_t* targetIdentity, uint64_t window,
                              const char16_t* leafName, const char16_t* remoteUrl) override;

 private:
  SrpapiDllHelper srpapi_;
  Edpwin32DllHelper edpwin32_;
  Kernel32DllHelper kernel32_;
};

}  // namespace SASM
