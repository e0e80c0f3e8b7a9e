#include "host/win32/BrokerMethodTable.h"

#include "LumenBroker_h.h"

#include <algorithm>

#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/WideText.h"

namespace SASM {
namespace {

using Type = BrokerCallArguments::Type;

Type TypeOf(const TYPEDESC& desc, VARTYPE& vt) {
  vt = desc.vt;
  switch (desc.vt) {
    case VT_BSTR: return Type::Bstr;
    case VT_LPWSTR:
      // The characters by reference, which is all the vtable sees of an LPWSTR.
      vt = VT_BYREF | VT_UI2;
      return Type::LpWstr;
    case VT_I4:
    case VT_INT: vt = VT_I4; return Type::Int32;
    case VT_UI4:
    case VT_UINT: vt = VT_UI4; return Type::UInt32;
    case VT_I8: return Type::Int64;
    case VT_VARIANT: return Type::Variant;
    case VT_SAFEARRAY:
      if (desc.lptdesc->vt != VT_UI1) return Type::Unknown;
      vt = VT_ARRAY | VT_UI1;
      return Type::Bytes;
    default: return Type::Unknown;
  }
}

std::u16string DefaultText(const PARAMDESC& desc) {
  VARIANT text;
  VariantInit(&text);
  std::u16string result;
  if (desc.pparamdescex && SUCCEEDED(VariantChangeType(&text, &desc.pparamdescex->varDefaultValue, 0, VT_BSTR)))
    result = FromWide(text.bstrVal, SysStringLen(text.bstrVal));
  VariantClear(&text);
  return result;
}

bool SameIgnoringCase(std::u16string_view a, std::u16string_view b) {
  auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; };
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [&](char16_t x, char16_t y) { return lower(x) == lower(y); });
}

}  // namespace

HRESULT BrokerMethodTable::Load() {
  methods_.clear();
  ComPtr<ITypeLib> library;
  HRESULT result = LoadRegTypeLib(LIBID_LumenBrokerLib, 1, 0, 0, library.receive());
  if (FAILED(result)) return result;
  // The dual interface's dispatch half; its vtable half carries the offsets and the parents.
  ComPtr<ITypeInfo> dispatch, info;
  HREFTYPE ref = 0;
  if (FAILED(result = library->GetTypeInfoOfGuid(IID_ILumenBroker6, dispatch.receive())) ||
      FAILED(result = dispatch->GetRefTypeOfImplType(-1, &ref)) ||
      FAILED(result = dispatch->GetRefTypeInfo(ref, info.receive())))
    return result;

  // Newest first as the chain is walked, up to IDispatch.
  std::vector<ComPtr<ITypeInfo>> chain;
  while (info) {
    TYPEATTR* attr = nullptr;
    if (FAILED(result = info->GetTypeAttr(&attr))) return result;
    const bool isDispatch = IsEqualGUID(attr->guid, IID_IDispatch);
    info->ReleaseTypeAttr(attr);
    if (isDispatch) break;
    ComPtr<ITypeInfo> parent;
    if (FAILED(result = info->GetRefTypeOfImplType(0, &ref)) ||
        FAILED(result = info->GetRefTypeInfo(ref, parent.receive())))
      return result;
    chain.push_back(std::move(info));
    info = std::move(parent);
  }
  for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
    if (FAILED(result = AddOwnMethods(*it->get()))) return result;
  }
  return S_OK;
}

HRESULT BrokerMethodTable::AddOwnMethods(ITypeInfo& info) {
  TYPEATTR* attr = nullptr;
  HRESULT result = info.GetTypeAttr(&attr);
  if (FAILED(result)) return result;
  const WORD count = attr->cFuncs;
  info.ReleaseTypeAttr(attr);
  for (WORD i = 0; i < count; ++i) {
    FUNCDESC* func = nullptr;
    if (FAILED(result = info.GetFuncDesc(i, &func))) return result;
    std::vector<BSTR> names(static_cast<size_t>(func->cParams) + 1, nullptr);
    UINT named = 0;
    info.GetNames(func->memid, names.data(), static_cast<UINT>(names.size()), &named);
    BrokerMethod method;
    method.name = FromWide(names[0]);
    method.vtableOffset = func->oVft;
    for (SHORT p = 0; p < func->cParams; ++p) {
      const ELEMDESC& element = func->lprgelemdescParam[p];
      const USHORT flags = element.paramdesc.wParamFlags;
      BrokerCallArguments::Parameter parameter;
      parameter.name =
          static_cast<UINT>(p) + 1 < named ? FromWide(names[p + 1]) : u"arg" + FromWide(std::to_wstring(p).c_str());
      parameter.out = flags & PARAMFLAG_FOUT;
      // Neither flag, as MIDL leaves a plain argument, means in.
      parameter.in = (flags & PARAMFLAG_FIN) || !parameter.out;
      parameter.hasDefault = flags & PARAMFLAG_FHASDEFAULT;
      if (parameter.hasDefault) parameter.defaultText = DefaultText(element.paramdesc);
      const TYPEDESC& type = parameter.out && element.tdesc.vt == VT_PTR ? *element.tdesc.lptdesc : element.tdesc;
      VARTYPE vt = VT_EMPTY;
      parameter.type = TypeOf(type, vt);
      method.parameters.push_back(std::move(parameter));
      method.types.push_back(vt);
    }
    for (BSTR name : names) SysFreeString(name);
    info.ReleaseFuncDesc(func);
    methods_.push_back(std::move(method));
  }
  return S_OK;
}

const BrokerMethod* BrokerMethodTable::Find(std::u16string_view name) const {
  for (const BrokerMethod& method : methods_)
    if (SameIgnoringCase(method.name, name)) return &method;
  return nullptr;
}

}  // namespace SASM
