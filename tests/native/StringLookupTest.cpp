#include "engine/StringLookup.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "host/ReferenceHost.h"
#include "tests/fakes/FakeSystem.h"

using namespace SASM;
using namespace std::string_literals;

namespace {

// A host that answers every id from its own table and remembers how it was asked.
class RecordingHost : public ReferenceHost {
 public:
  RecordingHost() : ReferenceHost(HostOptions{}, MString(u"")) { resourceModule = &moduleTag; }
  void LoadStringFallback(MString& out, uint32_t id, int32_t flag) override {
    asked.emplace_back(id, flag);
    out = MString(u"from the host");
  }
  int moduleTag = 0;
  std::vector<std::pair<uint32_t, int32_t>> asked;
};

class StringLookupTest : public ::testing::Test {
 protected:
  std::string Load(uint32_t id, bool useHost) {
    MString out;
    return StringLookup::Load(system_, host_, out, id, useHost).ToUtf8();
  }
  FakeSystem system_;
  RecordingHost host_;
};

TEST_F(StringLookupTest, EntryCountsItsOwnZeroAndTheTextEndsThere) {
  const std::pair<std::u16string, std::u16string> cases[] = {
      {u"Done\0"s, u"Done"}, {u"Done"s, u"Done"}, {u"\0"s, u""}, {u"730\0" u"750\0"s, u"730"}};
  for (const auto& [entry, visible] : cases) EXPECT_EQ(StringLookup::VisibleText(entry), visible);

  system_.SetResourceString(6, u"Hotovo\0"s);
  MString out;
  StringLookup::Load(system_, host_, out, 6, true);
  EXPECT_EQ(out.Length(), 6);
  EXPECT_EQ(system_.LastStringModule(), &host_.moduleTag) << "the host's module, not the running program's";
  EXPECT_TRUE(host_.asked.empty());
}

TEST_F(StringLookupTest, AbsentIdAsksTheHostWithoutFallbackOrShowsTheMarker) {
  EXPECT_EQ(Load(15, true), "from the host");
  EXPECT_EQ(host_.asked, (std::vector<std::pair<uint32_t, int32_t>>{{15, 0}}));
  EXPECT_EQ(Load(15, false), "MISSING LOCALIZATION");
  EXPECT_EQ(host_.asked.size(), 1u);
}

TEST_F(StringLookupTest, LookupWithoutAHostReadsTheRunningProgramOrShowsTheMarker) {
  EXPECT_EQ(StringLookup::LoadOwn(system_, 170), u"MISSING LOCALIZATION");
  system_.SetResourceString(170, u"Checks for player updates\0"s);
  EXPECT_EQ(StringLookup::LoadOwn(system_, 170), u"Checks for player updates");
  EXPECT_EQ(system_.LastStringModule(), nullptr);
}

}  // namespace
