#include "tests/fakes/FakeShortcutPlatform.h"

#include "engine/MString.h"

namespace SASM {
namespace {

std::string Utf8(const std::u16string& text) { return MString(text.c_str()).ToUtf8(); }

class FakeShortcutObject : public ShortcutObject {
 public:
  explicit FakeShortcutObject(FakeShortcutPlatform& platform) : platform_(platform) {}
  int32_t SetUrl(const char16_t* url) override { return platform_.Step("Url", Utf8(url)); }
  int32_t SetPath(const char16_t* path) override { return platform_.Step("Path", Utf8(path)); }
  int32_t SetArguments(const char16_t* arguments) override { return platform_.Step("Arguments", Utf8(arguments)); }
  int32_t SetIconLocation(const char16_t* path, int32_t index) override {
    return platform_.Step("Icon", Utf8(path) + "," + std::to_string(index));
  }
  int32_t Save(const char16_t* path, bool remember) override {
    int32_t result = platform_.Step("Save", Utf8(path) + (remember ? " 1" : " 0"));
    if (result >= 0) platform_.files.insert(path);
    return result;
  }

 private:
  FakeShortcutPlatform& platform_;
};

}  // namespace

FakeShortcutPlatform::FakeShortcutPlatform() {
  folders[16] = u"C:\\Users\\a\\Desktop";
  folders[2] = u"C:\\Users\\a\\Start Menu\\Programs";
  folders[26] = u"C:\\Users\\a\\AppData\\Roaming";
}

int32_t FakeShortcutPlatform::Step(const std::string& step, const std::string& detail) {
  log.push_back(step + " " + detail);
  auto failing = failingSteps.find(step);
  return failing == failingSteps.end() ? 0 : failing->second;
}

bool FakeShortcutPlatform::GetFolderPath(int32_t csidl, std::u16string& path) {
  auto folder = folders.find(csidl);
  if (folder == folders.end()) return false;
  path = folder->second;
  return true;
}

int32_t FakeShortcutPlatform::CreateDirectoryTree(const char16_t* path) {
  log.push_back("Directory " + Utf8(path));
  files.insert(path);
  return 0;
}

uint32_t FakeShortcutPlatform::GetFileAttributes(const char16_t* path) {
  probes.push_back(Utf8(path));
  return files.count(path) ? 0x20 : kInvalidAttributes;
}

bool FakeShortcutPlatform::PathCanonicalize(const char16_t* path, std::u16string& canonical) {
  auto known = canonicalPaths.find(path);
  canonical = known == canonicalPaths.end() ? std::u16string(path) : known->second;
  return true;
}

int32_t FakeShortcutPlatform::UrlCanonicalize(const char16_t* url, uint32_t flags, uint32_t capacity,
                                              std::u16string& canonical) {
  lastUrlFlags = std::to_string(flags) + "/" + std::to_string(capacity);
  if (failingUrls.count(url)) return static_cast<int32_t>(0x80004005);
  auto known = canonicalUrls.find(url);
  canonical = known == canonicalUrls.end() ? std::u16string(url) : known->second;
  return 0;
}

int32_t FakeShortcutPlatform::GetDefaultBrowser(std::u16string& program) {
  if (browserResult >= 0) program = browser;
  return browserResult;
}

int32_t FakeShortcutPlatform::CreateInternetShortcut(std::unique_ptr<ShortcutObject>& object) {
  log.push_back("Create internet shortcut");
  if (createResult >= 0) object = std::make_unique<FakeShortcutObject>(*this);
  return createResult;
}

int32_t FakeShortcutPlatform::CreateShellLink(std::unique_ptr<ShortcutObject>& object) {
  log.push_back("Create shell link");
  if (createResult >= 0) object = std::make_unique<FakeShortcutObject>(*this);
  return createResult;
}

void FakeShortcutPlatform::PinToTaskbar(const char16_t* path) { log.push_back("Pin " + Utf8(path)); }

bool FakeShortcutPlatform::DeleteFile(const char16_t* path) {
  log.push_back("Delete " + Utf8(path));
  return files.erase(path) > 0;
}

}  // namespace SASM
