// The toolkit over real user32 and GDI: pixels read back from the window,
// posted input, native focus, the size animation, the module's images, and
// the UI the module hands to a host.
#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <tuple>
#include <vector>

#include "engine/LumenBrokerShim.h"
#include "host/ReferenceHost.h"
#include "tests/wine/WineTestSupport.h"
#include "ui/MPlainWindow.h"
#include "ui/MSkinnedSection.h"
#include "ui/MorphUI.h"
#include "ui/win32/Win32WindowHost.h"
#include "ui/win32/Win32WindowSystem.h"

using namespace SASM;

namespace {

struct Rgb {
  int r, g, b;
};

// A memory context holding a top-down 32-bit picture of the given pixels (0xAARRGGBB, premultiplied).
class TestImage {
 public:
  TestImage(int width, int height, const std::vector<uint32_t>& pixels) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    dc_ = CreateCompatibleDC(nullptr);
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    std::memcpy(bits, pixels.data(), pixels.size() * 4);
    old_ = SelectObject(dc_, bitmap_);
  }
  ~TestImage() {
    SelectObject(dc_, old_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }
  HDC dc() const { return dc_; }

 private:
  HDC dc_;
  HBITMAP bitmap_;
  HGDIOBJ old_;
};

using Hit = std::tuple<MRegion*, uint32_t, int32_t, int32_t, bool>;

bool RecordHit(MRegion* region, MWindow*, MPoint* point, bool inside, uint32_t message, void* context) {
  if (message == 275) return false;
  static_cast<std::vector<Hit>*>(context)->push_back({region, message, point->x, point->y, inside});
  return true;
}

class ToolkitWindowTest : public ::testing::Test {
 protected:
  ToolkitWindowTest()
      : ui(nullptr, GetModuleHandleW(nullptr),
           std::make_unique<Win32WindowSystem>(nullptr, GetModuleHandleW(nullptr))) {
    window = new MPlainWindow(&ui);
    ui.window = window;
    window->SetListener(
        [](MPlainWindow*, int32_t id, int32_t message, intptr_t param, void* context) {
          static_cast<ToolkitWindowTest*>(context)->events.push_back({id, message, param});
        },
        this);
    window->rect = {0, 0, 200, 120};
    window->ApplyRect(false, false);
    window->Show(true);
  }

  ~ToolkitWindowTest() override {
    delete ui.window;
    ui.window = nullptr;
    // Destroying the window posts a quit message; it is not for the next test.
    Pump(50);
  }

  HWND Hwnd() const { return static_cast<HWND>(window->handle); }

  MSkinnedSection* Add(MRect bounds, void* image, uint8_t mode, MSourceRect source = {0, 0, 1, 1}) {
    regions.push_back(std::make_unique<MSkinnedSection>(image, source));
    MSkinnedSection* r = regions.back().get();
    r->bounds = bounds;
    r->SetDrawMode(mode);
    return r;
  }

  void Pump(DWORD milliseconds) {
    DWORD end = GetTickCount() + milliseconds;
    MSG message;
    do {
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
      }
      Sleep(5);
    } while (GetTickCount() < end);
  }

  // What the window shows at a client point, read back through its context.
  Rgb PixelAt(int x, int y) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 1, -1, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    HDC memory = CreateCompatibleDC(nullptr);
    HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ old = SelectObject(memory, bitmap);
    HDC dc = GetDC(Hwnd());
    BitBlt(memory, 0, 0, 1, 1, dc, x, y, SRCCOPY);
    ReleaseDC(Hwnd(), dc);
    GdiFlush();
    uint32_t pixel = *static_cast<uint32_t*>(bits);
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    return {static_cast<int>((pixel >> 16) & 255), static_cast<int>((pixel >> 8) & 255), static_cast<int>(pixel & 255)};
  }

  void Repaint() {
    InvalidateRect(Hwnd(), nullptr, FALSE);
    UpdateWindow(Hwnd());
    Pump(30);
  }

  std::vector<std::unique_ptr<MSkinnedSection>> regions;
  MorphUI ui;
  MPlainWindow* window;
  std::vector<std::tuple<int32_t, int32_t, intptr_t>> events;
};

#define EXPECT_RGB_NEAR(actual, R, G, B, tolerance)    \
  do {                                                 \
    Rgb a_ = (actual);                                 \
    EXPECT_NEAR(a_.r, R, tolerance) << "red";          \
    EXPECT_NEAR(a_.g, G, tolerance) << "green";        \
    EXPECT_NEAR(a_.b, B, tolerance) << "blue";         \
  } while (0)

