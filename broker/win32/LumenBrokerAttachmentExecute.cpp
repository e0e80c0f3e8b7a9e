#include "broker/win32/LumenBrokerAttachmentExecute.h"

#include <shobjidl.h>

#include "broker/win32/LumenBrokerZoneIdentifier.h"
#include "engine/win32/ComPtr.h"

namespace SASM {

const CLSID LumenBrokerAttachmentExecute::kAttachmentServices = {
    0x4125dd96, 0xe03a, 0x4103, {0x8f, 0x70, 0xe0, 0x59, 0x7d, 0x80, 0x3b, 0x9c}};

void LumenBrokerAttachmentExecute::Mark(const wchar_t* path) {
  if (!com_.Succeeded() || !path) return;
  uint32_t existing = 0;
  if (LumenBrokerZoneIdentifier::ReadMark(path, existing) && existing != 0) return;

  wchar_t full[MAX_PATH] = {};
  DWORD length = GetFullPathNameW(path, MAX_PATH, full, nullptr);
  if (length == 0 || length >= MAX_PATH) return;
  ComPtr<IAttachmentExecute> attachment;
  if (FAILED(CoCreateInstance(kAttachmentServices, nullptr, kClassContext, IID_IAttachmentExecute,
                              attachment.receiveVoid()))) {
    return;
  }
  attachment->SetLocalPath(full);
  attachment->SetSource(kSource);
  attachment->Save();
}

}  // namespace SASM
