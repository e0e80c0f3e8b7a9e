// The module's single export.
#include "engine/win32/WindowsApi.h"

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/win32/Win32LumenBrokerShim.h"
#include "engine/win32/Win32Platform.h"

extern "C" __declspec(dllexport) SASM::LumenBrokerShim* Start(SASM::HostCallbacks* host) {
  return SASM::Win32LumenBrokerShim::Start(host, SASM::Win32Platform());
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  // The process-wide helpers exist before Start can be called.
  if (reason == DLL_PROCESS_ATTACH) SASM::Win32Platform();
  return TRUE;
}
