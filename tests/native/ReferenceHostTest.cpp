#include "host/ReferenceHost.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/native/TestWorld.h"

using namespace SASM;
using namespace std::string_literals;

namespace {

std::string Ask(TestWorld& world, uint32_t id, int32_t flag) {
  MString out;
  world.host->LoadStringFallback(out, id, flag);
  return out.ToUtf8();
}

TEST(ReferenceHost, WindowTextsComeFromTheModuleFirstAndTheHostsOwnTableOtherwise) {
  TestWorld world;
  world.system.SetResourceString(6, u"Done\0"s);
  EXPECT_EQ(Ask(world, 6, 1), "Done");
  EXPECT_EQ(Ask(world, 15, 1), "^%");
  EXPECT_EQ(Ask(world, 29, 1), "Lumen Player ^ Installer");
  EXPECT_EQ(Ask(world, 9, 1), "[string 9]");
  // Asked by the module's own lookup, the host answers from its table alone.
  EXPECT_EQ(Ask(world, 6, 0), "[string 6]");
}

}  // namespace

namespace {

std::vector<std::string> Properties(ReferenceHost& host, bool& answered) {
  MStringList list;
  answered = host.GetUpdateDialogData(list);
  std::vector<std::string> pairs;
  for (auto* node = list.head; node; node = node->next) pairs.push_back(node->key.ToUtf8() + "=" + node->value.ToUtf8());
  return pairs;
}

TEST(ReferenceHost, UpdateDialogDataHoldsOnlyWhatTheSettingsGiveAndCanBeRefused) {
  bool answered = false;
  TestWorld full({}, u"Host { UpdateMessage \"New player\"; UpdateSize 520 300; AutoUpdateMode 2; };");
  EXPECT_EQ(Properties(*full.host, answered),
            (std::vector<std::string>{"message=New player", "size=520", "size=300", "autoUpdateMode=2"}));
  EXPECT_TRUE(answered);
  TestWorld none({}, u"");
  EXPECT_EQ(Properties(*none.host, answered), std::vector<std::string>{});
  EXPECT_TRUE(answered);
  TestWorld refused({}, u"Host { UpdateDialogData 0; UpdateMessage x; };");
  EXPECT_EQ(Properties(*refused.host, answered), std::vector<std::string>{});
  EXPECT_FALSE(answered);
}

}  // namespace
