// A second participant of the connection directory for the Wine suite.
//   lumen_lcd_child add NAME REALM FORMAT  exits 0 when the entry was added
//   lumen_lcd_child hold                   takes the lock and exits holding it
#include <cstdlib>
#include <cstring>

#include "connections/win32/Win32LcdAccessor.h"

namespace {

constexpr int kDone = 0;
constexpr int kRefused = 1;
constexpr int kNotOpen = 2;
constexpr int kUsage = 3;

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return kUsage;
  SASM::Win32LcdAccessor lcd;
  if (!lcd.IsOpen()) return kNotOpen;
  if (std::strcmp(argv[1], "add") == 0 && argc == 5) {
    const auto realm = static_cast<uint32_t>(std::strtoul(argv[3], nullptr, 10));
    const auto format = static_cast<int32_t>(std::strtol(argv[4], nullptr, 10));
    return lcd.TryAddConnection(argv[2], realm, realm, format) ? kDone : kRefused;
  }
  if (std::strcmp(argv[1], "hold") == 0) {
    // The accessor closes its handles on the way out but never releases a hold,
    // so the thread ends owning the mutex.
    return lcd.Lock() == 1 ? kDone : kRefused;
  }
  return kUsage;
}
