#include <gtest/gtest.h>

#include <string>

#include "delivery/UpdateDescription.h"
#include "engine/MString.h"

using namespace SASM;

namespace {

std::string Utf8(const std::u16string& text) { return MString(std::u16string_view(text)).ToUtf8(); }

// The block's text, or "<none>".
std::string Meta(std::u16string_view text) {
  std::u16string block;
  return UpdateDescription::ExtractMetaBlock(text, block) ? Utf8(block) : "<none>";
}

std::string Version(std::u16string_view text) {
  std::u16string version;
  return UpdateDescription::ExtractUpdateVersion(text, version) ? Utf8(version) : "<none>";
}

TEST(UpdateDescription, MetaBlockIsTheTextAfterTheFirstMetaTagUpToItsEndMarkWithInnerTagsKept) {
  EXPECT_EQ(Meta(u"<x><meta name=\"a\">Lumen <b>28</b> is out</meta><meta>second</meta>"), "Lumen <b>28</b> is out");
  // Any tag that begins with the word counts, and the first end mark closes it.
  EXPECT_EQ(Meta(u"<metadata>one</meta>two</meta>"), "one");
  EXPECT_EQ(Meta(u"<meta></meta>"), "");
  EXPECT_EQ(Meta(u"<update version=\"1\"/>"), "<none>");
  EXPECT_EQ(Meta(u"<meta>never closed"), "<none>");
  EXPECT_EQ(Meta(u"text <meta"), "<none>");
  EXPECT_EQ(Meta(u"<META>upper</META>"), "<none>");
}

TEST(UpdateDescription, VersionIsBetweenTheQuotesAfterVersionInsideTheFirstUpdateTag) {
  EXPECT_EQ(Version(u"<root><update vendor=\"v\" version=\"28.0.0.130\" size=\"9\"/></root>"), "28.0.0.130");
  EXPECT_EQ(Version(u"<updates version=\"4\">"), "4");
  // Later update tags are searched when an earlier one has no version.
  EXPECT_EQ(Version(u"<update size=\"1\"><update version=\"5\">"), "5");
  // The quotes are simply the next two, wherever they are.
  EXPECT_EQ(Version(u"<update version=6 title=\"seven\">"), "seven");
  EXPECT_EQ(Version(u"<update><item version=\"3\"/></update>"), "<none>");
  EXPECT_EQ(Version(u"<update version=\"8>"), "<none>");
  EXPECT_EQ(Version(u"<meta version=\"9\">"), "<none>");
  EXPECT_EQ(Version(u"<update version"), "<none>");
}

TEST(UpdateDescription, PlainQuotesBecomeSingleBeforeEntitiesAreDecoded) {
  EXPECT_EQ(Utf8(UpdateDescription::DecodeMetaBlock(u"Say \"hi\" to &quot;Lumen&quot; &apos;28&apos;&nbsp;now")),
            "Say 'hi' to \"Lumen\" '28' now");
}

}  // namespace
