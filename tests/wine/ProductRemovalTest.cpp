// Removal end to end against the prefix: all three kinds registered by the shim,
// then removed one after another, with the service executables played by a
// stand-in that records its switches.
#include "removal/ProductRemoval.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "broker/BrokerRegistration.h"
#include "engine/LumenBrokerShim.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "engine/win32/Win32Registry.h"
#include "engine/win32/Win32TaskScheduler.h"
#include "host/ReferenceHost.h"
#include "removal/NotifierTask.h"
#include "tests/wine/HelperProcess.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

using namespace WineTest;
using namespace WineTest::ProductKeys;
using namespace std::string_literals;

constexpr wchar_t kControlClass[] = L"Software\\Classes\\CLSID\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}";
constexpr wchar_t kBrokerServer[] = L"Software\\Classes\\CLSID\\{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}";

// Runs the steps in one session of the platform's scheduler; false at the first that fails.
bool RunTaskSteps(std::initializer_list<TaskStep> steps) {
  std::unique_ptr<ITaskSchedulerSession> session = Win32TaskScheduler().Open();
  TaskDefinition definition;
  definition.name = u"Corva Lumen Player PPAPI Notifier";
  definition.commandPath = u"C:\\Lumen\\Notifier.exe";
  int32_t answer = 0;
  for (TaskStep step : steps)
    if (session->Run(step, definition, answer) < 0) return false;
  return true;
}

void RegisterNotifierTask() {
  RunTaskSteps({TaskStep::InitializeCom, TaskStep::InitializeSecurity, TaskStep::CreateTaskService, TaskStep::Connect,
                TaskStep::OpenRootFolder, TaskStep::NewDefinition, TaskStep::TakeActions, TaskStep::CreateAction,
                TaskStep::QueryExecAction, TaskStep::SetPath, TaskStep::RegisterDefinition});
}

// Whether the task service knows the task, asked through a removal's own steps.
bool NotifierTaskExists() {
  return RunTaskSteps({TaskStep::InitializeCom, TaskStep::InitializeSecurity, TaskStep::CreateTaskService,
                       TaskStep::Connect, TaskStep::OpenRootFolder, TaskStep::FindTask});
}

class ProductRemovalTest : public ::testing::Test {
 protected:
  void SetUp() override {
    directory_ = TestDirectory(L"Remove");
    system_ = directory_ + L"\\System";
    tree_.Directory(system_);
    control_ = directory_ + L"\\LumenCtrl.ocx";
    server_ = directory_ + L"\\LumenUtil_ActiveX.exe";
    plugin_ = directory_ + L"\\NPLumenPlayer.dll";
    pepper_ = directory_ + L"\\pepflashplayer.dll";
    updater_ = directory_ + L"\\UpdateSvc.exe";
    feedback_ = directory_ + L"\\FeedbackSvc.exe";
    applet_ = system_ + L"\\LumenPlayerCPLApp.cpl";
    settingsManager_ = system_ + L"\\LumenPlayer_Settings.exe";
    std::wstring standIn = BinaryDirectory() + L"\\lumen_service_standin.exe";
    CopyFileW((BinaryDirectory() + L"\\lumen_test_control.dll").c_str(), control_.c_str(), FALSE);
    CopyFileW(HelperProcess::BuiltPath().c_str(), server_.c_str(), FALSE);
    for (const std::wstring& service : {updater_, feedback_}) CopyFileW(standIn.c_str(), service.c_str(), FALSE);
    for (const std::wstring& file : {plugin_, pepper_, applet_, settingsManager_}) tree_.File(file, "file");
    CleanUp();

    HostOptions options;
    options.Parse({u"-release", u"-source", u"2"});
    world_ = std::make_unique<HostedShim>(
        u"Host { UtilityPath \"" + FromWide(server_.c_str()) +
            u"\"; UpdateService UpdateSvc.exe; FeedbackService FeedbackSvc.exe;"
            u" ControlPanelApplet LumenPlayerCPLApp.cpl; SettingsManager LumenPlayer_Settings.exe; }",
        options);
    shim_ = world_->shim.get();
  }

