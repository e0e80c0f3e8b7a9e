// Removal end to end against the prefix: all three kinds registered by the shim,
// then removed one after another, with the service executables played by a
// stand-in that records its switches.
#include "removal/ProductRemoval.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "broker/BrokerIdentities.h"
#include "engine/LumenBrokerShim.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
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

// A value of the machine hive's 64-bit view, as "SZ:text" or "DWORD:n".
std::wstring MachineValue(const std::wstring& path, const wchar_t* name) {
  ScopedRegKey key;
  BYTE data[2048] = {};
  DWORD size = sizeof(data) - sizeof(wchar_t), type = 0;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ | KEY_WOW64_64KEY, key.receive()) != ERROR_SUCCESS ||
      RegQueryValueExW(key.get(), name, nullptr, &type, data, &size) != ERROR_SUCCESS)
    return L"(none)";
  if (type == REG_DWORD) return L"DWORD:" + std::to_wstring(*reinterpret_cast<const DWORD*>(data));
  if (type == REG_SZ) return L"SZ:" + std::wstring(reinterpret_cast<const wchar_t*>(data));
  return L"type " + std::to_wstring(type);
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
    pepper_ = directory_ + L"\\LumenPepper.dll";
    updater_ = directory_ + L"\\UpdateSvc.exe";
    feedback_ = directory_ + L"\\FeedbackSvc.exe";
    applet_ = system_ + L"\\LumenPlayerCPLApp.cpl";
    settingsManager_ = system_ + L"\\LumenPlayer_Settings.exe";
    tree_.Copy(BinaryDirectory() + L"\\lumen_test_control.dll", control_);
    tree_.Copy(HelperProcess::BuiltPath(), server_);
    for (const std::wstring& service : {updater_, feedback_})
      tree_.Copy(BinaryDirectory() + L"\\lumen_service_standin.exe", service);
    for (const std::wstring& file : {plugin_, pepper_, applet_, settingsManager_}) tree_.File(file, "file");
    // The stand-ins append to these; made here so that the tree takes them away.
    for (const std::wstring& service : {updater_, feedback_}) tree_.File(service + L".switches");
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

  // Reports meant for the user: none of the removals should need one.
  std::vector<std::string> UserReports() {
    std::vector<std::string> lines;
    for (const std::string& line : Reports(world_->host))
      if (line.compare(line.find(' '), 3, " 2 ") == 0) lines.push_back(line);
    return lines;
  }

  WineTest::TempTree tree_;
  std::wstring directory_, system_, control_, server_, plugin_, pepper_, updater_, feedback_, applet_,
      settingsManager_;
  std::unique_ptr<HostedShim> world_;
  LumenBrokerShim* shim_ = nullptr;
};

// The class and interface keys of the broker's generations 1 to 5, as an older
// installation left them.
std::vector<std::wstring> EarlierBrokerKeys() {
  std::vector<std::wstring> keys;
  for (int i = 0; i < 5; ++i) {
    const BrokerGeneration& generation = BrokerIdentities::kGenerations[i];
    keys.push_back(L"Software\\Classes\\CLSID\\" + std::wstring(generation.classId.begin(), generation.classId.end()));
    keys.push_back(L"Software\\Classes\\Interface\\" +
                   std::wstring(generation.interfaceId.begin(), generation.interfaceId.end()));
  }
  return keys;
}

void CreateMachineKey(const std::wstring& path) {
  ScopedRegKey key;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | KEY_WOW64_64KEY, nullptr,
                            key.receive(), nullptr),
            ERROR_SUCCESS);
}

void ExpectGone(std::initializer_list<std::wstring> keys, std::initializer_list<std::wstring> files) {
  for (const std::wstring& key : keys) EXPECT_FALSE(KeyExists(key)) << Utf8(key);
  for (const std::wstring& file : files) EXPECT_FALSE(FileExists(file)) << Utf8(file);
}

