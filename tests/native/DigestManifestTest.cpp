#include "delivery/DigestManifest.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace SASM {
namespace {

using Names = std::vector<std::string_view>;

TEST(DigestManifest, ReadsReferencesInOrderAndTheLastValue) {
  const std::string text =
      "<Signature>\r\n"
      "<Reference URI=\"LumenSample.exe\" />\r\n"
      "  <Reference URI=\"indented.dll\" />\r\n"  // not in the first column
      "<Reference URI=\"data\\levels.bin\" />\r\n"
      "<DigestValue>first</DigestValue>\r\n"
      "<DigestValue>second==</DigestValue>\r\n"
      "<reference URI=\"lower.case\" />\r\n";
  DigestManifest manifest;
  DigestManifest::ParseDigestManifest(text, manifest);
  EXPECT_EQ(manifest.ReferenceNames(), (Names{"LumenSample.exe", "data\\levels.bin"}));
  EXPECT_STREQ(manifest.digestValue(), "second==");
  // Each name with its NUL, the list ended by an empty string.
  EXPECT_EQ(manifest.used(), 16u + 16u);
  EXPECT_EQ(std::string(manifest.references(), manifest.used() + 1),
            std::string("LumenSample.exe\0data\\levels.bin\0\0", 33));
}

TEST(DigestManifest, ClosingsAreLookedForAtTheirFixedDistance) {
  DigestManifest lf;
  DigestManifest::ParseDigestManifest("<Reference URI=\"a.exe\" />\n<DigestValue>abc</DigestValue>\n", lf);
  EXPECT_EQ(lf.used(), 0u);
  EXPECT_STREQ(lf.digestValue(), "");

  DigestManifest edges;
  DigestManifest::ParseDigestManifest(
      "<Reference URI=\"\" />\r\n"                  // no name
      "<DigestValue></DigestValue>\r\n"             // no text
      "<Reference URI=\"x\" /> \r\n"                // one byte too many
      "<DigestValue>kept</DigestValue>?\n"          // the byte before LF is never looked at
      "<Reference URI=\"last\" />\r",               // the text's end ends the line
      edges);
  EXPECT_EQ(edges.ReferenceNames(), (Names{"last"}));
  EXPECT_STREQ(edges.digestValue(), "kept");
}

TEST(DigestManifest, ReferenceBufferGrowsByTheRule) {
  DigestManifest manifest;
  const std::string small(10, 'a');
  DigestManifest::ParseDigestManifest("<Reference URI=\"" + small + "\" />\r\n", manifest);
  EXPECT_EQ(manifest.capacity(), 1024u);

  // 1,100 bytes of name need 1,102: twice 1,024 is enough.
  DigestManifest doubled;
  const std::string line1 = "<Reference URI=\"" + std::string(1000, 'b') + "\" />\r\n";
  const std::string line2 = "<Reference URI=\"" + std::string(99, 'c') + "\" />\r\n";
  DigestManifest::ParseDigestManifest(line1 + line2, doubled);
  EXPECT_EQ(doubled.used(), 1001u + 100u);
  EXPECT_EQ(doubled.capacity(), 2048u);

  // A first name of 3,000 bytes needs 3,002: more than 1,024, so twice what is needed.
  DigestManifest large;
  DigestManifest::ParseDigestManifest("<Reference URI=\"" + std::string(3000, 'd') + "\" />\r\n", large);
  EXPECT_EQ(large.capacity(), 6004u);
  EXPECT_EQ(large.ReferenceNames().at(0).size(), 3000u);
}

TEST(DigestManifest, ValueThatCannotFitItsFieldLeavesItEmpty) {
  const std::string fits(44, 'Q');
  DigestManifest manifest;
  DigestManifest::ParseDigestManifest("<DigestValue>" + fits + "</DigestValue>\r\n", manifest);
  EXPECT_EQ(std::string(manifest.digestValue()), fits);
  // A longer value, signed or not, is never cut down to one that could match.
  DigestManifest::ParseDigestManifest("<DigestValue>" + fits + "X</DigestValue>\r\n", manifest);
  EXPECT_STREQ(manifest.digestValue(), "");
  DigestManifest::ParseDigestManifest("<DigestValue>" + std::string(100000, 'Z') + "</DigestValue>\r\n", manifest);
  EXPECT_STREQ(manifest.digestValue(), "");
}

}  // namespace
}  // namespace SASM
