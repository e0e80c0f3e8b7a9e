#include "broker/win32/CoLumenBrokerServer.h"

#include <oleauto.h>

#include <string>

#include "broker/BrokerHresult.h"
#include "broker/win32/BrokerServerLifecycle.h"
#include "engine/WindowsFileManager.h"
#include "engine/win32/Win32Platform.h"

namespace SASM {
namespace {

// The platform's multi-language service, for font linking in the print relay.
constexpr CLSID kMultiLanguageClass = {0x275C23E2, 0x3747, 0x11D0, {0x9F, 0xEA, 0x00, 0xAA, 0x00, 0x3F, 0x86, 0x46}};
constexpr IID kMultiLanguageInterface = {0x275C23E1, 0x3747, 0x11D0, {0x9F, 0xEA, 0x00, 0xAA, 0x00, 0x3F, 0x86, 0x46}};
constexpr IID kFontLinkInterface = {0x359F3441, 0xBD4A, 0x11D0, {0xB1, 0x88, 0x00, 0xAA, 0x00, 0x38, 0xC9, 0x69}};

// The updater started at logon is this process, named as the byte APIs name it.
std::string RunningProcessFileName() {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  return path;
}

}  // namespace

CoLumenBrokerServer::CoLumenBrokerServer(HostCallbacks* host)
    : policy_(pathPlatform_, true),
      host_(host),
      serverIdentities_(protection_, EnterpriseIdentityList::kServerProcess),
      opener_(files_, protection_, marks_),
      fileMethods_(files_, protection_, marks_, policy_, cookies_, serverIdentities_),
      dialogOwners_(pathPlatform_, *Win32Platform().processes),
      auditedOpener_(fileMethods_, files_, protection_, policy_, cookies_, dialogOwners_, serverIdentities_),
      dialogMethods_(dialogPlatform_, files_, dialogOwners_, cookies_, protection_),
      addOns_(cookies_, host),
      updateMarking_(*Win32Platform().registry, &RunningProcessFileName),
      prefMethods_(*Win32Platform().registry, prefPlatform_, updateMarking_),
      notificationClients_(audioPlatform_) {
  cookies_.SetDeferredOpen(&DeferredFileOpener::OpenRecord, &opener_);
  policy_.SetEnableLocalAppData(WindowsFileManager(Win32Platform()).EnableLocalAppData());
  if (BrokerServerLifecycle::factory) InterlockedIncrement(&BrokerServerLifecycle::factory->objectCount);

  // The dispatch side describes the second generation's methods, on purpose:
  // it isn't brought up to date with the vtable. Without it, typeInfo_ stays null.
  ComPtr<ITypeLib> library;
  if (SUCCEEDED(LoadRegTypeLib(LIBID_LumenBrokerLib, 1, 0, 0, library.receive())))
    library->GetTypeInfoOfGuid(IID_ILumenBroker2, typeInfo_.receive());

  // Without the service the font-link methods answer 0x80004005.
  if (SUCCEEDED(CoCreateInstance(kMultiLanguageClass, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER,
                                 kMultiLanguageInterface, multiLanguage_.receiveVoid())))
    multiLanguage_->QueryInterface(kFontLinkInterface, fontLink_.receiveVoid());
}

CoLumenBrokerServer::~CoLumenBrokerServer() {
  lcdAccessor_.reset();
  if (BrokerServerLifecycle::factory) InterlockedDecrement(&BrokerServerLifecycle::factory->objectCount);
  // Handles stay open until the process ends: a client that never closed its
  // cookies keeps its files open as long as the server lives.
  cookies_.Clear();
  fontLink_.reset();
  multiLanguage_.reset();
  notificationClients_.ReleaseAll();
}

HRESULT CoLumenBrokerServer::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_POINTER;
  // ILumenBroker6 alone among the generations, though every older method is in its vtable.
  if (riid == IID_IUnknown || riid == IID_IDispatch || riid == IID_ILumenBroker6) {
    *object = static_cast<ILumenBroker6*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

ULONG CoLumenBrokerServer::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&refCount_)); }

ULONG CoLumenBrokerServer::Release() {
  LONG count = InterlockedDecrement(&refCount_);
  if (count != 0) return static_cast<ULONG>(count);
  delete this;
  // The only road to quitting; a lock held by LockServer keeps the server up.
  CoLumenBrokerServer::Factory* factory = BrokerServerLifecycle::factory;
  if (factory && BrokerServerLifecycle::CanUnload(factory)) PostQuitMessage(0);
  return 0;
}

HRESULT CoLumenBrokerServer::GetTypeInfoCount(UINT* count) {
  if (!count) return BrokerHresult::kInvalidArgument;
  *count = 1;
  return S_OK;
}

HRESULT CoLumenBrokerServer::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (!info) return BrokerHresult::kInvalidArgument;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  // A server whose library didn't load has nothing to hand out.
  if (!typeInfo_) return E_FAIL;
  typeInfo_->AddRef();
  *info = typeInfo_.get();
  return S_OK;
}

HRESULT CoLumenBrokerServer::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (!typeInfo_) return E_FAIL;
  return DispGetIDsOfNames(typeInfo_.get(), names, count, ids);
}

HRESULT CoLumenBrokerServer::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                    EXCEPINFO* exception, UINT* argumentError) {
  if (!typeInfo_) return E_FAIL;
  return DispInvoke(static_cast<ILumenBroker6*>(this), typeInfo_.get(), id, flags, arguments, result, exception,
                    argumentError);
}

HRESULT CoLumenBrokerServer::BrokerIsWritablePath(BSTR p_path, LONG p_alsoCheckExtension) {
  return policy_.BrokerIsWritablePath(reinterpret_cast<const char16_t*>(p_path), p_alsoCheckExtension);
}

}  // namespace SASM
