#include "tests/fakes/FakeAddOnPlatform.h"

#include <algorithm>
#include <cstring>

namespace SASM {
namespace {

class FakeRequest : public IHttpRequest {
 public:
  FakeRequest(FakeHttpClient& client, const FakeResponse& response) : client_(client), response_(response) {
    ++client_.openRequests;
  }
  ~FakeRequest() override { --client_.openRequests; }
  bool QueryStatus(uint32_t& status) override {
    status = response_.status;
    return true;
  }
  bool QueryContentLength(uint32_t& length) override {
    if (!response_.hasLength) return false;
    length = response_.length ? response_.length : static_cast<uint32_t>(response_.body.size());
    return true;
  }
  bool Read(uint8_t* data, uint32_t size, uint32_t& read) override {
    client_.readSizes.push_back(size);
    if (response_.failReads) return false;
    const size_t available = std::min(response_.body.size(), response_.deliverable) - position_;
    read = static_cast<uint32_t>(std::min<size_t>({size, response_.readLimit, available}));
    std::memcpy(data, response_.body.data() + position_, read);
    position_ += read;
    return true;
  }

 private:
  FakeHttpClient& client_;
  FakeResponse response_;
  size_t position_ = 0;
};

}  // namespace

std::unique_ptr<IHttpRequest> FakeHttpClient::Send(const Request& request) {
  sent.push_back(request);
  auto it = responses.find(request.host + request.path);
  if (it == responses.end()) return nullptr;
  return std::make_unique<FakeRequest>(*this, it->second);
}

}  // namespace SASM
