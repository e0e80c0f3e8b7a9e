#include "tests/fakes/FakeInternetMarkPlatform.h"

#include "engine/MString.h"

namespace SASM {

int32_t FakeInternetMarkPlatform::InitializeCom() {
  log_.push_back("Initialize");
  return initializeResult_;
}

int32_t FakeInternetMarkPlatform::CreateAttachmentServices(uint32_t classContext) {
  log_.push_back("Create " + std::to_string(classContext));
  return createResult_;
}

int32_t FakeInternetMarkPlatform::Save() {
  log_.push_back("Save");
  return saveResult_;
}

int32_t FakeInternetMarkPlatform::Add(const char* step, const char16_t* text) {
  log_.push_back(std::string(step) + " " + (text ? MString(text).ToUtf8() : std::string("<null>")));
  return 0;
}

}  // namespace SASM
