// The widgets in a real window: posted input through user32, text laid out
// and drawn in real fonts, links opened through the shim, real tooltips.
#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "engine/LumenBrokerShim.h"
#include "host/ReferenceHost.h"
#include "ui/MButton.h"
#include "ui/MHTMLLink.h"
#include "ui/MPlainWindow.h"
#include "ui/MTextArea.h"
#include "ui/MTooltipArea.h"
#include "ui/MorphUI.h"
#include "ui/win32/Win32WindowSystem.h"

using namespace SASM;

namespace {

class OpeningShim : public LumenBrokerShim {
 public:
  explicit OpeningShim(HostCallbacks* host) : LumenBrokerShim(host, Platform{}) {}
  bool OpenUrl(void*, MString url) override {
    opened.push_back(url.ToUtf8());
    return true;
  }
  std::vector<std::string> opened;
};

class WidgetWindowTest : public ::testing::Test {
 protected:
  WidgetWindowTest()
      : host(HostOptions{}, MString(u"")),
        shim(&host),
        ui(&host, GetModuleHandleW(nullptr), std::make_unique<Win32WindowSystem>(nullptr, GetModuleHandleW(nullptr))) {
    host.shim = &shim;
    window = new MPlainWindow(&ui);
    ui.window = window;
    window->SetListener(
        [](MPlainWindow*, int32_t id, int32_t message, intptr_t, void* context) {
          if (id >= 100) static_cast<WidgetWindowTest*>(context)->notes.push_back({id, message});
        },
        this);
    window->rect = {0, 0, 400, 200};
    window->ApplyRect(false, false);
    window->Show(true);
  }
  ~WidgetWindowTest() override {
    delete ui.window;
    ui.window = nullptr;
    Pump(50);
  }

  HWND Hwnd() const { return static_cast<HWND>(window->handle); }

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
  void Post(UINT message, int x, int y) {
    PostMessageW(Hwnd(), message, message == WM_LBUTTONDOWN ? MK_LBUTTON : 0, MAKELPARAM(x, y));
  }

  ReferenceHost host;
  OpeningShim shim;
  MorphUI ui;
  MPlainWindow* window;
  std::vector<std::pair<int32_t, int32_t>> notes;
};

TEST_F(WidgetWindowTest, APostedPressAndReleaseOnAButtonNotifyPressThenClick) {
  std::unique_ptr<MButton> button(MakeButton(window, nullptr, MString(u"INSTALL")));
  button->controlId = 101;
  button->bounds = MRect::FromSize(20, 20, 140, 33);
  window->AttachRegion(button.get());
  button->Layout();
  ASSERT_NE(button->nativeWindow, nullptr);
  wchar_t name[32] = {};
  GetWindowTextW(static_cast<HWND>(button->nativeWindow), name, 32);
  EXPECT_EQ(std::wstring(name), L"INSTALL");

  Post(WM_MOUSEMOVE, 40, 30);
  Post(WM_LBUTTONDOWN, 40, 30);
  Post(WM_LBUTTONUP, 40, 30);
  Pump(100);
  EXPECT_EQ(notes, (std::vector<std::pair<int32_t, int32_t>>{{101, 0}, {101, 3}, {101, 2}}));
  EXPECT_EQ(GetFocus(), button->nativeWindow);
  EXPECT_EQ(GetCapture(), nullptr);
  button->Detach();
}

TEST_F(WidgetWindowTest, MarkupTextWrapsInRealFontsAndItsLinkOpensThroughTheShim) {
  MTextArea area(window, 16, true, false);
  area.bounds = MRect::FromSize(10, 10, 200, 150);
  area.SetText(MString(
      u"Read <a href=\"https://lumen.example/terms\">the terms</a> first.<ul><li>one</li><li>two</li></ul>"
      u"Unbreakablewordthatisfartoolongforthisarea"));
  window->AttachRegion(&area);
  const int32_t lines = area.Render();
  EXPECT_GE(lines, 5);
  auto* link = static_cast<MHTMLLink*>(area.firstChild);
  ASSERT_NE(link, nullptr);
  EXPECT_GT(link->bounds.Height(), 10);
  // The link covers exactly its run as the real font measures it, after "Read ".
  HDC dc = CreateCompatibleDC(nullptr);
  HFONT font = CreateFontA(16, 0, 0, 0, 400, 0, 0, 0, 1, 0, 0, 2, 2, "Arial");
  HGDIOBJ old = SelectObject(dc, font);
  SIZE read{}, run{};
  GetTextExtentPoint32W(dc, L"Read ", 5, &read);
  GetTextExtentPoint32W(dc, L"the terms", 9, &run);
  SelectObject(dc, old);
  DeleteObject(font);
  DeleteDC(dc);
  EXPECT_EQ(link->bounds, MRect::FromSize(read.cx, 0, run.cx, link->bounds.Height()));

  // The alpha pass left coverage where text is and nothing in the empty corner.
  DIBSECTION dib{};
  ASSERT_EQ(GetObjectW(GetCurrentObject(static_cast<HDC>(area.image), OBJ_BITMAP), sizeof(dib), &dib),
            static_cast<int>(sizeof(dib)));
  const auto* pixels = static_cast<const uint32_t*>(dib.dsBm.bmBits);
  const int w = dib.dsBm.bmWidth, h = dib.dsBm.bmHeight;
  int covered = 0;
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 60; ++x) covered += (pixels[(h - 1 - y) * w + x] >> 24) > 128;
  EXPECT_GT(covered, 20);
  EXPECT_EQ(pixels[(h - 1 - 149) * w + 199] >> 24, 0u);

