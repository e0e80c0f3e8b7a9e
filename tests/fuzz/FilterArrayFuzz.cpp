// A dialog filter as a client sends it, parsed for a pair count from the
// input: a parse that succeeds must leave every name and pattern inside the
// array and ended by a terminator there, and the array released.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "broker/BrokerDialogMethods.h"
#include "tests/fakes/FakeBrokerFilePlatform.h"
#include "tests/fakes/FakeDialogPlatform.h"
#include "tests/fakes/FakeEnterpriseProtectionPlatform.h"
#include "tests/fakes/FakePathPlatform.h"
#include "tests/fakes/FakeProcesses.h"

using namespace SASM;

namespace {

bool EndsInside(const char16_t* text, const char16_t* begin, const char16_t* end) {
  if (text < begin || text >= end) return false;
  while (text < end && *text != u'\0') ++text;
  return text < end;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  // Mostly small counts; the top bit asks for one far beyond anything present.
  uint32_t pairs = data[0] & 0x7F;
  if (data[0] & 0x80) pairs = 0x0FFFFFFF;

  FakeBrokerFilePlatform files;
  FakeDialogPlatform dialogs;
  FakePathPlatform paths;
  FakeProcesses processes;
  DialogOwnerPolicy owners(paths, processes);
  BrokerCookieTable cookies;
  FakeEnterpriseProtectionPlatform protection;
  BrokerFilePlatform::ByteArray array =
      files.MakeArray(std::string_view(reinterpret_cast<const char*>(data + 1), size - 1));
  uint8_t* bytes = nullptr;
  files.AccessByteArray(array, bytes);
  files.UnaccessByteArray(array);
  const auto* begin = reinterpret_cast<const char16_t*>(bytes);
  const auto* end = begin + (size - 1) / 2;

  DialogPlatform::FilterSpec* specs = nullptr;
  BrokerDialogMethods methods(dialogs, files, owners, cookies, protection);
  int32_t result = methods.ParseFilterArray(pairs, array, specs);
  if (files.Locks(array) != 0) std::abort();
  if (result != 0) {
    if (specs) std::abort();
    return 0;
  }
  for (uint32_t i = 0; i < pairs; ++i) {
    if (!EndsInside(specs[i].name, begin, end) || !EndsInside(specs[i].pattern, begin, end)) std::abort();
  }
  dialogs.FreeSpecs(specs);
  return 0;
}
