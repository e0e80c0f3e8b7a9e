#pragma once
// Shared helpers of the Wine suite: where the built binaries are, a directory
// tree that cleans itself up, and the machine hive as the product leaves it.
#include "engine/win32/WindowsApi.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/LumenBrokerShim.h"
#include "engine/win32/ScopedSafeArray.h"
#include "host/ReferenceHost.h"

namespace SASM::WineTest {

// Directory of the running test executable; the module and the host sit beside it.
std::wstring BinaryDirectory();
std::wstring ModulePath();
// The real system directory and roaming folder of this prefix.
std::wstring SystemDirectory();
std::wstring RoamingFolder();

// A folder of the shell, without a trailing separator; empty when it has none.
std::wstring Folder(int csidl);
// temp\LumenUtilTests\name: where a test makes its files.
std::wstring TestDirectory(const wchar_t* name);
std::wstring Lower(std::wstring text);
std::string Utf8(const std::wstring& text);

bool FileExists(const std::wstring& path);
// The whole file, shared with writers; empty when it can't be read.
std::string ReadAll(const std::wstring& path);
// A small Portable Executable image: "MZ", the header's offset at 60, "PE\0\0" there.
std::string PeImage(size_t size = 0x400);

// A one-dimensional byte array holding bytes, and the bytes of one.
ScopedSafeArray ByteArray(std::string_view bytes, LONG lowerBound = 0);
std::string BytesOf(SAFEARRAY* array);

// Runs a command line to its end (or the timeout) and gives its exit code, or
// 0xFFFFFFFF when it can't start; out and err, when given, are inherited as its
// standard output and error.
DWORD RunToEnd(std::wstring commandLine, DWORD timeoutMs = 30000, HANDLE out = nullptr, HANDLE err = nullptr);

// Whether the connection directory's mutex or mapping exists; each goes with its last handle.
bool LcdMutexExists();
bool LcdMappingExists();

// A DWORD value of the current user's hive; 0 when absent.
DWORD UserDword(const wchar_t* key, const wchar_t* name);

// "code severity text" for each report of the host's log, from the first'th on.
std::vector<std::string> Reports(ReferenceHost& host, size_t first = 0);

// A reference host and the shim the real platform starts for it.
struct HostedShim {
  explicit HostedShim(const std::u16string& settings = u"", HostOptions options = {});
  ~HostedShim() { host.shim = nullptr; }
  ReferenceHost host;
  std::unique_ptr<LumenBrokerShim> shim;
};

// Keys of the machine hive in the 64-bit view.
bool KeyExists(const std::wstring& path);
// The key's tree in both views (the platform's registration helpers leave
// 32-bit copies that Wine falls back to); then its parent, when left empty.
void DeleteBothViews(const std::wstring& path, bool parentIfEmpty = false);

// Where registration writes, for tests that read it back and clean it away.
namespace ProductKeys {
inline constexpr wchar_t kUninstall[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Corva Lumen Player ";
inline constexpr wchar_t kProduct[] = L"Software\\Halcyonics\\LumenPlayer";
inline constexpr wchar_t kCompatibility[] =
    L"SOFTWARE\\Microsoft\\Internet Explorer\\ActiveX Compatibility\\{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}";
inline constexpr wchar_t kExecutionOptions[] =
    L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\";
inline constexpr wchar_t kPlugin[] = L"SOFTWARE\\MozillaPlugins\\@halcyonics.example/LumenPlayer";
inline constexpr wchar_t kCounterKey[] = L"Software\\LumenUtilTests\\TestControl";
}  // namespace ProductKeys

// Removes every key registration of the three kinds writes, the broker's too,
// and the test control's counters.
void ForgetProductRegistration();

// Creates directories and files on demand; removes what it created, deepest first.
class TempTree {
 public:
  TempTree() = default;
  TempTree(const TempTree&) = delete;
  TempTree& operator=(const TempTree&) = delete;
  ~TempTree();
  // Creates every missing directory of path.
  void Directory(const std::wstring& path);
  void File(const std::wstring& path, const std::string& content = "");
  // Copies from into to, which goes with the tree even when protection made it read-only.
  bool Copy(const std::wstring& from, const std::wstring& to);

 private:
  std::vector<std::wstring> files_;
  std::vector<std::wstring> directories_;
};

}  // namespace SASM::WineTest
