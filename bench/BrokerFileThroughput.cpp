// Throughput of BrokerWriteFile and BrokerReadFile in 64 KiB slices through a
// live broker server, against WriteFile and ReadFile of the same slices in
// this process, measured in the same run. Prints the medians of a few rounds
// and the broker's share of the in-process rate. Registers the server and the
// test proxy for the run and removes both, with every file it made.
//
// Run from the build's bin directory under Wine:
//   $WINE lumen_file_bench.exe [MiB per round] [rounds]
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <shlobj.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "broker/BrokerIdentities.h"
#include "broker/BrokerRegistration.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/ScopedLibrary.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/ScopedSafeArray.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Registry.h"

using namespace SASM;

namespace {

constexpr ULONG kSlice = 64 * 1024;
constexpr DWORD kExitWait = 10000;

std::wstring BinaryDirectory() {
  wchar_t buffer[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, buffer, MAX_PATH);
  std::wstring path(buffer, n);
  return path.substr(0, path.find_last_of(L'\\'));
}

std::string Narrow(const std::wstring& text) {
  int n = WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<size_t>(n > 0 ? n - 1 : 0), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, out.data(), n, nullptr, nullptr);
  return out;
}

double Seconds() {
  static LARGE_INTEGER frequency = [] {
    LARGE_INTEGER value;
    QueryPerformanceFrequency(&value);
    return value;
  }();
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  return static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// Deletes a key of the machine's classes in both registry views: the
// platform's registration helpers leave 32-bit copies that Wine falls back to.
void DeleteBothViews(const std::wstring& path) {
  for (REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
    ScopedRegKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Classes", 0, KEY_ALL_ACCESS | view, key.receive()) ==
        ERROR_SUCCESS)
      RegDeleteTreeW(key.get(), path.c_str());
  }
}

using RegistrationFunction = HRESULT(STDAPICALLTYPE*)();

RegistrationFunction ProxyFunction(HMODULE proxy, const char* name) {
  return reinterpret_cast<RegistrationFunction>(reinterpret_cast<void*>(GetProcAddress(proxy, name)));
}

// The server registered for the reference host beside this program, and the
// test proxy that marshals the interface's newer generations under Wine.
class Registration {
 public:
  Registration() {
    Win32Registry registry;
    BrokerRegistration::WriteBrokerRegistration(registry, Narrow(BinaryDirectory() + L"\\LumenUtilHost.exe").c_str(),
                                                true);
    proxy_.reset(LoadLibraryW((BinaryDirectory() + L"\\LumenBrokerProxy.dll").c_str()));
    RegistrationFunction registerProxy = proxy_ ? ProxyFunction(proxy_.get(), "DllRegisterServer") : nullptr;
    ready_ = registerProxy && SUCCEEDED(registerProxy());
  }
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;
  ~Registration() {
    if (proxy_) {
      if (RegistrationFunction unregisterProxy = ProxyFunction(proxy_.get(), "DllUnregisterServer")) unregisterProxy();
    }
    proxy_.reset();
    Win32Registry registry;
    BrokerRegistration::WriteBrokerRegistration(registry, nullptr, false);
    DeleteBothViews(L"CLSID\\" + ToWide(BrokerIdentities::kServed.classId));
    DeleteBothViews(L"TypeLib\\" + ToWide(BrokerIdentities::kLibraryId));
    for (const BrokerGeneration& generation : BrokerIdentities::kGenerations)
      DeleteBothViews(L"Interface\\" + ToWide(generation.interfaceId));
  }
  bool ready() const { return ready_; }

 private:
  ScopedLibrary proxy_;
  bool ready_ = false;
};

