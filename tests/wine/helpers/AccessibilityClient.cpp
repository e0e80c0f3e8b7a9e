// A screen reader's view of native child windows, from a process of its own.
//   lumen_accessibility_client HWND...
// For each window handle (decimal) it asks the window for its accessible
// object and prints one line:
//   NAME<TAB>ROLE<TAB>STATE<TAB>LEFT,TOP,WIDTH,HEIGHT
// in UTF-8, or "error<TAB>HRESULT" when the object or an answer is missing.
// Exits 0 when every window answered.
#include "engine/win32/WindowsApi.h"

#include <ole2.h>
#include <oleacc.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

std::string Utf8(const wchar_t* text) {
  if (!text || !*text) return std::string();
  int n = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<size_t>(n), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), n, nullptr, nullptr);
  out.resize(static_cast<size_t>(n - 1));
  return out;
}

bool Describe(HWND window) {
  IAccessible* object = nullptr;
  HRESULT hr = AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                          reinterpret_cast<void**>(&object));
  if (FAILED(hr) || !object) {
    std::printf("error\t0x%08lx\n", static_cast<unsigned long>(hr));
    return false;
  }
  VARIANT self;
  VariantInit(&self);
  self.vt = VT_I4;
  self.lVal = CHILDID_SELF;
  BSTR name = nullptr;
  VARIANT role, state;
  VariantInit(&role);
  VariantInit(&state);
  LONG left = 0, top = 0, width = 0, height = 0;
  HRESULT results[] = {object->get_accName(self, &name), object->get_accRole(self, &role),
                       object->get_accState(self, &state), object->accLocation(&left, &top, &width, &height, self)};
  bool ok = true;
  for (HRESULT result : results) {
    if (FAILED(result)) {
      std::printf("error\t0x%08lx\n", static_cast<unsigned long>(result));
      ok = false;
      break;
    }
  }
  if (ok)
    std::printf("%s\t%ld\t%ld\t%ld,%ld,%ld,%ld\n", Utf8(name).c_str(), static_cast<long>(role.lVal),
                static_cast<long>(state.lVal), static_cast<long>(left), static_cast<long>(top),
                static_cast<long>(width), static_cast<long>(height));
  SysFreeString(name);
  object->Release();
  return ok;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 3;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  bool all = true;
  for (int i = 1; i < argc; ++i) {
    HWND window = reinterpret_cast<HWND>(static_cast<uintptr_t>(std::wcstoull(argv[i], nullptr, 10)));
    all = Describe(window) && all;
  }
  std::fflush(stdout);
  CoUninitialize();
  return all ? 0 : 1;
}
