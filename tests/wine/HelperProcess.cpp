#include "tests/wine/HelperProcess.h"

#include "tests/wine/WineTestSupport.h"

namespace SASM::WineTest {

std::wstring HelperProcess::BuiltPath() { return BinaryDirectory() + L"\\lumen_process_helper.exe"; }

bool HelperProcess::Start(const std::wstring& image, const std::wstring& mode) {
  static LONG serial = 0;
  std::wstring stem = L"LumenUtilTestsHelper-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                      std::to_wstring(InterlockedIncrement(&serial));
  std::wstring readyName = stem + L"-ready", releaseName = stem + L"-release";
  ready_.reset(CreateEventW(nullptr, TRUE, FALSE, readyName.c_str()));
  release_.reset(CreateEventW(nullptr, TRUE, FALSE, releaseName.c_str()));
  if (!ready_ || !release_) return false;
  std::wstring command = L"\"" + image + L"\" " + mode + L" " + readyName + L" " + releaseName;
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION started = {};
  if (!CreateProcessW(image.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started))
    return false;
  ScopedHandle thread(started.hThread);
  process_.reset(started.hProcess);
  id_ = started.dwProcessId;
  HANDLE waits[] = {ready_.get(), process_.get()};
  // The helper ending first means it could not do what it was asked.
  return WaitForMultipleObjects(2, waits, FALSE, 20000) == WAIT_OBJECT_0;
}

HelperProcess::~HelperProcess() {
  if (release_) SetEvent(release_.get());
  if (process_) WaitForSingleObject(process_.get(), 20000);
}

}  // namespace SASM::WineTest
