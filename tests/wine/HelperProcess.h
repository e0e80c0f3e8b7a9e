#pragma once
// lumen_process_helper running as a second process of the Wine suite, started
// from the built file or from a copy, and kept until the object goes.
#include "engine/win32/WindowsApi.h"

#include <string>

#include "engine/win32/ScopedHandle.h"

namespace SASM::WineTest {

class HelperProcess {
 public:
  // The built helper beside the suite.
  static std::wstring BuiltPath();

  HelperProcess() = default;
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;
  // Lets the helper go and waits for it to end.
  ~HelperProcess();

  // "hold PATH": the helper opens the file for reading, sharing reading only.
  bool Hold(const std::wstring& path) { return Start(BuiltPath(), L"hold \"" + path + L"\""); }
  // "load PATH": the helper keeps the library at PATH loaded.
  bool Load(const std::wstring& path) { return Start(BuiltPath(), L"load \"" + path + L"\""); }
  // "wait" from the executable at imagePath: a process that only runs.
  bool Run(const std::wstring& imagePath) { return Start(imagePath, L"wait"); }
  // "window" from the executable at imagePath: a process with a top-level window.
  bool ShowWindow(const std::wstring& imagePath) { return Start(imagePath, L"window"); }
  DWORD Id() const { return id_; }

 private:
  // Starts image with the mode and two fresh event names, and waits until it says it is ready.
  bool Start(const std::wstring& image, const std::wstring& mode);

  ScopedHandle ready_;
  ScopedHandle release_;
  ScopedHandle process_;
  DWORD id_ = 0;
};

}  // namespace SASM::WineTest
