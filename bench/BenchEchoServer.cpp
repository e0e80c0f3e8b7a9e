// Written against the interface's C declarations: the object is a vtable whose
// every slot answers E_NOTIMPL but the few the benchmark calls.
#define CINTERFACE
#define COBJMACROS
#include "bench/BenchEchoServer.h"

#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <tlhelp32.h>

#include "broker/BrokerIdentities.h"

namespace SASM::BenchEchoServer {
namespace {

struct EchoObject {
  ILumenBroker6Vtbl* vtbl;
  LONG references;
};

HRESULT STDMETHODCALLTYPE NotImplemented(void*) { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE QueryInterface(ILumenBroker6* self, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IDispatch) && !IsEqualIID(iid, IID_ILumenBroker6))
    return E_NOINTERFACE;
  *out = self;
  self->lpVtbl->AddRef(self);
  return S_OK;
}

ULONG STDMETHODCALLTYPE AddRef(ILumenBroker6* self) {
  return InterlockedIncrement(&reinterpret_cast<EchoObject*>(self)->references);
}

ULONG STDMETHODCALLTYPE Release(ILumenBroker6* self) {
  ULONG left = InterlockedDecrement(&reinterpret_cast<EchoObject*>(self)->references);
  if (left == 0) PostQuitMessage(0);
  return left;
}

HRESULT STDMETHODCALLTYPE GetTypeInfoCount(ILumenBroker6*, UINT* count) {
  if (count) *count = 0;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE EchoCreateFile(ILumenBroker6*, BSTR, LONG, LONG, ULONG* cookie) {
  *cookie = 1;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE EchoCloseHandle(ILumenBroker6*, ULONG) { return S_OK; }

HRESULT STDMETHODCALLTYPE EchoWriteFile(ILumenBroker6*, ULONG, SAFEARRAY* data, ULONG* written) {
  *written = data ? data->rgsabound[0].cElements : 0;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE EchoReadFile(ILumenBroker6*, ULONG, ULONG length, ULONG* read, SAFEARRAY** data) {
  *data = SafeArrayCreateVector(VT_UI1, 0, length);
  *read = *data ? length : 0;
  return *data ? S_OK : E_OUTOFMEMORY;
}

ILumenBroker6Vtbl MakeVtable() {
  ILumenBroker6Vtbl table;
  void** slots = reinterpret_cast<void**>(&table);
  for (size_t i = 0; i < sizeof(table) / sizeof(void*); ++i) slots[i] = reinterpret_cast<void*>(&NotImplemented);
  table.QueryInterface = &QueryInterface;
  table.AddRef = &AddRef;
  table.Release = &Release;
  table.GetTypeInfoCount = &GetTypeInfoCount;
  table.BrokerCreateFile = &EchoCreateFile;
  table.BrokerCloseHandle = &EchoCloseHandle;
  table.BrokerWriteFile = &EchoWriteFile;
  table.BrokerReadFile = &EchoReadFile;
  return table;
}

ILumenBroker6Vtbl gVtable = MakeVtable();
EchoObject gObject{&gVtable, 0};

struct Factory {
  IClassFactoryVtbl* vtbl;
};

HRESULT STDMETHODCALLTYPE FactoryQueryInterface(IClassFactory* self, REFIID iid, void** out) {
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  *out = self;
  return S_OK;
}
ULONG STDMETHODCALLTYPE FactoryAddRef(IClassFactory*) { return 2; }
ULONG STDMETHODCALLTYPE FactoryRelease(IClassFactory*) { return 1; }
HRESULT STDMETHODCALLTYPE CreateInstance(IClassFactory*, IUnknown* outer, REFIID iid, void** out) {
  if (outer) return CLASS_E_NOAGGREGATION;
  return QueryInterface(reinterpret_cast<ILumenBroker6*>(&gObject), iid, out);
}
HRESULT STDMETHODCALLTYPE LockServer(IClassFactory*, BOOL) { return S_OK; }

IClassFactoryVtbl gFactoryVtable = {&FactoryQueryInterface, &FactoryAddRef, &FactoryRelease, &CreateInstance,
                                    &LockServer};
Factory gFactory{&gFactoryVtable};

std::wstring Wide(std::u16string_view text) { return std::wstring(text.begin(), text.end()); }

}  // namespace

int Run() {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
  DWORD registration = 0;
  // Single use: once this object is made, activations go to the real server again.
  HRESULT result = CoRegisterClassObject(CLSID_LumenBrokerImp6, reinterpret_cast<IUnknown*>(&gFactory),
                                         CLSCTX_LOCAL_SERVER, REGCLS_SINGLEUSE, &registration);
  if (SUCCEEDED(result)) {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    CoRevokeClassObject(registration);
  }
  CoUninitialize();
  return SUCCEEDED(result) ? 0 : 1;
}

bool SetServerPath(const std::wstring& path) {
  const std::wstring key = L"Software\\Classes\\CLSID\\" + Wide(BrokerIdentities::kServed.classId) + L"\\LocalServer32";
  HKEY handle = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_SET_VALUE | KEY_WOW64_64KEY, &handle) != ERROR_SUCCESS)
    return false;
  LSTATUS status = RegSetValueExW(handle, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(path.c_str()),
                                  static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(handle);
  return status == ERROR_SUCCESS;
}

bool OthersEnded() {
  wchar_t self[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring name(self, n);
  name = name.substr(name.find_last_of(L'\\') + 1);
  HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  if (snapshot == INVALID_HANDLE_VALUE) return false;
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof(entry);
  bool ended = true;
  for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
    if (entry.th32ProcessID == GetCurrentProcessId() || _wcsicmp(entry.szExeFile, name.c_str()) != 0) continue;
    HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, entry.th32ProcessID);
    if (process) {
      if (WaitForSingleObject(process, 10000) != WAIT_OBJECT_0) ended = false;
      ::CloseHandle(process);
    }
  }
  ::CloseHandle(snapshot);
  return ended;
}

}  // namespace SASM::BenchEchoServer
