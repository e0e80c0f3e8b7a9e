#include "broker/win32/ProtectionQueryHandler.h"

#include <new>

#include "broker/BrokerFileProtectionInfo.h"

namespace SASM {

bool ProtectionQueryHandler::Attach(EnterpriseDataAbi::AsyncOperation& operation, const IID& handlerIid, Step step,
                                    BrokerFileProtectionInfo& info) {
  auto* handler = new (std::nothrow) ProtectionQueryHandler(handlerIid, step, info);
  if (!handler) return false;
  HRESULT attached = operation.put_Completed(handler);
  handler->Release();
  return SUCCEEDED(attached);
}

HRESULT ProtectionQueryHandler::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_POINTER;
  if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, iid_) ||
      IsEqualIID(riid, EnterpriseDataAbi::kAgileObjectIid)) {
    *object = static_cast<EnterpriseDataAbi::AsyncHandler*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

ULONG ProtectionQueryHandler::Release() {
  ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ProtectionQueryHandler::Invoke(IInspectable* operation, int32_t status) {
  HRESULT result = E_FAIL;
  if (status == EnterpriseDataAbi::kAsyncCompleted && operation) {
    result = step_(*reinterpret_cast<EnterpriseDataAbi::AsyncOperation*>(operation), info_);
  }
  if (FAILED(result)) {
    info_.OnQueryFailed();
    return E_FAIL;
  }
  return S_OK;
}

}  // namespace SASM
