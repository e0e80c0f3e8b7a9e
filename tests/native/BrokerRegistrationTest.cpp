#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "broker/BrokerIdentities.h"
#include "broker/BrokerRegistration.h"
#include "tests/fakes/FakeRegistry.h"

using SASM::BrokerRegistration;
using SASM::FakeRegistry;
using SASM::IRegistry;
using SASM::RegistryHive;
using SASM::BrokerIdentities::kGenerations;

namespace {

constexpr char kServer[] = "C:\\Program Files\\Lumen\\LumenUtilHost.exe";
const std::u16string kClass = u"Software\\Classes\\CLSID\\{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}";
const std::u16string kInterface = u"Software\\Classes\\Interface\\{299817DA-1FAC-4CE2-8F48-A108237013BD}";
const std::u16string kLibrary = u"Software\\Classes\\TypeLib\\{FAB3E735-69C7-453B-A446-B6823C6DF1C9}";
const std::u16string kPolicy =
    u"Software\\Microsoft\\Internet Explorer\\Low Rights\\ElevationPolicy\\{FAF199D2-BFA7-4394-A4DE-044A08E59B32}";

std::string Utf8(const std::u16string& text) { return std::string(text.begin(), text.end()); }

// Answers the read-back of LocalServer32 with a value of its own choosing.
class ReadBackRegistry : public FakeRegistry {
 public:
  explicit ReadBackRegistry(std::string answer) : answer_(std::move(answer)) {}
  int32_t ReadNarrowString(RegistryHive hive, std::u16string_view path, std::u16string_view name, std::string& out,
                           uint32_t access = SASM::RegistryAccess::kRead) override {
    if (path == kClass + u"\\LocalServer32") {
      out = answer_;
      return 0;
    }
    return FakeRegistry::ReadNarrowString(hive, path, name, out, access);
  }

 private:
  std::string answer_;
};

class BrokerRegistrationTest : public ::testing::Test {
 protected:
  std::string Text(const std::u16string& path, const std::u16string& name = u"") {
    std::string value;
    return registry.ReadNarrowString(RegistryHive::Machine, path, name, value) == 0 ? value : "<absent>";
  }
  uint32_t Number(const std::u16string& path, const std::u16string& name) {
    uint32_t value = 0xDEAD;
    registry.ReadDword(RegistryHive::Machine, path, name, value);
    return value;
  }

  FakeRegistry registry;
};

}  // namespace

TEST_F(BrokerRegistrationTest, InstallWritesSeventeenValuesInOrderWithTheComputedOnesFromTheServerPath) {
  BrokerRegistration::WriteBrokerRegistration(registry, kServer, true);
  std::vector<std::string> names;
  for (const auto& write : registry.Writes()) names.push_back(Utf8(write.name));
  EXPECT_EQ(names, (std::vector<std::string>{"", "", "", "LocalizedString", "Enabled", "", "", "", "Version", "", "",
                                             "", "", "", "Policy", "AppPath", "AppName"}));
  EXPECT_EQ(Text(kClass + u"\\LocalServer32"), kServer);
  EXPECT_EQ(Text(kClass, u"LocalizedString"), "@" + std::string(kServer) + ",-101");
  EXPECT_EQ(Number(kClass + u"\\Elevation", u"Enabled"), 1u);
  EXPECT_EQ(Text(kLibrary + u"\\1.0\\FLAGS"), "0") << "one character is no DWORD form";
  EXPECT_EQ(Text(kLibrary + u"\\1.0\\0\\win32"), kServer);
  EXPECT_EQ(Number(kPolicy, u"Policy"), 3u);
  EXPECT_EQ(Text(kPolicy, u"AppPath"), "C:\\Program Files\\Lumen");
  EXPECT_EQ(Text(kPolicy, u"AppName"), "LumenUtilHost.exe");
}

TEST_F(BrokerRegistrationTest, FirstFailureEndsTheRegistrationSilentlyAndNoPathChangesNothing) {
  registry.FailKey(RegistryHive::Machine, kInterface + u"\\ProxyStubClsid32", 5);
  BrokerRegistration::WriteBrokerRegistration(registry, kServer, true);
  ASSERT_EQ(registry.Writes().size(), 7u);
  EXPECT_EQ(registry.Writes().back().result, 5);
  EXPECT_FALSE(registry.KeyExists(RegistryHive::Machine, kLibrary));

  // Without a path nothing changes.
  FakeRegistry none;
  BrokerRegistration::WriteBrokerRegistration(none, nullptr, true);
  EXPECT_TRUE(none.Writes().empty());
}

