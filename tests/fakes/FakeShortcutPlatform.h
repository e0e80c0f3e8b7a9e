#pragma once
// The shortcut family's system in memory: a clock the test moves, shell
// folders and files in tables, canonical forms the test can set, and shortcut
// objects that record every step in one log, with any step made to fail.
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "broker/ShortcutPlatform.h"

namespace SASM {

class FakeShortcutPlatform : public ShortcutPlatform {
 public:
  FakeShortcutPlatform();

  uint32_t tick = 100000;
  std::map<int32_t, std::u16string> folders;
  std::set<std::u16string> files;
  // Inputs whose canonical form differs from themselves, and inputs that fail.
  std::map<std::u16string, std::u16string> canonicalPaths, canonicalUrls;
  std::set<std::u16string> failingUrls;
  int32_t browserResult = 0;
  std::u16string browser = u"C:\\Program Files\\Browser\\browser.exe";
  int32_t createResult = 0;
  // Steps ("Url", "Path", "Arguments", "Icon", "Save") that answer this failure instead.
  std::map<std::string, int32_t> failingSteps;

  // "Create internet shortcut", "Create shell link", "Url <url>", "Path <path>",
  // "Arguments <text>", "Icon <path>,<index>", "Save <path> <remember>",
  // "Directory <path>", "Pin <path>", "Delete <path>", in UTF-8.
  std::vector<std::string> log;
  // Every GetFileAttributes path, in UTF-8.
  std::vector<std::string> probes;
  std::string lastUrlFlags;

  uint32_t TickCount() override { return tick; }
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

  // What a step logs and answers; Save also makes the file.
  int32_t Step(const std::string& step, const std::string& detail);
};

}  // namespace SASM
