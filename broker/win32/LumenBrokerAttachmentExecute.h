#pragma once
// Marks a file chosen in a save dialog through the platform's attachment
// services, with an internet source, so the shell treats it as downloaded.
#include "engine/win32/WindowsApi.h"

#include "broker/win32/ComInitializer.h"

namespace SASM {

class LumenBrokerAttachmentExecute {
 public:
  // {4125DD96-E03A-4103-8F70-E0597D803B9C}
  static const CLSID kAttachmentServices;
  // Every server context: in-process, local, remote and handler.
  static constexpr DWORD kClassContext = 23;
  static constexpr const wchar_t* kSource = L"http://";

  LumenBrokerAttachmentExecute() = default;
  LumenBrokerAttachmentExecute(const LumenBrokerAttachmentExecute&) = delete;
  LumenBrokerAttachmentExecute& operator=(const LumenBrokerAttachmentExecute&) = delete;

  // Does nothing for a file already marked with a non-zero zone, or unless
  // this object's COM came up.
  void Mark(const wchar_t* path);

 private:
  ComInitializer com_;
};

}  // namespace SASM
