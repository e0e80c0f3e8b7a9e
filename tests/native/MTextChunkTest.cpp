#include "ui/MTextChunk.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace SASM;

namespace {

// One line a run: text, then the flags that differ from a plain run.
std::vector<std::string> Runs(const char16_t* text) {
  std::vector<std::string> lines;
  for (const MTextChunk& chunk : MTextChunk::Parse(MString(text), true, false, 0x123456)) {
    std::string line = "\"" + chunk.text.ToUtf8() + "\"";
    if (chunk.linkKind) line += " link" + std::to_string(chunk.linkKind) + "=" + chunk.href.ToUtf8();
    if (chunk.bold) line += " bold";
    if (chunk.newLine) line += " newline";
    if (chunk.spacing) line += " spacing" + std::to_string(chunk.spacing);
    lines.push_back(line);
  }
  return lines;
}

using Lines = std::vector<std::string>;

TEST(MTextChunkParse, PlainTextIsOneRunInThePlainColourWithItsMarkupShown) {
  std::vector<MTextChunk> chunks = MTextChunk::Parse(MString(u"a <b>c</b>"), false, true, 0x123456);
  ASSERT_EQ(chunks.size(), 1u);
  EXPECT_EQ(chunks[0].text.ToUtf8(), "a <b>c</b>");
  EXPECT_TRUE(chunks[0].bold);
  EXPECT_EQ(chunks[0].color, 0x123456u);
  EXPECT_EQ(MTextChunk::Parse(MString(u"x"), true, true, 0x123456)[0].color, MTextChunk::kWhite);
}

TEST(MTextChunkParse, LinksTakeTheFirstQuotedValueAndCloseWithTheirTag) {
  EXPECT_EQ(Runs(u"see <a class='x' href=\"http://h.example/\">here</a> now"),
            (Lines{"\"see \"", "\"here\" link1=x", "\" now\""}));
  EXPECT_EQ(Runs(u"<a href=\"http://h.example/\">go</A>"), (Lines{"\"go\" link1=http://h.example/"}));
  // Without a quote the address is empty; an unclosed quote runs to the tag's end.
  EXPECT_EQ(Runs(u"<a href=x>go</a>"), (Lines{"\"go\" link1="}));
  EXPECT_EQ(Runs(u"<a href=\"open>go"), (Lines{"\"go\" link1=open"}));
  EXPECT_EQ(Runs(u"<ncp>panel</ncp>!"), (Lines{"\"panel\" link2=", "\"!\""}));
  EXPECT_FALSE(MTextChunk::Parse(MString(u"<a>x</a>"), true, false, 0)[0].IsLink());
  EXPECT_TRUE(MTextChunk::Parse(MString(u"<ncp>x</ncp>"), true, false, 0)[0].IsLink());
}

TEST(MTextChunkParse, BreaksBoldAndEntitiesAsWritten) {
  EXPECT_EQ(Runs(u"a<strong>b</strong>c &amp;"), (Lines{"\"a\"", "\"b\" bold", "\"c &amp;\""}));
  // A line feed marks the run before it; a break tag, the run after it.
  EXPECT_EQ(Runs(u"one\ntwo<br>three<BR/>four"),
            (Lines{"\"one\" newline", "\"two\"", "\"three\" newline", "\"four\" newline"}));
  // Read up to the first ">": one tag named br, so one break.
  EXPECT_EQ(Runs(u"x<br/<br/>y"), (Lines{"\"x\"", "\"y\" newline"}));
  // A break with nothing after it still makes an empty run when another break follows.
  EXPECT_EQ(Runs(u"<br><br>z"), (Lines{"\"\" newline", "\"z\" newline"}));
  EXPECT_EQ(Runs(u"<unknown attr='1'>q<strong"), (Lines{"\"q\""}));
}

TEST(MTextChunkParse, ListItemsGetABulletAndTheListsEndSpacesTheNextRun) {
  EXPECT_EQ(Runs(u"<ul><li>one</li><li>two</li></ul>after"),
            (Lines{"\"\u2022 one\" newline spacing8", "\"\u2022 two\" newline spacing8", "\"after\" newline spacing8"}));
  // A bullet before any run has nothing to mark.
  EXPECT_EQ(Runs(u"<li>"), Lines{});
}

}  // namespace
