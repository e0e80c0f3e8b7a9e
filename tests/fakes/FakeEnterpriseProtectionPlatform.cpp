#include "tests/fakes/FakeEnterpriseProtectionPlatform.h"

#include <cstring>
#include <thread>

#include "broker/BrokerFileProtectionInfo.h"

namespace SASM {

namespace {

constexpr int32_t kInsufficientBuffer = static_cast<int32_t>(0x8007007A);
constexpr int32_t kInvalidArgument = static_cast<int32_t>(0x80070057);

}  // namespace

bool FakeEnterpriseProtectionPlatform::OpenThreadToken(uint32_t access, Token& token) {
  // A thread that isn't impersonating has no token of its own.
  if (!impersonating_ || access != kTokenQuery) return false;
  ++openTokens_;
  token = &clientToken_;
  return true;
}

int32_t FakeEnterpriseProtectionPlatform::GetEnterpriseIds(Token token, uint32_t& bytes, void* block, uint32_t& count) {
  const std::vector<std::u16string>& identities = token == &clientToken_ ? client_ : process_;
  offeredBytes_.push_back(block ? bytes : 0);
  size_t needed = identities.size() * sizeof(const char16_t*);
  for (const std::u16string& identity : identities) needed += (identity.size() + 1) * sizeof(char16_t);
  if (!block) {
    if (sizeQueryInvalid_) return kInvalidArgument;
    count = static_cast<uint32_t>(identities.size());
    bytes = static_cast<uint32_t>(needed);
    return identities.empty() ? 0 : kInsufficientBuffer;
  }
  if (filledQueryResult_ < 0) return filledQueryResult_;
  if (bytes < needed) {
    bytes = static_cast<uint32_t>(needed);
    return kInsufficientBuffer;
  }
  // The platform's layout: the pointers first, then the strings they point at.
  auto* base = static_cast<uint8_t*>(block);
  auto* text = reinterpret_cast<char16_t*>(base + identities.size() * sizeof(const char16_t*));
  for (size_t i = 0; i < identities.size(); ++i) {
    const char16_t* start = text;
    std::memcpy(base + i * sizeof(start), &start, sizeof(start));
    std::memcpy(text, identities[i].c_str(), (identities[i].size() + 1) * sizeof(char16_t));
    text += identities[i].size() + 1;
  }
  count = static_cast<uint32_t>(identities.size());
  return 0;
}

void FakeEnterpriseProtectionPlatform::BeginProtectionQuery(const char16_t* path, BrokerFileProtectionInfo& info) {
  queried_.push_back(path);
  FileAnswer answer{Answer::kNotProtected, u"", 1};
  if (auto found = answers_.find(path); found != answers_.end()) answer = found->second;
  if (!async_) {
    Deliver(answer, info);
    return;
  }
  // The platform's completion runs on a thread of its own.
  std::thread([answer, &info] { Deliver(answer, info); }).detach();
}

void FakeEnterpriseProtectionPlatform::Deliver(const FileAnswer& answer, BrokerFileProtectionInfo& info) {
  switch (answer.answer) {
    case Answer::kProtected:
      info.OnQueryRunning();
      info.OnProtectionStatus(answer.status, answer.identity);
      break;
    case Answer::kNotProtected:
      info.OnQueryRunning();
      // FileProtectionStatus 1: Unprotected.
      info.OnProtectionStatus(1, u"");
      break;
    case Answer::kFailed:
      info.OnQueryFailed();
      break;
  }
}

}  // namespace SASM
