// The print relay through COM against the live server, as a sandboxed player
// prints: a real printer device (the platform's PostScript driver, spooled to
// a file, defined for this suite alone), its DC from the print dialog's
// default-printer request, one page drawn call by call, and the printed file
// read back. A few hostile arrays go through the live server too.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "engine/win32/ComPtr.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr HRESULT kFailure = static_cast<HRESULT>(0x80004005);
constexpr HRESULT kBadArgument = static_cast<HRESULT>(0x80070057);
constexpr wchar_t kPrinter[] = L"LumenProof";
constexpr wchar_t kDriverKey[] =
    L"System\\CurrentControlSet\\Control\\Print\\Environments\\Windows x64\\Drivers\\Version-3\\LumenProof";
constexpr wchar_t kPrinterKey[] = L"System\\CurrentControlSet\\Control\\Print\\Printers\\LumenProof";
constexpr wchar_t kWindowsKey[] = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
constexpr wchar_t kDevicesKey[] = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Devices";
constexpr wchar_t kPortsKey[] = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\PrinterPorts";
constexpr wchar_t kSpoolerKey[] = L"Software\\Wine\\Printing\\Spooler";
// PD_RETURNDC | PD_RETURNDEFAULT: the default printer's DC, with no dialog shown.
constexpr ULONG kDefaultPrinterDc = 0x500;

void SetText(HKEY root, const wchar_t* key, const wchar_t* name, const std::wstring& value) {
  HKEY opened = nullptr;
  ASSERT_EQ(RegCreateKeyExW(root, key, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr), ERROR_SUCCESS);
  RegSetValueExW(opened, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                 static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(opened);
}

void SetDword(HKEY root, const wchar_t* key, const wchar_t* name, DWORD value) {
  HKEY opened = nullptr;
  ASSERT_EQ(RegCreateKeyExW(root, key, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr), ERROR_SUCCESS);
  RegSetValueExW(opened, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof(value));
  RegCloseKey(opened);
}

// The prefix's Unix name of a file, for the spooler's port mapping.
std::wstring UnixName(const std::wstring& path) {
  using Convert = char*(CDECL*)(LPCWSTR);
  auto convert = reinterpret_cast<Convert>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name"));
  if (!convert) return L"";
  char* unix = convert(path.c_str());
  std::wstring name;
  for (const char* c = unix; c && *c; ++c) name += static_cast<wchar_t>(static_cast<unsigned char>(*c));
  HeapFree(GetProcessHeap(), 0, unix);
  return name;
}

// The PostScript driver's own generic description of a printer, shipped inside the spooler.
bool WriteGenericPpd(const std::wstring& path) {
  HMODULE spooler = LoadLibraryExW(L"winspool.drv", nullptr, LOAD_LIBRARY_AS_DATAFILE);
  if (!spooler) return false;
  HRSRC resource = FindResourceW(spooler, MAKEINTRESOURCEW(1), L"PPDFILE");
  HGLOBAL loaded = resource ? LoadResource(spooler, resource) : nullptr;
  bool written = false;
  if (loaded) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD done = 0;
    written = file != INVALID_HANDLE_VALUE &&
              WriteFile(file, LockResource(loaded), SizeofResource(spooler, resource), &done, nullptr);
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  }
  FreeLibrary(spooler);
  return written;
}

SAFEARRAY* Bytes(std::vector<ScopedSafeArray>& keep, const std::string& bytes) {
  keep.push_back(WineTest::ByteArray(bytes));
  return keep.back().get();
}

std::string Ints(std::initializer_list<int32_t> values) {
  std::string bytes(values.size() * 4, '\0');
  std::memcpy(bytes.data(), values.begin(), bytes.size());
  return bytes;
}

std::string Wide(const std::wstring& text) {
  std::string bytes((text.size() + 1) * 2, '\0');
  std::memcpy(bytes.data(), text.c_str(), text.size() * 2);
  return bytes;
}

