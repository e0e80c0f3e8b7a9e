#pragma once
// The marks that make the updater run at the next logon, in the current
// user's hive: the server's description, the version the user turned down,
// and the RunOnce command. Removing the marks is the inventory's clean-up.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "engine/IRegistry.h"

namespace SASM {

class MStringList;

class UpdateMarking {
 public:
  static constexpr char16_t kUpdateKey[] = u"Software\\Halcyonics\\LumenPlayerUpdate";
  static constexpr char16_t kRunOnceKey[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
  static constexpr char16_t kDescriptionName[] = u"description";
  static constexpr char16_t kRejectedName[] = u"Rejected";
  static constexpr char16_t kRunOnceName[] = u"LumenPlayerUpdate";
  static constexpr char kUpdateSwitches[] = " -update activex";
  // Read and write rights on both keys.
  static constexpr uint32_t kAccess = 0x2001F;
  // The command is built in a buffer of this many bytes, the path taking at most kPathLimit of them.
  static constexpr size_t kCommandBytes = 260;
  static constexpr size_t kPathLimit = 243;

  // The narrow file name of the running process, started at logon when no path is given.
  using ProcessFileName = std::function<std::string()>;

  explicit UpdateMarking(IRegistry& registry, ProcessFileName runningProcess = {})
      : registry_(registry), runningProcess_(std::move(runningProcess)) {}

  // Stores the description and the RunOnce command, unless the rejected version
  // occurs anywhere in the description. False only for a null description.
  bool MarkAutoUpdaterForRun(const char* description, const char* executablePath = nullptr);
  // Adds the stored description's meta block, decoded; false without one.
  bool ReadUpdateDescription(MStringList& out);
  // Stores the stored description's version as the rejected one; false when there is none.
  bool MarkUpdateRejected();

 private:
  bool ReadDescription(std::u16string& text);

  IRegistry& registry_;
  ProcessFileName runningProcess_;
};

}  // namespace SASM
