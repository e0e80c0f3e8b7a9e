#pragma once
// The few tags the broker reads from the update server's XML text. Everything
// else in the text is the server's; these scans are plain text scans, not a parser.
#include <string>
#include <string_view>

namespace SASM {

class UpdateDescription {
 public:
  // The text between the first tag that begins "<meta" (past its ">") and the
  // next "</meta". Tags inside are kept as text. False when there is no such
  // tag or its end never comes.
  static bool ExtractMetaBlock(std::u16string_view text, std::u16string& block);
  // In the first tag that begins "<update", the text between the two quote
  // marks that follow its first "version". False when there is none.
  static bool ExtractUpdateVersion(std::u16string_view text, std::u16string& version);
  // A meta block as the updater shows it. Plain double quotes become single
  // ones before the entities are decoded, so only "&quot;" yields a double quote.
  static std::u16string DecodeMetaBlock(std::u16string_view block);
  // Every occurrence of from, left to right, never rescanning what was put in.
  static void ReplaceAll(std::u16string& text, std::u16string_view from, std::u16string_view to);
};

}  // namespace SASM