  const int x = 10 + link->bounds.left + 5, y = 10 + link->bounds.top + 5;
  Post(WM_MOUSEMOVE, x, y);
  Post(WM_LBUTTONDOWN, x, y);
  Post(WM_LBUTTONUP, x, y);
  Pump(100);
  EXPECT_EQ(shim.opened, (std::vector<std::string>{"https://lumen.example/terms"}));
  area.Detach();
}

TEST_F(WidgetWindowTest, ATooltipHasItsToolOnlyWhileActive) {
  std::unique_ptr<MButton> button(MakeButton(window, nullptr, MString(u"INSTALL")));
  button->controlId = 101;
  button->bounds = MRect::FromSize(20, 20, 140, 33);
  window->AttachRegion(button.get());
  {
    MTooltipArea tip(window, button->nativeWindow);
    ASSERT_NE(tip.tooltip, nullptr);
    HWND handle = static_cast<HWND>(tip.tooltip->Handle());
    wchar_t className[64] = {};
    GetClassNameW(handle, className, 64);
    EXPECT_EQ(std::wstring(className), L"tooltips_class32");
    EXPECT_TRUE(GetWindowLongW(handle, GWL_EXSTYLE) & WS_EX_TOPMOST);
    EXPECT_EQ(SendMessageW(handle, TTM_GETDELAYTIME, TTDT_INITIAL, 0), 100);
    EXPECT_EQ(SendMessageW(handle, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 30000);
    tip.SetText(MString(u"Accept the licence first."));
    tip.bounds = MRect::FromSize(0, 0, 140, 33);
    EXPECT_EQ(SendMessageW(handle, TTM_GETTOOLCOUNT, 0, 0), 0);
    tip.SetActive(true);
    EXPECT_EQ(SendMessageW(handle, TTM_GETTOOLCOUNT, 0, 0), 1);
    tip.bounds = MRect::FromSize(0, 0, 100, 33);
    tip.Layout();
    TOOLINFOW info{};
    info.cbSize = sizeof(info);
    ASSERT_TRUE(SendMessageW(handle, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&info)));
    EXPECT_EQ(info.rect.right, 100);
    EXPECT_EQ(info.uFlags & (TTF_SUBCLASS | TTF_CENTERTIP), static_cast<UINT>(TTF_SUBCLASS | TTF_CENTERTIP));
    EXPECT_EQ(info.hwnd, button->nativeWindow);
    tip.SetActive(false);
    EXPECT_EQ(SendMessageW(handle, TTM_GETTOOLCOUNT, 0, 0), 0);
  }
  button->Detach();
}

}  // namespace
