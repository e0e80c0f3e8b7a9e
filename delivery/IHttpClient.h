#pragma once
// Seam for the HTTP client of add-on downloads: one GET, answered in memory.
#include <cstdint>
#include <memory>
#include <string>

namespace SASM {

// A sent request. Destruction closes its handles: request, connection, session.
class IHttpRequest {
 public:
  virtual ~IHttpRequest() = default;
  // The numeric status code; false when the response has none.
  virtual bool QueryStatus(uint32_t& status) = 0;
  // The numeric content length; false when the response has no such header.
  virtual bool QueryContentLength(uint32_t& length) = 0;
  // One read of at most size bytes; 0 bytes read is a success.
  virtual bool Read(uint8_t* data, uint32_t size, uint32_t& read) = 0;
};

class IHttpClient {
 public:
  struct Request {
    const char* agent;
    std::string host;
    uint16_t port;
    const char* verb;
    std::string path;
    const char* version;
    uint32_t flags;
  };
  virtual ~IHttpClient() = default;
  // Opens a session with the system's proxy configuration, connects, and sends
  // the request with no headers or body; null when any of that fails.
  virtual std::unique_ptr<IHttpRequest> Send(const Request& request) = 0;
};

}  // namespace SASM
