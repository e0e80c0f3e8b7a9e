#pragma once
// The enterprise identities of the server process or of the calling client,
// read from the token once. A list that can't be read is empty.
#include <cstdint>
#include <memory>
#include <string_view>

#include "broker/EnterpriseProtectionPlatform.h"

namespace SASM {

class EnterpriseIdentityList {
 public:
  static constexpr uint32_t kServerProcess = 0;
  static constexpr uint32_t kCallingClient = 1;

  static constexpr int32_t kInsufficientBuffer = static_cast<int32_t>(0x8007007A);
  static constexpr int32_t kInvalidArgument = static_cast<int32_t>(0x80070057);
  // What the second call gets when the first one only said the argument was wrong.
  static constexpr uint32_t kFallbackBytes = 260;

  // Empty.
  EnterpriseIdentityList() = default;
  // Reads the identities of the process (kServerProcess) or, impersonating
  // it, of the client whose call is running (kCallingClient).
  EnterpriseIdentityList(EnterpriseProtectionPlatform& platform, uint32_t impersonate);
  EnterpriseIdentityList(EnterpriseIdentityList&&) noexcept = default;
  EnterpriseIdentityList& operator=(EnterpriseIdentityList&&) noexcept = default;

  uint32_t Impersonate() const { return impersonate_; }
  uint32_t Count() const { return count_; }
  bool IsEmpty() const { return count_ == 0; }
  // A count above 0 and a first string that isn't empty.
  bool HasIdentity() const { return count_ > 0 && !Identity(0).empty(); }
  std::u16string_view Identity(uint32_t index) const;
  // The same length and the same characters, case counting, as one of the list.
  bool Contains(std::u16string_view identity) const;

 private:
  uint32_t impersonate_ = kServerProcess;
  uint32_t count_ = 0;
  uint32_t bytes_ = 0;
  // The block as SrpGetEnterpriseIds filled it: pointers, then the strings.
  std::unique_ptr<uint8_t[]> block_;
};

}  // namespace SASM
