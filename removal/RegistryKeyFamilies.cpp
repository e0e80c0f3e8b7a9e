#include "removal/RegistryKeyFamilies.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "engine/ClassId.h"
#include "engine/IRegistry.h"
#include "engine/ProductIds.h"
#include "broker/BrokerIdentities.h"

namespace SASM {
namespace {

using Family = RegistryKeyFamilies::Family;
namespace Ids = ProductIds;

constexpr char kMachineClsid[] = "MACHINE\\Software\\Classes\\CLSID\\";
constexpr char kMachineInterface[] = "MACHINE\\Software\\Classes\\Interface\\";
constexpr char kMachineTypeLib[] = "MACHINE\\Software\\Classes\\TypeLib\\";
constexpr char kRootClsid[] = "CLASSES_ROOT\\CLSID\\";
constexpr char kRootInterface[] = "CLASSES_ROOT\\Interface\\";
constexpr char kRootTypeLib[] = "CLASSES_ROOT\\TypeLib\\";

// A row is a fixed name, a prefix followed by an id's text (ours, or a broker
// generation's), or a whole nested family.
struct Row {
  const char* text;
  const ClassId* id = nullptr;
  const Family* nested = nullptr;
  const std::u16string_view* brokerId = nullptr;
};

constexpr Family kControl = Family::Control;
constexpr Family kProgramId = Family::ProgramId;

constexpr const BrokerGeneration (&kBroker)[6] = BrokerIdentities::kGenerations;

// The broker's earlier generations 1 to 5, class then interface; the served one stays.
constexpr Row kActiveXMachineClasses[] = {
    {kMachineClsid, nullptr, nullptr, &kBroker[0].classId}, {kMachineInterface, nullptr, nullptr, &kBroker[0].interfaceId},
    {kMachineClsid, nullptr, nullptr, &kBroker[1].classId}, {kMachineInterface, nullptr, nullptr, &kBroker[1].interfaceId},
    {kMachineClsid, nullptr, nullptr, &kBroker[2].classId}, {kMachineInterface, nullptr, nullptr, &kBroker[2].interfaceId},
    {kMachineClsid, nullptr, nullptr, &kBroker[3].classId}, {kMachineInterface, nullptr, nullptr, &kBroker[3].interfaceId},
    {kMachineClsid, nullptr, nullptr, &kBroker[4].classId}, {kMachineInterface, nullptr, nullptr, &kBroker[4].interfaceId},
    {nullptr, nullptr, &kControl},
};

constexpr Row kControlFamily[] = {
    {kMachineClsid, &Ids::kControlClass},
    {kMachineInterface, &Ids::kControlInterface},
    {kMachineTypeLib, &Ids::kControlTypeLibrary},
};

constexpr Row kSecondControl[] = {
    {kMachineClsid, &Ids::kFormerControlClass},
    {kMachineClsid, &Ids::kFormerPropertyPageClass},
    {kMachineTypeLib, &Ids::kFormerTypeLibrary},
};

constexpr Row kProgramIdFamily[] = {
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.1"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.3"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.4"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.5"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.6"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.7"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.8"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.9"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.10"},
    {"CLASSES_ROOT\\TidewaterLumen.TidewaterLumen.11"},
    {"CLASSES_ROOT\\MIME\\Database\\Content Type\\application/futureglint"},
    {"CLASSES_ROOT\\MIME\\Database\\Content Type\\application/x-tidewater-lumen"},
};

// ".2" is absent from both program id lists by design.
constexpr Row kClassRoot[] = {
    {kRootClsid, &Ids::kLegacyPlayerClass},
    {kRootClsid, &Ids::kLegacyFactoryClass},
    {kRootInterface, &Ids::kLegacyPlayerInterface},
    {kRootTypeLib, &Ids::kLegacyTypeLibrary},
    {"CLASSES_ROOT\\TypeLib\\{57A0E746-3863-4D20-A811-950C84F1DB9B}"},
    {"CLASSES_ROOT\\.fgl"},
    {"CLASSES_ROOT\\.twl"},
    {"CLASSES_ROOT\\.hcp"},
    {"CLASSES_ROOT\\.sol"},
    {"CLASSES_ROOT\\.sor"},
    {"CLASSES_ROOT\\LumenFactory.LumenFactory"},
    {"CLASSES_ROOT\\LumenFactory.LumenFactory.1"},
    {"CLASSES_ROOT\\LumenProp.LumenProp"},
    {"CLASSES_ROOT\\LumenProp.LumenProp.1"},
    {nullptr, nullptr, &kProgramId},
    {"CLASSES_ROOT\\HalcyonicsLumenPaper.HalcyonicsLumenPaper"},
    {"CLASSES_ROOT\\MIME\\Database\\Content Type\\application/futureglint"},
    {"CLASSES_ROOT\\MIME\\Database\\Content Type\\application/x-tidewater-lumen"},
    {kRootClsid, &Ids::kLegacyPropertyClass},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.1"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.3"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.4"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.5"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.6"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.7"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.8"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.9"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.10"},
    {"MACHINE\\Software\\Classes\\TidewaterLumen.TidewaterLumen.11"},
    {kMachineClsid, &Ids::kLegacyMachineClass},
    {"MACHINE\\Software\\Microsoft\\Internet Explorer\\NavigatorPluginsList\\Tidewater Lumen\\application/futureglint"},
    {"MACHINE\\Software\\Microsoft\\Internet Explorer\\NavigatorPluginsList\\Tidewater Lumen\\application/"
     "x-tidewater-lumen"},
};

template <size_t N>
void WalkRows(const Row (&rows)[N], RegistryKeyFamilies::Visitor visitor, void* context) {
  for (const Row& row : rows) {
    if (row.nested) {
      RegistryKeyFamilies::Walk(*row.nested, visitor, context);
      continue;
    }
    std::string name = row.text;
    if (row.id) name += row.id->Text();
    // Identities are plain ASCII.
    if (row.brokerId) {
      for (char16_t c : *row.brokerId) name.push_back(static_cast<char>(c));
    }
    visitor(context, name.c_str());
  }
}

bool IsNumeric(std::string_view name) {
  for (char c : name) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

// By value, for digit strings of any length.
int32_t CompareValues(std::string_view a, std::string_view b) {
  a.remove_prefix(std::min(a.find_first_not_of('0'), a.size()));
  b.remove_prefix(std::min(b.find_first_not_of('0'), b.size()));
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  int result = a.compare(b);
  return result < 0 ? -1 : result > 0 ? 1 : 0;
}

}  // namespace

void RegistryKeyFamilies::Walk(Family family, Visitor visitor, void* context) {
  switch (family) {
    case Family::ActiveXMachineClasses: WalkRows(kActiveXMachineClasses, visitor, context); break;
    case Family::Control: WalkRows(kControlFamily, visitor, context); break;
    case Family::SecondControl: WalkRows(kSecondControl, visitor, context); break;
    case Family::ClassRoot: WalkRows(kClassRoot, visitor, context); break;
    case Family::ProgramId: WalkRows(kProgramIdFamily, visitor, context); break;
  }
}

void RegistryKeyFamilies::Walk(Selection selection, Visitor visitor, void* context) {
  if (selection == Selection::ActiveXClasses) {
    Walk(Family::ActiveXMachineClasses, visitor, context);
    return;
  }
  Walk(Family::SecondControl, visitor, context);
  Walk(Family::ClassRoot, visitor, context);
}

int32_t RegistryKeyFamilies::DeleteMachineKey(IRegistry& registry, const char* keyName) {
  constexpr size_t kRootLength = sizeof(kMachineRoot) - 1;
  if (!keyName || std::strncmp(keyName, kMachineRoot, kRootLength) != 0) return 0;
  std::u16string path;
  for (const char* p = keyName + kRootLength; *p; ++p) path.push_back(static_cast<unsigned char>(*p));
  return registry.DeleteTree(RegistryHive::Machine, path);
}

void RegistryKeyFamilies::DeleteVisitor(void* registry, const char* keyName) {
  // The walk goes on whatever a deletion answers: removal runs on half-installed systems too.
  DeleteMachineKey(*static_cast<IRegistry*>(registry), keyName);
}

int32_t RegistryKeyFamilies::CompareNames(const char* a, const char* b) {
  std::string_view left = a ? a : "", right = b ? b : "";
  bool leftNumeric = IsNumeric(left), rightNumeric = IsNumeric(right);
  if (leftNumeric && rightNumeric) return CompareValues(left, right);
  if (leftNumeric != rightNumeric) return leftNumeric ? 1 : -1;
  int result = std::strcmp(left.data(), right.data());
  return result < 0 ? -1 : result > 0 ? 1 : 0;
}

}  // namespace SASM
