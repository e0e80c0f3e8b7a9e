#include "broker/win32/Win32ShortcutPlatform.h"

#include "engine/win32/WindowsApi.h"

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <new>
#include <vector>

#include "engine/win32/ComPtr.h"

// shlwapi.h and shellapi.h name macros after the seam's members.
#undef ShellExecute
#undef PathCanonicalize
#undef UrlCanonicalize

namespace SASM {

// The internet shortcut's address interface (the SDK header for it doesn't
// build here). Declared outside any unnamed namespace: a type local to this
// file with no implementation in it would let the compiler treat its calls
// as unreachable.
struct UrlLocator : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE SetURL(LPCWSTR url, DWORD flags) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetURL(LPWSTR* url) = 0;
  virtual HRESULT STDMETHODCALLTYPE InvokeCommand(void* info) = 0;
};

namespace {

constexpr CLSID kInternetShortcutClass = {0xFBF23B40, 0xE3F0, 0x101B, {0x84, 0x88, 0x00, 0xAA, 0x00, 0x3E, 0x56, 0xF8}};
constexpr IID kUrlLocatorInterface = {0xCABB0DA0, 0xDA57, 0x11CF, {0x99, 0x74, 0x00, 0x20, 0xAF, 0xD7, 0x97, 0x62}};
constexpr CLSID kShellLinkClass = {0x00021401, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr IID kShellLinkInterface = {0x000214F9, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr IID kPersistFileInterface = {0x0000010B, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr IID kPropertySetStorageInterface = {
    0x0000013A, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
// The internet shortcut's own property set, where its icon is kept.
constexpr FMTID kInternetShortcutProperties = {
    0x000214A0, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr PROPID kIconFileProperty = 9;
constexpr PROPID kIconIndexProperty = 8;

const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

// The platform's internet shortcut. Its address is set through the locator
// interface every version answers; its icon through the shell link interface
// where the object has one, else through its property set.
class InternetShortcutObject : public ShortcutObject {
 public:
  HRESULT Create() {
    HRESULT result = CoCreateInstance(kInternetShortcutClass, nullptr, CLSCTX_INPROC_SERVER, kPersistFileInterface,
                                      persist_.receiveVoid());
    if (FAILED(result)) return result;
    result = persist_->QueryInterface(kUrlLocatorInterface, locator_.receiveVoid());
    if (FAILED(result)) return result;
    persist_->QueryInterface(kShellLinkInterface, link_.receiveVoid());
    return S_OK;
  }

  int32_t SetUrl(const char16_t* url) override { return locator_->SetURL(Wide(url), 0); }
  int32_t SetPath(const char16_t*) override { return E_NOTIMPL; }
  int32_t SetArguments(const char16_t*) override { return E_NOTIMPL; }
  int32_t SetIconLocation(const char16_t* path, int32_t index) override {
    if (link_) return link_->SetIconLocation(Wide(path), index);
    ComPtr<IPropertySetStorage> sets;
    HRESULT result = persist_->QueryInterface(kPropertySetStorageInterface, sets.receiveVoid());
    if (FAILED(result)) return result;
    ComPtr<IPropertyStorage> properties;
    result = sets->Open(kInternetShortcutProperties, STGM_READWRITE | STGM_SHARE_EXCLUSIVE, properties.receive());
    if (FAILED(result)) return result;
    PROPSPEC specs[2] = {};
    specs[0].ulKind = specs[1].ulKind = PRSPEC_PROPID;
    specs[0].propid = kIconFileProperty;
    specs[1].propid = kIconIndexProperty;
    PROPVARIANT values[2] = {};
    values[0].vt = VT_LPWSTR;
    values[0].pwszVal = const_cast<wchar_t*>(Wide(path));
    values[1].vt = VT_I4;
    values[1].lVal = index;
    return properties->WriteMultiple(2, specs, values, 0);
  }
  int32_t Save(const char16_t* path, bool remember) override { return persist_->Save(Wide(path), remember); }

 private:
  ComPtr<IPersistFile> persist_;
  ComPtr<UrlLocator> locator_;
  ComPtr<IShellLinkW> link_;
};

class ShellLinkObject : public ShortcutObject {
 public:
  HRESULT Create() {
    HRESULT result =
        CoCreateInstance(kShellLinkClass, nullptr, CLSCTX_INPROC_SERVER, kShellLinkInterface, link_.receiveVoid());
    if (FAILED(result)) return result;
    return link_->QueryInterface(kPersistFileInterface, persist_.receiveVoid());
  }

  int32_t SetUrl(const char16_t*) override { return E_NOTIMPL; }
  int32_t SetPath(const char16_t* path) override { return link_->SetPath(Wide(path)); }
  int32_t SetArguments(const char16_t* arguments) override { return link_->SetArguments(Wide(arguments)); }
  int32_t SetIconLocation(const char16_t* path, int32_t index) override {
    return link_->SetIconLocation(Wide(path), index);
  }
  int32_t Save(const char16_t* path, bool remember) override { return persist_->Save(Wide(path), remember); }

 private:
  ComPtr<IShellLinkW> link_;
  ComPtr<IPersistFile> persist_;
};

template <typename Object>
int32_t Make(std::unique_ptr<ShortcutObject>& object) {
  std::unique_ptr<Object> made(new (std::nothrow) Object());
  if (!made) return E_OUTOFMEMORY;
  HRESULT result = made->Create();
  if (FAILED(result)) return result;
  object = std::move(made);
  return result;
}

}  // namespace

uint32_t Win32ShortcutPlatform::TickCount() { return GetTickCount(); }

bool Win32ShortcutPlatform::GetFolderPath(int32_t csidl, std::u16string& path) {
  wchar_t buffer[MAX_PATH] = {};
  if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, 0, buffer))) return false;
  path.assign(reinterpret_cast<const char16_t*>(buffer));
  return true;
}

int32_t Win32ShortcutPlatform::CreateDirectoryTree(const char16_t* path) {
  return SHCreateDirectoryExW(nullptr, Wide(path), nullptr);
}

uint32_t Win32ShortcutPlatform::GetFileAttributes(const char16_t* path) { return GetFileAttributesW(Wide(path)); }

bool Win32ShortcutPlatform::PathCanonicalize(const char16_t* path, std::u16string& canonical) {
  // The function writes up to MAX_PATH characters and older versions don't
  // measure their input; a longer name can't be a shortcut's anyway.
  if (lstrlenW(Wide(path)) >= MAX_PATH) return false;
  wchar_t buffer[MAX_PATH] = {};
  if (!PathCanonicalizeW(buffer, Wide(path))) return false;
  canonical.assign(reinterpret_cast<const char16_t*>(buffer));
  return true;
}

int32_t Win32ShortcutPlatform::UrlCanonicalize(const char16_t* url, uint32_t flags, uint32_t capacity,
                                               std::u16string& canonical) {
  std::vector<wchar_t> buffer(capacity + 1, L'\0');
  DWORD size = capacity;
  HRESULT result = UrlCanonicalizeW(Wide(url), buffer.data(), &size, flags);
  if (SUCCEEDED(result)) canonical.assign(reinterpret_cast<const char16_t*>(buffer.data()));
  return result;
}

int32_t Win32ShortcutPlatform::GetDefaultBrowser(std::u16string& program) {
  wchar_t buffer[MAX_PATH] = {};
  DWORD size = MAX_PATH;
  HRESULT result = AssocQueryStringW(ASSOCF_NONE, ASSOCSTR_EXECUTABLE, L"http", L"open", buffer, &size);
  if (SUCCEEDED(result)) program.assign(reinterpret_cast<const char16_t*>(buffer));
  return result;
}

int32_t Win32ShortcutPlatform::CreateInternetShortcut(std::unique_ptr<ShortcutObject>& object) {
  return Make<InternetShortcutObject>(object);
}

int32_t Win32ShortcutPlatform::CreateShellLink(std::unique_ptr<ShortcutObject>& object) {
  return Make<ShellLinkObject>(object);
}

void Win32ShortcutPlatform::PinToTaskbar(const char16_t* path) {
  // A server shows no error box: where the verb is unknown the pin just doesn't happen.
  SHELLEXECUTEINFOW info{};
  info.cbSize = sizeof(info);
  info.fMask = SEE_MASK_FLAG_NO_UI;
  info.lpVerb = L"taskbarpin";
  info.lpFile = Wide(path);
  info.nShow = SW_HIDE;
  ShellExecuteExW(&info);
}

bool Win32ShortcutPlatform::DeleteFile(const char16_t* path) { return DeleteFileW(Wide(path)) != FALSE; }

}  // namespace SASM
