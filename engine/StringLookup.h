#pragma once
// The one road by which the installer's words are found: the module's own
// string table, then the host's, then a marker that shows where a text is
// missing. Which language answers is the platform's choice (the thread's).
#include <cstdint>
#include <string>
#include <string_view>

#include "engine/MString.h"

namespace SASM {

class HostCallbacks;
class ISystem;

class StringLookup {
 public:
  static constexpr char16_t kMissing[] = u"MISSING LOCALIZATION";

  // The table's entries count their own terminating zero, so the text ends at
  // the first zero unit (or with the entry, should it hold none).
  static std::u16string_view VisibleText(std::u16string_view entry);

  // The shim's lookup in the host's resource module. An absent id goes to the
  // host's own table, asked without fallback, when useHost is set; otherwise it
  // gives the marker.
  static MString& Load(ISystem& system, HostCallbacks& host, MString& out, uint32_t id, bool useHost);

  // For code that runs with no host: the running program's own table, or the marker.
  static std::u16string LoadOwn(ISystem& system, uint32_t id);
};

}  // namespace SASM
