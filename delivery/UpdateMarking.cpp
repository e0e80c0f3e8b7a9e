#include "delivery/UpdateMarking.h"

#include <string_view>

#include "delivery/UpdateDescription.h"
#include "engine/MString.h"
#include "engine/MStringList.h"

namespace SASM {
namespace {
constexpr RegistryHive kUser = RegistryHive::CurrentUser;
}  // namespace

bool UpdateMarking::MarkAutoUpdaterForRun(const char* description, const char* executablePath) {
  if (!description) return false;
  // Every other failure leaves the marks as far as they got and still answers true.
  if (registry_.CreateKey(kUser, kUpdateKey, kAccess) != RegistryError::kSuccess) return true;
  std::string rejected;
  // A substring test on purpose: a description that names the rejected version at all stays quiet.
  if (registry_.ReadNarrowString(kUser, kUpdateKey, kRejectedName, rejected, kAccess) == RegistryError::kSuccess &&
      std::string_view(description).find(rejected) != std::string_view::npos)
    return true;
  if (registry_.SetNarrowString(kUser, kUpdateKey, kDescriptionName, description, kAccess) != RegistryError::kSuccess)
    return true;
  if (registry_.OpenKey(kUser, kRunOnceKey, kAccess) != RegistryError::kSuccess) return true;

  std::string path = executablePath ? std::string(executablePath) : runningProcess_ ? runningProcess_() : "";
  // The path's share of the buffer leaves room for the switches and the terminator.
  std::string command = path.substr(0, kPathLimit);
  static_assert(kPathLimit + sizeof(kUpdateSwitches) <= kCommandBytes);
  if (command.empty()) return true;
  command.append(kUpdateSwitches);
  registry_.SetNarrowString(kUser, kRunOnceKey, kRunOnceName, command, kAccess);
  return true;
}

bool UpdateMarking::ReadDescription(std::u16string& text) {
  return registry_.ReadString(kUser, kUpdateKey, kDescriptionName, text) == RegistryError::kSuccess;
}

bool UpdateMarking::ReadUpdateDescription(MStringList& out) {
  std::u16string text, block;
  if (!ReadDescription(text) || !UpdateDescription::ExtractMetaBlock(text, block)) return false;
  out.Add(MString(std::u16string_view(UpdateDescription::DecodeMetaBlock(block))));
  return true;
}

bool UpdateMarking::MarkUpdateRejected() {
  std::u16string text, version;
  if (!ReadDescription(text) || !UpdateDescription::ExtractUpdateVersion(text, version)) return false;
  return registry_.SetString(kUser, kUpdateKey, kRejectedName, version, kAccess) == RegistryError::kSuccess;
}

}  // namespace SASM
