#pragma once
// The parsed form of a product's digest file: the files it lists, in order,
// and the last digest value it gives. The text is read line by line, never as
// XML; only two line shapes mean anything.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace SASM {

class DigestManifest {
 public:
  // Room for the 44 characters of a Base64 SHA-256 and a NUL.
  static constexpr size_t kDigestValueField = 45;

  DigestManifest() = default;
  DigestManifest(const DigestManifest&) = delete;
  DigestManifest& operator=(const DigestManifest&) = delete;

  // Walks text, each line ending at LF or at the end of the text.
  static void ParseDigestManifest(std::string_view text, DigestManifest& manifest);

  // The names, each NUL-terminated, the whole ended by an empty string; null while empty.
  const char* references() const { return references_.get(); }
  uint64_t capacity() const { return capacity_; }
  // Bytes used, without the final NUL.
  uint64_t used() const { return used_; }
  std::vector<std::string_view> ReferenceNames() const;
  // NUL-terminated; empty when no line gave a value that fits the field.
  const char* digestValue() const { return digestValue_; }

 private:
  void AddReference(std::string_view name);
  void SetDigestValue(std::string_view text);

  std::unique_ptr<char[]> references_;
  uint64_t capacity_ = 0;
  uint64_t used_ = 0;
  char digestValue_[kDigestValueField] = {};
};

}  // namespace SASM
