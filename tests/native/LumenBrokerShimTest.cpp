#include "engine/LumenBrokerShim.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>

#include "engine/InstallEngine.h"
#include "host/ReferenceHost.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeRegistry.h"
#include "tests/fakes/FakeSystem.h"

using namespace SASM;

namespace {

// Answers ShellExecute from a queue, so the retries can be told apart.
class ScriptedSystem : public FakeSystem {
 public:
  std::deque<intptr_t> results;
  intptr_t ShellExecute(void* window, std::u16string_view verb, std::u16string_view file,
                        std::u16string_view parameters) override {
    FakeSystem::ShellExecute(window, verb, file, parameters);
    if (results.empty()) return 42;
    intptr_t next = results.front();
    results.pop_front();
    return next;
  }
};

class ShimTest : public ::testing::Test {
 protected:
  void Start(const char16_t* settings = u"", std::vector<std::u16string> switches = {}) {
    HostOptions options;
    ASSERT_TRUE(options.Parse(switches));
    host_ = std::make_unique<ReferenceHost>(options, MString(settings));
    shim_.reset(StartShim(host_.get(), Platform{&registry_, &files_, &system_}));
    ASSERT_NE(shim_, nullptr);
    host_->shim = shim_.get();
  }

  std::vector<std::u16string> Files() const {
    std::vector<std::u16string> files;
    for (const auto& e : system_.Executions()) files.push_back(e.file);
    return files;
  }

