#include "broker/win32/Win32AccessConsentRequest.h"

#include <new>

#include "broker/win32/ScopedHString.h"
#include "engine/win32/ComPtr.h"

namespace SASM {

namespace {

using namespace EnterpriseDataAbi;

// The audit record: the file by its leaf name, going to the address the client named.
bool MakeAuditInfo(const wchar_t* leafName, const wchar_t* remoteUrl, ComPtr<IInspectable>& info) {
  ComPtr<ProtectionPolicyAuditInfoFactory> factory;
  if (FAILED(ScopedHString::GetActivationFactory(Win32AccessConsentRequest::kAuditInfoClass,
                                                 kProtectionPolicyAuditInfoFactoryIid, factory.receiveVoid()))) {
    return false;
  }
  ScopedHString data(leafName);
  ScopedHString source(L"");
  ScopedHString target(remoteUrl);
  return SUCCEEDED(factory->Create(kAuditActionOther, data.get(), source.get(), target.get(), info.receive())) && info;
}

}  // namespace

Win32AccessConsentRequest::Win32AccessConsentRequest()
    : done_(CreateEventExW(nullptr, nullptr, CREATE_EVENT_MANUAL_RESET, EVENT_ALL_ACCESS)) {}

bool Win32AccessConsentRequest::Ask(HWND window, const wchar_t* sourceIdentity, const wchar_t* targetIdentity,
                                    const wchar_t* leafName, const wchar_t* remoteUrl) {
  if (!sourceIdentity || !targetIdentity || !window || window == reinterpret_cast<HWND>(-1)) return false;
  ComPtr<IInspectable> auditInfo;
  if (!MakeAuditInfo(leafName, remoteUrl, auditInfo)) return false;
  ComPtr<ProtectionPolicyManagerInterop2> manager;
  if (FAILED(ScopedHString::GetActivationFactory(kPolicyManagerClass, kProtectionPolicyManagerInterop2Iid,
                                                 manager.receiveVoid()))) {
    return false;
  }
  ScopedHString source(sourceIdentity);
  ScopedHString target(targetIdentity);
  ComPtr<EvaluationOperation> operation;
  if (FAILED(manager->RequestAccessWithAuditingInfoForWindowAsync(window, source.get(), target.get(), auditInfo.get(),
                                                                  kEvaluationOperationIid, operation.receiveVoid())) ||
      !operation) {
    return false;
  }

  auto* request = new (std::nothrow) Win32AccessConsentRequest();
  if (!request) return false;
  bool allowed =
      request->done_ && SUCCEEDED(operation->put_Completed(request)) && request->WaitForAnswer() && request->allowed_;
  request->Release();
  return allowed;
}

bool Win32AccessConsentRequest::WaitForAnswer() {
  HANDLE done = done_.get();
  for (;;) {
    DWORD woken = MsgWaitForMultipleObjects(1, &done, FALSE, INFINITE, kWakeMask);
    if (woken == WAIT_OBJECT_0) return true;
    if (woken != WAIT_OBJECT_0 + 1) return false;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
}

HRESULT Win32AccessConsentRequest::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_POINTER;
  if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, EnterpriseDataAbi::kEvaluationHandlerIid) ||
      IsEqualIID(riid, EnterpriseDataAbi::kAgileObjectIid)) {
    *object = static_cast<EnterpriseDataAbi::AsyncHandler*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

ULONG Win32AccessConsentRequest::Release() {
  ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT Win32AccessConsentRequest::Invoke(IInspectable* operation, int32_t status) {
  int32_t result = -1;
  if (status == EnterpriseDataAbi::kAsyncCompleted && operation) {
    auto* evaluation = reinterpret_cast<EnterpriseDataAbi::EvaluationOperation*>(operation);
    if (FAILED(evaluation->GetResults(&result))) result = -1;
  }
  allowed_ = result == EnterpriseDataAbi::kEvaluationAllowed;
  SetEvent(done_.get());
  return S_OK;
}

}  // namespace SASM
