// The dialog family against the live server from this separate client. The
// server shows its dialogs owned by a window of a helper installed under
// Program Files; a thread of the test finds the dialog among the server's
// windows, types into it and presses a button, as a person would.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <commdlg.h>
#include <shlobj.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cctype>
#include <string>
#include <thread>
#include <vector>

#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/ScopedSafeArray.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr HRESULT kFailure = static_cast<HRESULT>(0x80004005);
constexpr HRESULT kBadArgument = static_cast<HRESULT>(0x80070057);
constexpr HRESULT kCancelled = static_cast<HRESULT>(0x800704C7);
constexpr int kFileNameEdit = 1152;

bool HasDefaultPrinter() {
  using GetDefaultPrinterFunction = BOOL(WINAPI*)(wchar_t*, DWORD*);
  HMODULE spooler = LoadLibraryW((WineTest::SystemDirectory() + L"\\winspool.drv").c_str());
  auto get = spooler ? reinterpret_cast<GetDefaultPrinterFunction>(GetProcAddress(spooler, "GetDefaultPrinterW"))
                     : nullptr;
  wchar_t name[256];
  DWORD size = 256;
  bool found = get && get(name, &size);
  if (spooler) FreeLibrary(spooler);
  return found;
}

struct WindowSearch {
  DWORD processId;
  const wchar_t* className;
  HWND found;
};

// A visible top-level window of the process with the class, or null.
HWND FindProcessWindow(DWORD processId, const wchar_t* className) {
  WindowSearch search{processId, className, nullptr};
  EnumWindows(
      [](HWND window, LPARAM context) -> BOOL {
        auto* search = reinterpret_cast<WindowSearch*>(context);
        DWORD owner = 0;
        wchar_t name[64] = {};
        GetWindowThreadProcessId(window, &owner);
        if (owner != search->processId || !IsWindowVisible(window)) return TRUE;
        GetClassNameW(window, name, 64);
        if (wcscmp(name, search->className) != 0) return TRUE;
        search->found = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

// The person at the screen: waits for the server's next dialog, types the
// text into its file name field when there is one, and presses the button.
// A dialog still up a while later (a message box over it, say) is closed, so
// that the server's call comes back whatever happened.
class DialogUser {
 public:
  DialogUser(DWORD serverId, std::wstring text, int button)
      : thread_([this, serverId, text, button] { Act(serverId, text, button); }) {}
  ~DialogUser() {
    if (thread_.joinable()) thread_.join();
  }
  // Whether the press closed the dialog.
  bool Acted() {
    if (thread_.joinable()) thread_.join();
    return acted_;
  }

 private:
  void Act(DWORD serverId, const std::wstring& text, int button) {
    HWND dialog = nullptr;
    for (int tries = 0; tries < 200 && !dialog; ++tries) {
      dialog = FindProcessWindow(serverId, L"#32770");
      if (!dialog) Sleep(100);
    }
    if (!dialog) return;
    if (!text.empty()) {
      DWORD_PTR ignored = 0;
      SendMessageTimeoutW(GetDlgItem(dialog, kFileNameEdit), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()),
                          SMTO_ABORTIFHUNG, 5000, &ignored);
    }
    // Posted: a message box the click may raise must not block this thread.
    PostMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0);
    for (int tries = 0; tries < 50; ++tries) {
      if (!IsWindow(dialog)) {
        acted_ = true;
        return;
      }
      Sleep(100);
    }
    for (int tries = 0; tries < 50 && IsWindow(dialog); ++tries) {
      if (HWND top = FindProcessWindow(serverId, L"#32770")) PostMessageW(top, WM_CLOSE, 0, 0);
      Sleep(200);
    }
  }

  std::atomic<bool> acted_{false};
  std::thread thread_;
};

// The UTF-16 text of a filter as a client writes it, with its terminator.
ScopedSafeArray Filter(const std::wstring& text, ULONG& length) {
  std::string bytes(reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(wchar_t));
  length = static_cast<ULONG>(bytes.size());
  return WineTest::ByteArray(bytes);
}

// A fresh server, and a browser stand-in installed under Program Files whose
// window owns the dialogs.
class BrokerDialogsLive : public WineTest::LiveBrokerTest {
 protected:
  void SetUp() override {
    LiveBrokerTest::SetUp();
    installed_ = WineTest::Folder(CSIDL_PROGRAM_FILES) + L"\\LumenDialogTests";
    tree_.Directory(installed_);
    ASSERT_TRUE(tree_.Copy(WineTest::HelperProcess::BuiltPath(), installed_ + L"\\lumen_browser.exe"));
    ASSERT_TRUE(browser_.ShowWindow(installed_ + L"\\lumen_browser.exe"));
    owner_ = WindowOf(browser_.Id());
    ASSERT_NE(owner_, 0u);
    tree_.Directory(Chosen());
    ASSERT_EQ(Activate(broker_), S_OK);
    std::vector<ScopedHandle> servers = ServerProcesses();
    ASSERT_EQ(servers.size(), 1u);
    serverId_ = GetProcessId(servers[0].get());
  }
  void TearDown() override {
    broker_.reset();
    LiveBrokerTest::TearDown();
    for (const std::wstring& path : made_) {
      DeleteFileW((path + L":Zone.Identifier").c_str());
      DeleteFileW(path.c_str());
    }
  }

  static ULONG WindowOf(DWORD processId) {
    for (int tries = 0; tries < 50; ++tries) {
      if (HWND window = FindProcessWindow(processId, L"LumenTestOwner"))
        return static_cast<ULONG>(reinterpret_cast<uintptr_t>(window));
      Sleep(100);
    }
    return 0;
  }
  static std::wstring Chosen() { return WineTest::TestDirectory(L"Dialogs"); }

  ComPtr<ILumenBroker6> broker_;
  WineTest::TempTree tree_;
  WineTest::HelperProcess browser_;
  std::wstring installed_;
  ULONG owner_ = 0;
  DWORD serverId_ = 0;
  std::vector<std::wstring> made_;
};

}  // namespace

