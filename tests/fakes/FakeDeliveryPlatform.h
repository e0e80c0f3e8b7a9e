#pragma once
// Stand-ins for the signature check, the hash and zlib, in formats a test can
// write by hand:
//   signed message  "signed:" + content, good only under the trusted anchor
//   zlib stream     "z:" + the unpacked bytes
//   hash            a checksum of 32 bytes; its "Base64" is 44 hex digits of it
#include <string>

#include "delivery/IDigestPlatform.h"
#include "delivery/ISignedMessageVerifier.h"
#include "delivery/IUnpacker.h"

namespace SASM {

class FakeSignedMessageVerifier : public ISignedMessageVerifier {
 public:
  std::string trustedAnchor = "test anchor";
  std::string lastAnchor;
  int calls = 0;

  bool VerifySignedMessage(const uint8_t* message, uint32_t size, ByteBuffer& content, const uint8_t* anchor,
                           uint32_t anchorSize) override {
    ++calls;
    content.reset();
    if (!anchor) return false;
    lastAnchor.assign(reinterpret_cast<const char*>(anchor), anchorSize);
    const std::string text(reinterpret_cast<const char*>(message), size);
    if (lastAnchor != trustedAnchor || text.compare(0, 7, "signed:") != 0) return false;
    if (!content.Allocate(text.size() - 7)) return false;
    text.copy(reinterpret_cast<char*>(content.data()), text.size() - 7, 7);
    return true;
  }
  static std::string Sign(const std::string& content) { return "signed:" + content; }
};

class FakeUnpacker : public IUnpacker {
 public:
  bool Uncompress(uint8_t* output, uint32_t& size, const uint8_t* input, uint32_t inputSize) override {
    const std::string text(reinterpret_cast<const char*>(input), inputSize);
    if (text.compare(0, 2, "z:") != 0 || text.size() - 2 > size) return false;
    text.copy(reinterpret_cast<char*>(output), text.size() - 2, 2);
    size = static_cast<uint32_t>(text.size() - 2);
    return true;
  }
};

class FakeDigestPlatform : public IDigestPlatform {
 public:
  bool failBegin = false;

  bool BeginHash() override {
    fed_.clear();
    return !failBegin;
  }
  bool HashData(const uint8_t* data, size_t size) override {
    fed_.append(reinterpret_cast<const char*>(data), size);
    return true;
  }
  bool FinishHash(uint8_t (&hash)[kHashSize]) override {
    Checksum(fed_, hash);
    return true;
  }
  bool ToBase64(const uint8_t* data, size_t size, std::string& text) override {
    static const char kDigits[] = "0123456789abcdef";
    text.clear();
    for (size_t i = 0; i < size && text.size() < 44; ++i) {
      text.push_back(kDigits[data[i] >> 4]);
      text.push_back(kDigits[data[i] & 15]);
    }
    return true;
  }
  // The text the store computes for these contents back to back.
  static std::string ValueOf(const std::string& contents) {
    uint8_t hash[kHashSize];
    Checksum(contents, hash);
    std::string text;
    FakeDigestPlatform().ToBase64(hash, kHashSize, text);
    return text;
  }

 private:
  static void Checksum(const std::string& bytes, uint8_t (&hash)[kHashSize]) {
    uint32_t state = 2166136261u;
    for (unsigned char c : bytes) state = (state ^ c) * 16777619u;
    for (size_t i = 0; i < kHashSize; ++i) {
      state = (state ^ static_cast<uint32_t>(i)) * 16777619u;
      hash[i] = static_cast<uint8_t>(state >> 24);
    }
  }
  std::string fed_;
};

}  // namespace SASM
