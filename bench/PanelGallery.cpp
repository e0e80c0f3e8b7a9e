// Draws the installer window in every state of the gallery, in one language,
// each into a PNG named after its state.
//
//   lumen_panel_gallery LANGUAGE OUTDIR [STATE...]   the states (all without names) in that language
//   lumen_panel_gallery --list                       the names of the states, one a line
//
// LANGUAGE is a language id in decimal; the thread's locale takes it before
// any window is built, so the strings, fonts and offsets are that language's.
// Each state is a window of its own, driven by posted events and painted as
// the window paints its back buffer.
#include "engine/win32/WindowsApi.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/PanelStage.h"
#include "ui/win32/PngImage.h"

using namespace SASM;

namespace {

std::wstring ModulePath() {
  wchar_t path[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring directory(path, length);
  return directory.substr(0, directory.find_last_of(L'\\') + 1) + L"LumenUtil.dll";
}

// Builds the state's window, paints it whole into a DIB and saves that.
bool Draw(HMODULE module, const PanelState& state, const std::wstring& directory) {
  PanelStage stage(module, state);
  stage.Build();
  // Drawn all the same: the picture shows what the window shows instead.
  const bool reached = stage.Reached();
  if (!reached) std::fprintf(stderr, "%s: the window does not show the %s panel\n", state.name, state.panel);
  const int width = stage.Width(), height = stage.Height();
  if (width <= 0 || height <= 0 || width > 4096 || height > 4096) {
    std::fprintf(stderr, "%s: the window is %dx%d\n", state.name, width, height);
    return false;
  }
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  HDC dc = CreateCompatibleDC(nullptr);
  HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  bool ok = dc && bitmap && bits;
  if (ok) {
    HGDIOBJ old = SelectObject(dc, bitmap);
    stage.PaintInto(dc);
    std::wstring path = directory + L"\\" + std::wstring(state.name, state.name + strlen(state.name)) + L".png";
    ok = PngImage::Save(path, width, height, static_cast<const uint8_t*>(bits));
    SelectObject(dc, old);
    if (ok) std::printf("%s %dx%d\n", state.name, width, height);
    else std::fprintf(stderr, "%s: cannot write the picture\n", state.name);
  }
  if (bitmap) DeleteObject(bitmap);
  if (dc) DeleteDC(dc);
  return ok && reached;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc == 2 && std::wstring(argv[1]) == L"--list") {
    for (const PanelState& state : PanelStage::States()) std::printf("%s\n", state.name);
    return 0;
  }
  if (argc < 3) {
    std::fprintf(stderr, "usage: lumen_panel_gallery LANGUAGE OUTDIR [STATE...] | --list\n");
    return 2;
  }
  const LANGID language = static_cast<LANGID>(wcstoul(argv[1], nullptr, 10));
  const std::wstring directory = argv[2];
  std::vector<const PanelState*> states;
  for (int i = 3; i < argc; ++i) {
    std::string name(argv[i], argv[i] + wcslen(argv[i]));  // the names are ASCII
    const PanelState* state = PanelStage::Find(name);
    if (!state) {
      std::fprintf(stderr, "no state named %s\n", name.c_str());
      return 2;
    }
    states.push_back(state);
  }
  if (states.empty())
    for (const PanelState& state : PanelStage::States()) states.push_back(&state);

  // The strings follow the thread's locale, and so do the fonts and offsets.
  if (!SetThreadLocale(MAKELCID(language, SORT_DEFAULT))) {
    std::fprintf(stderr, "the thread cannot take locale %u\n", language);
    return 2;
  }
  SetThreadUILanguage(language);
  HMODULE module = LoadLibraryW(ModulePath().c_str());
  if (!module) {
    std::fprintf(stderr, "cannot load LumenUtil.dll beside this program\n");
    return 3;
  }
  // Which table answers, so that the caller can see the language took.
  const wchar_t* word = nullptr;
  int length = LoadStringW(module, 18, reinterpret_cast<LPWSTR>(&word), 0);
  std::wstring install = length > 0 && word ? std::wstring(word, static_cast<size_t>(length)).c_str() : L"";
  char utf8[256] = {};
  WideCharToMultiByte(CP_UTF8, 0, install.c_str(), -1, utf8, sizeof(utf8) - 1, nullptr, nullptr);
  std::printf("language %u: string 18 reads \"%s\"\n", language, utf8);
  CreateDirectoryW(directory.c_str(), nullptr);
  int failed = 0;
  for (const PanelState* state : states) failed += Draw(module, *state, directory) ? 0 : 1;
  FreeLibrary(module);
  return failed == 0 ? 0 : 4;
}
