#pragma once
// Whether a window a client names may own a dialog or consent prompt of the
// server: it must belong to a process installed under Program Files, or to
// one of the few browser images that run from elsewhere.
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "broker/PathPlatform.h"
#include "engine/IProcesses.h"

namespace SASM {

class DialogOwnerPolicy {
 public:
  // CSIDL_PROGRAM_FILES and CSIDL_PROGRAM_FILESX86.
  static constexpr std::array<int32_t, 2> kInstalledFolders = {38, 42};
  // Compared without case.
  static constexpr std::array<std::u16string_view, 4> kAllowedImageNames = {
      u"microsoftedge.exe", u"microsoftedgecp.exe", u"spartan.exe", u"spartan_edge.exe"};

  DialogOwnerPolicy(PathPlatform& paths, IProcesses& processes) : paths_(paths), processes_(processes) {}

  // `window` is the client's 32-bit value as the server widened it.
  bool IsDialogOwnerAllowed(uint64_t window);

 private:
  bool IsInstalled(std::u16string image);
  static bool IsAllowedName(std::u16string_view name);

  PathPlatform& paths_;
  IProcesses& processes_;
};

}  // namespace SASM
