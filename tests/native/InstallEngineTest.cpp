#include <gtest/gtest.h>

#include <memory>

#include "engine/InstallEngine.h"
#include "tests/native/TestWorld.h"

using namespace SASM;

namespace {

constexpr char16_t kBase[] = u"C:\\Windows\\system32\\Halcyons\\Lumen\\";
constexpr char16_t kProduct[] =
    u"C:\\Users\\T\\AppData\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin";

constexpr char16_t kAllRows[] =
    u"AddRemoveProgramsGUIDsAX \"{A1}\"; AddRemoveProgramsGUIDsPlugin \"{P1}\"; AddRemoveProgramsGUIDsPepper \"{C1}\";"
    u"FilenamesAX a.ocx; FilenamesPlugin p.dll;"
    u"AddRemoveProgramsGUIDsAXSelf \"{A2}\"; AddRemoveProgramsGUIDsPluginSelf \"{P2}\";"
    u"AddRemoveProgramsGUIDsPepperSelf \"{C2}\";"
    u"AXFilenamePatterns x:.ocx; PluginFilenamePatterns np:.dll; PepperFilenamePatterns pep:.dll;"
    u"ProductManagerDirectoryPatterns lumen_;";

class InstallEngineTest : public ::testing::Test {
 protected:
  InstallEngine& Start(const char16_t* settings) {
    world_ = std::make_unique<TestWorld>(std::vector<std::u16string>{}, settings);
    world_->system.SetFolder(26, u"C:\\Users\\T\\AppData\\Roaming");
    world_->files.AddDirectory(kBase);
    world_->files.AddDirectory(kProduct);
    return *world_->shim->GetEngine();
  }
  std::unique_ptr<TestWorld> world_;
};

TEST_F(InstallEngineTest, EveryRowLandsInItsListAndPepperSelfGoesToThePlugin) {
  InstallEngine& engine = Start(kAllRows);
  world_->files.AddFile(std::u16string(kBase) + u"LumenUtil_ActiveX.exe");
  world_->files.AddDirectory(std::u16string(kProduct) + u"\\lumen_1");
  EXPECT_TRUE(engine.LoadEngineLists());
  EXPECT_EQ(TestWorld::Texts(engine.guidsAX), (Strings{"{A1}", "{A2}"}));
  EXPECT_EQ(TestWorld::Texts(engine.guidsPlugin), (Strings{"{P1}", "{P2}", "{C2}"}));
  EXPECT_EQ(TestWorld::Texts(engine.guidsPepper), Strings{"{C1}"});
  // The platform's first entry (".") is skipped; ".." stays.
  EXPECT_EQ(TestWorld::Texts(engine.systemEntries), (Strings{"..", "LumenUtil_ActiveX.exe"}));
  EXPECT_EQ(TestWorld::Texts(engine.productManagerEntries), (Strings{"..", "lumen_1"}));
  EXPECT_TRUE(world_->Codes().empty());
}

TEST_F(InstallEngineTest, OptionalRowsMissingKeepTheResultButAMissingCountedRowFailsAndEveryRowStillRuns) {
  InstallEngine& optional = Start(
      u"AddRemoveProgramsGUIDsAX; AddRemoveProgramsGUIDsPlugin; AddRemoveProgramsGUIDsPepper; FilenamesAX;"
      u"FilenamesPlugin; AXFilenamePatterns; PluginFilenamePatterns; PepperFilenamePatterns;"
      u"ProductManagerDirectoryPatterns;");
  EXPECT_TRUE(optional.LoadEngineLists()) << "keys with no values count as read";

  std::u16string settings(kAllRows);
  settings.replace(settings.find(u"FilenamesAX a.ocx;"), 18, u"");
  InstallEngine& engine = Start(settings.c_str());
  EXPECT_FALSE(engine.LoadEngineLists());
  EXPECT_EQ(engine.filenamesAX.Count(), 0);
  EXPECT_EQ(engine.productManagerPatterns.Count(), 1);
  EXPECT_EQ(engine.productManagerEntries.Count(), 1);
}

TEST_F(InstallEngineTest, AListingThatCannotStartIsReportedWithItsError) {
  InstallEngine& engine = Start(kAllRows);
  world_->files.FailPath(kProduct, 5);
  EXPECT_FALSE(engine.LoadEngineLists());
  EXPECT_EQ(world_->Reports(), Strings{"1113 1 " + MString(kProduct).ToUtf8() + " 5"});
}

}  // namespace
