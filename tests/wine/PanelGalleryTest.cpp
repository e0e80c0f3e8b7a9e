// The panel gallery: every state it names reaches its panel and draws over
// the window colour, the words follow the thread's locale, and the gallery
// program writes one picture per state.
#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bench/PanelStage.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

class PanelGalleryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    locale_ = GetThreadLocale();
    module_ = LoadLibraryW(WineTest::ModulePath().c_str());
    ASSERT_NE(module_, nullptr);
  }
  void TearDown() override {
    SetThreadLocale(locale_);
    if (module_) FreeLibrary(module_);
  }

  // The state drawn in the current locale, as top-down pixels.
  std::vector<uint32_t> Picture(const char* name, int* width = nullptr) {
    const PanelState* state = PanelStage::Find(name);
    if (!state) return {};
    PanelStage stage(module_, *state);
    stage.Build();
    EXPECT_TRUE(stage.Reached()) << name;
    const int w = stage.Width(), h = stage.Height();
    if (width) *width = w;
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), w, -h, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    HDC dc = CreateCompatibleDC(nullptr);
    HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ old = SelectObject(dc, bitmap);
    stage.PaintInto(dc);
    const uint32_t* pixels = static_cast<const uint32_t*>(bits);
    std::vector<uint32_t> picture(pixels, pixels + static_cast<size_t>(w) * h);
    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
    for (uint32_t& p : picture) p &= 0xFFFFFF;
    return picture;
  }

  LCID locale_ = 0;
  HMODULE module_ = nullptr;
};

TEST_F(PanelGalleryTest, EveryStateShowsItsPanelDrawnOverTheWindowColour) {
  ASSERT_TRUE(SetThreadLocale(1033));
  for (const PanelState& state : PanelStage::States()) {
    int width = 0;
    std::vector<uint32_t> picture = Picture(state.name, &width);
    ASSERT_FALSE(picture.empty()) << state.name;
    EXPECT_GE(width, 414) << state.name;
    // Above the bottom bar, more than the logo alone (47 by 71) differs from the
    // window colour: 3355442 is red 50, green 51, blue 51, which a DIB pixel reads as 0x323333.
    const size_t panelPixels = picture.size() - static_cast<size_t>(width) * MInstallerWindow::kBarHeight;
    size_t drawn = 0;
    for (size_t i = 0; i < panelPixels; ++i) drawn += picture[i] != 0x323333;
    EXPECT_GT(drawn, 47u * 71) << state.name;
  }
}

TEST_F(PanelGalleryTest, TheWordsFollowTheThreadLocale) {
  std::vector<std::vector<uint32_t>> pictures;
  for (LCID locale : {1033, 1041, 1049}) {
    ASSERT_TRUE(SetThreadLocale(locale));
    pictures.push_back(Picture("installer-splash-clear"));
  }
  EXPECT_EQ(pictures[0].size(), pictures[1].size());
  EXPECT_NE(pictures[0], pictures[1]);
  EXPECT_NE(pictures[0], pictures[2]);
  EXPECT_NE(pictures[1], pictures[2]);
}

DWORD RunGallery(const std::wstring& arguments) {
  std::wstring command = L"\"" + WineTest::BinaryDirectory() + L"\\lumen_panel_gallery.exe\" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
    return 0xFFFFFFFF;
  DWORD code = WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0 ? 0 : 0xFFFFFFFE;
  if (code == 0) GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code;
}

TEST_F(PanelGalleryTest, TheProgramWritesOnePictureForEachNamedState) {
  CreateDirectoryW(WineTest::TestDirectory(L"").c_str(), nullptr);
  std::wstring directory = WineTest::TestDirectory(L"gallery");
  DeleteFileW((directory + L"\\failure-error.png").c_str());
  EXPECT_EQ(RunGallery(L"1029 \"" + directory + L"\" failure-error conflicts-seven"), 0u);
  for (const wchar_t* name : {L"failure-error.png", L"conflicts-seven.png"}) {
    std::string png = WineTest::ReadAll(directory + L"\\" + name);
    ASSERT_GT(png.size(), 33u) << WineTest::Utf8(name);
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
    // Czech windows are 750 wide; the IHDR width is big-endian at byte 16.
    const auto* ihdr = reinterpret_cast<const unsigned char*>(png.data() + 16);
    EXPECT_EQ((ihdr[0] << 24) | (ihdr[1] << 16) | (ihdr[2] << 8) | ihdr[3], 750);
  }
  EXPECT_EQ(RunGallery(L"1033 \"" + directory + L"\" no-such-state"), 2u);
}

}  // namespace
