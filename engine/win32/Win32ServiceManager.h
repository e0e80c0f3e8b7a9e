#pragma once
#include "engine/IServiceManager.h"

namespace SASM {

// The service control manager; handle ids are the SC_HANDLE values themselves.
class Win32ServiceManager : public IServiceManager {
 public:
  int32_t OpenManager(uint32_t access, ServiceHandleId& manager) override;
  int32_t OpenService(ServiceHandleId manager, std::u16string_view name, uint32_t access,
                      ServiceHandleId& service) override;
  int32_t QueryState(ServiceHandleId service, uint32_t& state) override;
  int32_t Control(ServiceHandleId service, uint32_t control) override;
  void Close(ServiceHandleId handle) override;
};

}  // namespace SASM
