#pragma once
// Seam for what the broker does with a stored add-on product: start it, read
// its version, and probe the mutex a running product holds.
#include <cstdint>
#include <string>
#include <string_view>

namespace SASM {

class IAddOnProcesses {
 public:
  static constexpr uint32_t kElevationRequired = 740;

  virtual ~IAddOnProcesses() = default;
  // Starts path with parameters as its command line (null for none), waits
  // until it is idle, and closes its handles; 0 or the platform's error.
  virtual uint32_t Start(std::u16string_view path, const char16_t* parameters) = 0;
  // The shell's elevated route: "open" on path, shown normally, owned by the
  // foreground window, without parameters. False when it fails or is missing.
  virtual bool StartElevated(std::u16string_view path) = 0;
  // The file version's two words from the fixed part of the version block.
  virtual bool ReadFileVersion(std::u16string_view path, uint32_t& mostSignificant, uint32_t& leastSignificant) = 0;
  // Creates and owns the named mutex for an instant: true when it already existed.
  virtual bool MutexExists(const std::string& name) = 0;
};

}  // namespace SASM
