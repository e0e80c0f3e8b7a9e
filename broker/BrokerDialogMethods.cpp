#include "broker/BrokerDialogMethods.h"

#include <memory>
#include <utility>

#include "broker/AuditedFileOpener.h"
#include "broker/BrokerHresult.h"
#include "broker/DeferredOpen.h"
#include "broker/EnterpriseIdentityList.h"

namespace SASM {

namespace {

bool Failed(int32_t result) { return result < 0; }

// Frees a filter's specs when the dialog is done with them.
class SpecsHolder {
 public:
  explicit SpecsHolder(DialogPlatform& platform) : platform_(platform) {}
  SpecsHolder(const SpecsHolder&) = delete;
  SpecsHolder& operator=(const SpecsHolder&) = delete;
  ~SpecsHolder() { Free(); }
  DialogPlatform::FilterSpec*& get() { return specs_; }
  void Free() {
    if (specs_) platform_.FreeSpecs(specs_);
    specs_ = nullptr;
  }

 private:
  DialogPlatform& platform_;
  DialogPlatform::FilterSpec* specs_ = nullptr;
};

}  // namespace

int32_t BrokerDialogMethods::DecodeFilterText(char16_t* text, uint32_t byteLength, uint32_t pairs,
                                              std::vector<FilterField>& fields) {
  fields.clear();
  // Below two bytes there is no terminator to look at.
  if (byteLength < 2 || byteLength % 2 != 0) return BrokerHresult::kInvalidArgument;
  const uint32_t characters = byteLength / 2 - 1;
  if (text[characters] != u'\0') return BrokerHresult::kInvalidArgument;
  for (uint32_t i = 0; i < characters; ++i) {
    if (text[i] == u'\0') return BrokerHresult::kInvalidArgument;
  }

  const uint64_t mostFields = uint64_t{pairs} * 2;
  uint32_t read = 0;
  uint32_t write = 0;
  uint32_t fieldStart = 0;
  while (read < characters) {
    char16_t c = text[read];
    if (c != u'\\') {
      text[write++] = c;
      ++read;
      continue;
    }
    // The terminator stands behind the last character, so this never reads past it.
    char16_t escaped = text[read + 1];
    read += 2;
    if (escaped == u'\\') {
      text[write++] = u'\\';
    } else if (escaped == u'0') {
      text[write] = u'\0';
      fields.push_back({text + fieldStart, write - fieldStart});
      fieldStart = ++write;
      if (fields.size() > mostFields) return BrokerHresult::kInvalidArgument;
    } else {
      return BrokerHresult::kInvalidArgument;
    }
  }
  // A field left open at the end, or a name without its pattern.
  if (write != fieldStart || fields.size() % 2 != 0) return BrokerHresult::kInvalidArgument;
  if (fields.size() != mostFields) return BrokerHresult::kInvalidArgument;
  return BrokerHresult::kOk;
}

int32_t BrokerDialogMethods::ParseFilterArray(uint32_t pairs, BrokerFilePlatform::ByteArray array,
                                              DialogPlatform::FilterSpec*& specsOut) {
  specsOut = nullptr;
  ByteArrayShape shape;
  if (!arrays_.DescribeByteArray(array, shape)) return BrokerHresult::kInvalidArgument;
  uint8_t* data = nullptr;
  int32_t result = arrays_.AccessByteArray(array, data);
  if (Failed(result)) return result;

  std::vector<FilterField> fields;
  result = DecodeFilterText(reinterpret_cast<char16_t*>(data), shape.count, pairs, fields);
  if (result == BrokerHresult::kOk) {
    DialogPlatform::FilterSpec* specs = dialogs_.AllocateSpecs(pairs);
    if (!specs) {
      result = BrokerHresult::kOutOfMemory;
    } else {
      for (uint32_t i = 0; i < pairs; ++i) specs[i] = {fields[2 * i].text, fields[2 * i + 1].text};
      specsOut = specs;
    }
  }
  arrays_.UnaccessByteArray(array);
  return result;
}

int32_t BrokerDialogMethods::CheckFileDialogArguments(uint32_t p_hwnd, uint32_t dwFilterPairs,
                                                      uint32_t dwFilterLength,
                                                      BrokerFilePlatform::ByteArray p_FilterArray) {
  if (dwFilterPairs > kMostFilterPairs) return BrokerHresult::kInvalidArgument;
  if (dwFilterPairs != 0) {
    ByteArrayShape shape;
    if (dwFilterLength == 0 || !arrays_.DescribeByteArray(p_FilterArray, shape) || shape.dimensions != 1 ||
        shape.count != dwFilterLength) {
      return BrokerHresult::kInvalidArgument;
    }
  } else if (dwFilterLength != 0 || p_FilterArray != nullptr) {
    return BrokerHresult::kInvalidArgument;
  }
  if (!owners_.IsDialogOwnerAllowed(AuditedFileOpener::WidenWindow(p_hwnd))) return BrokerHresult::kInvalidArgument;
  return BrokerHresult::kOk;
}

int32_t BrokerDialogMethods::SetFileTypes(DialogPlatform::FileDialog& dialog, uint32_t pairs,
                                          BrokerFilePlatform::ByteArray array, DialogPlatform::FilterSpec*& specs) {
  if (pairs == 0) return BrokerHresult::kOk;
  int32_t result = ParseFilterArray(pairs, array, specs);
  if (result != BrokerHresult::kOk) return result;
  dialog.SetFileTypes(pairs, specs);
  return BrokerHresult::kOk;
}

int32_t BrokerDialogMethods::OpenDialog(uint32_t p_hwnd, uint32_t dwFilterPairs, uint32_t dwFilterLength,
                                        BrokerFilePlatform::ByteArray p_FilterArray, uint32_t dwFlags,
                                        std::vector<std::u16string>* chosen) {
  int32_t result = CheckFileDialogArguments(p_hwnd, dwFilterPairs, dwFilterLength, p_FilterArray);
  if (result != BrokerHresult::kOk) return result;
  // Nowhere to put the answer: no dialog for it.
  if (!chosen) return BrokerHresult::kInvalidArgument;
  chosen->clear();

  std::unique_ptr<DialogPlatform::FileDialog> dialog;
  result = dialogs_.CreateFileDialog(false, dialog);
  if (Failed(result)) return result;
  if (!dialog) return BrokerHresult::kFail;
  SpecsHolder specs(dialogs_);
  result = SetFileTypes(*dialog, dwFilterPairs, p_FilterArray, specs.get());
  if (result != BrokerHresult::kOk) return result;
  dialog->SetOptions(dwFlags & kOptionMask);
  result = dialog->Show(AuditedFileOpener::WidenWindow(p_hwnd));
  specs.Free();
  // The user's cancel included.
  if (Failed(result)) return result;

  result = CollectChosen(*dialog, *chosen);
  if (result != BrokerHresult::kOk) chosen->clear();
  return result;
}

int32_t BrokerDialogMethods::CollectChosen(DialogPlatform::FileDialog& dialog, std::vector<std::u16string>& chosen) {
  uint32_t count = 0;
  int32_t result = dialog.GetResultCount(count);
  if (Failed(result)) return result;
  if (count == 1) {
    std::u16string path;
    result = dialog.GetResultName(0, kFileSystemPath, path);
    if (Failed(result)) return result;
    chosen.push_back(std::move(path));
    return BrokerHresult::kOk;
  }
  if (count == 0) return BrokerHresult::kOk;

  // Several files share one directory: it comes first, then each name in it.
  std::u16string name;
  std::u16string path;
  result = dialog.GetResultName(0, kParentRelativeName, name);
  if (Failed(result)) return result;
  result = dialog.GetResultName(0, kFileSystemPath, path);
  if (Failed(result)) return result;
  size_t at = path.rfind(name);
  if (at == std::u16string::npos) return BrokerHresult::kFail;
  chosen.push_back(path.substr(0, at));
  for (uint32_t i = 0; i < count; ++i) {
    result = dialog.GetResultName(i, kParentRelativeName, name);
    if (Failed(result)) return result;
    chosen.push_back(name);
  }
  return BrokerHresult::kOk;
}

void BrokerDialogMethods::OfferOwner(DialogPlatform::FileDialog& dialog) {
  // A dialog that can't carry an owner still saves: neither failure ends it.
  dialog.CollectProperties(kOwnerProperties);
  EnterpriseIdentityList caller(protection_, EnterpriseIdentityList::kCallingClient);
  std::u16string first(caller.Count() > 0 ? caller.Identity(0) : std::u16string_view());
  dialog.OfferOwners({first});
}

std::u16string BrokerDialogMethods::ChosenOwner(DialogPlatform::FileDialog& dialog) {
  std::vector<std::u16string> owners;
  if (Failed(dialog.ReadOwners(owners)) || owners.empty()) return {};
  return owners.front();
}

int32_t BrokerDialogMethods::SaveDialog2(uint32_t p_hwnd, const char16_t* p_lpwstrInitialFileName,
                                         uint32_t dwFilterPairs, uint32_t dwFilterLength,
                                         BrokerFilePlatform::ByteArray p_FilterArray, uint32_t dwFlags,
                                         uint32_t* p_fileCookie, std::u16string* p_chosenFilePath) {
  int32_t result = CheckFileDialogArguments(p_hwnd, dwFilterPairs, dwFilterLength, p_FilterArray);
  if (result != BrokerHresult::kOk) return result;
  if (!p_fileCookie || !p_chosenFilePath) return BrokerHresult::kInvalidArgument;
  *p_fileCookie = 0;
  p_chosenFilePath->clear();

  std::unique_ptr<DialogPlatform::FileDialog> dialog;
  result = dialogs_.CreateFileDialog(true, dialog);
  if (Failed(result)) return result;
  if (!dialog) return BrokerHresult::kFail;
  dialog->SetFileName(p_lpwstrInitialFileName);
  SpecsHolder specs(dialogs_);
  result = SetFileTypes(*dialog, dwFilterPairs, p_FilterArray, specs.get());
  if (result != BrokerHresult::kOk) return result;
  dialog->SetOptions(dwFlags & kOptionMask);
  OfferOwner(*dialog);
  result = dialog->Show(AuditedFileOpener::WidenWindow(p_hwnd));
  specs.Free();
  if (Failed(result)) return result;

  std::u16string path;
  if (Failed(dialog->GetChosenName(kFileSystemPath, path)) || path.empty()) return BrokerHresult::kFail;
  std::u16string owner = ChosenOwner(*dialog);

  // Opened by the first write or seek, so choosing a name creates nothing yet.
  auto open = std::make_unique<DeferredOpen>();
  open->desiredAccess = FileAccess::kGenericWrite;
  open->shareMode = 0;
  open->creationDisposition = FileDisposition::kCreateAlways;
  open->flagsAndAttributes = FileFlag::kRandomAccess;
  if (!owner.empty()) open->identity = owner;
  uint32_t cookie = 0;
  // Not sniffed: a file the user named may hold anything.
  if (!cookies_.AddFileCookie(BrokerFilePlatform::kInvalidHandle, cookie, false, path.c_str(), std::move(open))) {
    return BrokerHresult::kFail;
  }
  *p_fileCookie = cookie;
  *p_chosenFilePath = std::move(path);
  return BrokerHresult::kOk;
}

int32_t BrokerDialogMethods::PrintDialog(uint32_t p_hwnd, uint32_t* p_nFromPage, uint32_t* p_nToPage,
                                         uint32_t* p_dwFlags, uint32_t* p_hdc) {
  if (!p_nFromPage || !p_nToPage || !p_dwFlags || !p_hdc) return BrokerHresult::kInvalidArgument;
  DialogPlatform::PrintRequest request;
  request.structSize = kPrintDialogSize;
  request.owner = AuditedFileOpener::WidenWindow(p_hwnd);
  request.flags = *p_dwFlags;
  request.fromPage = request.minPage = static_cast<uint16_t>(*p_nFromPage);
  request.toPage = request.maxPage = static_cast<uint16_t>(*p_nToPage);
  request.copies = 1;

  bool chosen = dialogs_.PrintDialog(request);
  if (chosen) {
    *p_nFromPage = request.fromPage;
    *p_nToPage = request.toPage;
    *p_dwFlags = request.flags;
    // Handles travel as their low 32 bits.
    *p_hdc = static_cast<uint32_t>(request.dc);
  }
  dialogs_.FreeGlobal(request.devMode);
  dialogs_.FreeGlobal(request.devNames);
  return chosen ? BrokerHresult::kOk : BrokerHresult::kFail;
}

}  // namespace SASM