// A BITMAPINFOHEADER of 32-bit pixels and `length` bytes in all.
std::string Header(int32_t width, int32_t height, size_t length) {
  std::string bytes = Ints({40, width, height, 0x00200001, 0, 0, 0, 0, 0, 0});
  bytes.resize(length, '\0');
  return bytes;
}

// The glyph names a PostScript page shows, joined in order: "/L glyphshow" gives "L".
std::string ShownGlyphs(const std::string& page) {
  std::string shown;
  for (size_t at = page.find(" glyphshow"); at != std::string::npos; at = page.find(" glyphshow", at + 1)) {
    size_t slash = page.rfind('/', at);
    if (slash != std::string::npos) shown += page.substr(slash + 1, at - slash - 1);
  }
  return shown;
}

class BrokerPrintMethodsLive : public WineTest::LiveBrokerTest {
 protected:
  static void SetUpTestSuite() {
    LiveBrokerTest::SetUpTestSuite();
    std::wstring ppd = WineTest::BinaryDirectory() + L"\\lumen-proof.ppd";
    ASSERT_TRUE(WriteGenericPpd(ppd));
    DeleteFileW(PagePath().c_str());
    SetText(HKEY_LOCAL_MACHINE, kDriverKey, L"Driver", L"wineps.drv");
    SetText(HKEY_LOCAL_MACHINE, kDriverKey, L"Configuration File", L"wineps.drv");
    SetText(HKEY_LOCAL_MACHINE, kDriverKey, L"Data File", ppd);
    SetText(HKEY_LOCAL_MACHINE, kDriverKey, L"Datatype", L"RAW");
    SetDword(HKEY_LOCAL_MACHINE, kDriverKey, L"Version", 3);
    SetText(HKEY_LOCAL_MACHINE, kPrinterKey, L"Name", kPrinter);
    SetText(HKEY_LOCAL_MACHINE, kPrinterKey, L"Port", L"LPT1:");
    SetText(HKEY_LOCAL_MACHINE, kPrinterKey, L"Printer Driver", kPrinter);
    // The PostScript driver's own processor can't take RAW jobs.
    SetText(HKEY_LOCAL_MACHINE, kPrinterKey, L"Print Processor", L"winprint");
    SetText(HKEY_LOCAL_MACHINE, kPrinterKey, L"Datatype", L"RAW");
    SetDword(HKEY_LOCAL_MACHINE, kPrinterKey, L"Attributes", 0x40);
    SetText(HKEY_CURRENT_USER, kWindowsKey, L"device", std::wstring(kPrinter) + L",wineps.drv,LPT1:");
    SetText(HKEY_CURRENT_USER, kDevicesKey, kPrinter, L"wineps.drv,LPT1:");
    SetText(HKEY_CURRENT_USER, kPortsKey, kPrinter, L"wineps.drv,LPT1:,15,45");
    // The port writes to a file, complete when EndDoc returns.
    SetText(HKEY_CURRENT_USER, kSpoolerKey, L"LPT1:", UnixName(PagePath()));
  }

  static void TearDownTestSuite() {
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kDriverKey);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kPrinterKey);
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kWindowsKey, L"device");
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kDevicesKey, kPrinter);
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kPortsKey, kPrinter);
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kSpoolerKey, L"LPT1:");
    LiveBrokerTest::TearDownTestSuite();
  }

  void SetUp() override {
    LiveBrokerTest::SetUp();
    ASSERT_EQ(Activate(broker_), S_OK);
  }
  void TearDown() override {
    broker_.reset();
    LiveBrokerTest::TearDown();
  }

  // Left beside the tests after the run, for a person to turn into an image.
  static std::wstring PagePath() { return WineTest::BinaryDirectory() + L"\\lumen-printed-page.ps"; }

  ComPtr<ILumenBroker6> broker_;
  std::vector<ScopedSafeArray> arrays_;
};

}  // namespace

