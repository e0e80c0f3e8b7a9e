#include "broker/DialogOwnerPolicy.h"

#include "broker/BrokerPathPolicy.h"

namespace SASM {

namespace {

char16_t FoldAscii(char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c; }

}  // namespace

bool DialogOwnerPolicy::IsDialogOwnerAllowed(uint64_t window) {
  if (window == 0) return false;
  uint32_t processId = processes_.GetWindowProcessId(reinterpret_cast<void*>(static_cast<uintptr_t>(window)));
  if (processId == 0) return false;

  std::u16string name;
  std::u16string image;
  IProcesses::IdentitySource source = processes_.ReadIdentity(processId, name, image);
  if (source == IProcesses::IdentitySource::kNotOpened || source == IProcesses::IdentitySource::kNothing) return false;
  // Across processor widths only the image path comes back; its leaf is the name.
  if (source == IProcesses::IdentitySource::kImageName) name = image.substr(image.find_last_of(u'\\') + 1);

  return IsInstalled(image) || IsAllowedName(name);
}

bool DialogOwnerPolicy::IsInstalled(std::u16string image) {
  if (image.empty() || !paths_.CharUpperBuff(image)) return false;
  for (int32_t csidl : kInstalledFolders) {
    std::u16string folder;
    if (!paths_.GetFolderPath(csidl, folder) || folder.empty() || !paths_.CharUpperBuff(folder)) continue;
    if (folder.back() == u'\\') folder.pop_back();
    if (BrokerPathPolicy::IsPathUnderRoot(image.c_str(), folder.c_str())) return true;
  }
  return false;
}

bool DialogOwnerPolicy::IsAllowedName(std::u16string_view name) {
  for (std::u16string_view allowed : kAllowedImageNames) {
    if (name.size() != allowed.size()) continue;
    bool same = true;
    for (size_t i = 0; i < name.size() && same; ++i) same = FoldAscii(name[i]) == allowed[i];
    if (same) return true;
  }
  return false;
}

}  // namespace SASM
