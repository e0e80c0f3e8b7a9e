#pragma once
// One open add-on download, owned by its cookie record: the sent request and
// a buffer of the whole response, read into on demand.
#include <cstdint>
#include <memory>

#include "broker/BrokerDownloadSession.h"
#include "delivery/ByteBuffer.h"
#include "delivery/IHttpClient.h"

namespace SASM {

class ProductDownload : public BrokerDownloadSession {
 public:
  static constexpr uint32_t kMaxRead = 65536;

  // Closes the request's handles, then frees the buffer.
  void Close() {
    request.reset();
    buffer.reset();
  }
  ~ProductDownload() override { Close(); }

  std::unique_ptr<IHttpRequest> request;
  uint32_t received = 0;
  uint32_t total = 0;
  ByteBuffer buffer;
};

}  // namespace SASM
