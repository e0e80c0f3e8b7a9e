#include "delivery/DigestManifest.h"

#include <cstring>
#include <new>

namespace SASM {
namespace {

constexpr std::string_view kReferenceOpening = "<Reference URI=\"";
// Four bytes and the CR before the LF.
constexpr std::string_view kReferenceClosing = "\" />\r";
constexpr std::string_view kValueOpening = "<DigestValue>";
// Fourteen bytes, found fifteen before the line's end: the byte after them is not looked at.
constexpr std::string_view kValueClosing = "</DigestValue>";
constexpr size_t kValueClosingDistance = 15;

}  // namespace

void DigestManifest::AddReference(std::string_view name) {
  const uint64_t needed = used_ + name.size() + 2;
  if (needed > capacity_) {
    uint64_t grown = capacity_ == 0 ? 1024 : capacity_ * 2;
    if (grown < needed) grown = needed * 2;
    std::unique_ptr<char[]> larger(new (std::nothrow) char[grown]);
    // Without memory the name is left out, and the hash over the list cannot match.
    if (!larger) return;
    if (used_ > 0) std::memcpy(larger.get(), references_.get(), used_);
    references_ = std::move(larger);
    capacity_ = grown;
  }
  std::memcpy(references_.get() + used_, name.data(), name.size());
  used_ += name.size();
  references_[used_++] = '\0';
  references_[used_] = '\0';
}

void DigestManifest::SetDigestValue(std::string_view text) {
  // The file is signed, but a value longer than the field would write past it. Such a value
  // is no SHA-256 in Base64 and must not match one when cut short, so it leaves the field empty.
  if (text.size() >= kDigestValueField) {
    digestValue_[0] = '\0';
    return;
  }
  std::memcpy(digestValue_, text.data(), text.size());
  digestValue_[text.size()] = '\0';
}

void DigestManifest::ParseDigestManifest(std::string_view text, DigestManifest& manifest) {
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    const std::string_view line = text.substr(start, end - start);
    if (line.substr(0, kReferenceOpening.size()) == kReferenceOpening) {
      const size_t nameStart = kReferenceOpening.size();
      if (line.size() >= kReferenceClosing.size() && line.size() - kReferenceClosing.size() > nameStart &&
          line.substr(line.size() - kReferenceClosing.size()) == kReferenceClosing)
        manifest.AddReference(line.substr(nameStart, line.size() - kReferenceClosing.size() - nameStart));
    } else if (line.substr(0, kValueOpening.size()) == kValueOpening) {
      const size_t valueStart = kValueOpening.size();
      if (line.size() >= kValueClosingDistance && line.size() - kValueClosingDistance > valueStart &&
          line.substr(line.size() - kValueClosingDistance, kValueClosing.size()) == kValueClosing)
        manifest.SetDigestValue(line.substr(valueStart, line.size() - kValueClosingDistance - valueStart));
    }
    start = end + 1;
  }
}

std::vector<std::string_view> DigestManifest::ReferenceNames() const {
  std::vector<std::string_view> names;
  for (uint64_t at = 0; at < used_;) {
    const std::string_view name(references_.get() + at);
    names.push_back(name);
    at += name.size() + 1;
  }
  return names;
}

}  // namespace SASM
