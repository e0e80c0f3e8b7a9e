#include "engine/SettingsTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using SASM::FindSetting;
using SASM::FindSettingByPrefix;
using SASM::LoadStringList;
using SASM::MString;
using SASM::MStringList;
using SASM::ParseSettings;
using SASM::SettingsNode;
using SASM::SettingsTree;

namespace {

using Names = std::vector<std::u16string>;

Names Chain(const SettingsNode* node) {
  Names names;
  for (; node; node = node->next) names.push_back(node->name.ToU16());
  return names;
}

const SettingsNode* Find(const SettingsTree& tree, const char16_t* key) { return FindSetting(tree, MString(key)); }

// Values of a key, or {"<missing>"} when the key isn't found.
Names Values(const SettingsTree& tree, const char16_t* key) {
  const SettingsNode* node = Find(tree, key);
  return node ? Chain(node->values) : Names{u"<missing>"};
}

struct SettingsTreeText : ::testing::Test {
  void Parse(const std::u16string& text) { ParseSettings(tree, MString(std::u16string_view(text))); }
  SettingsTree tree;
};

}  // namespace

TEST_F(SettingsTreeText, BraceWithoutKeyIsSkippedAndClosingBraceOrACharacterBelowNineEndsTheLevel) {
  Parse(u"{ A 1; } B 2;");
  EXPECT_EQ(Values(tree, u"A"), (Names{u"1"}));
  EXPECT_EQ(Values(tree, u"B"), (Names{u"<missing>"}));
  // A key closed by ";" no longer takes a block.
  Parse(u"A 1; { B 2; } C 3;");
  EXPECT_EQ(Values(tree, u"B"), (Names{u"2"}));
  EXPECT_EQ(Values(tree, u"C"), (Names{u"<missing>"}));

  Parse(u"G { X 1; \x01 Y 2; } H 3;");
  EXPECT_EQ(Values(tree, u"G.X"), (Names{u"1"}));
  EXPECT_EQ(Values(tree, u"G.Y"), (Names{u"<missing>"}));
  EXPECT_EQ(Values(tree, u"H"), (Names{u"<missing>"}));
}

TEST_F(SettingsTreeText, SecondBlockForTheSameKeyIsChainedAndKeyStaysOpen) {
  Parse(u"G { X 1; W 0; } { Y 2; } tail;");
  EXPECT_EQ(Chain(Find(tree, u"G")->children), (Names{u"W", u"X", u"Y"}));
  EXPECT_EQ(Values(tree, u"G.Y"), (Names{u"2"}));
  // Only ";" closes a key, so what follows a block is its values.
  EXPECT_EQ(Values(tree, u"G"), (Names{u"tail"}));
}

TEST_F(SettingsTreeText, AKeyWithFiftyThousandValuesKeepsThemAllInOrder) {
  std::u16string text = u"Many";
  for (int i = 0; i < 50000; ++i) text += u" v" + MString::FromNumber(i).ToU16();
  Parse(text + u";");
  const SettingsNode* many = Find(tree, u"Many");
  ASSERT_NE(many, nullptr);
  size_t count = 0;
  const SettingsNode* last = nullptr;
  for (const SettingsNode* value = many->values; value; value = value->next, ++count) last = value;
  EXPECT_EQ(count, 50000u);
  EXPECT_EQ(last->name.ToU16(), u"v49999");
}

TEST_F(SettingsTreeText, DeepNestingIsParsedUpToTheCapWithoutCrashing) {
  std::u16string text;
  for (int i = 0; i < 5000; ++i) text += u"K { ";
  text += u"V 1;";
  Parse(text);
  std::u16string key = u"K";
  for (int i = 1; i < 200; ++i) key += u".K";
  EXPECT_NE(Find(tree, key.c_str()), nullptr);
}

TEST_F(SettingsTreeText, FindTriesEverySiblingAndTheLaterDocumentFirst) {
  Parse(u"G { X 1; }; G { Y 2; };");
  EXPECT_EQ(Chain(tree.first->children), (Names{u"G", u"G"}));
  EXPECT_EQ(Values(tree, u"G.X"), (Names{u"1"}));
  EXPECT_EQ(Values(tree, u"G.Y"), (Names{u"2"}));
  EXPECT_EQ(Find(tree, u"G."), nullptr);

  Parse(u"K old; OnlyFirst 1;");
  Parse(u"K new;");
  EXPECT_EQ(Values(tree, u"K"), (Names{u"new"}));
  EXPECT_EQ(Values(tree, u"OnlyFirst"), (Names{u"1"}));
}

TEST_F(SettingsTreeText, PrefixLookupMatchesWhenTheKeyPartStartsWithTheName) {
  Parse(u"Conf { Lumen 1; }");
  const SettingsNode* node = FindSettingByPrefix(tree, MString(u"Conflicts.LumenPlayer"));
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->name.View(), u"Lumen");
  EXPECT_EQ(Find(tree, u"Conflicts.LumenPlayer"), nullptr);
  EXPECT_EQ(FindSettingByPrefix(tree, MString(u"Con.Lumen")), nullptr);
}

