#pragma once
// Verifies a message only when the test has listed it, and hands out the
// content listed with it.
#include <map>
#include <string>

#include "broker/SignedMessageCheck.h"

namespace SASM {

class FakeSignedMessageCheck : public SignedMessageCheck {
 public:
  std::map<std::string, std::string> signedContents;
  int calls = 0;

  bool Verify(const uint8_t* message, size_t size, std::vector<uint8_t>& content) override {
    ++calls;
    auto known = signedContents.find(std::string(reinterpret_cast<const char*>(message), size));
    if (known == signedContents.end()) return false;
    content.assign(known->second.begin(), known->second.end());
    return true;
  }
};

}  // namespace SASM
