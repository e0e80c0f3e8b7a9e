#include "engine/InstallEngine.h"

#include <gtest/gtest.h>

#include <memory>

#include "engine/LumenBrokerShim.h"
#include "host/ReferenceHost.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeRegistry.h"
#include "tests/fakes/FakeSystem.h"

using namespace SASM;

namespace {

constexpr char16_t kBase[] = u"C:\\Windows\\system32\\Halcyons\\Lumen\\";
constexpr char16_t kProduct[] = u"C:\\Users\\T\\AppData\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin";

constexpr char16_t kAllRows[] =
    u"AddRemoveProgramsGUIDsAX \"{A1}\"; AddRemoveProgramsGUIDsPlugin \"{P1}\"; AddRemoveProgramsGUIDsPepper \"{C1}\";"
    u"FilenamesAX a.ocx; FilenamesPlugin p.dll;"
    u"AddRemoveProgramsGUIDsAXSelf \"{A2}\"; AddRemoveProgramsGUIDsPluginSelf \"{P2}\";"
    u"AddRemoveProgramsGUIDsPepperSelf \"{C2}\";"
    u"AXFilenamePatterns x:.ocx; PluginFilenamePatterns np:.dll; PepperFilenamePatterns pep:.dll;"
    u"ProductManagerDirectoryPatterns lumen_;";

std::vector<std::string> Texts(const MStringList& list) {
  std::vector<std::string> texts;
  for (auto* node = list.head; node; node = node->next) texts.push_back(node->key.ToUtf8());
  return texts;
}

class InstallEngineTest : public ::testing::Test {
 protected:
  void SetUp() override {
    system_.SetFolder(26, u"C:\\Users\\T\\AppData\\Roaming");
    files_.AddDirectory(kBase);
    files_.AddDirectory(kProduct);
  }
  InstallEngine& Start(const char16_t* settings) {
    host_ = std::make_unique<ReferenceHost>(HostOptions{}, MString(settings));
    shim_.reset(StartShim(host_.get(), Platform{&registry_, &files_, &system_}));
    host_->shim = shim_.get();
    return *shim_->GetEngine();
  }
  std::vector<int32_t> Codes() {
    std::vector<int32_t> codes;
    for (const auto& e : host_->Log().Entries()) codes.push_back(e.code);
    return codes;
  }

  FakeRegistry registry_;
  FakeFileSystem files_;
  FakeSystem system_;
  std::unique_ptr<ReferenceHost> host_;
  std::unique_ptr<LumenBrokerShim> shim_;
};

TEST_F(InstallEngineTest, ConstantsOfThisBuild) {
  InstallEngine& engine = Start(u"");
  EXPECT_EQ(engine.uninstallRoot.ToUtf8(), "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\");
  EXPECT_EQ(engine.uninstallRootWow.ToUtf8(), "SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\");
  EXPECT_EQ(engine.productCode1.ToUtf8(), "{FFB768E4-E427-4553-BC36-A11F5E62A94D}");
  EXPECT_EQ(engine.productCode4.ToUtf8(), "{14CAE90A-7395-4DF6-93AD-14AF6E52922B}");
  EXPECT_EQ(engine.version.ToUtf8(), "28.0.0.126");
  EXPECT_EQ(engine.reserved.Count(), 0);
}

TEST_F(InstallEngineTest, EveryRowLandsInItsListAndPepperSelfGoesToThePlugin) {
  files_.AddFile(std::u16string(kBase) + u"LumenUtil_ActiveX.exe");
  files_.AddDirectory(std::u16string(kProduct) + u"\\lumen_1");
  InstallEngine& engine = Start(kAllRows);
  EXPECT_TRUE(engine.LoadEngineLists());
  EXPECT_EQ(Texts(engine.guidsAX), (std::vector<std::string>{"{A1}", "{A2}"}));
  EXPECT_EQ(Texts(engine.guidsPlugin), (std::vector<std::string>{"{P1}", "{P2}", "{C2}"}));
  EXPECT_EQ(Texts(engine.guidsPepper), (std::vector<std::string>{"{C1}"}));
  EXPECT_EQ(Texts(engine.filenamesAX), (std::vector<std::string>{"a.ocx"}));
  EXPECT_EQ(Texts(engine.pepperPatterns), (std::vector<std::string>{"pep:.dll"}));
  EXPECT_EQ(Texts(engine.productManagerPatterns), (std::vector<std::string>{"lumen_"}));
  // The platform's first entry (".") is skipped; ".." stays.
  EXPECT_EQ(Texts(engine.systemEntries), (std::vector<std::string>{"..", "LumenUtil_ActiveX.exe"}));
  EXPECT_EQ(Texts(engine.productManagerEntries), (std::vector<std::string>{"..", "lumen_1"}));
  EXPECT_EQ(engine.baseDirectory.ToUtf8(), "C:\\Windows\\system32\\Halcyons\\Lumen\\");
  EXPECT_TRUE(Codes().empty());
}

TEST_F(InstallEngineTest, OptionalRowsMissingKeepTheResult) {
  InstallEngine& engine = Start(
      u"AddRemoveProgramsGUIDsAX; AddRemoveProgramsGUIDsPlugin; AddRemoveProgramsGUIDsPepper; FilenamesAX;"
      u"FilenamesPlugin; AXFilenamePatterns; PluginFilenamePatterns; PepperFilenamePatterns;"
      u"ProductManagerDirectoryPatterns;");
  EXPECT_TRUE(engine.LoadEngineLists()) << "keys with no values count as read";
  EXPECT_EQ(engine.guidsAX.Count(), 0);
}

TEST_F(InstallEngineTest, AMissingCountedRowFailsButEveryRowStillRuns) {
  std::u16string settings(kAllRows);
  settings.replace(settings.find(u"FilenamesAX a.ocx;"), 18, u"");
  InstallEngine& engine = Start(settings.c_str());
  EXPECT_FALSE(engine.LoadEngineLists());
  EXPECT_EQ(engine.filenamesAX.Count(), 0);
  EXPECT_EQ(engine.productManagerPatterns.Count(), 1);
  EXPECT_EQ(engine.productManagerEntries.Count(), 1);
}

TEST_F(InstallEngineTest, AListingThatCannotStartIsReportedWithItsError) {
  files_.FailPath(kProduct, 5);
  InstallEngine& engine = Start(kAllRows);
  EXPECT_FALSE(engine.LoadEngineLists());
  ASSERT_EQ(host_->Log().Count(), 1);
  const auto& entry = host_->Log().Entries()[0];
  EXPECT_EQ(entry.severity, 1);
  EXPECT_EQ(entry.code, 1113);
  EXPECT_EQ(entry.text.ToUtf8(), std::string(MString(kProduct).ToUtf8()) + " 5");
}

TEST_F(InstallEngineTest, ASecondLoadDoublesEveryList) {
  InstallEngine& engine = Start(kAllRows);
  engine.LoadEngineLists();
  engine.LoadEngineLists();
  EXPECT_EQ(Texts(engine.filenamesAX), (std::vector<std::string>{"a.ocx", "a.ocx"}));
  EXPECT_EQ(engine.systemEntries.Count(), 2);
}

TEST_F(InstallEngineTest, NoSettingsAtAllFailsEveryCountedRow) {
  InstallEngine& engine = Start(u"");
  EXPECT_FALSE(engine.LoadEngineLists());
  EXPECT_EQ(engine.guidsPlugin.Count(), 0);
}

}  // namespace
