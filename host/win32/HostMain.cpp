// The reference host: loads LumenUtil.dll by full path, answers its callbacks
// from a settings file and switches, and drives it.
#include "engine/win32/WindowsApi.h"

#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "engine/ProductKind.h"
#include "engine/win32/WideText.h"
#include "engine/win32/ScopedHandle.h"
#include "host/FlowScript.h"
#include "host/HostOptions.h"
#include "host/InstallerFlow.h"
#include "host/ReferenceHost.h"
#include "host/win32/FlowDriver.h"
#include "ui/MWindow.h"
#include "ui/MorphUI.h"

using namespace SASM;

namespace {

using StartFn = LumenBrokerShim* (*)(HostCallbacks*);

enum ExitCode {
  kOk = 0,
  kBadSwitch = 2,
  kBadSettings = 3,
  kBadModule = 4,
  kNoShim = 5,
  kListsIncomplete = 6,
  kRegistrationFailed = 7,
  kProcessesNotListed = 8,
  kRemovalFailed = 9,
  kTimedOut = 10,
  kNoWindow = 11
};

// The window's thread and the unattended run both report; a line stays whole.
std::mutex g_printLock;

void Print(const std::string& text) {
  std::lock_guard<std::mutex> lock(g_printLock);
  std::fputs(text.c_str(), stdout);
  std::fflush(stdout);
}

void PrintLine(const std::string& line) { Print(line + "\n"); }

int Fail(int code, const std::string& line) {
  std::fprintf(stderr, "LumenUtilHost: %s\n", line.c_str());
  return code;
}

std::string Utf8(const std::wstring& text) {
  int n = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<size_t>(n), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), out.data(), n, nullptr, nullptr);
  return out;
}

std::wstring ExecutableDirectory() {
  wchar_t buffer[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, buffer, MAX_PATH);
  std::wstring path(buffer, n);
  size_t slash = path.find_last_of(L"\\/");
  return slash == std::wstring::npos ? std::wstring(L".") : path.substr(0, slash);
}

std::wstring FullPath(const std::wstring& path) {
  wchar_t buffer[MAX_PATH];
  DWORD n = GetFullPathNameW(path.c_str(), MAX_PATH, buffer, nullptr);
  return n == 0 || n >= MAX_PATH ? path : std::wstring(buffer, n);
}

// Reads a UTF-8 file (a byte-order mark is skipped) as UTF-16 text.
bool ReadTextFile(const std::wstring& path, std::wstring& text, DWORD& error) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    error = GetLastError();
    return false;
  }
  std::string bytes;
  char chunk[4096];
  DWORD got = 0;
  while (ReadFile(file, chunk, sizeof(chunk), &got, nullptr) && got > 0) bytes.append(chunk, got);
  CloseHandle(file);
  size_t skip = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
  int n = MultiByteToWideChar(CP_UTF8, 0, bytes.data() + skip, static_cast<int>(bytes.size() - skip), nullptr, 0);
  text.assign(static_cast<size_t>(n), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, bytes.data() + skip, static_cast<int>(bytes.size() - skip), text.data(), n);
  return true;
}

void PrintList(const char* name, MStringList* list) {
  if (!list) {
    Print(std::string(name) + ": (none)\n");
    return;
  }
  Print(std::string(name) + " (" + std::to_string(list->Count()) + "):\n");
  std::unique_ptr<MStringList::Iterator> it(list->Iterate());
  for (; !it->AtEnd(); it->Next()) Print("  " + it->Key().ToUtf8() + "\n");
}

int ShowLists(LumenBrokerShim& shim, ReferenceHost& host) {
  bool loaded = shim.LoadEngineLists();
  Print(std::string("LoadEngineLists: ") + (loaded ? "true" : "false") + "\n");
  PrintList("GetAXFilenames", shim.GetAXFilenames());
  PrintList("GetPluginFilenames", shim.GetPluginFilenames());
  PrintList("GetPluginDirectories", shim.GetPluginDirectories());
  PrintList("GetAXFilenamePatterns", shim.GetAXFilenamePatterns());
  PrintList("GetPluginFilenamePatterns", shim.GetPluginFilenamePatterns());
  PrintList("GetPepperFilenamePatterns", shim.GetPepperFilenamePatterns());
  PrintList("GetProductManagerPatterns", shim.GetProductManagerPatterns());
  PrintList("GetProductManagerEntries", shim.GetProductManagerEntries());
  Print("Message log (" + std::to_string(host.Log().Count()) + "):\n" + host.FormatLog());
  return loaded ? kOk : kListsIncomplete;
}

