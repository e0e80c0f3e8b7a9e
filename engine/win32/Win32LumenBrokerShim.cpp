#include "engine/win32/Win32LumenBrokerShim.h"

#include "engine/win32/WindowsApi.h"

#include <new>
#include <string>

#include "broker/win32/BrokerServerLifecycle.h"
#include "engine/HostCallbacks.h"
#include "engine/win32/ScopedLibrary.h"
#include "ui/MorphUI.h"
#include "ui/panels/MInstallerWindow.h"
#include "ui/win32/Win32WindowSystem.h"

namespace SASM {

LumenBrokerShim* Win32LumenBrokerShim::Start(HostCallbacks* host, const Platform& platform) {
  return WithEngine(new (std::nothrow) Win32LumenBrokerShim(host, platform));
}

int32_t Win32LumenBrokerShim::RunBroker() { return BrokerServerLifecycle::RunBrokerServer(host); }

bool Win32LumenBrokerShim::RefreshElevationPolicy() {
  wchar_t directory[MAX_PATH];
  UINT length = GetSystemDirectoryW(directory, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return false;
  std::wstring path(directory, length);
  path += L"\\ieframe.dll";
  ScopedLibrary library(LoadLibraryW(path.c_str()));
  if (!library) return false;
  using RefreshFn = HRESULT(WINAPI*)();
  auto refresh =
      reinterpret_cast<RefreshFn>(reinterpret_cast<void*>(GetProcAddress(library.get(), "IERefreshElevationPolicy")));
  if (!refresh) return false;
  refresh();
  return true;
}

MorphUI* Win32LumenBrokerShim::CreateUI() {
  HMODULE module = host->resourceModule ? static_cast<HMODULE>(host->resourceModule) : GetModuleHandleA(nullptr);
  auto* ui = new (std::nothrow) MorphUI(host, module, std::make_unique<Win32WindowSystem>(host, module));
  if (!ui) return nullptr;
  ui->SetWindow(new MInstallerWindow(ui));
  return ui;
}

void Win32LumenBrokerShim::DestroyUI(void*, MorphUI* ui) { delete ui; }

}  // namespace SASM
