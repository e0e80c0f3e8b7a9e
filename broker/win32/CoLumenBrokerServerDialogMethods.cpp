// The dialog family on the live object: the portable family decides, and this
// side converts the interface's types. The open dialog's answer goes back as a
// VARIANT holding a one-dimensional array of VARIANT strings.
#include "broker/win32/CoLumenBrokerServer.h"

#include <oleauto.h>

#include <string>
#include <vector>

#include "broker/BrokerHresult.h"

namespace SASM {
namespace {

const char16_t* Text(LPWSTR text) { return reinterpret_cast<const char16_t*>(text); }

HRESULT GiveEntries(const std::vector<std::u16string>& entries, VARIANT* out) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(entries.size()));
  if (!array) return E_OUTOFMEMORY;
  for (LONG i = 0; i < static_cast<LONG>(entries.size()); ++i) {
    VARIANT entry;
    VariantInit(&entry);
    entry.vt = VT_BSTR;
    entry.bstrVal = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(entries[i].data()),
                                      static_cast<UINT>(entries[i].size()));
    // The array keeps its own copy.
    HRESULT result = entry.bstrVal ? SafeArrayPutElement(array, &i, &entry) : E_OUTOFMEMORY;
    VariantClear(&entry);
    if (FAILED(result)) {
      SafeArrayDestroy(array);
      return result;
    }
  }
  out->vt = VT_ARRAY | VT_VARIANT;
  out->parray = array;
  return S_OK;
}

}  // namespace

// Its duty passed to BrokerSaveDialog2; the slot stays for old clients.
HRESULT CoLumenBrokerServer::BrokerSaveDialog(ULONG, LPWSTR, ULONG*, BSTR*) { return E_NOTIMPL; }

HRESULT CoLumenBrokerServer::BrokerOpenDialog(ULONG p_hwnd, ULONG dwFilterPairs, ULONG dwFilterLength,
                                              SAFEARRAY* p_FilterArray, ULONG dwFlags,
                                              VARIANT* p_chosenFilePathArray) {
  if (p_chosenFilePathArray) VariantInit(p_chosenFilePathArray);
  std::vector<std::u16string> chosen;
  HRESULT result = dialogMethods_.OpenDialog(p_hwnd, dwFilterPairs, dwFilterLength, p_FilterArray, dwFlags,
                                             p_chosenFilePathArray ? &chosen : nullptr);
  if (result != BrokerHresult::kOk) return result;
  return GiveEntries(chosen, p_chosenFilePathArray);
}

HRESULT CoLumenBrokerServer::BrokerPrintDialog(ULONG p_hwnd, ULONG* p_nFromPage, ULONG* p_nToPage, ULONG* p_dwFlags,
                                               ULONG* p_hdc) {
  static_assert(sizeof(ULONG) == sizeof(uint32_t));
  return dialogMethods_.PrintDialog(p_hwnd, reinterpret_cast<uint32_t*>(p_nFromPage),
                                    reinterpret_cast<uint32_t*>(p_nToPage), reinterpret_cast<uint32_t*>(p_dwFlags),
                                    reinterpret_cast<uint32_t*>(p_hdc));
}

HRESULT CoLumenBrokerServer::BrokerSaveDialog2(ULONG p_hwnd, LPWSTR p_lpwstrInitialFileName, ULONG dwFilterPairs,
                                               ULONG dwFilterLength, SAFEARRAY* p_FilterArray, ULONG dwFlags,
                                               ULONG* p_fileCookie, BSTR* p_chosenFilePath) {
  if (p_chosenFilePath) *p_chosenFilePath = nullptr;
  uint32_t cookie = p_fileCookie ? *p_fileCookie : 0;
  std::u16string path;
  HRESULT result =
      dialogMethods_.SaveDialog2(p_hwnd, Text(p_lpwstrInitialFileName), dwFilterPairs, dwFilterLength, p_FilterArray,
                                 dwFlags, p_fileCookie ? &cookie : nullptr, p_chosenFilePath ? &path : nullptr);
  if (p_fileCookie) *p_fileCookie = cookie;
  if (result != BrokerHresult::kOk) return result;
  *p_chosenFilePath = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(path.data()), static_cast<UINT>(path.size()));
  return result;
}

}  // namespace SASM
