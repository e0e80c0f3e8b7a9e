#include "tests/fakes/FakeInternetMarkPlatform.h"

#include "engine/MString.h"

namespace SASM {

int32_t FakeInternetMarkPlatform::Add(const char* step, const char16_t* text) {
  log_.push_back(std::string(step) + " " + (text ? MString(text).ToUtf8() : std::string("<null>")));
  return 0;
}

}  // namespace SASM
