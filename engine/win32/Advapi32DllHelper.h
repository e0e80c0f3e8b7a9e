#pragma once
// "advapi32.dll" bound at run time (required). Security descriptors, tokens and the registry.
#include "engine/win32/DynamicLoadLibraryHelper.h"

#include <aclapi.h>

namespace SASM {

inline constexpr DllFunction kAdvapi32Functions[] = {
    {"AllocateAndInitializeSid", true},
    {"GetNamedSecurityInfoA", true},
    {"GetNamedSecurityInfoW", false},
    {"GetSecurityInfo", true},
    {"SetEntriesInAclA", true},
    {"SetEntriesInAclW", false},
    {"SetNamedSecurityInfoA", true},
    {"SetNamedSecurityInfoW", false},
    {"SetSecurityInfo", true},
    {"FreeSid", true},
    {"GetAclInformation", true},
    {"GetAce", true},
    {"EqualSid", true},
    {"DeleteAce", true},
    {"CreateWellKnownSid", false},
    {"OpenProcessToken", true},
    {"GetTokenInformation", true},
    {"GetSidSubAuthority", true},
    {"GetSidSubAuthorityCount", true},
    {"RegCreateKeyExW", true},
    {"RegOpenKeyExW", true},
    {"RegDeleteKeyW", true},
    {"RegDeleteKeyExW", false},
    {"RegDeleteValueW", true},
    {"RegQueryValueExW", true},
    {"RegSetValueExW", true},
};

class Advapi32DllHelper : public DllFunctionTable<kAdvapi32Functions> {
 public:
  static constexpr char kLibrary[] = "advapi32.dll";
  static constexpr bool kLibraryRequired = true;

  Advapi32DllHelper() : DllFunctionTable(kLibrary, kLibraryRequired) {}

  auto AllocateAndInitializeSid() const {
    return Entry<decltype(&::AllocateAndInitializeSid)>(DllFunctionIndex(kFunctions, "AllocateAndInitializeSid"));
  }
  auto GetNamedSecurityInfoA() const {
    return Entry<decltype(&::GetNamedSecurityInfoA)>(DllFunctionIndex(kFunctions, "GetNamedSecurityInfoA"));
  }
  auto GetNamedSecurityInfoW() const {
    return Entry<decltype(&::GetNamedSecurityInfoW)>(DllFunctionIndex(kFunctions, "GetNamedSecurityInfoW"));
  }
  auto GetSecurityInfo() const {
    return Entry<decltype(&::GetSecurityInfo)>(DllFunctionIndex(kFunctions, "GetSecurityInfo"));
  }
  auto SetEntriesInAclA() const {
    return Entry<decltype(&::SetEntriesInAclA)>(DllFunctionIndex(kFunctions, "SetEntriesInAclA"));
  }
  auto SetEntriesInAclW() const {
    return Entry<decltype(&::SetEntriesInAclW)>(DllFunctionIndex(kFunctions, "SetEntriesInAclW"));
  }
  auto SetNamedSecurityInfoA() const {
    return Entry<decltype(&::SetNamedSecurityInfoA)>(DllFunctionIndex(kFunctions, "SetNamedSecurityInfoA"));
  }
  auto SetNamedSecurityInfoW() const {
    return Entry<decltype(&::SetNamedSecurityInfoW)>(DllFunctionIndex(kFunctions, "SetNamedSecurityInfoW"));
  }
  auto SetSecurityInfo() const {
    return Entry<decltype(&::SetSecurityInfo)>(DllFunctionIndex(kFunctions, "SetSecurityInfo"));
  }
  auto FreeSid() const { return Entry<decltype(&::FreeSid)>(DllFunctionIndex(kFunctions, "FreeSid")); }
  auto GetAclInformation() const {
    return Entry<decltype(&::GetAclInformation)>(DllFunctionIndex(kFunctions, "GetAclInformation"));
  }
  auto GetAce() const { return Entry<decltype(&::GetAce)>(DllFunctionIndex(kFunctions, "GetAce")); }
  auto EqualSid() const { return Entry<decltype(&::EqualSid)>(DllFunctionIndex(kFunctions, "EqualSid")); }
  auto DeleteAce() const { return Entry<decltype(&::DeleteAce)>(DllFunctionIndex(kFunctions, "DeleteAce")); }
  auto CreateWellKnownSid() const {
    return Entry<decltype(&::CreateWellKnownSid)>(DllFunctionIndex(kFunctions, "CreateWellKnownSid"));
  }
  auto OpenProcessToken() const {
    return Entry<decltype(&::OpenProcessToken)>(DllFunctionIndex(kFunctions, "OpenProcessToken"));
  }
  auto GetTokenInformation() const {
    return Entry<decltype(&::GetTokenInformation)>(DllFunctionIndex(kFunctions, "GetTokenInformation"));
  }
  auto GetSidSubAuthority() const {
    return Entry<decltype(&::GetSidSubAuthority)>(DllFunctionIndex(kFunctions, "GetSidSubAuthority"));
  }
  auto GetSidSubAuthorityCount() const {
    return Entry<decltype(&::GetSidSubAuthorityCount)>(DllFunctionIndex(kFunctions, "GetSidSubAuthorityCount"));
  }
  auto RegCreateKeyExW() const {
    return Entry<decltype(&::RegCreateKeyExW)>(DllFunctionIndex(kFunctions, "RegCreateKeyExW"));
  }
  auto RegOpenKeyExW() const {
    return Entry<decltype(&::RegOpenKeyExW)>(DllFunctionIndex(kFunctions, "RegOpenKeyExW"));
  }
  auto RegDeleteKeyW() const {
    return Entry<decltype(&::RegDeleteKeyW)>(DllFunctionIndex(kFunctions, "RegDeleteKeyW"));
  }
  auto RegDeleteKeyExW() const {
    return Entry<decltype(&::RegDeleteKeyExW)>(DllFunctionIndex(kFunctions, "RegDeleteKeyExW"));
  }
  auto RegDeleteValueW() const {
    return Entry<decltype(&::RegDeleteValueW)>(DllFunctionIndex(kFunctions, "RegDeleteValueW"));
  }
  auto RegQueryValueExW() const {
    return Entry<decltype(&::RegQueryValueExW)>(DllFunctionIndex(kFunctions, "RegQueryValueExW"));
  }
  auto RegSetValueExW() const {
    return Entry<decltype(&::RegSetValueExW)>(DllFunctionIndex(kFunctions, "RegSetValueExW"));
  }
};

}  // namespace SASM
