#pragma once
// The system's dialogs as a script: each file dialog records what it was given
// and answers the user's scripted choice or cancel; the print dialog records
// its request and answers a device. Filter entries and global memory are counted
// so a test can see that nothing stays allocated.
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "broker/DialogPlatform.h"

namespace SASM {

class FakeDialogPlatform : public DialogPlatform {
 public:
  static constexpr int32_t kCancelled = static_cast<int32_t>(0x800704C7);
  static constexpr int32_t kNoResult = static_cast<int32_t>(0x8000FFFF);

  // What one file dialog was given.
  struct Given {
    bool save = false;
    std::vector<std::pair<std::u16string, std::u16string>> fileTypes;
    const FilterSpec* specs = nullptr;
    std::optional<uint32_t> options;
    // Absent when SetFileName was given null.
    std::optional<std::u16string> fileName;
    std::u16string collected;
    std::optional<std::vector<std::u16string>> offeredOwners;
    bool shown = false;
    uint64_t owner = 0;
    // Whether the specs were still allocated while the dialog was up.
    bool specsLiveWhileShown = false;
  };
  // One chosen item: its name in its folder and its full path.
  struct Item {
    std::u16string name;
    std::u16string path;
  };

  // The user's answer to the next dialogs.
  int32_t showResult = 0;
  std::vector<Item> items;
  int32_t ownersResult = 0;
  std::vector<std::u16string> ownersChosen;
  bool failAllocation = false;

  // The print dialog's answer: the device and what the user changed.
  bool printResult = true;
  DialogPlatform::PrintRequest printAnswer;

  const std::vector<Given>& Dialogs() const { return given_; }
  const std::vector<PrintRequest>& PrintRequests() const { return printRequests_; }
  const std::vector<uint64_t>& FreedGlobals() const { return freedGlobals_; }
  size_t LiveSpecs() const { return liveSpecs_.size(); }

  int32_t CreateFileDialog(bool save, std::unique_ptr<FileDialog>& dialog) override;
  FilterSpec* AllocateSpecs(uint32_t count) override;
  void FreeSpecs(FilterSpec* specs) override;
  bool PrintDialog(PrintRequest& request) override;
  void FreeGlobal(uint64_t memory) override { freedGlobals_.push_back(memory); }

 private:
  class Dialog;

  std::vector<Given> given_;
  std::set<const FilterSpec*> liveSpecs_;
  std::vector<PrintRequest> printRequests_;
  std::vector<uint64_t> freedGlobals_;
};

}  // namespace SASM