TEST_F(BrokerRegistrationTest, PolicyPathIsTheValueReadBackCutAtItsLastSeparator) {
  ReadBackRegistry redirected("D:\\Elsewhere/bin\\Other.exe");
  BrokerRegistration::WriteBrokerRegistration(redirected, kServer, true);
  std::string value;
  redirected.ReadNarrowString(RegistryHive::Machine, kPolicy, u"AppPath", value);
  EXPECT_EQ(value, "D:\\Elsewhere/bin");
  redirected.ReadNarrowString(RegistryHive::Machine, kPolicy, u"AppName", value);
  EXPECT_EQ(value, "Other.exe");

  // More than the read-back buffer holds counts as a failed read: the given path is used.
  ReadBackRegistry tooLong("E:\\" + std::string(509, 'x'));
  BrokerRegistration::WriteBrokerRegistration(tooLong, kServer, true);
  tooLong.ReadNarrowString(RegistryHive::Machine, kPolicy, u"AppName", value);
  EXPECT_EQ(value, "LumenUtilHost.exe");
  ReadBackRegistry fits("E:\\" + std::string(508, 'x'));
  BrokerRegistration::WriteBrokerRegistration(fits, kServer, true);
  fits.ReadNarrowString(RegistryHive::Machine, kPolicy, u"AppName", value);
  EXPECT_EQ(value, std::string(508, 'x'));
}

TEST_F(BrokerRegistrationTest, OnlyHashAndOneCharacterMakesADword) {
  const std::u16string key = u"Software\\Test";
  EXPECT_TRUE(BrokerRegistration::SetRegistryValue(registry, key, u"", u"Seven", "#7"));
  EXPECT_TRUE(BrokerRegistration::SetRegistryValue(registry, key, u"", u"Twelve", "#12"));
  EXPECT_TRUE(BrokerRegistration::SetRegistryValue(registry, key, u"", u"Letter", "#A"));
  EXPECT_EQ(Number(key, u"Seven"), 7u);
  EXPECT_EQ(Text(key, u"Twelve"), "#12");
  EXPECT_EQ(Number(key, u"Letter"), 17u);  // 'A' - '0'
  // Below '0' the difference wraps.
  EXPECT_TRUE(BrokerRegistration::SetRegistryValue(registry, key, u"", u"Space", "# "));
  EXPECT_EQ(Number(key, u"Space"), 0xFFFFFFF0u);
}

TEST_F(BrokerRegistrationTest, RemovalDeletesFourKeysInOrderWhateverFails) {
  BrokerRegistration::WriteBrokerRegistration(registry, kServer, true);
  registry.FailKey(RegistryHive::Machine, kLibrary + u"\\1.0\\FLAGS", 5);
  size_t before = registry.Writes().size();
  BrokerRegistration::WriteBrokerRegistration(registry, kServer, false);
  std::vector<std::string> log = registry.WriteLog();
  std::vector<std::string> removal(log.begin() + static_cast<long>(before), log.end());
  EXPECT_EQ(removal, (std::vector<std::string>{
                         "DeleteTree HKLM\\" + Utf8(kClass) + " 0", "DeleteTree HKLM\\" + Utf8(kLibrary) + " 5",
                         "DeleteTree HKLM\\" + Utf8(kInterface) + " 0", "DeleteTree HKLM\\" + Utf8(kPolicy) + " 0"}));
  EXPECT_FALSE(registry.KeyExists(RegistryHive::Machine, kClass));
}

TEST_F(BrokerRegistrationTest, FindServerPathTakesTheNewestRegisteredGeneration) {
  std::string path = "unchanged";
  EXPECT_FALSE(BrokerRegistration::FindBrokerServerPath(registry, path));
  EXPECT_EQ(path, "unchanged");

  auto registerGeneration = [&](int generation, const char* server) {
    std::u16string key =
        u"Software\\Classes\\CLSID\\" + std::u16string(kGenerations[generation - 1].classId) + u"\\LocalServer32";
    registry.SetNarrowString(RegistryHive::Machine, key, u"", server);
  };
  registerGeneration(3, "C:\\three.exe");
  EXPECT_TRUE(BrokerRegistration::FindBrokerServerPath(registry, path));
  EXPECT_EQ(path, "C:\\three.exe");

  BrokerRegistration::WriteBrokerRegistration(registry, kServer, true);
  EXPECT_TRUE(BrokerRegistration::FindBrokerServerPath(registry, path));
  EXPECT_EQ(path, kServer);
}
