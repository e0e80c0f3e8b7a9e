#include "broker/win32/Win32InternetMarkPlatform.h"

#include "broker/win32/LumenBrokerAttachmentExecute.h"
#include "broker/win32/LumenBrokerZoneIdentifier.h"

namespace SASM {

namespace {

const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

}  // namespace

void Win32InternetMarkPlatform::MarkFromInternet(const char16_t* path) { LumenBrokerZoneIdentifier().Mark(Wide(path)); }

void Win32InternetMarkPlatform::MarkAsAttachment(const char16_t* path) {
  LumenBrokerAttachmentExecute().Mark(Wide(path));
}

int32_t Win32InternetMarkPlatform::InitializeCom() { return CoInitialize(nullptr); }

void Win32InternetMarkPlatform::UninitializeCom() { CoUninitialize(); }

int32_t Win32InternetMarkPlatform::CreateAttachmentServices(uint32_t classContext) {
  return CoCreateInstance(LumenBrokerAttachmentExecute::kAttachmentServices, nullptr, classContext,
                          IID_IAttachmentExecute, attachment_.receiveVoid());
}

int32_t Win32InternetMarkPlatform::SetLocalPath(const char16_t* path) {
  return attachment_ ? attachment_->SetLocalPath(Wide(path)) : E_POINTER;
}

int32_t Win32InternetMarkPlatform::SetReferrer(const char16_t* url) {
  return attachment_ ? attachment_->SetReferrer(Wide(url)) : E_POINTER;
}

int32_t Win32InternetMarkPlatform::SetSource(const char16_t* url) {
  return attachment_ ? attachment_->SetSource(Wide(url)) : E_POINTER;
}

int32_t Win32InternetMarkPlatform::Save() { return attachment_ ? attachment_->Save() : E_POINTER; }

void Win32InternetMarkPlatform::ReleaseAttachmentServices() { attachment_.reset(); }

}  // namespace SASM
