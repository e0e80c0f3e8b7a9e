#include "tests/fakes/FakeAccessControl.h"

#include <cstdio>

#include "engine/MString.h"

namespace SASM {

int32_t FakeAccessControl::Record(const char* operation, std::u16string_view path, int32_t objectType, int32_t account,
                                  uint32_t mask) {
  char numbers[64];
  std::snprintf(numbers, sizeof(numbers), " type=%d account=%d mask=%X", objectType, account, mask);
  log_.push_back(std::string(operation) + " " + MString(path).ToUtf8() + numbers);
  auto failure = failures_.find(std::u16string(path));
  return failure == failures_.end() ? 0 : failure->second;
}

}  // namespace SASM
