#pragma once
// Records the marks the broker asks for and the attachment service steps, in
// order, with answers a test can set.
#include <cstdint>
#include <string>
#include <vector>

#include "broker/InternetMarkPlatform.h"
#include "engine/MString.h"

namespace SASM {

class FakeInternetMarkPlatform : public InternetMarkPlatform {
 public:
  void SetCreateResult(int32_t result) { createResult_ = result; }
  void SetSaveResult(int32_t result) { saveResult_ = result; }

  // "Zone <path>", "Attachment <path>", "Initialize", "Create <context>",
  // "LocalPath <path>", "Referrer <url>", "Source <url>", "Save", "Release",
  // "Uninitialize", in UTF-8.
  const std::vector<std::string>& Log() const { return log_; }

  void MarkFromInternet(const char16_t* path) override { Add("Zone", path); }
  void MarkAsAttachment(const char16_t* path) override { Add("Attachment", path); }
  int32_t InitializeCom() override {
    log_.push_back("Initialize");
    return 0;
  }
  void UninitializeCom() override { log_.push_back("Uninitialize"); }
  int32_t CreateAttachmentServices(uint32_t classContext) override {
    log_.push_back("Create " + std::to_string(classContext));
    return createResult_;
  }
  int32_t SetLocalPath(const char16_t* path) override { return Add("LocalPath", path); }
  int32_t SetReferrer(const char16_t* url) override { return Add("Referrer", url); }
  int32_t SetSource(const char16_t* url) override { return Add("Source", url); }
  int32_t Save() override {
    log_.push_back("Save");
    return saveResult_;
  }
  void ReleaseAttachmentServices() override { log_.push_back("Release"); }

 private:
  int32_t Add(const char* step, const char16_t* text) {
    log_.push_back(std::string(step) + " " + (text ? MString(text).ToUtf8() : std::string("<null>")));
    return 0;
  }

  int32_t createResult_ = 0;
  int32_t saveResult_ = 0;
  std::vector<std::string> log_;
};

}  // namespace SASM
