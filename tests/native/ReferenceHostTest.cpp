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
