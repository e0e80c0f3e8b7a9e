#include "install/ProductInventory.h"

#include <array>

#include "engine/ProductIds.h"
#include "engine/ProductKind.h"
#include "install/ControlRegistration.h"

namespace SASM {
namespace {

struct KindKeys {
  uint32_t kind;
  const char16_t* productSuffix;
  const char16_t* releaseTypeSuffix;
  // The name ReleaseTypeMatches opens, spelled as that test has always spelled it.
  const char16_t* releaseTypeKey;
};

constexpr KindKeys kKindKeys[] = {
    {ProductKind::kActiveX, u"ActiveX", u"ActiveXReleaseType", u"SOFTWARE\\Halcyonics\\LumenPlayerActiveXReleaseType"},
    {ProductKind::kNpapi, u"Plugin", u"PluginReleaseType", u"SOFTWARE\\Halcyonics\\LumenPlayerPluginReleaseType"},
    {ProductKind::kPpapi, u"Pepper", u"PepperReleaseType", u"SOFTWARE\\Halcyonics\\LumenPlayerPepperReleaseType"},
};

const KindKeys* FindKind(uint32_t kind) {
  for (const KindKeys& keys : kKindKeys) {
    if (keys.kind == kind) return &keys;
  }
  return nullptr;
}

// This build, 28.0.0.126, as numbers: a later build changes these, not the comparison.
constexpr uint32_t kBuildMajor = 28;
constexpr uint32_t kBuildRevision = 126;

// Major, minor, build and revision; a missing part is 0.
std::array<uint32_t, 4> SplitVersion(const MString& text) {
  std::array<uint32_t, 4> parts{};
  MString rest = text;
  for (uint32_t& part : parts) {
    if (rest.IsEmpty()) break;
    part = rest.TakeUntil(".").ParseDigits();
    rest.Take(1);
  }
  return parts;
}

enum class CleanKey { RunOnce, Product, Base, ReleaseType, CodeStore, OldUninstall };

struct CleanStep {
  RegistryHive hive;
  CleanKey key;
  const char16_t* value;  // null: the key itself goes
  uint32_t kinds;         // 0: every kind
  bool counts;
};

constexpr CleanStep kCleanSteps[] = {
    {RegistryHive::CurrentUser, CleanKey::RunOnce, u"LumenPlayerUpdate", 0, true},
    {RegistryHive::CurrentUser, CleanKey::Product, nullptr, 0, true},
    {RegistryHive::CurrentUser, CleanKey::Base, u"LumenPlayerVersion", 0, true},
    {RegistryHive::CurrentUser, CleanKey::Base, u"TwlInstall", 0, true},
    {RegistryHive::Machine, CleanKey::ReleaseType, nullptr, 0, true},
    {RegistryHive::Machine, CleanKey::CodeStore, nullptr, ProductKind::kActiveX, true},
    {RegistryHive::Machine, CleanKey::OldUninstall, nullptr, ProductKind::kNpapi | ProductKind::kPpapi, false},
};

MString CleanKeyName(CleanKey key, uint32_t kind) {
  switch (key) {
    case CleanKey::RunOnce: return MString(u"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce");
    case CleanKey::Product: return ProductInventory::GetProductKey(kind);
    case CleanKey::Base: return MString(ProductInventory::kBaseKey);
    case CleanKey::ReleaseType: return ProductInventory::GetReleaseTypeKey(kind);
    case CleanKey::CodeStore: {
      MString name(u"Software\\Microsoft\\Code Store Database\\Distribution Units\\");
      return name.Append(MString(std::u16string_view(ProductIds::kControlClass.WideText())));
    }
    case CleanKey::OldUninstall: return ControlRegistration::GetOldUninstallKey(kind);
  }
  return MString::Empty();
}

}  // namespace

MString ProductInventory::GetProductKey(uint32_t kind) {
  MString key(kBaseKey);
  if (const KindKeys* keys = FindKind(kind)) key.Append(keys->productSuffix);
  return key;
}

MString ProductInventory::GetReleaseTypeKey(uint32_t kind) {
  MString key(kBaseKey);
  if (const KindKeys* keys = FindKind(kind)) key.Append(keys->releaseTypeSuffix);
  return key;
}

bool ProductInventory::ReadPlayerPaths(uint32_t kind, MString& playerPath, MString& uninstallerPath) {
  MString key = GetProductKey(kind);
  return registry_.ReadString(RegistryHive::Machine, key, u"PlayerPath", playerPath) &&
         registry_.ReadString(RegistryHive::Machine, key, u"UninstallerPath", uninstallerPath);
}

ProductInventory::VersionState ProductInventory::CompareInstalledVersion(uint32_t kind) {
  MString version;
  if (!registry_.ReadString(RegistryHive::Machine, GetProductKey(kind), u"Version", version)) return kNotInstalled;
  auto [major, minor, build, revision] = SplitVersion(version);
  if (major > kBuildMajor) return kNewer;
  if (major < kBuildMajor) return kOlder;
  // Any other minor or build counts as newer, smaller ones too.
  if (minor != 0 || build != 0) return kNewer;
  if (revision > kBuildRevision) return kNewer;
  if (revision == kBuildRevision) return kSame;
  return kOlder;
}

bool ProductInventory::IsSafeVersion() {
  uint32_t lowestSafe = 0;
  if (!registry_.ReadDword(RegistryHive::Machine, kSafeVersionsKey, kSafeVersionName, lowestSafe)) return true;
  return lowestSafe <= kBuildRevision;
}

bool ProductInventory::ReleaseTypeMatches(uint32_t kinds, uint32_t expected) {
  const char16_t* key = nullptr;
  for (const KindKeys& keys : kKindKeys) {
    if (kinds & keys.kind) key = keys.releaseTypeKey;
  }
  if (!key) return true;
  if (registry_.Registry().OpenKey(RegistryHive::Machine, key, RegistryAccess::kRead) != 0) return true;
  uint32_t release = 0;
  if (!registry_.ReadDword(RegistryHive::Machine, key, u"Release", release)) release = 0;
  return release == expected;
}

int32_t ProductInventory::CompareVersionStrings(const MString& a, const MString& b) {
  std::array<uint32_t, 4> left = SplitVersion(a), right = SplitVersion(b);
  for (size_t i = 0; i < left.size(); ++i) {
    if (left[i] != right[i]) return left[i] > right[i] ? 1 : -1;
  }
  return 0;
}

bool ProductInventory::DeleteProductKey(uint32_t kind) {
  return registry_.DeleteKey(RegistryHive::Machine, GetProductKey(kind));
}

bool ProductInventory::CleanRegistry(uint32_t kind) {
  bool result = true;
  for (const CleanStep& step : kCleanSteps) {
    if (step.kinds != 0 && !(step.kinds & kind)) continue;
    MString key = CleanKeyName(step.key, kind);
    bool done = step.value ? registry_.DeleteValue(step.hive, key, step.value) : registry_.DeleteKey(step.hive, key);
    if (step.counts && !done) result = false;
  }
  return result;
}

bool ProductInventory::DeleteSafeVersions() { return registry_.DeleteKey(RegistryHive::Machine, kSafeVersionsKey); }

}  // namespace SASM
