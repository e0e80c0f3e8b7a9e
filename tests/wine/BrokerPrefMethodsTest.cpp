// The preference family through COM against the live server, as a sandboxed
// player reaches it, with the registry read back here; and on an object in
// this process for the null pointers the marshaller would stop on its way.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

#include <string>

#include "broker/win32/CoLumenBrokerServer.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr HRESULT kBadArgument = static_cast<HRESULT>(0x80070057);
constexpr HRESULT kFailure = static_cast<HRESULT>(0x80004005);
constexpr wchar_t kPlayerKey[] = L"Software\\Halcyonics\\LumenPlayer";
constexpr wchar_t kUpdateKey[] = L"Software\\Halcyonics\\LumenPlayerUpdate";
constexpr wchar_t kRunOnceKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
constexpr wchar_t kDescription[] =
    L"<lumen><update version=\"28.0.0.131\"/><meta>Lumen \"28\" &quot;ready&quot;</meta></lumen>";

// A string value of the current user's hive, or "<absent>".
std::wstring UserString(const wchar_t* key, const wchar_t* name) {
  wchar_t text[1024] = {};
  DWORD size = sizeof(text);
  if (RegGetValueW(HKEY_CURRENT_USER, key, name, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS)
    return L"<absent>";
  return text;
}

void SetUserString(const wchar_t* key, const char* name, const char* text) {
  HKEY handle = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, key, 0, nullptr, 0, KEY_WRITE, nullptr, &handle, nullptr), 0);
  RegSetValueExA(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), static_cast<DWORD>(strlen(text) + 1));
  RegCloseKey(handle);
}

// Every value these tests write is removed before and after each of them.
void ForgetPreferences() {
  for (const wchar_t* name : {L"LumenPlayerVersion", L"Exception Dialog Width", L"Exception Dialog Height"})
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kPlayerKey, name);
  RegDeleteKeyValueW(HKEY_CURRENT_USER, kRunOnceKey, L"LumenPlayerUpdate");
  RegDeleteTreeW(HKEY_CURRENT_USER, kUpdateKey);
  RegDeleteKeyW(HKEY_CURRENT_USER, kUpdateKey);
}

class BrokerPrefLive : public WineTest::LiveBrokerTest {
 protected:
  void SetUp() override {
    LiveBrokerTest::SetUp();
    ForgetPreferences();
    HKEY key = nullptr;
    // The player's installer makes this key; the broker only opens it.
    for (const wchar_t* path : {kPlayerKey, kRunOnceKey}) {
      ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr), 0);
      RegCloseKey(key);
    }
    ASSERT_EQ(Activate(broker_), S_OK);
  }
  void TearDown() override {
    broker_.reset();
    ForgetPreferences();
    LiveBrokerTest::TearDown();
  }

  ComPtr<ILumenBroker6> broker_;
};

TEST_F(BrokerPrefLive, TheDialogSizeIsWrittenAndReadBack) {
  ULONG width = 0, height = 0;
  EXPECT_EQ(broker_->BrokerPrefGetExceptionDialogSize(&width, &height), kFailure);
  ASSERT_EQ(broker_->BrokerPrefSetExceptionDialogSize(800, 600), S_OK);
  EXPECT_EQ(WineTest::UserDword(kPlayerKey, L"Exception Dialog Width"), 800u);
  EXPECT_EQ(WineTest::UserDword(kPlayerKey, L"Exception Dialog Height"), 600u);
  EXPECT_EQ(broker_->BrokerPrefGetExceptionDialogSize(&width, &height), S_OK);
  EXPECT_EQ(width, 800u);
  EXPECT_EQ(height, 600u);
}

TEST_F(BrokerPrefLive, TheVersionIsReadKeptTakenAndDeleted) {
  SetUserString(kPlayerKey, "LumenPlayerVersion", "28.0.0.131");
  ScopedBstr version;
  ASSERT_EQ(broker_->BrokerPrefGetLumenPlayerVersion(version.receive()), S_OK);
  EXPECT_STREQ(version.get(), L"28.0.0.131");
  EXPECT_EQ(UserString(kPlayerKey, L"LumenPlayerVersion"), L"28.0.0.131");

  ASSERT_EQ(broker_->BrokerPrefGetAndDeleteLumenPlayerVersion(version.receive()), S_OK);
  EXPECT_STREQ(version.get(), L"28.0.0.131");
  EXPECT_EQ(UserString(kPlayerKey, L"LumenPlayerVersion"), L"<absent>");
  EXPECT_EQ(broker_->BrokerPrefGetAndDeleteLumenPlayerVersion(version.receive()), kFailure);
  EXPECT_EQ(version.get(), nullptr);
  EXPECT_EQ(UserString(kPlayerKey, L"LumenPlayerVersion"), L"<absent>");

  SetUserString(kPlayerKey, "LumenPlayerVersion", "28.0.0.132");
  EXPECT_EQ(broker_->BrokerPrefDeleteLumenPlayerVersion(), S_OK);
  EXPECT_EQ(UserString(kPlayerKey, L"LumenPlayerVersion"), L"<absent>");
}

