#include "broker/win32/Win32DialogPlatform.h"

#include "engine/win32/WindowsApi.h"

#include <commdlg.h>
#include <propsys.h>
#include <shobjidl.h>

#include "engine/win32/ComPtr.h"

namespace SASM {
namespace {

static_assert(sizeof(DialogPlatform::FilterSpec) == sizeof(COMDLG_FILTERSPEC));
static_assert(sizeof(PRINTDLGW) == 120);

// System.Security.EncryptionOwners: a vector of strings.
constexpr PROPERTYKEY kEncryptionOwners = {
    {0x5F5AFF6A, 0x37E5, 0x4780, {0x97, 0xEA, 0x80, 0xC7, 0x56, 0x5C, 0xF5, 0x35}}, 34};

const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

HRESULT NameOf(IShellItem* item, uint32_t sigdn, std::u16string& name) {
  wchar_t* text = nullptr;
  HRESULT result = item->GetDisplayName(static_cast<SIGDN>(sigdn), &text);
  if (FAILED(result)) return result;
  name.assign(reinterpret_cast<const char16_t*>(text));
  CoTaskMemFree(text);
  return result;
}

class Win32FileDialog : public DialogPlatform::FileDialog {
 public:
  // `open` or `save` is set, as the dialog is.
  Win32FileDialog(IFileDialog* dialog, IFileOpenDialog* open, IFileSaveDialog* save)
      : dialog_(dialog), open_(open), save_(save) {}

  int32_t SetFileTypes(uint32_t count, const DialogPlatform::FilterSpec* specs) override {
    return dialog_->SetFileTypes(count, reinterpret_cast<const COMDLG_FILTERSPEC*>(specs));
  }
  int32_t SetOptions(uint32_t options) override { return dialog_->SetOptions(options); }
  int32_t SetFileName(const char16_t* name) override { return dialog_->SetFileName(name ? Wide(name) : L""); }

  int32_t CollectProperties(const char16_t* names) override {
    if (!save_) return E_NOINTERFACE;
    ComPtr<IPropertyDescriptionList> list;
    HRESULT result = PSGetPropertyDescriptionListFromString(Wide(names), IID_IPropertyDescriptionList,
                                                            list.receiveVoid());
    if (FAILED(result)) return result;
    return save_->SetCollectedProperties(list.get(), TRUE);
  }

  int32_t OfferOwners(const std::vector<std::u16string>& values) override {
    if (!save_) return E_NOINTERFACE;
    ComPtr<IPropertyStore> store;
    HRESULT result = PSCreateMemoryPropertyStore(IID_IPropertyStore, store.receiveVoid());
    if (FAILED(result)) return result;
    std::vector<LPWSTR> pointers;
    for (const std::u16string& value : values) pointers.push_back(const_cast<LPWSTR>(Wide(value.c_str())));
    // The store copies what it is given; the vector only borrows the strings.
    PROPVARIANT value;
    PropVariantInit(&value);
    value.vt = VT_VECTOR | VT_LPWSTR;
    value.calpwstr.cElems = static_cast<ULONG>(pointers.size());
    value.calpwstr.pElems = pointers.data();
    result = store->SetValue(kEncryptionOwners, value);
    if (FAILED(result)) return result;
    return save_->SetProperties(store.get());
  }

  int32_t Show(uint64_t owner) override {
    return dialog_->Show(reinterpret_cast<HWND>(static_cast<uintptr_t>(owner)));
  }

  int32_t GetResultCount(uint32_t& count) override {
    if (!open_) return E_NOINTERFACE;
    HRESULT result = open_->GetResults(results_.receive());
    if (FAILED(result)) return result;
    DWORD items = 0;
    result = results_->GetCount(&items);
    count = items;
    return result;
  }

  int32_t GetResultName(uint32_t index, uint32_t sigdn, std::u16string& name) override {
    if (!results_) return E_UNEXPECTED;
    ComPtr<IShellItem> item;
    HRESULT result = results_->GetItemAt(index, item.receive());
    if (FAILED(result)) return result;
    return NameOf(item.get(), sigdn, name);
  }

