#include "broker/win32/Win32SignedMessageCheck.h"

#include <cstdint>

#include "delivery/AddOnAnchor.h"
#include "delivery/ByteBuffer.h"
#include "delivery/win32/Win32ProductFiles.h"
#include "delivery/win32/Win32SignedMessageVerifier.h"
#include "engine/HostCallbacks.h"
#include "engine/MString.h"

namespace SASM {

bool Win32SignedMessageCheck::Verify(const uint8_t* message, size_t size, std::vector<uint8_t>& content) {
  if (!message || size == 0 || size > UINT32_MAX) return false;
  // The same anchor as add-on downloads: the host's override file, else the built-in authority.
  MString overridePath;
  uint8_t flag = 0;
  if (host_) host_->GetDownloadSettings(overridePath, flag);
  Win32ProductFiles files;
  ByteBuffer anchor;
  if (!AddOnAnchor::LoadAnchor(files, overridePath.View(), anchor) || anchor.size() > UINT32_MAX) return false;
  Win32SignedMessageVerifier verifier;
  ByteBuffer signedContent;
  if (!verifier.VerifySignedMessage(message, static_cast<uint32_t>(size), signedContent, anchor.data(),
                                    static_cast<uint32_t>(anchor.size())))
    return false;
  content.assign(signedContent.data(), signedContent.data() + signedContent.size());
  return true;
}

}  // namespace SASM
