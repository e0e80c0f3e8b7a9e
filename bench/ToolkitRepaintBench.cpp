// A full repaint of an installer-sized toolkit window (730 by 345) with the
// module's skin: an opaque nine-slice background and 31 alpha-blended regions
// (banner, logo, bottom bar, four buttons, check boxes, radios, progress bar)
// and three mark-up text areas (a heading, a body with a link and a list, a
// status line). Also times the layout of the three texts alone.
// Prints the median time per frame, its share of the 16 ms tick, and the ratio
// against a bare copy of the whole back buffer to the window measured in the
// same run.
//
// Run from the build's bin directory under Wine:
//   $WINE lumen_toolkit_bench.exe [rounds] [frames per round]
#include "engine/win32/WindowsApi.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "bench/BenchClock.h"
#include "ui/MPlainWindow.h"
#include "ui/MScale3Section.h"
#include "ui/MScale9Section.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"
#include "ui/win32/Win32WindowSystem.h"

using namespace SASM;

namespace {

constexpr int kWidth = 730;
constexpr int kHeight = 345;

struct Tree {
  std::vector<std::unique_ptr<MRegion>> regions;
  std::vector<std::unique_ptr<MScale3Data>> looks;
  MScale9Data backgroundLook;
  std::vector<MTextArea*> texts;
  int blended = 0;