  int32_t GetChosenName(uint32_t sigdn, std::u16string& name) override {
    if (!save_) return E_NOINTERFACE;
    ComPtr<IShellItem> item;
    HRESULT result = save_->GetResult(item.receive());
    if (FAILED(result)) return result;
    return NameOf(item.get(), sigdn, name);
  }

  int32_t ReadOwners(std::vector<std::u16string>& values) override {
    if (!save_) return E_NOINTERFACE;
    ComPtr<IPropertyStore> store;
    HRESULT result = save_->GetProperties(store.receive());
    if (FAILED(result)) return result;
    PROPVARIANT value;
    PropVariantInit(&value);
    result = store->GetValue(kEncryptionOwners, &value);
    if (FAILED(result)) return result;
    if (value.vt == (VT_VECTOR | VT_LPWSTR)) {
      for (ULONG i = 0; i < value.calpwstr.cElems; ++i) {
        const wchar_t* text = value.calpwstr.pElems[i];
        values.emplace_back(text ? reinterpret_cast<const char16_t*>(text) : u"");
      }
    }
    PropVariantClear(&value);
    return result;
  }

 private:
  ComPtr<IFileDialog> dialog_;
  ComPtr<IFileOpenDialog> open_;
  ComPtr<IFileSaveDialog> save_;
  ComPtr<IShellItemArray> results_;
};

}  // namespace

int32_t Win32DialogPlatform::CreateFileDialog(bool save, std::unique_ptr<FileDialog>& dialog) {
  if (save) {
    ComPtr<IFileSaveDialog> saving;
    HRESULT result = CoCreateInstance(CLSID_FileSaveDialog, nullptr, CLSCTX_INPROC_SERVER, IID_IFileSaveDialog,
                                      saving.receiveVoid());
    if (FAILED(result)) return result;
    IFileSaveDialog* raw = saving.release();
    raw->AddRef();
    dialog = std::make_unique<Win32FileDialog>(raw, nullptr, raw);
    return result;
  }
  ComPtr<IFileOpenDialog> opening;
  HRESULT result = CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_IFileOpenDialog,
                                    opening.receiveVoid());
  if (FAILED(result)) return result;
  IFileOpenDialog* raw = opening.release();
  raw->AddRef();
  dialog = std::make_unique<Win32FileDialog>(raw, raw, nullptr);
  return result;
}

DialogPlatform::FilterSpec* Win32DialogPlatform::AllocateSpecs(uint32_t count) {
  return static_cast<FilterSpec*>(HeapAlloc(GetProcessHeap(), 0, size_t{count} * sizeof(FilterSpec)));
}

void Win32DialogPlatform::FreeSpecs(FilterSpec* specs) { HeapFree(GetProcessHeap(), 0, specs); }

bool Win32DialogPlatform::PrintDialog(PrintRequest& request) {
  PRINTDLGW dialog{};
  dialog.lStructSize = request.structSize;
  dialog.hwndOwner = reinterpret_cast<HWND>(static_cast<uintptr_t>(request.owner));
  dialog.Flags = request.flags;
  dialog.nFromPage = request.fromPage;
  dialog.nToPage = request.toPage;
  dialog.nMinPage = request.minPage;
  dialog.nMaxPage = request.maxPage;
  dialog.nCopies = request.copies;
  BOOL chosen = PrintDlgW(&dialog);
  request.devMode = reinterpret_cast<uintptr_t>(dialog.hDevMode);
  request.devNames = reinterpret_cast<uintptr_t>(dialog.hDevNames);
  request.dc = reinterpret_cast<uintptr_t>(dialog.hDC);
  request.flags = dialog.Flags;
  request.fromPage = dialog.nFromPage;
  request.toPage = dialog.nToPage;
  return chosen != FALSE;
}

void Win32DialogPlatform::FreeGlobal(uint64_t memory) { GlobalFree(reinterpret_cast<HGLOBAL>(memory)); }

}  // namespace SASM
