// The path policy over a file system the fuzzer furnishes: directories, files,
// 8.3 names, reparse points with raw data, links and object-manager links,
// then every question a broker client can put to it.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "broker/BrokerPathPolicy.h"
#include "engine/MString.h"
#include "tests/fakes/FakePathPlatform.h"

using namespace SASM;

namespace {

const std::u16string kRoaming = u"C:\\Users\\a\\AppData\\Roaming";
const std::u16string kLocal = u"C:\\Users\\a\\AppData\\Local";

// UTF-16 text from the input: one byte a unit for ASCII, three for any other
// unit (the core's lead-byte decoding), up to the first 0 as a C string ends.
std::u16string Text(FuzzedDataProvider& input, size_t maxBytes = 300) {
  std::string bytes = input.ConsumeRandomLengthString(maxBytes);
  std::u16string text = MString::FromUtf8(bytes.data(), static_cast<int32_t>(bytes.size())).ToU16();
  return text.substr(0, text.find(u'\0'));
}

void CheckSanitized(const MString& path, bool upper) {
  if (path.IsNull()) return;
  std::u16string_view view = path.View();
  if (view.find_first_of(u"*?\"|<>/") != view.npos) std::abort();
  size_t colons = 0;
  for (char16_t unit : view) colons += unit == u':';
  if (colons > 1) std::abort();
  if (upper) {
    for (std::u16string_view dot : {u"\\.", u".\\", u"\\%2E", u"%2E\\"}) {
      if (view.find(dot) != view.npos) std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  FakePathPlatform paths;
  paths.SetFolder(26, kRoaming + u"\\");
  if (input.ConsumeBool()) paths.SetFolder(28, kLocal);
  paths.SetUserString(u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", u"Local AppData",
                      input.ConsumeBool() ? kLocal : Text(input));
  paths.SetFolder(37, u"C:\\Windows\\system32");
  paths.SetFolder(41, u"C:\\Windows\\SysWOW64");
  paths.SetTempPath(input.ConsumeBool() ? kLocal + u"\\Temp\\" : Text(input));
  paths.AddDirectory(kRoaming + u"\\Halcyonics\\Lumen Player\\#SharedObjects\\abc");
  paths.AddDirectory(kRoaming + u"\\Corva\\Lumen Player");
  paths.AddDirectory(kLocal + u"\\Temp\\Low");

  const int furnishings = input.ConsumeIntegralInRange<int>(0, 8);
  for (int i = 0; i < furnishings; ++i) {
    switch (input.ConsumeIntegralInRange<int>(0, 6)) {
      case 0: paths.AddDirectory(Text(input)); break;
      case 1: paths.AddFile(Text(input)); break;
      case 2: {
        std::u16string shortPath = Text(input);
        paths.AddShortName(shortPath, Text(input));
        break;
      }
      case 3: {
        std::u16string directory = Text(input);
        paths.AddSymbolicLink(directory, Text(input));
        break;
      }
      case 4: {
        // Reparse data as any driver might return it.
        std::u16string directory = Text(input);
        paths.AddReparsePoint(directory, input.ConsumeBytes<uint8_t>(input.ConsumeIntegralInRange<size_t>(0, 600)));
        break;
      }
      case 5: {
        std::u16string directory = Text(input);
        std::u16string target = Text(input);
        const uint32_t tag = input.ConsumeBool() ? FakePathPlatform::kTagMountPoint : FakePathPlatform::kTagSymbolicLink;
        paths.AddReparsePoint(directory, FakePathPlatform::ReparseData(tag, target, Text(input)));
        break;
      }
      case 6: {
        std::u16string name = Text(input);
        paths.AddLinkObject(name, Text(input));
        break;
      }
    }
  }

  BrokerPathPolicy policy(paths, input.ConsumeBool());
  policy.SetEnableLocalAppData(input.ConsumeBool());
  while (input.remaining_bytes() > 0) {
    const std::u16string path = Text(input, 600);
    const char16_t* p = path.c_str();
    MString expanded = policy.ExpandBrokerPath(p);
    CheckSanitized(policy.SanitizePath(p, true), true);
    CheckSanitized(policy.SanitizePath(p, false), false);
    bool shared = false;
    policy.IsWritableDataPath(expanded.Data(), input.ConsumeBool(), &shared);
    policy.BrokerIsWritablePath(p, input.ConsumeIntegralInRange<int32_t>(0, 2));
    policy.IsCreatableDirectory(expanded.Data());
    policy.IsSearchablePath(p);
    policy.IsSharedObjectsPath(p);
    policy.IsSystemPlayerPath(p);
    MString target;
    policy.ResolveAllLinks(p, target);
    policy.TryGetLongPath(p);
    BrokerPathPolicy::HasAllowedExtension(p);
    BrokerPathPolicy::IsUncServerRoot(p);
    BrokerPathPolicy::IsPathUnderRoot(p, expanded.Data() ? expanded.Data() : u"");
  }
  if (paths.OpenHandles() != 0) std::abort();
  return 0;
}
