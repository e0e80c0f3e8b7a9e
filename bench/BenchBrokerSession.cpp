#include "bench/BenchBrokerSession.h"

#include <shlobj.h>
#include <tlhelp32.h>

#include "engine/win32/BrokerActivation.h"
#include "engine/win32/ScopedHandle.h"

namespace SASM {
namespace {

constexpr DWORD kExitWait = 10000;

}  // namespace

BenchBrokerSession::ServerRegistration::ServerRegistration() {
  BrokerActivation::Register(BinaryDirectory() + L"\\LumenUtilHost.exe");
}

BenchBrokerSession::ServerRegistration::~ServerRegistration() { BrokerActivation::Unregister(); }

BenchBrokerSession::BenchBrokerSession() : proxy_(BinaryDirectory() + L"\\LumenBrokerProxy.dll") {}

BenchBrokerSession::~BenchBrokerSession() {
  for (auto it = madeDirectories_.rbegin(); it != madeDirectories_.rend(); ++it) RemoveDirectoryW(it->c_str());
}

std::wstring BenchBrokerSession::PlayerDataDirectory() {
  wchar_t roaming[MAX_PATH];
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, roaming))) return L"";
  const std::wstring path = std::wstring(roaming) + L"\\Halcyonics\\Lumen Player\\Bench";
  for (size_t at = path.find(L'\\', 3);; at = path.find(L'\\', at + 1)) {
    const std::wstring level = at == std::wstring::npos ? path : path.substr(0, at);
    if (GetFileAttributesW(level.c_str()) == INVALID_FILE_ATTRIBUTES) {
      if (!CreateDirectoryW(level.c_str(), nullptr)) return L"";
      madeDirectories_.push_back(level);
    }
    if (at == std::wstring::npos) return path;
  }
}

HRESULT BenchBrokerSession::Activate(ComPtr<ILumenBroker6>& broker) { return BrokerActivation::Activate(broker); }

bool BenchBrokerSession::ServersEnded() {
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

std::wstring BenchBrokerSession::BinaryDirectory() {
  wchar_t buffer[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, buffer, MAX_PATH);
  std::wstring path(buffer, n);
  return path.substr(0, path.find_last_of(L'\\'));
}

}  // namespace SASM
