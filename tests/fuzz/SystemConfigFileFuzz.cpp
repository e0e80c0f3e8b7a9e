// hms.cfg as the file system hands it over, then the lookups and the truth
// test the engine makes on its values.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "engine/SystemConfigFile.h"
#include "tests/fakes/FakeFileSystem.h"

using namespace SASM;

namespace {

constexpr char16_t kPath[] = u"C:\\Windows\\SysWOW64\\Halcyons\\Lumen\\hms.cfg";

bool IsBlank(char c) { return static_cast<signed char>(c) <= 32; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string bytes(reinterpret_cast<const char*>(data), size);
  FakeFileSystem files;
  files.AddFile(kPath, bytes);
  SystemConfigFile config(files, kPath);
  SystemConfigFile::IsTrue(bytes);

  // Every key the text could name: its value is trimmed, one line, and never empty.
  size_t lineStart = 0;
  for (size_t at = 0; at <= bytes.size(); ++at) {
    if (at < bytes.size() && bytes[at] != '\n' && bytes[at] != '\r') continue;
    std::string_view line(bytes.data() + lineStart, at - lineStart);
    lineStart = at + 1;
    size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    std::string_view key = line.substr(0, equals);
    while (!key.empty() && IsBlank(key.front())) key.remove_prefix(1);
    while (!key.empty() && IsBlank(key.back())) key.remove_suffix(1);
    std::string value = config.Get(key);
    if (config.GetState() == SystemConfigFile::kUtf16Marked && !value.empty()) std::abort();
    if (value.empty()) continue;
    if (IsBlank(value.front()) || IsBlank(value.back())) std::abort();
    if (value.find_first_of("\r\n") != std::string::npos) std::abort();
    SystemConfigFile::IsTrue(value);
  }
  if (config.GetState() == SystemConfigFile::kAbsent && config.Count() != 0) std::abort();
  return 0;
}
