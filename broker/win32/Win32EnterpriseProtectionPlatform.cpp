#include "broker/win32/Win32EnterpriseProtectionPlatform.h"

#include <objbase.h>

#include "broker/win32/Win32AccessConsentRequest.h"
#include "broker/win32/Win32FileProtectionQuery.h"

namespace SASM {

namespace {

const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

}  // namespace

bool Win32EnterpriseProtectionPlatform::CanGetEnterpriseIds() { return srpapi_.SrpGetEnterpriseIds() != nullptr; }

int32_t Win32EnterpriseProtectionPlatform::ImpersonateClient() { return CoImpersonateClient(); }

void Win32EnterpriseProtectionPlatform::RevertToSelf() { CoRevertToSelf(); }

bool Win32EnterpriseProtectionPlatform::OpenThreadToken(uint32_t access, Token& token) {
  HANDLE handle = nullptr;
  if (!::OpenThreadToken(GetCurrentThread(), access, TRUE, &handle)) return false;
  token = handle;
  return true;
}

bool Win32EnterpriseProtectionPlatform::OpenProcessToken(uint32_t access, Token& token) {
  HANDLE handle = nullptr;
  if (!::OpenProcessToken(GetCurrentProcess(), access, &handle)) return false;
  token = handle;
  return true;
}

void Win32EnterpriseProtectionPlatform::CloseToken(Token token) { CloseHandle(token); }

int32_t Win32EnterpriseProtectionPlatform::GetEnterpriseIds(Token token, uint32_t& bytes, void* block,
                                                            uint32_t& count) {
  auto getIds = srpapi_.SrpGetEnterpriseIds();
  if (!getIds) return E_NOTIMPL;
  ULONG size = bytes;
  ULONG found = count;
  HRESULT result = getIds(token, &size, static_cast<const wchar_t**>(block), &found);
  bytes = size;
  count = found;
  return result;
}

bool Win32EnterpriseProtectionPlatform::FileExists(const char16_t* path) {
  auto getAttributes = kernel32_.GetFileAttributesExW();
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  return getAttributes && path && getAttributes(Wide(path), GetFileExInfoStandard, &data);
}

void Win32EnterpriseProtectionPlatform::BeginProtectionQuery(const char16_t* path, BrokerFileProtectionInfo& info) {
  Win32FileProtectionQuery::Start(Wide(path), info);
}

bool Win32EnterpriseProtectionPlatform::CanProtectToIdentity() {
  return edpwin32_.ProtectFileToEnterpriseIdentity() != nullptr;
}

int32_t Win32EnterpriseProtectionPlatform::ProtectToIdentity(const char16_t* path, const char16_t* identity) {
  auto protect = edpwin32_.ProtectFileToEnterpriseIdentity();
  return protect ? protect(Wide(path), Wide(identity)) : E_NOTIMPL;
}

bool Win32EnterpriseProtectionPlatform::RequestAccessWithAudit(const char16_t* sourceIdentity,
                                                               const char16_t* targetIdentity, uint64_t window,
                                                               const char16_t* leafName, const char16_t* remoteUrl) {
  return Win32AccessConsentRequest::Ask(reinterpret_cast<HWND>(static_cast<uintptr_t>(window)), Wide(sourceIdentity),
                                        Wide(targetIdentity), Wide(leafName), Wide(remoteUrl));
}

}  // namespace SASM
