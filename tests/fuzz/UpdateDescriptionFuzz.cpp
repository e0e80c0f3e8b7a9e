// The update server's text as the broker scans it: the meta block, the
// update version and the block's decoding, over any bytes widened one by one.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "delivery/UpdateDescription.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::u16string text(data, data + size);
  std::u16string block, version;
  if (SASM::UpdateDescription::ExtractMetaBlock(text, block)) {
    if (text.find(block) == std::u16string::npos) abort();
    // Decoding never lengthens: a quote stays one unit and every entity shrinks.
    if (SASM::UpdateDescription::DecodeMetaBlock(block).size() > block.size()) abort();
  }
  if (SASM::UpdateDescription::ExtractUpdateVersion(text, version) && text.find(version) == std::u16string::npos)
    abort();
  if (SASM::UpdateDescription::DecodeMetaBlock(text).size() > text.size()) abort();
  return 0;
}
