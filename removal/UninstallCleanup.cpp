#include "removal/UninstallCleanup.h"

#include "engine/InstallEngine.h"
#include "engine/ProductKind.h"
#include "install/ControlRegistration.h"
#include "removal/RegistryKeyFamilies.h"

namespace SASM {
namespace {

struct DeletionTally {
  IRegistry* registry;
  bool allGone = true;
};

void DeleteAndTally(void* context, const char* keyName) {
  auto& tally = *static_cast<DeletionTally*>(context);
  int32_t status = RegistryKeyFamilies::DeleteMachineKey(*tally.registry, keyName);
  if (status != RegistryError::kSuccess && status != RegistryError::kFileNotFound) tally.allGone = false;
}

}  // namespace

void UninstallCleanup::RemoveMsiProduct(const MsiRecord& record, const MString& toolDirectory,
                                        const MString& productCode) {
  IRegistry& registry = *platform_.registry;
  bool registered = false;
  for (const MString* prefix : {&record.firstPrefix, &record.secondPrefix}) {
    MString key = *prefix;
    key.Append(productCode);
    if (registry.OpenKey(RegistryHive::Machine, key.View(), RegistryAccess::kRead) == RegistryError::kSuccess) {
      registered = true;
      break;
    }
  }
  if (!registered || !platform_.launcher) return;
  MString tool = toolDirectory;
  tool.Append(u"\\").Append(kMsiTool);
  MString parameters(kMsiRemoveSwitches);
  parameters.Append(productCode);
  platform_.launcher->ShellExecuteAndWait(tool.View(), parameters.View());
}

const MStringList* UninstallCleanup::ProductCodes(uint32_t kind, const InstallEngine& engine) {
  switch (kind) {
    case ProductKind::kActiveX: return &engine.guidsAX;
    case ProductKind::kNpapi: return &engine.guidsPlugin;
    case ProductKind::kPpapi: return &engine.guidsPepper;
    default: return nullptr;
  }
}

void UninstallCleanup::RemoveUninstallEntries(uint32_t kind, const InstallEngine& engine) {
  if (const MStringList* codes = ProductCodes(kind, engine)) {
    MsiRecord record{engine.uninstallRoot, engine.uninstallRootWow};
    std::u16string system;
    MString toolDirectory;
    if (platform_.system->GetSystemDirectory(system)) toolDirectory = MString(std::u16string_view(system));
    for (const MStringList::MStringNode* node = codes->head; node; node = node->next)
      RemoveMsiProduct(record, toolDirectory, node->key);
  }
  platform_.registry->DeleteTree(RegistryHive::Machine, ControlRegistration::GetUninstallEntryKey(kind).View());
}

bool UninstallCleanup::RemoveActiveXClasses() {
  DeletionTally tally{platform_.registry};
  RegistryKeyFamilies::Walk(RegistryKeyFamilies::Selection::ActiveXClasses, &DeleteAndTally, &tally);
  return tally.allGone;
}

}  // namespace SASM