TEST_F(BrokerDialogsLive, ASavedChoiceIsCreatedByItsFirstWriteAndCannotBeRead) {
  const std::wstring path = Chosen() + L"\\saved.lmv";
  made_.push_back(path);
  wchar_t initial[] = L"clip.lmv";
  ULONG cookie = 0;
  BSTR chosen = nullptr;
  HRESULT result;
  {
    DialogUser user(serverId_, path, IDOK);
    result = broker_->BrokerSaveDialog2(owner_, initial, 0, 0, nullptr, 0, &cookie, &chosen);
    EXPECT_TRUE(user.Acted());
  }
  ASSERT_EQ(result, S_OK);
  ASSERT_NE(chosen, nullptr);
  EXPECT_EQ(WineTest::Lower(chosen), WineTest::Lower(path));
  SysFreeString(chosen);
  EXPECT_NE(cookie, 0u);
  EXPECT_FALSE(WineTest::FileExists(path));

  ScopedSafeArray read;
  ULONG count = 0;
  EXPECT_EQ(broker_->BrokerReadFile(cookie, 4, &count, read.receive()), kBadArgument);
  // An image is no reason to refuse a file the user named.
  ULONG written = 0;
  ASSERT_EQ(broker_->BrokerWriteFile(cookie, WineTest::ByteArray(WineTest::PeImage()).get(), &written), S_OK);
  EXPECT_EQ(written, WineTest::PeImage().size());
  EXPECT_EQ(broker_->BrokerCloseHandle(cookie), S_OK);
  EXPECT_EQ(WineTest::ReadAll(path), WineTest::PeImage());
}

TEST_F(BrokerDialogsLive, TheUsersCancelReachesTheClientAsTheDialogsOwnResult) {
  VARIANT chosen;
  VariantInit(&chosen);
  {
    DialogUser user(serverId_, L"", IDCANCEL);
    EXPECT_EQ(broker_->BrokerOpenDialog(owner_, 0, 0, nullptr, 0, &chosen), kCancelled);
    EXPECT_TRUE(user.Acted());
  }
  EXPECT_EQ(V_VT(&chosen), VT_EMPTY);
  ULONG cookie = 7;
  BSTR path = nullptr;
  wchar_t initial[] = L"clip.lmv";
  {
    DialogUser user(serverId_, L"", IDCANCEL);
    EXPECT_EQ(broker_->BrokerSaveDialog2(owner_, initial, 0, 0, nullptr, 0, &cookie, &path), kCancelled);
    EXPECT_TRUE(user.Acted());
  }
  EXPECT_EQ(path, nullptr);
  EXPECT_EQ(cookie, 0u);
}

