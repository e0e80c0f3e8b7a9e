// Opens a toolkit window under the module's skin images, lets it paint, and
// saves its client area as a 32-bit BMP.
//
//   lumen_toolkit_shot window OUT.bmp   a window showing every skin piece in use
//   lumen_toolkit_shot sheet OUT.bmp    the three images at full size on the window colour
//   lumen_toolkit_shot text OUT.bmp     mark-up text with a link, a list and a cut word, and widgets
#include "engine/win32/WindowsApi.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "ui/MButton.h"
#include "ui/MCheckboxButton.h"
#include "ui/MPlainWindow.h"
#include "ui/MProgressBar.h"
#include "ui/MRadioButton.h"
#include "ui/MRadioGroup.h"
#include "ui/MTextArea.h"
#include "ui/MScale3Section.h"
#include "ui/MScale9Section.h"
#include "ui/MorphUI.h"
#include "ui/win32/Win32WindowSystem.h"

using namespace SASM;

namespace {

std::wstring ModulePath() {
  wchar_t path[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring directory(path, length);
  return directory.substr(0, directory.find_last_of(L'\\') + 1) + L"LumenUtil.dll";
}

void Pump(DWORD milliseconds) {
  DWORD end = GetTickCount() + milliseconds;
  MSG message;
  do {
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    Sleep(5);
  } while (GetTickCount() < end);
}

bool SaveClientArea(HWND hwnd, int width, int height, const wchar_t* path) {
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  HDC memory = CreateCompatibleDC(nullptr);
  HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  HGDIOBJ old = SelectObject(memory, bitmap);
  HDC dc = GetDC(hwnd);
  BitBlt(memory, 0, 0, width, height, dc, 0, 0, SRCCOPY);
  ReleaseDC(hwnd, dc);
  GdiFlush();
  BITMAPFILEHEADER file{};
  file.bfType = 0x4D42;
  file.bfOffBits = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
  file.bfSize = file.bfOffBits + width * height * 4;
  FILE* out = _wfopen(path, L"wb");
  bool ok = out != nullptr;
  if (ok) {
    ok = fwrite(&file, sizeof(file), 1, out) == 1 && fwrite(&info.bmiHeader, sizeof(BITMAPINFOHEADER), 1, out) == 1 &&
         fwrite(bits, 4, static_cast<size_t>(width) * height, out) == static_cast<size_t>(width) * height;
    fclose(out);
  }
  SelectObject(memory, old);
  DeleteObject(bitmap);
  DeleteDC(memory);
  return ok;
}

// Owns what a picture is made of.
struct Scene {
  std::vector<std::unique_ptr<MRegion>> regions;
  std::vector<std::unique_ptr<MScale3Data>> looks3;
  std::vector<std::unique_ptr<MScale9Data>> looks9;

  MSkinnedSection* Piece(MRegion* parent, MWindow* window, void* image, MSourceRect source, MRect bounds,
                         uint8_t mode = MRegion::kAlphaBlend) {
    auto* r = new MSkinnedSection(image, source);
    r->bounds = bounds;
    r->SetDrawMode(mode);
    regions.emplace_back(r);
    if (parent) parent->AttachChild(r); else window->AttachRegion(r);
    return r;
  }

  MScale3Section* Three(MRegion* parent, MWindow* window, void* image, MSourceRect l, MSourceRect m, MSourceRect r,
                        MRect bounds) {
    looks3.push_back(std::make_unique<MScale3Data>(MScale3Data{image, l, m, r, 2}));
    auto* s = new MScale3Section(looks3.back().get(), window);
    s->bounds = bounds;
    regions.emplace_back(s);
    if (parent) parent->AttachChild(s); else window->AttachRegion(s);
    s->Layout();
    return s;
  }

  MScale9Section* Nine(MRegion* parent, MWindow* window, MScale9Data data, MRect bounds) {
    looks9.push_back(std::make_unique<MScale9Data>(data));
    auto* s = new MScale9Section(looks9.back().get(), window);
    s->bounds = bounds;
    regions.emplace_back(s);
    if (parent) parent->AttachChild(s); else window->AttachRegion(s);
    s->Layout();
    return s;
  }
};

MScale3Section* Button(Scene& scene, MRegion* parent, MWindow* window, void* skin, int x, MRect bounds) {
  return scene.Three(parent, window, skin, {x, 77, 3, 33}, {x + 3, 77, 1, 33}, {x + 4, 77, 3, 33}, bounds);
}

// A panel of the installer's size with each piece the panels cut from the sheet.
void BuildWindowScene(Scene& s, MWindow* w, void* skin, void* banner) {
  const int W = 730, H = 345;
  MScale9Section* background =
      s.Nine(nullptr, w, MScale9Data::Make(155, 0, 1, 412, 1, 173, 1, 1, skin, 1), MRect::FromSize(0, 0, W, H - 67));
  s.Piece(background, w, banner, {0, 0, 400, 130}, MRect::FromSize(115, 35, 400, 130));
  s.Piece(background, w, skin, {34, 0, 47, 71}, MRect::FromSize(10, 1, 47, 71));

  // Check boxes and radios in their four looks, the icons, and a progress bar.
  const MSourceRect checks[] = {{4, 0, 15, 15}, {19, 0, 15, 15}, {4, 15, 15, 15}, {19, 15, 15, 15}};
  const MSourceRect radios[] = {{2, 140, 15, 15}, {17, 140, 15, 15}, {2, 155, 15, 15}, {17, 155, 15, 15}};
  for (int i = 0; i < 4; ++i) {
    s.Piece(background, w, skin, checks[i], MRect::FromSize(96 + 26 * i, 190, 15, 15));
    s.Piece(background, w, skin, radios[i], MRect::FromSize(96 + 26 * i, 216, 15, 15));
  }
  s.Piece(background, w, skin, {5, 30, 13, 13}, MRect::FromSize(210, 191, 13, 13));
  s.Piece(background, w, skin, {20, 30, 13, 13}, MRect::FromSize(236, 191, 13, 13));
  s.Piece(background, w, skin, {0, 110, 33, 30}, MRect::FromSize(210, 212, 33, 30));
  s.Piece(background, w, skin, {39, 71, 42, 49}, MRect::FromSize(24, 200, 42, 49));
  MScale3Section* track = s.Three(background, w, skin, {4, 44, 4, 33}, {8, 44, 1, 33}, {9, 44, 4, 33},
                                  MRect::FromSize(270, 200, 360, 33));
  s.Three(track, w, skin, {2, 77, 1, 29}, {3, 77, 1, 29}, {4, 77, 2, 29}, MRect::FromSize(2, 2, (360 - 7) * 61 / 101 + 4, 29));
  MRegion* panel = s.Nine(background, w, MScale9Data::Make(33, 123, 1, 120, 1, 1, 50, 1, skin, 1),
                          MRect::FromSize(640, 190, 70, 60));
  (void)panel;

  // The bottom bar with a button in each look, the first inside the focus ring.
  MScale3Section* bar = s.Three(nullptr, w, skin, {1, 0, 1, 68}, {2, 0, 1, 68}, {3, 0, 1, 68},
                                MRect::FromSize(0, H - 68, W, 67));
  const int looks[] = {13, 20, 27, 6};
  for (int i = 0; i < 4; ++i) Button(s, bar, w, skin, looks[i], MRect::FromSize(94 + 160 * i, 18, 140, 33));
  s.Nine(bar, w, MScale9Data::Make(13, 44, 7, 1, 7, 7, 1, 7, skin, 2), MRect::FromSize(90, 14, 148, 41));
}

void BuildSheetScene(Scene& s, MWindow* w, void* skin, void* banner, void* badge) {
  s.Piece(nullptr, w, skin, {0, 0, 569, 175}, MRect::FromSize(10, 10, 569, 175));
  s.Piece(nullptr, w, banner, {0, 0, 460, 130}, MRect::FromSize(10, 200, 460, 130));
  s.Piece(nullptr, w, badge, {0, 0, 72, 44}, MRect::FromSize(490, 200, 72, 44));
  // The small pieces again at three times their size.
  s.Piece(nullptr, w, skin, {0, 0, 34, 170}, MRect::FromSize(600, 10, 102, 510), MRegion::kAlphaBlend);
  s.Piece(nullptr, w, skin, {34, 0, 47, 120}, MRect::FromSize(720, 10, 141, 360), MRegion::kAlphaBlend);
}

// Text areas and widgets on the window colour.
void BuildTextScene(Scene& s, MWindow* w, void* skin, MRadioGroup& group, std::vector<std::unique_ptr<MScale3Data>>& looks) {
  auto* body = new MTextArea(w, 16, true, false);
  body->bounds = MRect::FromSize(20, 15, 250, 190);
  body->SetText(MString(
      u"By installing you accept <a href=\"https://lumen.example/terms\">the licence terms</a> of Lumen Player."
      u"<ul><li>Plays <strong>every</strong> lumen</li><li>Updates itself</li></ul>"
      u"Averyveryverylongwordthatcannotfitonasingleline"));
  s.regions.emplace_back(body);
  w->AttachRegion(body);
  body->Layout();

  auto* narrow = new MTextArea(w, 13, false, true);
  narrow->bounds = MRect::FromSize(300, 15, 160, 40);
  narrow->format = MTextArea::kCentred;
  narrow->SetText(MString(u"Bold plain text, centred"));
  s.regions.emplace_back(narrow);
  w->AttachRegion(narrow);
  narrow->Layout();

  MButton* button = MakeButton(w, skin, MString(u"INSTALL"));
  button->bounds = MRect::FromSize(300, 70, 140, 33);
  s.regions.emplace_back(button);
  w->AttachRegion(button);
  button->Layout();

  MCheckboxButton* box = MakeCheckbox(w, skin, true);
  box->bounds = MRect::FromSize(300, 115, 15, 15);
  s.regions.emplace_back(box);
  w->AttachRegion(box);
  box->Layout();
  for (int i = 0; i < 2; ++i) {
    MRadioButton* radio = MakeRadio(w, skin, i == 0, i, &group);
    radio->bounds = MRect::FromSize(330 + 30 * i, 115, 15, 15);
    s.regions.emplace_back(radio);
    w->AttachRegion(radio);
    radio->Layout();
  }
  looks.push_back(std::make_unique<MScale3Data>(MScale3Data{skin, {4, 44, 4, 33}, {8, 44, 1, 33}, {9, 44, 4, 33}, 2}));
  looks.push_back(std::make_unique<MScale3Data>(MScale3Data{skin, {2, 77, 1, 29}, {3, 77, 1, 29}, {4, 77, 2, 29}, 2}));
  auto* bar = new MProgressBar(w, looks[0].get(), looks[1].get());
  bar->bounds = MRect::FromSize(300, 145, 160, 33);
  bar->value = 60;
  s.regions.emplace_back(bar);
  w->AttachRegion(bar);
  bar->Layout();
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::wstring what = argc == 3 ? argv[1] : L"";
  if (what != L"window" && what != L"sheet" && what != L"text") {
    fwprintf(stderr, L"usage: lumen_toolkit_shot window|sheet|text OUT.bmp\n");
    return 2;
  }
  HMODULE module = LoadLibraryW(ModulePath().c_str());
  if (!module) {
    fwprintf(stderr, L"cannot load LumenUtil.dll beside this program\n");
    return 3;
  }
  const bool sheet = what == L"sheet", text = what == L"text";
  const int width = sheet ? 880 : text ? 480 : 730, height = sheet ? 530 : text ? 220 : 345;
  int result = 0;
  {
    MorphUI ui(nullptr, module, std::make_unique<Win32WindowSystem>(nullptr, module));
    auto* window = new MPlainWindow(&ui);
    ui.window = window;
    void* skin = ui.System().LoadSkinImage(ImageForm::kPlain, 161);
    void* banner = ui.System().LoadSkinImage(ImageForm::kPlain, 164);
    void* badge = ui.System().LoadSkinImage(ImageForm::kPlain, 162);
    Scene scene;
    MRadioGroup group;
    std::vector<std::unique_ptr<MScale3Data>> looks;
    if (sheet)
      BuildSheetScene(scene, window, skin, banner, badge);
    else if (text)
      BuildTextScene(scene, window, skin, group, looks);
    else
      BuildWindowScene(scene, window, skin, banner);
    window->rect = {0, 0, width, height};
    window->ApplyRect(false, false);
    window->Show(true);
    Pump(300);
    InvalidateRect(static_cast<HWND>(window->handle), nullptr, FALSE);
    Pump(100);
    if (!SaveClientArea(static_cast<HWND>(window->handle), width, height, argv[2])) {
      fwprintf(stderr, L"cannot write %ls\n", argv[2]);
      result = 4;
    }
    // Text areas let go of their links through the window: they go first.
    scene.regions.clear();
    delete window;
    ui.window = nullptr;
  }
  FreeLibrary(module);
  return result;
}
