// A second process for the Wine suite.
//   lumen_process_helper hold PATH READY RELEASE  holds PATH open for reading, as a running
//                                                  player holds its file, until RELEASE is set
//   lumen_process_helper wait READY RELEASE        runs until RELEASE is set
//   lumen_process_helper load PATH READY RELEASE   loads the library at PATH, as a program that
//                                                  hosts the player does, until RELEASE is set
//   lumen_process_helper window READY RELEASE      shows a window, as a player's browser does, and
//                                                  answers its messages until RELEASE is set
//   lumen_process_helper -refreshIEElevationPolicies
//                                                  writes its command line to its own path + ".ran"
// READY and RELEASE name events the test created; each wait ends after a minute at most.
#include "engine/win32/WindowsApi.h"

#include <cwchar>
#include <string>

#include "engine/win32/ScopedHandle.h"

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 3;
constexpr DWORD kLongestWait = 60000;

int WaitForRelease(const wchar_t* ready, const wchar_t* release) {
  SASM::ScopedHandle readyEvent(OpenEventW(EVENT_MODIFY_STATE, FALSE, ready));
  SASM::ScopedHandle releaseEvent(OpenEventW(SYNCHRONIZE, FALSE, release));
  if (!readyEvent || !releaseEvent) return kFailed;
  SetEvent(readyEvent.get());
  return WaitForSingleObject(releaseEvent.get(), kLongestWait) == WAIT_OBJECT_0 ? kDone : kFailed;
}

int RecordCommandLine() {
  wchar_t self[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring marker = std::wstring(self, n) + L".ran";
  SASM::ScopedHandle file(
      CreateFileW(marker.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return kFailed;
  const wchar_t* line = GetCommandLineW();
  DWORD written = 0;
  WriteFile(file.get(), line, static_cast<DWORD>(wcslen(line) * sizeof(wchar_t)), &written, nullptr);
  return kDone;
}

// A window that can own the server's dialogs: its thread keeps answering, since
// a modal dialog disables and enables its owner by messages from the server.
int ShowWindowUntilRelease(const wchar_t* ready, const wchar_t* release) {
  SASM::ScopedHandle readyEvent(OpenEventW(EVENT_MODIFY_STATE, FALSE, ready));
  SASM::ScopedHandle releaseEvent(OpenEventW(SYNCHRONIZE, FALSE, release));
  if (!readyEvent || !releaseEvent) return kFailed;
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = DefWindowProcW;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = L"LumenTestOwner";
  RegisterClassW(&windowClass);
  HWND window = CreateWindowExW(0, L"LumenTestOwner", L"Lumen test owner", WS_OVERLAPPEDWINDOW, 0, 0, 320, 200,
                                nullptr, nullptr, windowClass.hInstance, nullptr);
  if (!window) return kFailed;
  ShowWindow(window, SW_SHOWNORMAL);
  SetEvent(readyEvent.get());
  const DWORD started = GetTickCount();
  HANDLE waits[] = {releaseEvent.get()};
  while (GetTickCount() - started < kLongestWait) {
    DWORD woken = MsgWaitForMultipleObjects(1, waits, FALSE, 1000, QS_ALLINPUT);
    if (woken == WAIT_OBJECT_0) break;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  DestroyWindow(window);
  return kDone;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc == 2 && std::wcscmp(argv[1], L"-refreshIEElevationPolicies") == 0) return RecordCommandLine();
  if (argc == 4 && std::wcscmp(argv[1], L"wait") == 0) return WaitForRelease(argv[2], argv[3]);
  if (argc == 4 && std::wcscmp(argv[1], L"window") == 0) return ShowWindowUntilRelease(argv[2], argv[3]);
  if (argc == 5 && std::wcscmp(argv[1], L"hold") == 0) {
    // Shares reading only: the file can be read and found, but neither written nor deleted.
    SASM::ScopedHandle file(CreateFileW(argv[2], GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return kFailed;
    return WaitForRelease(argv[3], argv[4]);
  }
  if (argc == 5 && std::wcscmp(argv[1], L"load") == 0) {
    HMODULE library = LoadLibraryW(argv[2]);
    if (!library) return kFailed;
    int result = WaitForRelease(argv[3], argv[4]);
    FreeLibrary(library);
    return result;
  }
  return kUsage;
}
