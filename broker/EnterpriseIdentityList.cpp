#include "broker/EnterpriseIdentityList.h"

#include <cstring>
#include <new>

namespace SASM {

EnterpriseIdentityList::EnterpriseIdentityList(EnterpriseProtectionPlatform& platform, uint32_t impersonate)
    : impersonate_(impersonate) {
  // No "srpapi.dll": no identities anywhere.
  if (!platform.CanGetEnterpriseIds()) return;
  bool impersonating = impersonate == kCallingClient;
  if (impersonating && platform.ImpersonateClient() < 0) return;

  EnterpriseProtectionPlatform::Token token = nullptr;
  bool opened = impersonating ? platform.OpenThreadToken(EnterpriseProtectionPlatform::kTokenQuery, token)
                              : platform.OpenProcessToken(EnterpriseProtectionPlatform::kTokenQuery, token);
  if (opened) {
    uint32_t bytes = 0;
    uint32_t count = 0;
    int32_t result = platform.GetEnterpriseIds(token, bytes, nullptr, count);
    uint32_t retryBytes = 0;
    bool retry = false;
    if (result == kInsufficientBuffer && count != 0) {
      retryBytes = bytes;
      retry = true;
    } else if (result == kInvalidArgument) {
      retryBytes = kFallbackBytes;
      retry = true;
    }
    if (retry) {
      std::unique_ptr<uint8_t[]> block(new (std::nothrow) uint8_t[retryBytes == 0 ? 1 : retryBytes]());
      if (block) {
        bytes = retryBytes;
        count = 0;
        if (platform.GetEnterpriseIds(token, bytes, block.get(), count) >= 0) {
          // Never more strings than the block has room for pointers.
          bytes_ = retryBytes;
          count_ = count;
          if (count_ > bytes_ / sizeof(const char16_t*)) count_ = bytes_ / sizeof(const char16_t*);
          block_ = std::move(block);
        }
      }
    }
    platform.CloseToken(token);
  }
  if (impersonating) platform.RevertToSelf();
}

std::u16string_view EnterpriseIdentityList::Identity(uint32_t index) const {
  if (index >= count_ || !block_) return {};
  const char16_t* text = nullptr;
  std::memcpy(&text, block_.get() + index * sizeof(text), sizeof(text));
  return text ? std::u16string_view(text) : std::u16string_view();
}

bool EnterpriseIdentityList::Contains(std::u16string_view identity) const {
  for (uint32_t i = 0; i < count_; ++i) {
    if (Identity(i) == identity) return true;
  }
  return false;
}

}  // namespace SASM
