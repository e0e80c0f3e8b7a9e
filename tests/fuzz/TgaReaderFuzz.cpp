// The skin image reader over arbitrary resource bytes: header, run-length and
// raw packets, any depth. The pixel buffer is sized from the header as the
// loader sizes its bitmap, capped so that a fuzzed size cannot exhaust memory.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ui/TgaReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  SASM::TgaReader::Header header;
  if (!SASM::TgaReader::ReadHeader(data, size, header)) return 0;
  size_t total = static_cast<size_t>(header.width) * header.height;
  if (total > (1u << 18)) total = 1u << 18;
  std::vector<uint8_t> pixels(total * 4);
  SASM::TgaReader::Decode(data, size, header, pixels.data(), total);
  return 0;
}
