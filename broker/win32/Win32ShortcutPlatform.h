#pragma once
// The shortcut family's platform: each operation is the one shell, path or
// kernel call it names, on the broker's apartment thread.
#include "broker/ShortcutPlatform.h"

namespace SASM {

class Win32ShortcutPlatform : public ShortcutPlatform {
 public:
  uint32_t TickCount() override;
  bool GetFolderPath(int32_t csidl, std::u16string& path) override;
  int32_t CreateDirectoryTree(const char16_t* path) override;
  uint32_t GetFileAttributes(const char16_t* path) override;
  bool PathCanonicalize(const char16_t* path, std::u16string& canonical) override;
  int32_t UrlCanonicalize(const char16_t* url, uint32_t flags, uint32_t capacity, std::u16string& canonical) override;
  int32_t GetDefaultBrowser(std::u16string& program) override;
  int32_t CreateInternetShortcut(std::unique_ptr<ShortcutObject>& object) override;
  int32_t CreateShellLink(std::unique_ptr<ShortcutObject>& object) override;
  void PinToTaskbar(const char16_t* path) override;
  bool DeleteFile(const char16_t* path) override;
};

}  // namespace SASM
