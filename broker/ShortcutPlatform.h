#pragma once
// What the shortcut family asks of the system: the tick count, shell folders,
// file probes, the shell's path and URL canonicalisation, the default browser,
// the two shortcut objects, the taskbar pin and file deletion. Each operation
// is one platform call and keeps its conventions (HRESULTs where the platform
// answers with one), so the Win32 side is a thin pass-through and a fake can
// answer from tables.
#include <cstdint>
#include <memory>
#include <string>

namespace SASM {

// An internet shortcut or a shell link, ready to be filled and saved. Every
// operation answers the platform's HRESULT.
class ShortcutObject {
 public:
  virtual ~ShortcutObject() = default;
  // The address an internet shortcut opens.
  virtual int32_t SetUrl(const char16_t* url) = 0;
  // The program a shell link starts, and its arguments.
  virtual int32_t SetPath(const char16_t* path) = 0;
  virtual int32_t SetArguments(const char16_t* arguments) = 0;
  virtual int32_t SetIconLocation(const char16_t* path, int32_t index) = 0;
  // IPersistFile::Save.
  virtual int32_t Save(const char16_t* path, bool remember) = 0;
};

class ShortcutPlatform {
 public:
  static constexpr uint32_t kInvalidAttributes = 0xFFFFFFFF;

  virtual ~ShortcutPlatform() = default;

  // GetTickCount.
  virtual uint32_t TickCount() = 0;
  // SHGetFolderPathW with no window, no token and flags 0; false when it fails.
  virtual bool GetFolderPath(int32_t csidl, std::u16string& path) = 0;
  // SHCreateDirectoryExW with no window: the folder and any missing parents.
  virtual int32_t CreateDirectoryTree(const char16_t* path) = 0;
  // GetFileAttributesW: kInvalidAttributes when it fails.
  virtual uint32_t GetFileAttributes(const char16_t* path) = 0;
  // PathCanonicalizeW into a buffer of 260 characters; false when it fails.
  virtual bool PathCanonicalize(const char16_t* path, std::u16string& canonical) = 0;
  // UrlCanonicalizeW into a buffer of `capacity` characters: its HRESULT.
  virtual int32_t UrlCanonicalize(const char16_t* url, uint32_t flags, uint32_t capacity,
                                  std::u16string& canonical) = 0;
  // AssocQueryStringW for the program that opens "http" with the verb "open": its HRESULT.
  virtual int32_t GetDefaultBrowser(std::u16string& program) = 0;
  // The platform's internet-shortcut object and its shell link object: the
  // HRESULT of making one; `object` is set only on success.
  virtual int32_t CreateInternetShortcut(std::unique_ptr<ShortcutObject>& object) = 0;
  virtual int32_t CreateShellLink(std::unique_ptr<ShortcutObject>& object) = 0;
  // ShellExecuteW with the verb "taskbarpin" on the file; the answer isn't looked at.
  virtual void PinToTaskbar(const char16_t* path) = 0;
  // DeleteFileW.
  virtual bool DeleteFile(const char16_t* path) = 0;
};

}  // namespace SASM
