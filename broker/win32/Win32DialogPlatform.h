#pragma once
// The dialog family's seam over the shell's file dialogs, the property system,
// the common print dialog and the process heap.
#include "broker/DialogPlatform.h"

namespace SASM {

class Win32DialogPlatform : public DialogPlatform {
 public:
  int32_t CreateFileDialog(bool save, std::unique_ptr<FileDialog>& dialog) override;
  FilterSpec* AllocateSpecs(uint32_t count) override;
  void FreeSpecs(FilterSpec* specs) override;
  bool PrintDialog(PrintRequest& request) override;
  void FreeGlobal(uint64_t memory) override;
};

}  // namespace SASM
