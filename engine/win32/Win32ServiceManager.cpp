#include "engine/win32/Win32ServiceManager.h"

#include "engine/win32/WindowsApi.h"

#include <string>

#include "engine/win32/WideText.h"

namespace SASM {
namespace {

SC_HANDLE ToHandle(ServiceHandleId id) { return reinterpret_cast<SC_HANDLE>(static_cast<uintptr_t>(id)); }
ServiceHandleId ToId(SC_HANDLE handle) { return static_cast<ServiceHandleId>(reinterpret_cast<uintptr_t>(handle)); }
int32_t LastError() { return static_cast<int32_t>(GetLastError()); }

}  // namespace

int32_t Win32ServiceManager::OpenManager(uint32_t access, ServiceHandleId& manager) {
  SC_HANDLE handle = OpenSCManagerW(nullptr, nullptr, access);
  if (!handle) return LastError();
  manager = ToId(handle);
  return ERROR_SUCCESS;
}

int32_t Win32ServiceManager::OpenService(ServiceHandleId manager, std::u16string_view name, uint32_t access,
                                         ServiceHandleId& service) {
  SC_HANDLE handle = OpenServiceW(ToHandle(manager), ToWide(name).c_str(), access);
  if (!handle) return LastError();
  service = ToId(handle);
  return ERROR_SUCCESS;
}

int32_t Win32ServiceManager::QueryState(ServiceHandleId service, uint32_t& state) {
  SERVICE_STATUS_PROCESS status = {};
  DWORD needed = 0;
  if (!QueryServiceStatusEx(ToHandle(service), SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status),
                            sizeof(status), &needed))
    return LastError();
  state = status.dwCurrentState;
  return ERROR_SUCCESS;
}

int32_t Win32ServiceManager::Control(ServiceHandleId service, uint32_t control) {
  SERVICE_STATUS status = {};
  return ControlService(ToHandle(service), control, &status) ? ERROR_SUCCESS : LastError();
}

void Win32ServiceManager::Close(ServiceHandleId handle) { CloseServiceHandle(ToHandle(handle)); }

}  // namespace SASM
