#include "delivery/win32/WinInetHttpClient.h"

#include "engine/win32/WindowsApi.h"

#include <wininet.h>

#include <new>

namespace SASM {
namespace {

class ScopedInternetHandle {
 public:
  explicit ScopedInternetHandle(HINTERNET handle = nullptr) : handle_(handle) {}
  ScopedInternetHandle(const ScopedInternetHandle&) = delete;
  ScopedInternetHandle& operator=(const ScopedInternetHandle&) = delete;
  ~ScopedInternetHandle() { reset(); }
  HINTERNET get() const { return handle_; }
  void reset(HINTERNET handle = nullptr) {
    if (handle_) InternetCloseHandle(handle_);
    handle_ = handle;
  }

 private:
  HINTERNET handle_;
};

class WinInetRequest : public IHttpRequest {
 public:
  ~WinInetRequest() override {
    request.reset();
    connection.reset();
    session.reset();
  }

  bool QueryStatus(uint32_t& status) override { return QueryNumber(HTTP_QUERY_STATUS_CODE, status); }
  bool QueryContentLength(uint32_t& length) override { return QueryNumber(HTTP_QUERY_CONTENT_LENGTH, length); }
  bool Read(uint8_t* data, uint32_t size, uint32_t& read) override {
    DWORD count = 0;
    const BOOL ok = InternetReadFile(request.get(), data, size, &count);
    read = count;
    return ok != FALSE;
  }

  ScopedInternetHandle session;
  ScopedInternetHandle connection;
  ScopedInternetHandle request;

 private:
  bool QueryNumber(DWORD query, uint32_t& value) {
    DWORD number = 0;
    DWORD size = sizeof(number);
    if (!HttpQueryInfoA(request.get(), query | HTTP_QUERY_FLAG_NUMBER, &number, &size, nullptr)) return false;
    value = number;
    return true;
  }
};

}  // namespace

std::unique_ptr<IHttpRequest> WinInetHttpClient::Send(const Request& request) {
  std::unique_ptr<WinInetRequest> sent(new (std::nothrow) WinInetRequest());
  if (!sent) return nullptr;
  sent->session.reset(InternetOpenA(request.agent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
  if (!sent->session.get()) return nullptr;
  sent->connection.reset(InternetConnectA(sent->session.get(), request.host.c_str(), request.port, nullptr, nullptr,
                                          INTERNET_SERVICE_HTTP, 0, 0));
  if (!sent->connection.get()) return nullptr;
  sent->request.reset(HttpOpenRequestA(sent->connection.get(), request.verb, request.path.c_str(), request.version,
                                       nullptr, nullptr, request.flags, 0));
  if (!sent->request.get()) return nullptr;
  if (!HttpSendRequestA(sent->request.get(), nullptr, 0, nullptr, 0)) {
    OutputDebugStringA("HttpSendRequestA fail");
    return nullptr;
  }
  return sent;
}

}  // namespace SASM