TEST_F(ToolkitWindowTest, PaintsFillStretchAndBlendPixelsExactly) {
  TestImage redBlue(2, 1, {0xFFFF0000, 0xFF0000FF});
  TestImage halfBlue(1, 1, {0x80000080});  // premultiplied blue at alpha 128
  TestImage white(1, 1, {0xFFFFFFFF});
  MSkinnedSection* fill = Add({10, 10, 30, 30}, nullptr, MRegion::kSolidFill);
  fill->SetFillColour(RGB(200, 10, 20));
  window->AttachRegion(fill);
  window->AttachRegion(Add({40, 10, 80, 30}, redBlue.dc(), MRegion::kOpaqueStretch, {0, 0, 2, 1}));
  window->AttachRegion(Add({90, 10, 110, 30}, halfBlue.dc(), MRegion::kAlphaBlend));
  MSkinnedSection* faint = Add({120, 10, 140, 30}, white.dc(), MRegion::kAlphaBlend);
  faint->alpha = 128;
  window->AttachRegion(faint);
  MSkinnedSection* none = Add({150, 10, 170, 30}, white.dc(), MRegion::kNoDraw);
  window->AttachRegion(none);
  Repaint();

  EXPECT_RGB_NEAR(PixelAt(5, 5), 50, 51, 51, 0);  // background 3355442
  EXPECT_RGB_NEAR(PixelAt(15, 15), 200, 10, 20, 0);
  EXPECT_RGB_NEAR(PixelAt(45, 20), 255, 0, 0, 0);
  EXPECT_RGB_NEAR(PixelAt(75, 20), 0, 0, 255, 0);
  // 128 + 51 * 127 / 255 for blue; the background alone, scaled, elsewhere.
  EXPECT_RGB_NEAR(PixelAt(100, 20), 25, 25, 153, 1);
  EXPECT_RGB_NEAR(PixelAt(130, 20), 153, 153, 153, 1);
  EXPECT_RGB_NEAR(PixelAt(160, 20), 50, 51, 51, 0);
}

TEST_F(ToolkitWindowTest, PostedPressAndReleaseReachTheRegionUnderThePointer) {
  std::vector<Hit> hits;
  MSkinnedSection* left = Add({10, 10, 60, 40}, nullptr, MRegion::kNoDraw);
  MSkinnedSection* right = Add({70, 10, 120, 40}, nullptr, MRegion::kNoDraw);
  for (MSkinnedSection* r : {left, right}) {
    r->handler = RecordHit;
    r->handlerContext = &hits;
    window->AttachRegion(r);
  }
  PostMessageW(Hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(80, 25));
  PostMessageW(Hwnd(), WM_LBUTTONUP, 0, MAKELPARAM(80, 25));
  ui.PostEvent(7, 5, 99);
  Pump(60);
  ASSERT_EQ(hits.size(), 2u);
  EXPECT_EQ(hits[0], Hit(right, WM_LBUTTONDOWN, 10, 15, true));
  EXPECT_EQ(hits[1], Hit(right, WM_LBUTTONUP, 10, 15, true));
  // Among the timer's (2, 4, 0) ticks, the posted event with its id and param.
  EXPECT_NE(std::find(events.begin(), events.end(), std::make_tuple(7, 5, intptr_t{99})), events.end());
}

TEST_F(ToolkitWindowTest, TabAndEnterOnNativeChildrenMoveFocusAndPress) {
  std::vector<Hit> hits;
  MSkinnedSection* buttons[3];
  for (int i = 0; i < 3; ++i) {
    buttons[i] = Add(MRect::FromSize(10 + 50 * i, 60, 40, 30), nullptr, MRegion::kNoDraw);
    buttons[i]->drawFlags |= MRegion::kNativeWindow;
    buttons[i]->controlId = 100 + i;
    buttons[i]->handler = RecordHit;
    buttons[i]->handlerContext = &hits;
    window->AttachRegion(buttons[i]);
    ASSERT_NE(buttons[i]->nativeWindow, nullptr);
  }
  HWND first = static_cast<HWND>(buttons[0]->nativeWindow);
  EXPECT_EQ(GetWindowLongW(first, GWL_STYLE) & 0xFFFF000F, static_cast<LONG>(Win32WindowHost::kChildStyle));
  EXPECT_EQ(GetDlgCtrlID(first), 100);

  window->SetFocusRegion(buttons[0], false);
  ASSERT_EQ(GetFocus(), first);
  SendMessageW(GetFocus(), WM_KEYDOWN, VK_TAB, 0);
  EXPECT_EQ(GetFocus(), buttons[1]->nativeWindow);
  EXPECT_EQ(window->focusRegion, buttons[1]);
  EXPECT_EQ(window->ringVisible, 1);

  buttons[2]->SetEnabled(false);
  SendMessageW(GetFocus(), WM_KEYDOWN, VK_TAB, 0);  // past the disabled one, round to the first
  EXPECT_EQ(GetFocus(), first);

  // With the window itself focused, Tab without Shift walks backwards from the first child.
  SetFocus(Hwnd());
  SendMessageW(Hwnd(), WM_KEYDOWN, VK_TAB, 0);
  EXPECT_EQ(GetFocus(), buttons[1]->nativeWindow);

  window->SetFocusRegion(buttons[0], false);
  SendMessageW(GetFocus(), WM_KEYDOWN, VK_RETURN, 0);
  SendMessageW(GetFocus(), WM_KEYUP, VK_RETURN, 0);
  ASSERT_EQ(hits.size(), 2u);
  EXPECT_EQ(hits[0], Hit(buttons[0], WM_LBUTTONDOWN, 2, 2, true));
  EXPECT_EQ(hits[1], Hit(buttons[0], WM_LBUTTONUP, 2, 2, true));
}