// Registers each selected kind, in the order 8, 16, 32768, for the files at the given paths.
int Install(LumenBrokerShim& shim, ReferenceHost& host, const HostOptions& options) {
  bool all = InstallerFlow::RegisterKinds(shim, options, host.Kinds(), false, PrintLine);
  Print("Message log (" + std::to_string(host.Log().Count()) + "):\n" + host.FormatLog());
  return all ? kOk : kRegistrationFailed;
}

// The conflict list for the selected kinds, one "key: shown name" line per process.
int ShowConflicts(LumenBrokerShim& shim, ReferenceHost& host, const HostOptions& options) {
  uint32_t kinds = options.flags & (ProductKind::kActiveX | ProductKind::kNpapi | ProductKind::kPpapi);
  std::unique_ptr<MStringList> conflicts(shim.FindConflicts(kinds));
  int result = kOk;
  if (!conflicts) {
    Print("FindConflicts " + std::to_string(kinds) + ": the processes cannot be listed\n");
    result = kProcessesNotListed;
  } else {
    Print("FindConflicts " + std::to_string(kinds) + " (" + std::to_string(conflicts->Count()) + "):\n");
    for (auto* node = conflicts->head; node; node = node->next)
      Print("  " + node->key.ToUtf8() + ": " + node->value.ToUtf8() + "\n");
  }
  Print("Message log (" + std::to_string(host.Log().Count()) + "):\n" + host.FormatLog());
  return result;
}

// Removes each selected kind, in the order 8, 16, 32768, then the named and pattern files of them all.
int Uninstall(LumenBrokerShim& shim, ReferenceHost& host, const HostOptions& options) {
  // The file lists come from the settings; missing ones only leave less to remove.
  shim.LoadEngineLists();
  bool all = InstallerFlow::RemoveKinds(shim, options, host.Kinds(), PrintLine);
  Print("Message log (" + std::to_string(host.Log().Count()) + "):\n" + host.FormatLog());
  return all ? kOk : kRemovalFailed;
}

// The installer window on a thread of its own, as the module expects: built,
// pumped and destroyed there. The host reaches it only by posting.
class WindowThread {
 public:
  WindowThread(LumenBrokerShim& shim, InstallerFlow& flow) : shim_(shim), flow_(flow) {
    ready_.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    done_.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    thread_ = std::thread([this] { Main(); });
    WaitForSingleObject(ready_.get(), INFINITE);
  }
  ~WindowThread() {
    if (thread_.joinable()) thread_.join();
  }

  MorphUI* Ui() const { return ui_; }
  HWND Window() const { return window_; }
  // False when the thread is still inside the window after the wait.
  bool WaitForEnd(DWORD milliseconds) { return WaitForSingleObject(done_.get(), milliseconds) == WAIT_OBJECT_0; }
  int32_t Result() const { return result_; }

 private:
  void Main() {
    MorphUI* ui = shim_.CreateUI();
    if (ui) {
      ui->SetEventCallback(&InstallerFlow::Callback, &flow_);
      window_ = ui->window ? static_cast<HWND>(ui->window->handle) : nullptr;
    }
    ui_ = ui;
    SetEvent(ready_.get());
    if (ui) {
      result_ = ui->RunMessageLoop();
      shim_.DestroyUI(nullptr, ui);
    }
    SetEvent(done_.get());
  }

  LumenBrokerShim& shim_;
  InstallerFlow& flow_;
  ScopedHandle ready_;
  ScopedHandle done_;
  MorphUI* ui_ = nullptr;
  HWND window_ = nullptr;
  int32_t result_ = 0;
  std::thread thread_;
};