  FakeRegistry registry_;
  FakeFileSystem files_;
  ScriptedSystem system_;
  std::unique_ptr<ReferenceHost> host_;
  std::unique_ptr<LumenBrokerShim> shim_;
};

TEST_F(ShimTest, StartBuildsAnEngineWithNothingReached) {
  Start();
  EXPECT_NE(shim_->GetEngine(), nullptr);
  EXPECT_EQ(shim_->WasRegistrationReached(), 0);
  EXPECT_TRUE(shim_->browserName.IsEmpty());
  EXPECT_EQ(shim_->GetEngine()->version.ToUtf8(), "28.0.0.126");
  EXPECT_EQ(host_->Log().Count(), 0);
}

TEST_F(ShimTest, LoadStringFallsBackToTheHostOrSaysItIsMissing) {
  system_.SetResourceString(51, u"No error information is available.");
  Start();
  MString text;
  EXPECT_EQ(shim_->LoadString(text, 51, 0).ToUtf8(), "No error information is available.");
  EXPECT_EQ(shim_->LoadString(text, 999, 0).ToUtf8(), "MISSING LOCALIZATION");
  EXPECT_EQ(shim_->LoadString(text, 999, 1).ToUtf8(), "[string 999]");
}

TEST_F(ShimTest, OperationsNotYetBuiltSayItAndNeverSucceed) {
  Start();
  int32_t code = 77;
  EXPECT_FALSE(shim_->CheckInstallAllowed(8, code, 1));
  EXPECT_EQ(code, 77);
  EXPECT_FALSE(shim_->RegisterProduct(8, MString(u"a"), MString(u"b"), MString(), 1));
  EXPECT_EQ(shim_->FindConflicts(8), nullptr);
  EXPECT_NE(shim_->RunBroker(), 0);
  ASSERT_EQ(host_->Log().Count(), 4);
  for (const auto& entry : host_->Log().Entries()) {
    EXPECT_EQ(entry.severity, 2);
    EXPECT_EQ(entry.code, 1999);
  }
  EXPECT_EQ(host_->Log().Entries()[0].text.ToUtf8(), "CheckInstallAllowed: not available in this build");
}

TEST_F(ShimTest, UacNeedsVersionSixAndAPositiveEnableLua) {
  const char16_t kKey[] = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Policies\\System";
  Start();
  EXPECT_FALSE(shim_->IsUacEnabled()) << "an unreadable value counts as 0";
  registry_.SetDword(RegistryHive::Machine, kKey, u"EnableLUA", 1);
  EXPECT_TRUE(shim_->IsUacEnabled());
  system_.SetMajorVersion(5);
  EXPECT_FALSE(shim_->IsUacEnabled());
  system_.SetMajorVersion(6);
  registry_.SetDword(RegistryHive::Machine, kKey, u"EnableLUA", 0);
  EXPECT_FALSE(shim_->IsUacEnabled());
  EXPECT_EQ(host_->Log().Count(), 0);
}

TEST_F(ShimTest, BadRealPlayerIsAnyVersionWhoseMajorStartsWithSix) {
  const char16_t kKey[] = u"SOFTWARE\\RealNetworks\\RealPlayer";
  Start();
  EXPECT_FALSE(shim_->IsBadRealPlayer());
  struct Case {
    const char16_t* version;
    bool bad;
  };
  for (Case c : {Case{u"6", true}, Case{u"60", true}, Case{u"6.0.12", true}, Case{u"16.0", false},
                 Case{u"", false}, Case{u".6", false}}) {
    registry_.SetString(RegistryHive::Machine, kKey, u"version", c.version);
    EXPECT_EQ(shim_->IsBadRealPlayer(), c.bad) << MString(c.version).ToUtf8();
  }
}

TEST_F(ShimTest, OpenUrlForActiveXTriesBothExplorersThenTheUrlAlone) {
  Start(u"", {u"-activex"});
  system_.results = {2, 31, 5};
  EXPECT_FALSE(shim_->OpenUrl(nullptr, MString(u"https://x.example/")));
  ASSERT_EQ(system_.Executions().size(), 3u);
  EXPECT_EQ(Files(), (std::vector<std::u16string>{u"c:\\Program Files\\Internet Explorer\\iexplore.exe",
                                                   u"c:\\Program Files (x86)\\Internet Explorer\\iexplore.exe",
                                                   u"https://x.example/"}));
  EXPECT_EQ(system_.Executions()[0].parameters, u"https://x.example/");
  EXPECT_EQ(system_.Executions()[0].verb, u"open");
  EXPECT_TRUE(system_.Executions()[2].parameters.empty());
}

TEST_F(ShimTest, OpenUrlSucceedsOnTheFirstCallThatWorks) {
  Start(u"", {u"-activex"});
  system_.results = {33};
  EXPECT_TRUE(shim_->OpenUrl(nullptr, MString(u"u")));
  EXPECT_EQ(system_.Executions().size(), 1u);
}

TEST_F(ShimTest, OpenUrlForThePluginUsesTheRunningBrowserOrFirefox) {
  Start(u"", {u"-npapi"});
  shim_->browserName = MString(u"C:\\Opera\\opera.exe");
  EXPECT_TRUE(shim_->OpenUrl(nullptr, MString(u"u")));
  shim_->browserName = MString::Empty();
  EXPECT_TRUE(shim_->OpenUrl(nullptr, MString(u"u")));
  EXPECT_EQ(Files(), (std::vector<std::u16string>{u"C:\\Opera\\opera.exe", u"firefox.exe"}));
}

TEST_F(ShimTest, OpenUrlWithNoKindOpensTheUrlItself) {
  Start();
  EXPECT_TRUE(shim_->OpenUrl(nullptr, MString(u"https://x.example/")));
  ASSERT_EQ(system_.Executions().size(), 1u);
  EXPECT_EQ(system_.Executions()[0].file, u"https://x.example/");
  EXPECT_TRUE(system_.Executions()[0].parameters.empty());
}

TEST_F(ShimTest, ExpressInstallUrlNeedsAValue) {
  Start(u"ExpressInstallURL;");
  EXPECT_FALSE(shim_->OpenExpressInstallUrl(nullptr));
  Start(u"Other x;");
  EXPECT_FALSE(shim_->OpenExpressInstallUrl(nullptr));
  EXPECT_TRUE(system_.Executions().empty());
  Start(u"ExpressInstallURL \"https://go.example/ei\" second;");
  EXPECT_TRUE(shim_->OpenExpressInstallUrl(nullptr));
  ASSERT_EQ(system_.Executions().size(), 1u);
  EXPECT_EQ(system_.Executions()[0].file, u"https://go.example/ei");
}

TEST_F(ShimTest, ControlPanelAppletStartsWhenReadableAndAlwaysAnswersFalse) {
  system_.SetFolder(36, u"C:\\Windows");
  Start();
  EXPECT_FALSE(shim_->OpenControlPanelApplet());
  EXPECT_TRUE(system_.StartedProcesses().empty());
  files_.AddFile(u"C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl");
  EXPECT_FALSE(shim_->OpenControlPanelApplet());
  EXPECT_EQ(system_.StartedProcesses(),
            (std::vector<std::u16string>{u"control.exe C:\\Windows\\SysWOW64\\LumenPlayerCPLApp.cpl"}));
  EXPECT_EQ(files_.OpenHandles(), 0u);
}

TEST_F(ShimTest, ExtraFilesAreKeptPerKind) {
  Start();
  EXPECT_TRUE(shim_->AddExtraActiveXFile(MString(u"a.exe")));
  EXPECT_TRUE(shim_->AddExtraPepperFile(MString(u"p.dll")));
  EXPECT_EQ(shim_->GetExtraActiveXFiles()->Count(), 1);
  EXPECT_EQ(shim_->GetExtraPluginFiles()->Count(), 0);
  EXPECT_TRUE(shim_->GetExtraPepperFiles()->Contains(MString(u"p.dll")));
}

}  // namespace
