#include "host/InstallerFlow.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

using Posted = std::vector<std::tuple<int32_t, int32_t, intptr_t>>;

constexpr char16_t kPlayer[] = u"C:\\Lumen\\NPLumenPlayer.dll";
constexpr char16_t kServer[] = u"C:\\Lumen\\LumenUtil_Plugin.exe";

// A flow over the fake world, with what it posted and printed.
struct FlowWorld {
  explicit FlowWorld(std::vector<std::u16string> switches, const char16_t* settings = u"")
      : world(Options(switches), settings) {
    options.Parse(Options(switches));
    flow = std::make_unique<InstallerFlow>(options, *world.host, *world.shim,
                                           [this](const std::string& line) { lines.push_back(line); });
    flow->Open([this](int32_t id, int32_t message, intptr_t param) { posted.emplace_back(id, message, param); });
  }
  static std::vector<std::u16string> Options(std::vector<std::u16string> switches) {
    switches.insert(switches.end(), {u"-player", kPlayer, u"-uninstaller", kServer, u"-directory", u"C:\\Lumen"});
    return switches;
  }
  bool Printed(const std::string& line) const {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }
  TestWorld world;
  HostOptions options;
  std::unique_ptr<InstallerFlow> flow;
  Posted posted;
  Strings lines;
};

TEST(InstallerFlow, EachModeOpensItsPanelAndMaintenanceComesAfterTheSplashThatShowsTheWindow) {
  EXPECT_EQ(FlowWorld({u"-install", u"-npapi"}).posted, (Posted{{3, 6, 0}}));
  EXPECT_EQ(FlowWorld({u"-uninstall", u"-npapi"}).posted, (Posted{{3, 6, 1}}));
  EXPECT_EQ(FlowWorld({u"-maintain", u"-npapi"}).posted, (Posted{{3, 6, 1}, {3, 6, 2}}));
  FlowWorld update({u"-update", u"-npapi"});
  EXPECT_EQ(update.posted, (Posted{{3, 6, 3}}));
  EXPECT_EQ(update.flow->Stage(), "auto-update");
}

TEST(InstallerFlow, TheMaskAndSourceComeFromTheCommandLineElseTheSettingsAndTheSplashMovesOnToConflicts) {
  FlowWorld fromSettings({u"-install"}, u"Host { Flags 33800; InstallSource 12; };");
  EXPECT_EQ(fromSettings.world.host->GetInstallSource(), 12u);
  uint32_t mask = 77;
  fromSettings.flow->OnNotify(6, reinterpret_cast<intptr_t>(&mask));
  EXPECT_EQ(mask, 8u | 32768u) << "only the kinds of 33800";
  EXPECT_EQ(fromSettings.flow->Stage(), "installer-splash") << "the conflicts panel is not yet painted";
  fromSettings.flow->OnNotify(6, 0);  // a poll; no mask to fill
  EXPECT_EQ(fromSettings.flow->Stage(), InstallerFlow::kConflicts);
  EXPECT_TRUE(fromSettings.Printed("Notify 6: product mask 32776"));

  FlowWorld fromSwitch({u"-install", u"-npapi", u"-source", u"0"}, u"Host { Flags 8; InstallSource 12; };");
  fromSwitch.flow->OnNotify(6, reinterpret_cast<intptr_t>(&mask));
  EXPECT_EQ(mask, 16u);
  EXPECT_EQ(fromSwitch.world.host->GetInstallSource(), 0u);
}

TEST(InstallerFlow, ARegistrationFailureStopsThereAndSendsTheWindowToTheFailurePanel) {
  FlowWorld control({u"-install", u"-activex", u"-npapi"});
  control.world.modules.AddModule(kPlayer, {{"DllRegisterServer", {static_cast<int32_t>(0x80004005u)}}});
  control.flow->OnNotify(2, 0);
  EXPECT_EQ(control.posted, (Posted{{3, 6, 0}, {4, 8, 0}}));
  EXPECT_EQ(control.flow->Stage(), InstallerFlow::kFailure);
  EXPECT_TRUE(control.Printed("RegisterProduct 8: false"));
  EXPECT_FALSE(control.Printed("RegisterProduct 16: true")) << "the plug-in is not tried after the control failed";
  EXPECT_FALSE(control.world.KeyExists(u"Software\\Halcyonics\\LumenPlayerPlugin"));
}

TEST(InstallerFlow, TheUpdateRequestFinishesTheWindowAndTheExitCodeEndsTheRecord) {
  FlowWorld flow({u"-update", u"-npapi"});
  flow.world.host->SetAutoUpdateChoice(0);
  flow.world.host->NotifyConflictsCleared(nullptr);
  EXPECT_EQ(flow.flow->Stage(), InstallerFlow::kProgress);
  flow.flow->OnNotify(4, 0);
  EXPECT_EQ(flow.posted.back(), std::make_tuple(3, 5, intptr_t{0}));
  EXPECT_FALSE(flow.flow->Ended());
  flow.flow->OnNotify(0, -1);
  EXPECT_TRUE(flow.flow->Ended());
  EXPECT_EQ(flow.flow->ExitCode(), -1);
  flow.flow->SetStage("maintain");
  EXPECT_EQ(flow.flow->Stage(), InstallerFlow::kEnded) << "nothing follows the end";
  EXPECT_EQ(flow.lines, (Strings{"PostEvent 3 6 3", "SetAutoUpdateChoice 0", "NotifyConflictsCleared 0",
                                 "Notify 4: the update is asked for", "PostEvent 3 5 0", "Notify 0: exit code -1"}));
}

}  // namespace
