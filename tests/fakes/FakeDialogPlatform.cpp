#include "tests/fakes/FakeDialogPlatform.h"

namespace SASM {

class FakeDialogPlatform::Dialog : public DialogPlatform::FileDialog {
 public:
  Dialog(FakeDialogPlatform& platform, size_t index) : platform_(platform), index_(index) {}

  int32_t SetFileTypes(uint32_t count, const FilterSpec* specs) override {
    Given& given = Record();
    given.specs = specs;
    for (uint32_t i = 0; i < count; ++i) given.fileTypes.emplace_back(specs[i].name, specs[i].pattern);
    return 0;
  }
  int32_t SetOptions(uint32_t options) override {
    Record().options = options;
    return 0;
  }
  int32_t SetFileName(const char16_t* name) override {
    if (name) Record().fileName = name;
    return 0;
  }
  int32_t CollectProperties(const char16_t* names) override {
    Record().collected = names;
    return 0;
  }
  int32_t OfferOwners(const std::vector<std::u16string>& values) override {
    Record().offeredOwners = values;
    return 0;
  }
  int32_t Show(uint64_t owner) override {
    Given& given = Record();
    given.shown = true;
    given.owner = owner;
    given.specsLiveWhileShown = given.specs && platform_.liveSpecs_.count(given.specs) != 0;
    shown_ = platform_.showResult >= 0;
    return platform_.showResult;
  }
  int32_t GetResultCount(uint32_t& count) override {
    if (!shown_) return kNoResult;
    count = static_cast<uint32_t>(platform_.items.size());
    return 0;
  }
  int32_t GetResultName(uint32_t index, uint32_t sigdn, std::u16string& name) override {
    if (!shown_ || index >= platform_.items.size()) return kNoResult;
    const Item& item = platform_.items[index];
    name = sigdn == 0x80058000 ? item.path : item.name;
    return 0;
  }
  int32_t GetChosenName(uint32_t sigdn, std::u16string& name) override {
    return GetResultName(0, sigdn, name);
  }
  int32_t ReadOwners(std::vector<std::u16string>& values) override {
    if (platform_.ownersResult < 0) return platform_.ownersResult;
    values = platform_.ownersChosen;
    return 0;
  }

 private:
  Given& Record() { return platform_.given_[index_]; }

  FakeDialogPlatform& platform_;
  size_t index_;
  bool shown_ = false;
};

int32_t FakeDialogPlatform::CreateFileDialog(bool save, std::unique_ptr<FileDialog>& dialog) {
  given_.push_back({});
  given_.back().save = save;
  dialog = std::make_unique<Dialog>(*this, given_.size() - 1);
  return 0;
}

DialogPlatform::FilterSpec* FakeDialogPlatform::AllocateSpecs(uint32_t count) {
  if (failAllocation) return nullptr;
  auto* specs = new FilterSpec[count == 0 ? 1 : count]();
  liveSpecs_.insert(specs);
  return specs;
}

void FakeDialogPlatform::FreeSpecs(FilterSpec* specs) {
  liveSpecs_.erase(specs);
  delete[] specs;
}

bool FakeDialogPlatform::PrintDialog(PrintRequest& request) {
  printRequests_.push_back(request);
  // A dialog that fails may still have left its device memory.
  request.devMode = printAnswer.devMode;
  request.devNames = printAnswer.devNames;
  if (!printResult) return false;
  request.dc = printAnswer.dc;
  request.flags = printAnswer.flags;
  request.fromPage = printAnswer.fromPage;
  request.toPage = printAnswer.toPage;
  return true;
}

}  // namespace SASM
