#pragma once
// The internet marks through the platform's zone and attachment services.
#include "engine/win32/WindowsApi.h"

#include <shobjidl.h>

#include "broker/InternetMarkPlatform.h"
#include "engine/win32/ComPtr.h"

namespace SASM {

class Win32InternetMarkPlatform : public InternetMarkPlatform {
 public:
  void MarkFromInternet(const char16_t* path) override;
  void MarkAsAttachment(const char16_t* path) override;
  int32_t InitializeCom() override;
  void UninitializeCom() override;
  int32_t CreateAttachmentServices(uint32_t classContext) override;
  int32_t SetLocalPath(const char16_t* path) override;
  int32_t SetReferrer(const char16_t* url) override;
  int32_t SetSource(const char16_t* url) override;
  int32_t Save() override;
  void ReleaseAttachmentServices() override;

 private:
  ComPtr<IAttachmentExecute> attachment_;
};

}  // namespace SASM