TEST_F(ProductRemovalTest, EachKindLeavesNothingOfItsOwnAndTheLastTakesTheSharedParts) {
  RegisterAllKinds();
  // What registration wrote, with its types, as the platform reads it back.
  const struct {
    std::wstring key;
    const wchar_t* name;
    std::wstring value;
  } kWritten[] = {
      {kProduct + L"ActiveX"s, L"PlayerPath", L"SZ:" + control_},
      {kProduct + L"Plugin"s, L"PlayerPath", L"SZ:" + plugin_},
      {kProduct + L"Pepper"s, L"UninstallerPath", L"SZ:" + server_},
      {kProduct + L"PepperReleaseType"s, L"Release", L"DWORD:1"},
      {kUninstall + L"ActiveX"s, L"UninstallString", L"SZ:" + server_ + L" -maintain activex"},
      {kUninstall + L"NPAPI"s, L"VersionMajor", L"DWORD:28"},
      {kUninstall + L"PPAPI"s, L"UninstallString", L"SZ:" + server_ + L" -maintain pepperplugin"},
      {kPlugin, L"Path", L"SZ:" + plugin_},
      {kCompatibility, L"Compatibility Flags", L"DWORD:0"},
      {kBrokerServer + L"\\LocalServer32"s, nullptr, L"SZ:" + server_},
  };
  for (const auto& written : kWritten)
    EXPECT_EQ(Utf8(MachineValue(written.key, written.name)), Utf8(written.value)) << Utf8(written.key);
  {
    SCOPED_TRACE("ActiveX");
    const std::vector<std::wstring> earlierBroker = EarlierBrokerKeys();
    for (size_t i = 0; i < earlierBroker.size(); ++i)
      CreateMachineKey(earlierBroker[i] + (i % 2 == 0 ? L"\\LocalServer32" : L"\\ProxyStubClsid32"));
    for (const std::wstring& key : earlierBroker) ASSERT_TRUE(KeyExists(key)) << Utf8(key);
    EXPECT_FALSE(shim_->RemoveProductKind(8, Path(system_), 0, 0));  // the clean-up meets values never written
    ExpectGone({kProduct + L"ActiveX"s, kProduct + L"ActiveXReleaseType"s, kUninstall + L"ActiveX"s, kControlClass,
                kBrokerServer},
               {control_, server_});
    for (const std::wstring& key : earlierBroker) EXPECT_FALSE(KeyExists(key)) << Utf8(key);
    EXPECT_EQ(UserDword(kCounterKey, L"UnregisterCalls"), 1u);
    // The plug-ins still need the services and the system files.
    EXPECT_TRUE(KeyExists(std::wstring(kProduct) + L"Plugin"));
    EXPECT_TRUE(FileExists(feedback_) && FileExists(updater_) && FileExists(applet_));
  }
  {
    SCOPED_TRACE("NPAPI");
    EXPECT_FALSE(shim_->RemoveProductKind(16, Path(system_), 0, 0));
    ExpectGone({kProduct + L"Plugin"s, kProduct + L"PluginReleaseType"s, kUninstall + L"NPAPI"s, kPlugin}, {plugin_});
    // No player of kind 8 or 16 is left: the feedback service removes itself and goes.
    EXPECT_EQ(ReadAll(feedback_ + L".switches"), "-uninstall\n");
    EXPECT_FALSE(FileExists(feedback_));
    EXPECT_TRUE(FileExists(updater_));
  }
  {
    SCOPED_TRACE("PPAPI");
    EXPECT_FALSE(shim_->RemoveProductKind(32768, Path(system_), 0, 0));
    ExpectGone({kProduct + L"Pepper"s, kProduct + L"PepperReleaseType"s, kUninstall + L"PPAPI"s},
               {pepper_, applet_, settingsManager_});
    EXPECT_EQ(ReadAll(updater_ + L".switches"), "-uninstall\n");
    EXPECT_FALSE(FileExists(updater_));
    EXPECT_FALSE(NotifierTaskExists());
  }
  EXPECT_EQ(UserReports(), std::vector<std::string>{});
}

}  // namespace