TEST_F(BrokerPrefLive, MarkingForRunLeavesTheDescriptionAndTheServersUpdateCommand) {
  ScopedBstr xml(kDescription);
  ASSERT_EQ(broker_->BrokerPrefMarkAutoUpdaterForRun(xml.get()), S_OK);
  EXPECT_EQ(UserString(kUpdateKey, L"description"), kDescription);
  const std::wstring command = WineTest::Lower(UserString(kRunOnceKey, L"LumenPlayerUpdate"));
  EXPECT_EQ(command, WineTest::Lower(HostPath()) + L" -update activex");

  // The installer face rejects that version; the same offer is then not stored again.
  WineTest::HostedShim hosted;
  MStringList block;
  ASSERT_TRUE(hosted.shim->ReadUpdateDescription(block));
  EXPECT_EQ(block.head->value.ToUtf8(), "Lumen '28' \"ready\"");
  ASSERT_TRUE(hosted.shim->MarkUpdateRejected());
  EXPECT_EQ(UserString(kUpdateKey, L"Rejected"), L"28.0.0.131");
  RegDeleteKeyValueW(HKEY_CURRENT_USER, kUpdateKey, L"description");
  EXPECT_EQ(broker_->BrokerPrefMarkAutoUpdaterForRun(xml.get()), S_OK);
  EXPECT_EQ(UserString(kUpdateKey, L"description"), L"<absent>");
}

TEST_F(BrokerPrefLive, ADriveAnswersByItsLetterAloneAndAnAbsentOneAnswersNo) {
  ScopedBstr drive(L"C:\\no\\such\\folder");
  EXPECT_EQ(broker_->BrokerIsDriveAvailable(drive.get()), S_OK);
  const DWORD drives = GetLogicalDrives();
  wchar_t absent[] = L"?:";
  for (wchar_t letter = L'Z'; letter > L'C'; --letter) {
    if (!(drives & (1u << (letter - L'A')))) {
      absent[0] = letter;
      break;
    }
  }
  ASSERT_NE(absent[0], L'?') << "every letter is taken";
  EXPECT_EQ(broker_->BrokerIsDriveAvailable(absent), S_FALSE);
  wchar_t letterOnly[] = L"c";
  EXPECT_EQ(broker_->BrokerIsDriveAvailable(letterOnly), kBadArgument);
}

TEST_F(BrokerPrefLive, TheSmallServicesAnswerAndLeaveTheScreensaverAsItWas) {
  UINT before = 0, after = 0;
  SystemParametersInfoW(SPI_GETSCREENSAVETIMEOUT, 0, &before, 0);
  EXPECT_EQ(broker_->BrokerDelayScreensaver(), before ? S_OK : kFailure);
  SystemParametersInfoW(SPI_GETSCREENSAVETIMEOUT, 0, &after, 0);
  EXPECT_EQ(after, before);

  // Wine's DirectInput has no game controllers to list here.
  ULONG count = 12345;
  EXPECT_EQ(broker_->BrokerGetDirectInputCount(&count), S_OK);
  EXPECT_EQ(count, 0u);
}

// The null pointers, on an object made here: the marshaller refuses some of them on the way.
TEST(BrokerPrefDirect, NullArgumentsAreBadArgumentsAndWriteNothing) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  ForgetPreferences();
  {
    ComPtr<ILumenBroker6> broker;
    broker.reset(new CoLumenBrokerServer(nullptr));
    ULONG width = 0;
    EXPECT_EQ(broker->BrokerPrefGetLumenPlayerVersion(nullptr), kBadArgument);
    EXPECT_EQ(broker->BrokerPrefGetAndDeleteLumenPlayerVersion(nullptr), kBadArgument);
    EXPECT_EQ(broker->BrokerPrefGetExceptionDialogSize(&width, nullptr), kBadArgument);
    EXPECT_EQ(broker->BrokerPrefMarkAutoUpdaterForRun(nullptr), kBadArgument);
    EXPECT_EQ(broker->BrokerGetDirectInputCount(nullptr), kBadArgument);
    EXPECT_EQ(broker->BrokerIsDriveAvailable(nullptr), kBadArgument);
  }
  EXPECT_EQ(UserString(kUpdateKey, L"description"), L"<absent>");
  EXPECT_EQ(UserString(kRunOnceKey, L"LumenPlayerUpdate"), L"<absent>");
  CoUninitialize();
}

}  // namespace