  void TearDown() override {
    world_.reset();
    CleanUp();
    for (const std::wstring& path : {control_, server_, updater_, feedback_, updater_ + L".switches",
                                     feedback_ + L".switches"}) {
      SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      DeleteFileW(path.c_str());
    }
  }

  static void CleanUp() {
    ForgetProductRegistration();
    DeleteBothViews(kControlClass);
    DeleteBothViews(std::wstring(kExecutionOptions) + L"UpdateSvc.exe");
    NotifierTask::RemoveNotifierTask(*std::make_unique<ReferenceHost>(HostOptions(), MString(u"")), Win32Platform());
  }

  MString Path(const std::wstring& path) const { return MString(FromWide(path.c_str())); }

  void RegisterAllKinds() {
    ASSERT_TRUE(shim_->RegisterProduct(8, Path(control_), Path(server_), MString(), 1));
    ASSERT_TRUE(shim_->RegisterProduct(16, Path(plugin_), Path(server_), MString(), 1));
    ASSERT_TRUE(shim_->RegisterProduct(32768, Path(pepper_), Path(server_), MString(), 1));
    // What a real control's own registration leaves, for removal to find.
    ScopedRegKey key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, (std::wstring(kControlClass) + L"\\InprocServer32").c_str(), 0,
                              nullptr, 0, KEY_ALL_ACCESS | KEY_WOW64_64KEY, nullptr, key.receive(), nullptr),
              ERROR_SUCCESS);
    RegSetValueExW(key.get(), nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(control_.c_str()),
                   static_cast<DWORD>((control_.size() + 1) * sizeof(wchar_t)));
    RegisterNotifierTask();
    ASSERT_TRUE(NotifierTaskExists());
    ASSERT_EQ(world_->host.Log().Count(), 0) << world_->host.FormatLog();
  }

  // The reports since the last call.
  std::vector<std::string> NewReports() {
    std::vector<std::string> lines = Reports(world_->host, seen_);
    seen_ += lines.size();
    return lines;
  }

  WineTest::TempTree tree_;
  std::wstring directory_, system_, control_, server_, plugin_, pepper_, updater_, feedback_, applet_,
      settingsManager_;
  std::unique_ptr<HostedShim> world_;
  LumenBrokerShim* shim_ = nullptr;
  size_t seen_ = 0;
};

std::string Utf8(const std::wstring& text) { return MString(FromWide(text.c_str())).ToUtf8(); }

void ExpectGone(std::initializer_list<std::wstring> keys, std::initializer_list<std::wstring> files) {
  for (const std::wstring& key : keys) EXPECT_FALSE(KeyExists(key)) << Utf8(key);
  for (const std::wstring& file : files) EXPECT_FALSE(FileExists(file)) << Utf8(file);
}

// The registry clean-up's deletions of what a registration never writes, then its failure.
std::vector<std::string> CleanUpReports(const char* productWord, const std::string& lastKey) {
  return {"1037 1 Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce/LumenPlayerUpdate 2",
          std::string("1037 1 Software\\Halcyonics\\LumenPlayer") + productWord + "/ 2",
          "1037 1 Software\\Halcyonics\\LumenPlayer/LumenPlayerVersion 2",
          "1037 1 Software\\Halcyonics\\LumenPlayer/TwlInstall 2",
          "1037 1 " + lastKey + "/ 2",
          "1021 1 "};
}

std::string Unread(const char* productWord) {
  return std::string("1036 1 Software\\Halcyonics\\LumenPlayer") + productWord + "/PlayerPath 2";
}

template <typename... Parts>
std::vector<std::string> Joined(const std::vector<std::string>& first, const Parts&... rest) {
  std::vector<std::string> all = first;
  (all.insert(all.end(), rest.begin(), rest.end()), ...);
  return all;
}

