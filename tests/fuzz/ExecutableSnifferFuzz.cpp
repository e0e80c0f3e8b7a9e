// The first-write sniffing as a client reaches it: files opened through the
// broker's file family, then fuzzed seeks, slices, reads and closes. A fresh
// cookie's first slice that holds a whole image must never reach the disk.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "broker/BrokerFileMethods.h"
#include "tests/fakes/FakeBrokerFilePlatform.h"
#include "tests/fakes/FakeEnterpriseProtectionPlatform.h"
#include "tests/fakes/FakeInternetMarkPlatform.h"
#include "tests/fakes/FakePathPlatform.h"

using namespace SASM;

namespace {

constexpr int32_t kOk = 0;
const std::u16string kRoaming = u"C:\\Users\\a\\AppData\\Roaming";
const std::u16string kPlayerData = kRoaming + u"\\Halcyonics\\Lumen Player";
const std::u16string kTemp = u"C:\\Users\\a\\AppData\\Local\\Temp";
const std::u16string kPaths[] = {kPlayerData + u"\\movie.sol", kPlayerData + u"\\plugin.dll", kTemp + u"\\Low\\x.tmp"};

struct Cookie {
  uint32_t id = 0;
  bool fresh = true;  // no seek and no judged write yet
};

// "M", "Z", the header offset at 60 and "P", "E", 0, 0 there, all inside the slice.
bool IsWholeImage(const std::vector<uint8_t>& slice) {
  if (slice.size() < 64 || slice[0] != 'M' || slice[1] != 'Z') return false;
  const int32_t offset = static_cast<int32_t>(slice[60] | slice[61] << 8 | slice[62] << 16 | uint32_t{slice[63]} << 24);
  if (offset < 0 || static_cast<size_t>(offset) + 4 > slice.size()) return false;
  return slice[offset] == 'P' && slice[offset + 1] == 'E' && slice[offset + 2] == 0 && slice[offset + 3] == 0;
}

// Plants an image's marks into the slice, so that the fuzzer need not find all ten bytes itself.
void PlantImage(std::vector<uint8_t>& slice, uint32_t offset) {
  if (slice.size() < 68) slice.resize(68);
  if (offset + 4 > slice.size()) offset = static_cast<uint32_t>(slice.size() - 4);
  slice[0] = 'M';
  slice[1] = 'Z';
  for (int i = 0; i < 4; ++i) slice[60 + i] = static_cast<uint8_t>(offset >> (8 * i));
  slice[offset] = 'P';
  slice[offset + 1] = 'E';
  slice[offset + 2] = 0;
  slice[offset + 3] = 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  FakePathPlatform paths;
  paths.SetFolder(26, kRoaming + u"\\");
  paths.SetFolder(28, u"C:\\Users\\a\\AppData\\Local");
  paths.SetTempPath(kTemp + u"\\");
  paths.AddDirectory(kPlayerData);
  paths.AddDirectory(kTemp + u"\\Low");
  FakeBrokerFilePlatform files;
  files.AddDirectory(kPlayerData);
  files.AddDirectory(kTemp + u"\\Low");
  FakeEnterpriseProtectionPlatform protection;
  FakeInternetMarkPlatform marks;
  BrokerPathPolicy policy(paths, true);
  BrokerCookieTable cookies;
  EnterpriseIdentityList serverIdentities;
  BrokerFileMethods methods(files, protection, marks, policy, cookies, serverIdentities);

  std::vector<Cookie> open;
  auto pick = [&]() -> Cookie* {
    if (open.empty()) return nullptr;
    return &open[input.ConsumeIntegralInRange<size_t>(0, open.size() - 1)];
  };
  for (int steps = 0; steps < 48 && input.remaining_bytes() > 0; ++steps) {
    switch (input.ConsumeIntegralInRange<int>(0, 4)) {
      case 0: {
        const std::u16string& path = kPaths[input.ConsumeIntegralInRange<size_t>(0, std::size(kPaths) - 1)];
        Cookie cookie;
        const int32_t readOnly = input.ConsumeBool(), truncate = input.ConsumeBool();
        if (open.size() < 4 && methods.CreateFile(path.c_str(), readOnly, truncate, &cookie.id) == kOk) {
          open.push_back(cookie);
        }
        break;
      }
      case 1: {
        Cookie* cookie = pick();
        if (!cookie) break;
        // Far seeks cost the fuzzer memory only: the read-back is as long as the seek.
        const int32_t distance = input.ConsumeBool() ? input.ConsumeIntegralInRange<int32_t>(-256, 256)
                                                     : input.ConsumeIntegralInRange<int32_t>(-(1 << 16), 1 << 16);
        uint32_t position = 0;
        methods.SetFilePointer(cookie->id, distance, input.ConsumeIntegralInRange<uint32_t>(0, 3), &position);
        cookie->fresh = false;
        break;
      }
      case 2: {
        Cookie* cookie = pick();
        if (!cookie) break;
        std::vector<uint8_t> slice = input.ConsumeBytes<uint8_t>(input.ConsumeIntegralInRange<size_t>(0, 1024));
        if (input.ConsumeBool()) PlantImage(slice, input.ConsumeIntegralInRange<uint32_t>(64, 1020));
        const bool wellFormed = input.ConsumeIntegralInRange<int>(0, 7) != 0;
        const uint32_t dimensions = wellFormed ? 1 : input.ConsumeIntegralInRange<uint32_t>(0, 3);
        const uint32_t elementSize = wellFormed ? 1 : input.ConsumeIntegralInRange<uint32_t>(0, 4);
        const int32_t lowerBound = wellFormed ? 0 : input.ConsumeIntegralInRange<int32_t>(-1, 1);
        std::string bytes(slice.begin(), slice.end());
        uint32_t written = 0;
        const int32_t result =
            methods.WriteFile(cookie->id, files.MakeArray(bytes, dimensions, elementSize, lowerBound), &written);
        const bool judged = dimensions == 1 && elementSize == 1 && lowerBound == 0;
        if (judged && cookie->fresh && IsWholeImage(slice) && (result == kOk || written != 0)) std::abort();
        if (written > slice.size()) std::abort();
        if (judged) cookie->fresh = false;
        break;
      }
      case 3: {
        Cookie* cookie = pick();
        if (!cookie) break;
        const uint32_t wanted = input.ConsumeIntegralInRange<uint32_t>(0, 4096);
        uint32_t read = 0;
        BrokerFilePlatform::ByteArray array = nullptr;
        methods.ReadFile(cookie->id, wanted, &read, &array);
        if (read > wanted) std::abort();
        break;
      }
      case 4: {
        if (open.empty()) break;
        const size_t at = input.ConsumeIntegralInRange<size_t>(0, open.size() - 1);
        methods.CloseHandle(open[at].id);
        open.erase(open.begin() + static_cast<std::ptrdiff_t>(at));
        break;
      }
    }
  }
  for (const Cookie& cookie : open) methods.CloseHandle(cookie.id);
  return 0;
}
