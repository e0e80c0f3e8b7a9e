#pragma once
// Marks a file the broker opened for writing as come from the internet zone,
// through the platform's persistent zone identifier. Where that class isn't
// registered (Wine) the same "Zone.Identifier" stream is written directly.
#include "engine/win32/WindowsApi.h"

#include <cstdint>

#include "broker/win32/ComInitializer.h"

namespace SASM {

class LumenBrokerZoneIdentifier {
 public:
  // {0968E258-16C7-4DBA-AA86-462DD61E31A3}
  static const CLSID kPersistentZoneIdentifier;

  LumenBrokerZoneIdentifier() = default;
  LumenBrokerZoneIdentifier(const LumenBrokerZoneIdentifier&) = delete;
  LumenBrokerZoneIdentifier& operator=(const LumenBrokerZoneIdentifier&) = delete;

  // Sets the internet zone unless the file already carries a mark of a
  // non-zero zone. Does nothing unless this object's COM came up.
  void Mark(const wchar_t* path);

  // Whether the file carries a mark, and of which zone; the question both
  // marking classes ask first. Needs COM on the calling thread.
  static bool ReadMark(const wchar_t* path, uint32_t& zone);

 private:
  ComInitializer com_;
};

}  // namespace SASM