TEST_F(BrokerDialogsLive, AFilterWithAPairTooManyAndAWindowFromOutsideTheProgramFoldersAreRefusedUnshown) {
  ULONG length = 0;
  ScopedSafeArray filter = Filter(L"All\\0*.*\\0Clips\\0*.lmv\\0", length);
  VARIANT chosen;
  VariantInit(&chosen);
  EXPECT_EQ(broker_->BrokerOpenDialog(owner_, 1, length, filter.get(), 0, &chosen), kBadArgument);

  // The same stand-in, run from where it was built.
  WineTest::HelperProcess stranger;
  ASSERT_TRUE(stranger.ShowWindow(WineTest::HelperProcess::BuiltPath()));
  ULONG window = WindowOf(stranger.Id());
  ASSERT_NE(window, 0u);
  EXPECT_EQ(broker_->BrokerOpenDialog(window, 0, 0, nullptr, 0, &chosen), kBadArgument);
  ULONG cookie = 0;
  BSTR path = nullptr;
  wchar_t initial[] = L"clip.lmv";
  EXPECT_EQ(broker_->BrokerSaveDialog2(window, initial, 0, 0, nullptr, 0, &cookie, &path), kBadArgument);
  EXPECT_EQ(FindProcessWindow(serverId_, L"#32770"), nullptr);
  EXPECT_EQ(broker_->BrokerSaveDialog(owner_, initial, &cookie, &path), E_NOTIMPL);
}

TEST_F(BrokerDialogsLive, TheDefaultPrintersDeviceContextComesBackWithoutADialog) {
  const bool hasPrinter = HasDefaultPrinter();
  ULONG from = 0x10001, to = 0x10003, flags = PD_RETURNDEFAULT | PD_RETURNDC, dc = 0xDEAD;
  HRESULT result = broker_->BrokerPrintDialog(0, &from, &to, &flags, &dc);
  if (!hasPrinter) {
    // Nothing to print on: PrintDlgW fails without showing anything, and the
    // [in, out] values come back as they went.
    EXPECT_EQ(result, kFailure);
    EXPECT_EQ(from, 0x10001u);
    EXPECT_EQ(flags, static_cast<ULONG>(PD_RETURNDEFAULT | PD_RETURNDC));
    return;
  }
  ASSERT_EQ(result, S_OK);
  EXPECT_NE(dc, 0u);
  EXPECT_NE(dc, 0xDEADu);
  EXPECT_EQ(from, 1u);
  EXPECT_EQ(to, 3u);
  EXPECT_EQ(flags & (PD_RETURNDEFAULT | PD_RETURNDC), static_cast<ULONG>(PD_RETURNDEFAULT | PD_RETURNDC));
}

// Two files chosen in the open dialog, from the command-line client: the
// directory and the two names come out one entry a line.
TEST_F(BrokerDialogsLive, TwoFilesChosenInTheOpenDialogComeBackAsTheirDirectoryAndNames) {
  tree_.File(Chosen() + L"\\first.lmv", "1");
  tree_.File(Chosen() + L"\\second.lmv", "2");
  const std::wstring directory = WineTest::BinaryDirectory();
  const std::wstring outPath = directory + L"\\dialogs-client.out";
  made_.push_back(outPath);
  DWORD exitCode;
  {
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    ScopedHandle out(CreateFileW(outPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                                 CREATE_ALWAYS, 0, nullptr));
    DialogUser user(serverId_, L"\"" + Chosen() + L"\\first.lmv\" \"" + Chosen() + L"\\second.lmv\"", IDOK);
    exitCode = WineTest::RunToEnd(L"\"" + directory + L"\\LumenBrokerClient.exe\" BrokerOpenDialog " +
                                      std::to_wstring(owner_) + L" 0 0 null 0x200",
                                  30000, out.get(), nullptr);
    EXPECT_TRUE(user.Acted());
  }
  EXPECT_EQ(exitCode, 0u);
  // The dialog may spell the directory in another case.
  auto lower = [](std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
  };
  EXPECT_EQ(lower(WineTest::ReadAll(outPath)),
            lower("hresult=0x00000000\np_chosenFilePathArray[0]=" + WineTest::Utf8(Chosen()) +
                  "\\\np_chosenFilePathArray[1]=first.lmv\np_chosenFilePathArray[2]=second.lmv\n"));
}
