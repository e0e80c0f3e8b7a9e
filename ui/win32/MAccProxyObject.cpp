#include "ui/win32/MAccProxyObject.h"

#include <string>

#include "ui/AccessibleFacts.h"
#include "ui/MRegion.h"
#include "ui/MWindow.h"

namespace SASM {
namespace {

bool IsSelf(const VARIANT& childId) { return AccessibleFacts::IsSelf(childId.vt, childId.lVal); }

}  // namespace

void MAccProxyObject::Disconnect() {
  region = nullptr;
  zombie = 1;
  Release();
}

HRESULT MAccProxyObject::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_INVALIDARG;
  if (IsEqualIID(riid, __uuidof(IAccessible)) || IsEqualIID(riid, __uuidof(IDispatch)) ||
      IsEqualIID(riid, __uuidof(IUnknown))) {
    *object = static_cast<IAccessible*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

ULONG MAccProxyObject::AddRef() { return static_cast<ULONG>(++refCount); }

ULONG MAccProxyObject::Release() {
  const LONG count = --refCount;
  // While the region lives it holds the object whatever the count says.
  if (count == 0 && zombie) delete this;
  return static_cast<ULONG>(count);
}

HRESULT MAccProxyObject::GetTypeInfoCount(UINT*) { return E_NOTIMPL; }
HRESULT MAccProxyObject::GetTypeInfo(UINT, LCID, ITypeInfo**) { return E_NOTIMPL; }
HRESULT MAccProxyObject::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) { return E_NOTIMPL; }
HRESULT MAccProxyObject::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) {
  return E_NOTIMPL;
}

HRESULT MAccProxyObject::get_accParent(IDispatch**) { return S_OK; }

HRESULT MAccProxyObject::get_accChildCount(LONG* count) {
  if (!region) return CO_E_OBJNOTCONNECTED;
  if (!count) return E_INVALIDARG;
  *count = 0;
  return S_OK;
}

HRESULT MAccProxyObject::get_accChild(VARIANT childId, IDispatch** child) {
  if (!region) return CO_E_OBJNOTCONNECTED;
  if (!child) return E_INVALIDARG;
  if (!IsSelf(childId)) {
    *child = nullptr;
    return S_FALSE;
  }
  // The caller owns what it gets: a pointer without its reference would be
  // released once too often and could free the object under the region.
  *child = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

HRESULT MAccProxyObject::get_accName(VARIANT childId, BSTR* name) {
  if (!region) return CO_E_OBJNOTCONNECTED;
  if (!name || !IsSelf(childId)) return E_INVALIDARG;
  const MString& label = AccessibleFacts::Name(*region);
  if (label.IsEmpty()) return S_OK;
  const std::u16string text = label.ToU16();
  *name = SysAllocString(reinterpret_cast<const OLECHAR*>(text.c_str()));
  return S_OK;
}

HRESULT MAccProxyObject::NoText(const VARIANT& childId, BSTR* out) const {
  if (!region) return CO_E_OBJNOTCONNECTED;
  if (!out || !IsSelf(childId)) return E_INVALIDARG;
  *out = nullptr;
  return S_OK;
}

HRESULT MAccProxyObject::get_accValue(VARIANT childId, BSTR* value) { return NoText(childId, value); }

HRESULT MAccProxyObject::get_accDescription(VARIANT childId, BSTR* description) {
  return NoText(childId, description);
}

// Role and state answer for the region whatever child is asked about.
HRESULT MAccProxyObject::get_accRole(VARIANT, VARIANT* role) {
  if (!region) return CO_E_OBJNOTCONNECTED;
  if (!role) return E_INVALIDARG;
  role->vt = VT_I4;
  role->lVal = AccessibleFacts::Role(*region);
  return S_OK;
}

HRESULT MAccProxyObject::get_accState(VARIANT, VARIANT* state) {
  if (!region) return CO_E_OBJNOTCONNECTED;
  if (!state) return E_INVALIDARG;
  state->vt = VT_I4;
  state->lVal += AccessibleFacts::State(*region);
  return S_OK;
}

HRESULT MAccProxyObject::get_accHelp(VARIANT, BSTR*) { return E_NOTIMPL; }
HRESULT MAccProxyObject::get_accHelpTopic(BSTR*, VARIANT, LONG*) { return E_NOTIMPL; }

HRESULT MAccProxyObject::get_accKeyboardShortcut(VARIANT childId, BSTR* shortcut) {
  if (!region) return CO_E_OBJNOTCONNECTED;
  if (!shortcut || !IsSelf(childId)) return E_INVALIDARG;
  *shortcut = SysAllocString(L"");
  return S_OK;
}

HRESULT MAccProxyObject::get_accFocus(VARIANT*) { return E_NOTIMPL; }

HRESULT MAccProxyObject::get_accSelection(VARIANT* children) {
  if (!region) return CO_E_OBJNOTCONNECTED;
  if (!children) return E_INVALIDARG;
  children->vt = VT_EMPTY;
  return S_OK;
}

HRESULT MAccProxyObject::get_accDefaultAction(VARIANT childId, BSTR* action) { return NoText(childId, action); }

HRESULT MAccProxyObject::accSelect(LONG, VARIANT) { return E_NOTIMPL; }

HRESULT MAccProxyObject::accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT childId) {
  if (!region) return CO_E_OBJNOTCONNECTED;
  if (!left || !top || !width || !height || !IsSelf(childId)) return E_INVALIDARG;
  const MRect client = AccessibleFacts::ClientLocation(*region);
  POINT topLeft{client.left, client.top};
  POINT bottomRight{client.right, client.bottom};
  HWND window = region->owner ? static_cast<HWND>(region->owner->handle) : nullptr;
  ClientToScreen(window, &topLeft);
  ClientToScreen(window, &bottomRight);
  *left = topLeft.x;
  *top = topLeft.y;
  *width = bottomRight.x - topLeft.x;
  *height = bottomRight.y - topLeft.y;
  return S_OK;
}

HRESULT MAccProxyObject::accNavigate(LONG, VARIANT, VARIANT*) { return E_NOTIMPL; }
HRESULT MAccProxyObject::accHitTest(LONG, LONG, VARIANT*) { return S_FALSE; }
HRESULT MAccProxyObject::accDoDefaultAction(VARIANT) { return E_NOTIMPL; }
HRESULT MAccProxyObject::put_accName(VARIANT, BSTR) { return E_NOTIMPL; }
HRESULT MAccProxyObject::put_accValue(VARIANT, BSTR) { return E_NOTIMPL; }

}  // namespace SASM