  void Attach(MRegion* parent, MWindow* window, MRegion* r) {
    regions.emplace_back(r);
    if (parent) parent->AttachChild(r); else window->AttachRegion(r);
  }
  MRegion* Piece(MRegion* parent, MWindow* window, void* image, MSourceRect source, MRect bounds) {
    auto* r = new MSkinnedSection(image, source);
    r->bounds = bounds;
    Attach(parent, window, r);
    ++blended;
    return r;
  }
  MScale3Section* Three(MRegion* parent, MWindow* window, void* image, int x, int y, int l, int m, int r, int h,
                        MRect bounds) {
    looks.push_back(std::make_unique<MScale3Data>(
        MScale3Data{image, {x, y, l, h}, {x + l, y, m, h}, {x + l + m, y, r, h}, 2}));
    auto* s = new MScale3Section(looks.back().get(), window);
    s->bounds = bounds;
    Attach(parent, window, s);
    s->Layout();
    blended += 3;
    return s;
  }
};

void Build(Tree& t, MWindow* w, void* skin, void* banner) {
  t.backgroundLook = MScale9Data::Make(155, 0, 1, 412, 1, 173, 1, 1, skin, 1);
  auto* background = new MScale9Section(&t.backgroundLook, w);
  background->bounds = MRect::FromSize(0, 0, kWidth, kHeight - 67);
  t.Attach(nullptr, w, background);
  background->Layout();
  t.Piece(background, w, banner, {0, 0, 400, 130}, MRect::FromSize(115, 55, 400, 130));
  t.Piece(background, w, skin, {34, 0, 47, 71}, MRect::FromSize(10, 1, 47, 71));
  for (int i = 0; i < 4; ++i) {
    t.Piece(background, w, skin, {4 + 15 * (i & 1), 15 * (i >> 1), 15, 15}, MRect::FromSize(96 + 26 * i, 200, 15, 15));
    t.Piece(background, w, skin, {2 + 15 * (i & 1), 140 + 15 * (i >> 1), 15, 15}, MRect::FromSize(96 + 26 * i, 226, 15, 15));
  }
  MScale3Section* track = t.Three(background, w, skin, 4, 44, 4, 1, 4, 33, MRect::FromSize(270, 210, 360, 33));
  t.Three(track, w, skin, 2, 77, 1, 1, 2, 29, MRect::FromSize(2, 2, 200, 29));
  MScale3Section* bar = t.Three(nullptr, w, skin, 1, 0, 1, 1, 1, 68, MRect::FromSize(0, kHeight - 68, kWidth, 67));
  const int looks[] = {13, 20, 27, 6};
  for (int i = 0; i < 4; ++i) t.Three(bar, w, skin, looks[i], 77, 3, 1, 3, 33, MRect::FromSize(94 + 160 * i, 18, 140, 33));

  struct Text {
    int32_t size;
    MRect bounds;
    const char16_t* markup;
  };
  const Text texts[] = {
      {20, MRect::FromSize(70, 20, 600, 30), u"<strong>Install Lumen Player 28.0</strong>"},
      {13, MRect::FromSize(96, 150, 400, 45),
       u"By installing you accept <a href=\"https://lumen.example/terms\">the licence terms</a>.<ul>"
       u"<li>Plays every lumen</li><li>Updates itself</li></ul>"},
      {13, MRect::FromSize(270, 250, 360, 20), u"Downloading 61 %"},
  };
  for (const Text& text : texts) {
    auto* area = new MTextArea(w, text.size, true, false);
    area->bounds = text.bounds;
    area->SetText(MString(text.markup));
    t.Attach(background, w, area);
    area->Layout();
    t.texts.push_back(area);
    ++t.blended;
  }
}

std::wstring ModulePath() {
  wchar_t path[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring directory(path, length);
  return directory.substr(0, directory.find_last_of(L'\\') + 1) + L"LumenUtil.dll";
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 7;
  const int frames = argc > 2 ? std::atoi(argv[2]) : 60;
  HMODULE module = LoadLibraryW(ModulePath().c_str());
  if (!module) {
    std::fprintf(stderr, "cannot load LumenUtil.dll beside this program\n");
    return 2;
  }
  int result = 0;
  {
    MorphUI ui(nullptr, module, std::make_unique<Win32WindowSystem>(nullptr, module));
    auto* window = new MPlainWindow(&ui);
    ui.window = window;
    void* skin = ui.System().LoadSkinImage(ImageForm::kPlain, 161);
    void* banner = ui.System().LoadSkinImage(ImageForm::kPlain, 164);
    if (!skin || !banner) {
      std::fprintf(stderr, "the module has no skin images\n");
      result = 2;
    } else {
      Tree tree;
      Build(tree, window, skin, banner);
      window->rect = {0, 0, kWidth, kHeight};
      window->ApplyRect(false, false);
      window->Show(true);
      HWND hwnd = static_cast<HWND>(window->handle);
      UpdateWindow(hwnd);

      std::vector<double> repaint, copy, layout;
      for (int round = 0; round < rounds; ++round) {
        double start = BenchClock::Seconds();
        for (int i = 0; i < frames; ++i) {
          InvalidateRect(hwnd, nullptr, FALSE);
          UpdateWindow(hwnd);  // one synchronous WM_PAINT of the whole client area
        }
        GdiFlush();
        repaint.push_back((BenchClock::Seconds() - start) / frames);

        start = BenchClock::Seconds();
        for (int i = 0; i < frames; ++i) {
          HDC dc = GetDC(hwnd);
          BitBlt(dc, 0, 0, kWidth, kHeight, static_cast<HDC>(window->backDC), 0, 0, SRCCOPY);
          ReleaseDC(hwnd, dc);
        }
        GdiFlush();
        copy.push_back((BenchClock::Seconds() - start) / frames);

        start = BenchClock::Seconds();
        for (int i = 0; i < frames; ++i)
          for (MTextArea* text : tree.texts) text->Layout();
        GdiFlush();
        layout.push_back((BenchClock::Seconds() - start) / frames);
      }
      const double frame = BenchClock::Median(repaint);
      const double reference = BenchClock::Median(copy);
      std::printf("toolkit repaint %dx%d, %d blended regions: %.3f ms per frame, %.1f %% of the 16 ms tick\n",
                  kWidth, kHeight, tree.blended, frame * 1e3, frame * 1e3 / 16.0 * 100.0);
      std::printf("reference, back buffer copy to the window: %.3f ms; repaint / copy = %.1f\n", reference * 1e3,
                  frame / reference);
      std::printf("layout of the %zu text areas (lines, links, alpha pass): %.3f ms\n", tree.texts.size(),
                  BenchClock::Median(layout) * 1e3);
    }
    delete window;
    ui.window = nullptr;
  }
  FreeLibrary(module);
  return result;
}
