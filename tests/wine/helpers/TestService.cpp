// A service for the Wine suite.
//   lumen_test_service NAME   run by the service control manager as service NAME;
//                             a stop control is answered with "stop pending", then it stops
#include "engine/win32/WindowsApi.h"

#include <cwchar>

#include "engine/win32/ScopedHandle.h"

namespace {

constexpr int kUsage = 3;

wchar_t g_name[256];
SERVICE_STATUS_HANDLE g_status = nullptr;
SASM::ScopedHandle g_stopRequested;

void Report(DWORD state, DWORD checkPoint = 0) {
  SERVICE_STATUS status = {};
  status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
  status.dwCurrentState = state;
  status.dwControlsAccepted = state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP : 0;
  status.dwCheckPoint = checkPoint;
  status.dwWaitHint = checkPoint ? 1000 : 0;
  SetServiceStatus(g_status, &status);
}

DWORD WINAPI Control(DWORD control, DWORD, void*, void*) {
  if (control == SERVICE_CONTROL_INTERROGATE) return NO_ERROR;
  if (control != SERVICE_CONTROL_STOP) return ERROR_CALL_NOT_IMPLEMENTED;
  Report(SERVICE_STOP_PENDING, 1);
  SetEvent(g_stopRequested.get());
  return NO_ERROR;
}

void WINAPI ServiceMain(DWORD, wchar_t**) {
  g_status = RegisterServiceCtrlHandlerExW(g_name, Control, nullptr);
  if (!g_status) return;
  Report(SERVICE_RUNNING);
  WaitForSingleObject(g_stopRequested.get(), INFINITE);
  Report(SERVICE_STOPPED);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 2 || wcslen(argv[1]) >= 256) return kUsage;
  wcscpy(g_name, argv[1]);
  g_stopRequested.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  SERVICE_TABLE_ENTRYW table[] = {{g_name, ServiceMain}, {nullptr, nullptr}};
  return StartServiceCtrlDispatcherW(table) ? 0 : static_cast<int>(GetLastError());
}
