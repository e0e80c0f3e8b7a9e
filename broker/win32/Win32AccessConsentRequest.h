#pragma once
// The policy manager's question to the user whether a file protected to one
// enterprise identity may go to another, asked with an audit record and owned
// by the client's window. The asking thread pumps its messages while the
// answer is on its way, since the prompt may need them. Where the runtime
// lacks the services, as under Wine, the request fails and counts as refused.
#include "engine/win32/WindowsApi.h"

#include <atomic>

#include "broker/win32/EnterpriseDataAbi.h"
#include "engine/win32/ScopedHandle.h"

namespace SASM {

class Win32AccessConsentRequest final : public EnterpriseDataAbi::AsyncHandler {
 public:
  static constexpr const wchar_t* kAuditInfoClass = L"Windows.Security.EnterpriseData.ProtectionPolicyAuditInfo";
  static constexpr const wchar_t* kPolicyManagerClass = L"Windows.Security.EnterpriseData.ProtectionPolicyManager";
  // Every kind of message wakes the wait, touch and pointer input included.
  static constexpr DWORD kWakeMask = 7423;

  // True only when the answer is "allowed". A null identity or target, or a
  // window of 0 or all ones, is refused without asking.
  static bool Ask(HWND window, const wchar_t* sourceIdentity, const wchar_t* targetIdentity, const wchar_t* leafName,
                  const wchar_t* remoteUrl);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE Invoke(IInspectable* operation, int32_t status) override;

 private:
  Win32AccessConsentRequest();
  ~Win32AccessConsentRequest() = default;

  // Waits for the handler, dispatching the thread's messages meanwhile.
  bool WaitForAnswer();

  // Manual reset, set once by the handler, on whichever thread the platform calls it.
  ScopedHandle done_;
  std::atomic<bool> allowed_{false};
  std::atomic<ULONG> references_{1};
};

}  // namespace SASM