// The -install, -uninstall, -maintain and -update windows: the work is done in
// Notify, and the run ends with the window's exit code.
int RunWindow(LumenBrokerShim& shim, ReferenceHost& host, const HostOptions& options) {
  if (host.Kinds() == 0)
    return Fail(kBadSwitch, "the window needs a kind: -activex, -npapi, -ppapi or the settings' Host.Flags");
  FlowScript script;
  if (options.unattended &&
      !script.Parse(options.script.empty() ? FlowScript::DefaultFor(options.mode, host.GetInstallSource())
                                           : options.script))
    return Fail(kBadSwitch, script.error);
  std::wstring shots;
  if (!options.shotsDirectory.empty()) {
    shots = FullPath(ToWide(options.shotsDirectory));
    CreateDirectoryW(shots.c_str(), nullptr);
  }
  shim.LoadEngineLists();

  InstallerFlow flow(options, host, shim, PrintLine);
  int result;
  bool timedOut = false;
  {
    WindowThread window(shim, flow);
    MorphUI* ui = window.Ui();
    if (!ui) return Fail(kNoWindow, "CreateUI returned no window");
    flow.Open([ui](int32_t id, int32_t message, intptr_t param) { ui->PostEvent(id, message, param); });
    // A person's run with pictures or a bound is watched too, with no clicks.
    if (options.unattended || !shots.empty() || options.EffectiveTimeoutMs() != 0) {
      FlowDriver driver(window.Window(), flow, shots);
      timedOut = driver.Run(script.steps, options.EffectiveTimeoutMs()) == FlowDriver::Outcome::kTimedOut;
    }
    if (timedOut) {
      PrintLine("auto: timed out after " + std::to_string(options.EffectiveTimeoutMs()) + " ms");
      // The host's finish command; a window stuck in a Notify call is left behind.
      PostMessageW(window.Window(), MWindow::kUserBase + 5, 3, kTimedOut);
      if (!window.WaitForEnd(5000)) {
        std::fflush(stdout);
        ExitProcess(kTimedOut);
      }
    }
    window.WaitForEnd(INFINITE);
    result = window.Result();
  }
  Print("Message log (" + std::to_string(host.Log().Count()) + "):\n" + host.FormatLog());
  if (timedOut) return kTimedOut;
  return result;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  std::vector<std::u16string> args;
  for (int i = 1; i < argc; ++i) args.push_back(FromWide(argv[i]));
  HostOptions options;
  if (!options.Parse(args)) return Fail(kBadSwitch, options.error);
  if (options.mode == HostOptions::Mode::Help) {
    Print(HostOptions::Usage());
    return kOk;
  }

  std::wstring directory = ExecutableDirectory();
  std::wstring settingsPath = options.settingsPath.empty() ? directory + L"\\LumenUtilHost.settings"
                                                           : ToWide(options.settingsPath);
  std::wstring modulePath = FullPath(options.modulePath.empty() ? directory + L"\\LumenUtil.dll"
                                                                : ToWide(options.modulePath));

  std::wstring settingsText;
  DWORD error = 0;
  if (!ReadTextFile(settingsPath, settingsText, error))
    return Fail(kBadSettings, "cannot read settings file " + Utf8(settingsPath) + " (error " + std::to_string(error) + ")");

  HMODULE module = LoadLibraryW(modulePath.c_str());
  if (!module)
    return Fail(kBadModule, "cannot load " + Utf8(modulePath) + " (error " + std::to_string(GetLastError()) + ")");
  auto start = reinterpret_cast<StartFn>(reinterpret_cast<void*>(GetProcAddress(module, "Start")));
  if (!start) {
    FreeLibrary(module);
    return Fail(kBadModule, Utf8(modulePath) + " has no Start export");
  }

  int result;
  {
    ReferenceHost host(options, MString{FromWide(settingsText.c_str(), settingsText.size())});
    host.resourceModule = module;
    host.SetDirectory(FromWide(directory.c_str(), directory.size()));
    LumenBrokerShim* shim = start(&host);
    if (!shim) {
      FreeLibrary(module);
      return Fail(kNoShim, "Start returned no shim");
    }
    host.shim = shim;
    if (options.mode == HostOptions::Mode::Broker) {
      result = shim->RunBroker();
      if (host.Log().Count() > 0) std::fputs(host.FormatLog().c_str(), stderr);
    } else if (options.Windowed()) {
      result = RunWindow(*shim, host, options);
    } else if (options.mode == HostOptions::Mode::Install) {
      result = Install(*shim, host, options);
    } else if (options.mode == HostOptions::Mode::Conflicts) {
      result = ShowConflicts(*shim, host, options);
    } else if (options.mode == HostOptions::Mode::Uninstall) {
      result = Uninstall(*shim, host, options);
    } else {
      result = ShowLists(*shim, host);
    }
    host.shim = nullptr;
    delete shim;
  }
  FreeLibrary(module);
  return result;
}