// Waits for every running copy of the reference host to end.
bool ServersEnded() {
  ScopedHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot) return false;
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof(entry);
  bool ended = true;
  for (BOOL more = Process32FirstW(snapshot.get(), &entry); more; more = Process32NextW(snapshot.get(), &entry)) {
    if (_wcsicmp(entry.szExeFile, L"LumenUtilHost.exe") != 0) continue;
    ScopedHandle process(OpenProcess(SYNCHRONIZE, FALSE, entry.th32ProcessID));
    if (process && WaitForSingleObject(process.get(), kExitWait) != WAIT_OBJECT_0) ended = false;
  }
  return ended;
}

HRESULT Activate(ComPtr<ILumenBroker6>& broker) {
  HRESULT result = E_FAIL;
  // Activation races with a server that is quitting; try again a few times.
  for (int attempt = 0; attempt < 20; ++attempt) {
    result =
        CoCreateInstance(CLSID_LumenBrokerImp6, nullptr, CLSCTX_LOCAL_SERVER, IID_ILumenBroker6, broker.receiveVoid());
    if (SUCCEEDED(result) || result == REGDB_E_CLASSNOTREG) break;
    Sleep(50);
  }
  return result;
}

// The player data root's directories this run had to make, removed deepest first.
class MadeDirectories {
 public:
  explicit MadeDirectories(const std::wstring& path) {
    for (size_t at = path.find(L'\\', 3);; at = path.find(L'\\', at + 1)) {
      std::wstring prefix = at == std::wstring::npos ? path : path.substr(0, at);
      if (GetFileAttributesW(prefix.c_str()) == INVALID_FILE_ATTRIBUTES && CreateDirectoryW(prefix.c_str(), nullptr))
        made_.push_back(prefix);
      if (at == std::wstring::npos) break;
    }
  }
  MadeDirectories(const MadeDirectories&) = delete;
  MadeDirectories& operator=(const MadeDirectories&) = delete;
  ~MadeDirectories() {
    for (auto it = made_.rbegin(); it != made_.rend(); ++it) RemoveDirectoryW(it->c_str());
  }

 private:
  std::vector<std::wstring> made_;
};

struct Rates {
  double write;
  double read;
};

// One round through the broker: the file written slice by slice, then read
// back. Each round truncates what the last one wrote.
bool BrokerRound(ILumenBroker6& broker, const std::wstring& path, const std::vector<uint8_t>& content, Rates& rates) {
  ScopedBstr name(path.c_str());
  ULONG cookie = 0;
  ScopedSafeArray slice(SafeArrayCreateVector(VT_UI1, 0, kSlice));
  void* data = nullptr;
  if (!slice || FAILED(SafeArrayAccessData(slice.get(), &data))) return false;
  std::memcpy(data, content.data(), kSlice);
  SafeArrayUnaccessData(slice.get());

  double start = Seconds();
  if (FAILED(broker.BrokerCreateFile(name.get(), 0, 1, &cookie))) return false;
  for (size_t at = 0; at < content.size(); at += kSlice) {
    ULONG written = 0;
    if (FAILED(broker.BrokerWriteFile(cookie, slice.get(), &written)) || written != kSlice) return false;
  }
  broker.BrokerCloseHandle(cookie);
  rates.write = static_cast<double>(content.size()) / (Seconds() - start);

  start = Seconds();
  if (FAILED(broker.BrokerCreateFile(name.get(), 1, 0, &cookie))) return false;
  size_t total = 0;
  for (;;) {
    ScopedSafeArray reply;
    ULONG read = 0;
    if (FAILED(broker.BrokerReadFile(cookie, kSlice, &read, reply.receive()))) return false;
    if (read == 0) break;
    total += read;
  }
  broker.BrokerCloseHandle(cookie);
  rates.read = static_cast<double>(content.size()) / (Seconds() - start);
  return total == content.size();
}

