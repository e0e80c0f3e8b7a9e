#pragma once
// What the dialog family asks of the system: the shell's file dialogs, the
// property store that carries an enterprise owner in and out of a save
// dialog, the common print dialog, and the process heap that holds a filter's
// name and pattern pairs while a dialog uses them. Results are HRESULTs as the
// platform gave them, so a user's cancel passes through unchanged.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace SASM {

class DialogPlatform {
 public:
  // One entry of a dialog's file types, laid out as the shell's COMDLG_FILTERSPEC.
  struct FilterSpec {
    const char16_t* name;
    const char16_t* pattern;
  };

  // A shown file dialog of the shell, open or save; released with the object.
  class FileDialog {
   public:
    virtual ~FileDialog() = default;
    virtual int32_t SetFileTypes(uint32_t count, const FilterSpec* specs) = 0;
    virtual int32_t SetOptions(uint32_t options) = 0;
    virtual int32_t SetFileName(const char16_t* name) = 0;
    // The property description list named by `names` goes to SetCollectedProperties.
    virtual int32_t CollectProperties(const char16_t* names) = 0;
    // A memory property store holding `values` as the enterprise owners' string
    // vector, passed by SetProperties.
    virtual int32_t OfferOwners(const std::vector<std::u16string>& values) = 0;
    // Modal; `owner` is the widened window handle.
    virtual int32_t Show(uint64_t owner) = 0;
    // Open: GetResults and GetCount, then one item's display name.
    virtual int32_t GetResultCount(uint32_t& count) = 0;
    virtual int32_t GetResultName(uint32_t index, uint32_t sigdn, std::u16string& name) = 0;
    // Save: GetResult and its display name.
    virtual int32_t GetChosenName(uint32_t sigdn, std::u16string& name) = 0;
    // GetProperties, and the enterprise owners' string vector in it.
    virtual int32_t ReadOwners(std::vector<std::u16string>& values) = 0;
  };

  // PRINTDLGW's fields the family sets and reads; handles widened to 64 bits.
  struct PrintRequest {
    uint32_t structSize = 0;
    uint64_t owner = 0;
    uint64_t devMode = 0;
    uint64_t devNames = 0;
    uint64_t dc = 0;
    uint32_t flags = 0;
    uint16_t fromPage = 0;
    uint16_t toPage = 0;
    uint16_t minPage = 0;
    uint16_t maxPage = 0;
    uint16_t copies = 0;
  };

  virtual ~DialogPlatform() = default;

  // CoCreateInstance of the shell's FileOpenDialog or FileSaveDialog and its interface.
  virtual int32_t CreateFileDialog(bool save, std::unique_ptr<FileDialog>& dialog) = 0;
  // HeapAlloc on the process heap; null when it fails.
  virtual FilterSpec* AllocateSpecs(uint32_t count) = 0;
  virtual void FreeSpecs(FilterSpec* specs) = 0;
  // PrintDlgW: its result, with the request updated as the dialog left it.
  virtual bool PrintDialog(PrintRequest& request) = 0;
  virtual void FreeGlobal(uint64_t memory) = 0;
};

}  // namespace SASM
