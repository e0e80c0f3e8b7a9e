#pragma once
// Add-on downloads over WinINet, with the system's proxy configuration.
#include "delivery/IHttpClient.h"

namespace SASM {

class WinInetHttpClient : public IHttpClient {
 public:
  std::unique_ptr<IHttpRequest> Send(const Request& request) override;
};

}  // namespace SASM