TEST_F(ToolkitWindowTest, SizeAnimationReachesItsTargetAndPaintsTheNewArea) {
  MSkinnedSection* corner = Add({290, 150, 300, 160}, nullptr, MRegion::kSolidFill);
  corner->SetFillColour(RGB(0, 200, 0));
  window->AttachRegion(corner);
  window->targetRect = {0, 0, 300, 160};
  DWORD end = GetTickCount() + 3000;
  while (!(window->rect == window->targetRect) && GetTickCount() < end) Pump(20);
  EXPECT_EQ(window->rect, (MRect{0, 0, 300, 160}));
  RECT client{};
  GetClientRect(Hwnd(), &client);
  EXPECT_EQ(client.right, 300);
  EXPECT_EQ(client.bottom, 160);
  Repaint();
  EXPECT_RGB_NEAR(PixelAt(295, 155), 0, 200, 0, 0);
}

TEST(ToolkitImages, TheModulesImagesLoadAsBottomUpDibSectionsAndMissingOnesStayEmpty) {
  HMODULE module = LoadLibraryW(WineTest::ModulePath().c_str());
  ASSERT_NE(module, nullptr);
  {
    Win32WindowSystem system(nullptr, module);
    struct Expected {
      int32_t id;
      LONG width, height;
    };
    for (Expected e : {Expected{161, 569, 175}, Expected{164, 460, 130}, Expected{162, 72, 44}}) {
      HDC dc = static_cast<HDC>(system.LoadSkinImage(ImageForm::kPlain, e.id));
      ASSERT_NE(dc, nullptr) << e.id;
      DIBSECTION dib{};
      ASSERT_EQ(GetObjectW(GetCurrentObject(dc, OBJ_BITMAP), sizeof(dib), &dib), static_cast<int>(sizeof(dib)));
      EXPECT_EQ(dib.dsBm.bmWidth, e.width);
      EXPECT_EQ(dib.dsBmih.biHeight, e.height);  // positive: bottom-up
      EXPECT_EQ(dib.dsBm.bmBitsPixel, 32);
      if (e.id == 161) {
        // The bottom bar's lit top edge, in the last row of the bottom-up memory.
        auto* top = static_cast<uint8_t*>(dib.dsBm.bmBits) + (e.height - 1) * e.width * 4;
        EXPECT_EQ(std::vector<int>(top + 8, top + 12), (std::vector<int>{112, 108, 104, 255}));
      }
    }
    EXPECT_EQ(system.LoadSkinImage(ImageForm::kPlain, 163), nullptr);
    EXPECT_EQ(system.LoadSkinImage(ImageForm::kCompressed, 161), nullptr);
    EXPECT_EQ(system.LoadSkinImage(static_cast<ImageForm>(2), 161), nullptr);
  }
  FreeLibrary(module);
}

using StartFn = LumenBrokerShim* (*)(HostCallbacks*);

TEST(ToolkitModuleUi, CreateUiShowsTheInstallerWindowAndCloseEndsTheLoopWith1039) {
  HMODULE module = LoadLibraryW(WineTest::ModulePath().c_str());
  ASSERT_NE(module, nullptr);
  auto start = reinterpret_cast<StartFn>(reinterpret_cast<void*>(GetProcAddress(module, "Start")));
  ReferenceHost host(HostOptions{}, MString(u""));
  host.resourceModule = module;
  std::unique_ptr<LumenBrokerShim> shim(start(&host));
  host.shim = shim.get();

  MorphUI* ui = shim->CreateUI();
  ASSERT_NE(ui, nullptr);
  ASSERT_NE(ui->window, nullptr);
  HWND hwnd = static_cast<HWND>(ui->window->handle);
  EXPECT_EQ(FindWindowW(Win32WindowHost::kClassName, nullptr), hwnd);
  EXPECT_TRUE(GetWindowLongW(hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST);
  EXPECT_EQ(GetWindowLongW(hwnd, GWL_STYLE) & WS_MINIMIZEBOX, 0);

  static int notified = 0;
  ui->SetEventCallback([](MorphUI*, int32_t code, intptr_t value, void*) {
    if (code == 0) notified = value;
    return 0;
  }, nullptr);
  PostMessageW(hwnd, WM_CLOSE, 0, 0);
  EXPECT_EQ(ui->RunMessageLoop(), 1039);
  EXPECT_EQ(notified, 1039);
  EXPECT_TRUE(IsWindow(hwnd));  // closing only ends the loop

  shim->DestroyUI(nullptr, ui);
  EXPECT_FALSE(IsWindow(hwnd));
  // Destruction of the window posts the quit message with 0.
  MSG message;
  bool quit = false;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) quit = message.wParam == 0;
  }
  EXPECT_TRUE(quit);
  shim->DestroyUI(nullptr, nullptr);
  host.shim = nullptr;
  shim.reset();
  FreeLibrary(module);
}

}  // namespace