TEST_F(ProductRemovalTest, EachKindLeavesNothingOfItsOwnAndTheLastTakesTheSharedParts) {
  RegisterAllKinds();
  const std::string appletValue =
      "1037 1 Software\\Microsoft\\Windows\\CurrentVersion\\Control Panel\\Extended Properties\\"
      "System.ControlPanel.Category/" + Utf8(SystemDirectory()) + "\\LumenPlayerCPLApp.cpl 2";
  {
    SCOPED_TRACE("ActiveX");
    EXPECT_FALSE(shim_->RemoveProductKind(8, Path(system_), 0, 0));  // the clean-up meets values never written
    ExpectGone({kProduct + L"ActiveX"s, kProduct + L"ActiveXReleaseType"s, kUninstall + L"ActiveX"s, kControlClass,
                kBrokerServer},
               {control_, server_});
    EXPECT_EQ(UserDword(kCounterKey, L"UnregisterCalls"), 1u);
    // The plug-ins still need the services and the system files.
    EXPECT_TRUE(KeyExists(std::wstring(kProduct) + L"Plugin"));
    EXPECT_TRUE(FileExists(feedback_) && FileExists(updater_) && FileExists(applet_));
    EXPECT_EQ(NewReports(), Joined(CleanUpReports("ActiveX", "Software\\Microsoft\\Code Store Database\\Distribution "
                                                             "Units\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}"),
                                   std::vector<std::string>(4, Unread("ActiveX"))));
  }
  {
    SCOPED_TRACE("NPAPI");
    EXPECT_FALSE(shim_->RemoveProductKind(16, Path(system_), 0, 0));
    ExpectGone({kProduct + L"Plugin"s, kProduct + L"PluginReleaseType"s, kUninstall + L"NPAPI"s, kPlugin}, {plugin_});
    // No player of kind 8 or 16 is left: the feedback service removes itself and goes.
    EXPECT_EQ(ReadAll(feedback_ + L".switches"), "-uninstall\n");
    EXPECT_FALSE(FileExists(feedback_));
    EXPECT_TRUE(FileExists(updater_));
    std::vector<std::string> twoUnread = {Unread("ActiveX"), Unread("Plugin")};
    EXPECT_EQ(NewReports(), Joined(CleanUpReports("Plugin", "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"
                                                            "Corva Lumen Player Plugin"),
                                   twoUnread, twoUnread, twoUnread, twoUnread));
  }
  {
    SCOPED_TRACE("PPAPI");
    EXPECT_FALSE(shim_->RemoveProductKind(32768, Path(system_), 0, 0));
    ExpectGone({kProduct + L"Pepper"s, kProduct + L"PepperReleaseType"s, kUninstall + L"PPAPI"s},
               {pepper_, applet_, settingsManager_});
    EXPECT_EQ(ReadAll(updater_ + L".switches"), "-uninstall\n");
    EXPECT_FALSE(FileExists(updater_));
    EXPECT_FALSE(NotifierTaskExists());
    std::vector<std::string> threeUnread = {Unread("ActiveX"), Unread("Plugin"), Unread("Pepper")};
    std::vector<std::string> twoUnread = {Unread("ActiveX"), Unread("Plugin")};
    // The applet went, but its control panel value was never written, so its removal
    // counts as failed: 1048, and the lock test finds nothing left.
    std::vector<std::string> applet = {appletValue, "1048 1 ", "20 0 " + Utf8(applet_)};
    std::vector<std::string> settingsManager = {
        "1037 1 SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\"
        "LumenPlayer_Settings.exe/ 2",
        appletValue};
    std::vector<std::string> updater = {
        "1037 1 SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\UpdateSvc.exe/ 2"};
    EXPECT_EQ(NewReports(), Joined(CleanUpReports("Pepper", "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"
                                                            "Corva Lumen Player Pepper"),
                                   threeUnread, applet, threeUnread, settingsManager, twoUnread, threeUnread,
                                   updater));
  }
}

}  // namespace
