#pragma once
// The marks that say a file came from the internet: the zone identifier of
// files the broker opens for writing, the attachment mark of files chosen in
// a save dialog, and the platform's attachment services that
// BrokerMarkFileUnsafe drives step by step.
#include <cstdint>

namespace SASM {

class InternetMarkPlatform {
 public:
  virtual ~InternetMarkPlatform() = default;

  // LumenBrokerZoneIdentifier::Mark under a COM initialiser of its own.
  virtual void MarkFromInternet(const char16_t* path) = 0;
  // LumenBrokerAttachmentExecute::Mark under a COM initialiser of its own.
  virtual void MarkAsAttachment(const char16_t* path) = 0;

  // CoInitialize and CoUninitialize.
  virtual int32_t InitializeCom() = 0;
  virtual void UninitializeCom() = 0;
  // The attachment services object, created with this class context and held
  // until ReleaseAttachmentServices.
  virtual int32_t CreateAttachmentServices(uint32_t classContext) = 0;
  virtual int32_t SetLocalPath(const char16_t* path) = 0;
  virtual int32_t SetReferrer(const char16_t* url) = 0;
  virtual int32_t SetSource(const char16_t* url) = 0;
  virtual int32_t Save() = 0;
  virtual void ReleaseAttachmentServices() = 0;
};

}  // namespace SASM
