#pragma once
// The broker's methods as the registered type library describes them: every
// method of ILumenBroker6 and the generations it extends, with its vtable
// offset and its parameters.
#include "engine/win32/WindowsApi.h"

#include <oleauto.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/BrokerCallArguments.h"

namespace SASM {

struct BrokerMethod {
  std::u16string name;
  SHORT vtableOffset = 0;
  std::vector<BrokerCallArguments::Parameter> parameters;
  // How the vtable takes each parameter: an out parameter's pointee, a
  // SAFEARRAY as VT_ARRAY | its element.
  std::vector<VARTYPE> types;
};

class BrokerMethodTable {
 public:
  // Oldest generation first, each in vtable order.
  HRESULT Load();
  const std::vector<BrokerMethod>& Methods() const { return methods_; }
  // By name, ignoring ASCII case; null when there is none.
  const BrokerMethod* Find(std::u16string_view name) const;

 private:
  HRESULT AddOwnMethods(ITypeInfo& info);

  std::vector<BrokerMethod> methods_;
};

}  // namespace SASM
