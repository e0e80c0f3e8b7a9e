#pragma once
// Records access-list changes for native tests; any path can be told to fail.
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/IAccessControl.h"
#include "engine/MString.h"

namespace SASM {

class FakeAccessControl : public IAccessControl {
 public:
  // "Ensure <path> type=<t> account=<a> mask=<hex>" or "Remove ...", one line per call.
  const std::vector<std::string>& Log() const { return log_; }
  void FailPath(std::u16string_view path, int32_t status) { failures_[std::u16string(path)] = status; }

  int32_t EnsureAccess(std::u16string_view path, int32_t objectType, int32_t account, uint32_t mask) override {
    return Record("Ensure", path, objectType, account, mask);
  }
  int32_t RemoveAccess(std::u16string_view path, int32_t objectType, int32_t account, uint32_t mask) override {
    return Record("Remove", path, objectType, account, mask);
  }

 private:
  int32_t Record(const char* operation, std::u16string_view path, int32_t objectType, int32_t account, uint32_t mask) {
    char numbers[64];
    std::snprintf(numbers, sizeof(numbers), " type=%d account=%d mask=%X", objectType, account, mask);
    log_.push_back(std::string(operation) + " " + MString(path).ToUtf8() + numbers);
    auto failure = failures_.find(std::u16string(path));
    return failure == failures_.end() ? 0 : failure->second;
  }

  std::vector<std::string> log_;
  std::map<std::u16string, int32_t> failures_;
};

}  // namespace SASM