TEST_F(BrokerPrintMethodsLive, APagePrintedCallByCallReachesThePrinterWithItsText) {
  ULONG from = 1, to = 1, flags = kDefaultPrinterDc, dc = 0;
  ASSERT_EQ(broker_->BrokerPrintDialog(0, &from, &to, &flags, &dc), S_OK);
  ASSERT_NE(dc, 0u);

  ULONG width = 0, height = 0, deviceWidth = 0, deviceHeight = 0, paperWidth = 0, paperHeight = 0, hRes = 0, vRes = 0;
  ASSERT_EQ(broker_->BrokerStartDoc(dc, &width, &height, &deviceWidth, &deviceHeight, &paperWidth, &paperHeight, &hRes,
                                    &vRes),
            S_OK);
  // The generic description: A4 at 300 dots an inch, less the margins, and no mapping yet.
  EXPECT_EQ(hRes, 300u);
  EXPECT_EQ(vRes, 300u);
  EXPECT_EQ(deviceWidth, width);
  EXPECT_EQ(deviceHeight, height);
  EXPECT_GT(paperWidth, width);
  EXPECT_GT(paperHeight, height);
  ASSERT_EQ(broker_->BrokerStartPage(dc), S_OK);

  std::string logFont(92, '\0');
  int32_t fontHeight = -120;
  std::memcpy(logFont.data(), &fontHeight, 4);
  std::memcpy(logFont.data() + 28, L"Liberation Sans", 32);
  ULONG font = 0, oldFont = 0, rc = 0;
  ASSERT_EQ(broker_->BrokerCreateFontIndirect(Bytes(arrays_, logFont), &font), S_OK);
  ASSERT_NE(font, 0u);
  ASSERT_EQ(broker_->BrokerSelectObject(dc, font, &oldFont), S_OK);
  SAFEARRAY* rect = Bytes(arrays_, Ints({0, 0, 0, 0}));
  SAFEARRAY* noSpacing = Bytes(arrays_, "");
  std::wstring wide = L"LumenWideText";
  ASSERT_EQ(broker_->BrokerExtTextOutW(dc, 150, 150, 0, 1, rect, Bytes(arrays_, Wide(wide)),
                                       static_cast<ULONG>(wide.size()), 1, noSpacing, &rc),
            S_OK);
  EXPECT_NE(rc, 0u);
  std::string narrow = "LumenNarrowText";
  rc = 0;
  ASSERT_EQ(broker_->BrokerExtTextOutA(dc, 150, 350, 0, 1, rect, Bytes(arrays_, narrow + '\0'),
                                       static_cast<ULONG>(narrow.size()), 1, noSpacing, &rc),
            S_OK);
  EXPECT_NE(rc, 0u);
  // The reply structure comes back as a VARIANT of its 60 bytes.
  VARIANT metrics;
  VariantInit(&metrics);
  ASSERT_EQ(broker_->BrokerGetTextMetrics(dc, &metrics), S_OK);
  ASSERT_EQ(metrics.vt, VT_ARRAY | VT_UI1);
  EXPECT_EQ(WineTest::BytesOf(metrics.parray).size(), 60u);
  VariantClear(&metrics);
  ASSERT_EQ(broker_->BrokerSelectObject(dc, oldFont, &rc), S_OK);
  EXPECT_EQ(rc, font);
  ASSERT_EQ(broker_->BrokerDeleteObject(font, &rc), S_OK);
  EXPECT_EQ(rc, 1u);

  // A red triangle filled, a blue line stroked: the driver draws both though FillPath and StrokePath answer 0 here.
  ASSERT_EQ(broker_->BrokerBeginPath(dc), S_OK);
  ASSERT_EQ(broker_->BrokerMoveTo(dc, 200, 600), S_OK);
  ASSERT_EQ(broker_->BrokerLineTo(dc, 700, 600), S_OK);
  ASSERT_EQ(broker_->BrokerLineTo(dc, 450, 1000), S_OK);
  ASSERT_EQ(broker_->BrokerEndPath(dc), S_OK);
  ASSERT_EQ(broker_->BrokerPathToSolidFill(dc, RGB(220, 0, 0)), S_OK);
  ASSERT_EQ(broker_->BrokerBeginPath(dc), S_OK);
  ASSERT_EQ(broker_->BrokerMoveTo(dc, 900, 600), S_OK);
  ASSERT_EQ(broker_->BrokerPolyBezierTo(dc, Bytes(arrays_, Ints({1100, 500, 1300, 1100, 1500, 700})), 3), S_OK);
  ASSERT_EQ(broker_->BrokerEndPath(dc), S_OK);
  ASSERT_EQ(broker_->BrokerPathToStrokedLine(dc, 30, RGB(0, 0, 220)), S_OK);

  // A 4 x 4 grid of colours stretched into a square path, clipped to it between save and restore.
  std::string pixels;
  for (int i = 0; i < 16; ++i) pixels += Ints({static_cast<int32_t>((i * 0x3F1F07) & 0xFFFFFF)});
  ASSERT_EQ(broker_->BrokerBeginPath(dc), S_OK);
  ASSERT_EQ(broker_->BrokerMoveTo(dc, 200, 1200), S_OK);
  ASSERT_EQ(broker_->BrokerLineTo(dc, 600, 1200), S_OK);
  ASSERT_EQ(broker_->BrokerLineTo(dc, 600, 1600), S_OK);
  ASSERT_EQ(broker_->BrokerLineTo(dc, 200, 1600), S_OK);
  ASSERT_EQ(broker_->BrokerEndPath(dc), S_OK);
  ASSERT_EQ(broker_->BrokerPathToBitmapFill(dc, Bytes(arrays_, Ints({200, 1200, 400, 400})),
                                            Bytes(arrays_, Ints({0, 0, 4, 4})), Bytes(arrays_, pixels),
                                            Bytes(arrays_, Header(4, 4, 44)), 1),
            S_OK);
  ASSERT_EQ(broker_->BrokerAddRectangle(dc, Bytes(arrays_, Ints({800, 1200, 1200, 1600})), RGB(0, 160, 0)), S_OK);

  ASSERT_EQ(broker_->BrokerEndPage(dc), S_OK);
  ASSERT_EQ(broker_->BrokerEndDoc(dc), S_OK);
  ASSERT_EQ(broker_->BrokerDeleteDC(dc, &rc), S_OK);
  EXPECT_EQ(rc, 1u);

  std::string page = WineTest::ReadAll(PagePath());
  ASSERT_FALSE(page.empty()) << "nothing was printed";
  EXPECT_NE(page.find("%%Title: Lumen"), std::string::npos);
  std::string shown = ShownGlyphs(page);
  EXPECT_NE(shown.find("LumenWideText"), std::string::npos) << shown;
  EXPECT_NE(shown.find("LumenNarrowText"), std::string::npos) << shown;
  EXPECT_NE(page.find("fill"), std::string::npos);
  EXPECT_NE(page.find("stroke"), std::string::npos);
  EXPECT_NE(page.find("image"), std::string::npos);
}

TEST_F(BrokerPrintMethodsLive, MalformedArraysAndCountsAreRefusedBeforeAnyDrawing) {
  SAFEARRAY* rect = Bytes(arrays_, Ints({0, 0, 4, 4}));
  SAFEARRAY* pixels = Bytes(arrays_, std::string(64, '\x55'));
  // The transparent fill's header length, sent to the plain fill.
  EXPECT_EQ(broker_->BrokerPathToBitmapFill(0, rect, rect, pixels, Bytes(arrays_, Header(4, 4, 48)), 1), kFailure);
  ULONG rc = 0xDEAD;
  std::wstring tooLong(8193, L'x');
  EXPECT_EQ(broker_->BrokerExtTextOutW(0, 0, 0, 0, 1, rect, Bytes(arrays_, Wide(tooLong)), 8193, 1,
                                       Bytes(arrays_, ""), &rc),
            kBadArgument);
  // Four characters need three spacing values; two are one short.
  EXPECT_EQ(broker_->BrokerExtTextOutW(0, 0, 0, 0, 1, rect, Bytes(arrays_, Wide(L"Lume")), 4, 0,
                                       Bytes(arrays_, Ints({10, 10})), &rc),
            kFailure);
}
