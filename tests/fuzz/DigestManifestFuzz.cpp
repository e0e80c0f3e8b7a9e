// The digest file's text as a signed file might hold it: any bytes at all.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "delivery/DigestManifest.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  SASM::DigestManifest manifest;
  SASM::DigestManifest::ParseDigestManifest(std::string_view(reinterpret_cast<const char*>(data), size), manifest);
  if (std::strlen(manifest.digestValue()) >= SASM::DigestManifest::kDigestValueField) std::abort();
  if (manifest.used() > manifest.capacity()) std::abort();
  size_t listed = 0;
  for (std::string_view name : manifest.ReferenceNames()) listed += name.size() + 1;
  if (listed != manifest.used()) std::abort();
  return 0;
}
