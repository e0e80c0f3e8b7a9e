#include "broker/win32/Win32PrefPlatform.h"

#include "engine/win32/WindowsApi.h"

#ifndef DIRECTINPUT_VERSION
#define DIRECTINPUT_VERSION 0x0800
#endif
#include <dinput.h>

#include "engine/win32/ComPtr.h"
#include "engine/win32/Dinput8DllHelper.h"
#include "engine/win32/Kernel32DllHelper.h"
#include "engine/win32/Win32Platform.h"

namespace SASM {
namespace {

constexpr UINT kGetScreenSaveTimeout = 14;
constexpr UINT kSetScreenSaveTimeout = 15;
constexpr DWORD kDirectInputVersion = 2048;
constexpr DWORD kGameControllers = 4;
constexpr DWORD kAttachedOnly = 1;
constexpr IID kDirectInput8Interface = {0xBF798031, 0x483A, 0x4DA2, {0xAA, 0x99, 0x5D, 0x64, 0xED, 0x36, 0x97, 0x00}};

BOOL CALLBACK CountDevice(LPCDIDEVICEINSTANCEW, LPVOID counter) {
  ++*static_cast<uint32_t*>(counter);
  return DIENUM_CONTINUE;
}

}  // namespace

uint32_t Win32PrefPlatform::GetScreenSaveTimeout() {
  UINT seconds = 0;
  SystemParametersInfoW(kGetScreenSaveTimeout, 0, &seconds, 0);
  return seconds;
}

void Win32PrefPlatform::SetScreenSaveTimeout(uint32_t seconds) {
  SystemParametersInfoW(kSetScreenSaveTimeout, seconds, nullptr, 0);
}

uint32_t Win32PrefPlatform::CountGameControllers() {
  auto create = ProcessDinput8DllHelper().DirectInput8Create();
  if (!create) return 0;
  ComPtr<IDirectInput8W> input;
  if (FAILED(create(GetModuleHandleW(nullptr), kDirectInputVersion, kDirectInput8Interface, input.receiveVoid(),
                    nullptr)) ||
      !input)
    return 0;
  uint32_t count = 0;
  input->EnumDevices(kGameControllers, &CountDevice, &count, kAttachedOnly);
  return count;
}

int32_t Win32PrefPlatform::QueryVolume(const char16_t* root, bool& bound) {
  auto volumeInformation = ProcessKernel32DllHelper().GetVolumeInformationW();
  bound = volumeInformation != nullptr;
  if (!bound) return 0;
  return volumeInformation(reinterpret_cast<const wchar_t*>(root), nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0);
}

bool Win32PrefPlatform::FromSystemCodePage(std::string_view narrow, std::u16string& wide) {
  wide.clear();
  if (narrow.empty()) return true;
  const int length = MultiByteToWideChar(CP_ACP, 0, narrow.data(), static_cast<int>(narrow.size()), nullptr, 0);
  if (length <= 0) return false;
  wide.resize(static_cast<size_t>(length));
  return MultiByteToWideChar(CP_ACP, 0, narrow.data(), static_cast<int>(narrow.size()),
                             reinterpret_cast<wchar_t*>(wide.data()), length) == length;
}

bool Win32PrefPlatform::ToSystemCodePage(std::u16string_view wide, std::string& narrow) {
  narrow.clear();
  if (wide.empty()) return true;
  const auto* text = reinterpret_cast<const wchar_t*>(wide.data());
  const int units = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(CP_ACP, 0, text, units, nullptr, 0, nullptr, nullptr);
  if (length <= 0) return false;
  narrow.resize(static_cast<size_t>(length));
  return WideCharToMultiByte(CP_ACP, 0, text, units, narrow.data(), length, nullptr, nullptr) == length;
}

}  // namespace SASM
