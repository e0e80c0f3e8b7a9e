#pragma once
// The accessible object of one region with a native child window. It outlives
// the region while a client holds it: the region's end disconnects it, and the
// last Release after that frees it.
#include "engine/win32/WindowsApi.h"

#include <ole2.h>
#include <oleacc.h>

#include <atomic>
#include <cstdint>

namespace SASM {

class MRegion;

class MAccProxyObject final : public IAccessible {
 public:
  // Starts unreferenced; whoever keeps it takes the first reference.
  explicit MAccProxyObject(MRegion* region) : region(region) {}
  MAccProxyObject(const MAccProxyObject&) = delete;
  MAccProxyObject& operator=(const MAccProxyObject&) = delete;

  // The region is gone: every method that reads it answers CO_E_OBJNOTCONNECTED
  // from now on, and the region's reference is given back.
  void Disconnect();

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  // IDispatch
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID locale, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override;

  // IAccessible
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override;
  HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override;
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT childId, IDispatch** child) override;
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT childId, BSTR* name) override;
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT childId, BSTR* value) override;
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT childId, BSTR* description) override;
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT childId, VARIANT* role) override;
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT childId, VARIANT* state) override;
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT childId, BSTR* help) override;
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* helpFile, VARIANT childId, LONG* topic) override;
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT childId, BSTR* shortcut) override;
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override;
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override;
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT childId, BSTR* action) override;
  HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT childId) override;
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT childId) override;
  HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start, VARIANT* end) override;
  HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) override;
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT childId) override;
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT childId, BSTR name) override;
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT childId, BSTR value) override;

  MRegion* region;
  std::atomic<LONG> refCount{0};
  uint8_t zombie = 0;

 private:
  // Freed only by the last Release after Disconnect.
  ~MAccProxyObject() = default;
  // A null text answer for the region itself.
  HRESULT NoText(const VARIANT& childId, BSTR* out) const;
};

}  // namespace SASM