// The same round with the file functions of this process.
bool ReferenceRound(const std::wstring& path, const std::vector<uint8_t>& content, Rates& rates) {
  std::vector<uint8_t> buffer(kSlice);
  double start = Seconds();
  {
    ScopedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                  FILE_FLAG_RANDOM_ACCESS, nullptr));
    if (!file) return false;
    for (size_t at = 0; at < content.size(); at += kSlice) {
      DWORD written = 0;
      if (!WriteFile(file.get(), content.data(), kSlice, &written, nullptr) || written != kSlice) return false;
    }
  }
  rates.write = static_cast<double>(content.size()) / (Seconds() - start);

  start = Seconds();
  size_t total = 0;
  {
    ScopedHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) return false;
    for (;;) {
      DWORD read = 0;
      if (!ReadFile(file.get(), buffer.data(), kSlice, &read, nullptr)) return false;
      if (read == 0) break;
      total += read;
    }
  }
  rates.read = static_cast<double>(content.size()) / (Seconds() - start);
  return total == content.size();
}

std::wstring PlayerDataDirectory() {
  wchar_t roaming[MAX_PATH];
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, roaming))) return L"";
  return std::wstring(roaming) + L"\\Halcyonics\\Lumen Player\\Bench";
}

int Run(size_t mebibytes, int rounds) {
  std::vector<uint8_t> content(mebibytes * 1024 * 1024);
  for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<uint8_t>(i * 13 + 1);
  const std::wstring directory = PlayerDataDirectory();
  if (directory.empty()) return 2;
  MadeDirectories made(directory);
  Registration registration;
  if (!registration.ready()) {
    std::fprintf(stderr, "the test proxy did not register\n");
    return 2;
  }

  std::vector<double> brokerWrite, brokerRead, referenceWrite, referenceRead;
  bool ok = true;
  {
    ComPtr<ILumenBroker6> broker;
    if (FAILED(Activate(broker))) {
      std::fprintf(stderr, "the broker could not be activated\n");
      return 2;
    }
    // The first round warms the server, the proxy and the file cache; it isn't counted.
    for (int round = 0; round <= rounds && ok; ++round) {
      Rates viaBroker{}, inProcess{};
      ok = BrokerRound(*broker.get(), directory + L"\\broker.dat", content, viaBroker) &&
           ReferenceRound(directory + L"\\reference.dat", content, inProcess);
      if (round == 0) continue;
      brokerWrite.push_back(viaBroker.write);
      brokerRead.push_back(viaBroker.read);
      referenceWrite.push_back(inProcess.write);
      referenceRead.push_back(inProcess.read);
    }
  }
  DeleteFileW((directory + L"\\broker.dat:Zone.Identifier").c_str());
  DeleteFileW((directory + L"\\broker.dat").c_str());
  DeleteFileW((directory + L"\\reference.dat").c_str());
  bool ended = ServersEnded();
  if (!ok) {
    std::fprintf(stderr, "a round failed\n");
    return 1;
  }

  constexpr double kMegabyte = 1e6;
  std::printf("%zu MiB per round in %lu KiB slices, median of %d rounds\n", mebibytes,
              static_cast<unsigned long>(kSlice / 1024), rounds);
  std::printf("  write  broker %8.1f MB/s   in-process %8.1f MB/s   ratio %.4f\n", Median(brokerWrite) / kMegabyte,
              Median(referenceWrite) / kMegabyte, Median(brokerWrite) / Median(referenceWrite));
  std::printf("  read   broker %8.1f MB/s   in-process %8.1f MB/s   ratio %.4f\n", Median(brokerRead) / kMegabyte,
              Median(referenceRead) / kMegabyte, Median(brokerRead) / Median(referenceRead));
  if (!ended) std::fprintf(stderr, "a server was still running at the end\n");
  return ended ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  size_t mebibytes = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 16;
  int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
  if (mebibytes == 0 || rounds <= 0) {
    std::fprintf(stderr, "usage: lumen_file_bench [MiB per round] [rounds]\n");
    return 2;
  }
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
  int result = Run(mebibytes, rounds);
  CoUninitialize();
  return result;
}
