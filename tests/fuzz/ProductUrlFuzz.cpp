// Download URLs and product names as a hostile client sends them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "delivery/AddOnNames.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string url(reinterpret_cast<const char*>(data), size);
  std::string host;
  std::string path;
  bool secure = false;
  if (SASM::AddOnNames::ParseProductUrl(url.c_str(), host, path, secure)) {
    // What was accepted is a single label under the domain, reached on a path.
    if (host.find('.') == 0 || host.size() > url.size() || path.empty() || path[0] != '/') std::abort();
  } else if (!host.empty() || !path.empty() || secure) {
    std::abort();
  }
  std::u16string name;
  for (size_t i = 0; i + 1 < size; i += 2) name.push_back(static_cast<char16_t>(data[i] | data[i + 1] << 8));
  if (SASM::AddOnNames::IsValidProductName(name.c_str())) {
    for (const char16_t* c = name.c_str(); *c; ++c) {
      if (*c == u'\\' || *c == u'/' || *c == u'.' || *c > 0x7F) std::abort();
    }
  }
  return 0;
}
