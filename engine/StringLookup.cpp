#include "engine/StringLookup.h"

#include "engine/HostCallbacks.h"
#include "engine/ISystem.h"

namespace SASM {

std::u16string_view StringLookup::VisibleText(std::u16string_view entry) {
  size_t zero = entry.find(u'\0');
  return zero == std::u16string_view::npos ? entry : entry.substr(0, zero);
}

MString& StringLookup::Load(ISystem& system, HostCallbacks& host, MString& out, uint32_t id, bool useHost) {
  std::u16string entry;
  if (system.LoadResourceString(host.resourceModule, id, entry)) {
    out = MString(VisibleText(entry));
  } else if (useHost) {
    host.LoadStringFallback(out, id, 0);
  } else {
    out = MString(kMissing);
  }
  return out;
}

std::u16string StringLookup::LoadOwn(ISystem& system, uint32_t id) {
  std::u16string entry;
  // Null names the running program's own module.
  if (!system.LoadResourceString(nullptr, id, entry)) return kMissing;
  return std::u16string(VisibleText(entry));
}

}  // namespace SASM
