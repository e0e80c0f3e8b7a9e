#pragma once
// A completion handler of the protection query: when its operation ends it
// runs the next step, and a failed step, or an operation that didn't
// complete, answers the info as failed. The platform may call it on any of
// its threads, so it says it is agile.
#include <atomic>

#include "broker/win32/EnterpriseDataAbi.h"

namespace SASM {

class BrokerFileProtectionInfo;

class ProtectionQueryHandler final : public EnterpriseDataAbi::AsyncHandler {
 public:
  using Step = HRESULT (*)(EnterpriseDataAbi::AsyncOperation& operation, BrokerFileProtectionInfo& info);

  // Attaches a new handler to the operation. False when it won't be called,
  // in which case the caller still owes the info its answer.
  static bool Attach(EnterpriseDataAbi::AsyncOperation& operation, const IID& handlerIid, Step step,
                     BrokerFileProtectionInfo& info);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE Invoke(IInspectable* operation, int32_t status) override;

 private:
  ProtectionQueryHandler(const IID& iid, Step step, BrokerFileProtectionInfo& info)
      : iid_(iid), step_(step), info_(info) {}
  ~ProtectionQueryHandler() = default;

  const IID& iid_;
  Step step_;
  // Not touched once the step or the failure has answered it.
  BrokerFileProtectionInfo& info_;
  std::atomic<ULONG> references_{1};
};

}  // namespace SASM
