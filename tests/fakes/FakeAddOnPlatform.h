#pragma once
// The add-on family's HTTP client and process seams from tables: responses by
// host and path, reads cut into the sizes a test asks for, and a log of what
// was started and probed.
#include <map>
#include <set>
#include <string>
#include <vector>

#include "delivery/IAddOnProcesses.h"
#include "delivery/IHttpClient.h"

namespace SASM {

struct FakeResponse {
  uint32_t status = 200;
  // Absent when the response has no content length.
  bool hasLength = true;
  uint32_t length = 0;  // taken from body when 0 and hasLength
  std::string body;
  // Reads give at most this many bytes each, then nothing once it is used up.
  uint32_t readLimit = UINT32_MAX;
  size_t deliverable = SIZE_MAX;
  bool failReads = false;
};

class FakeHttpClient : public IHttpClient {
 public:
  std::map<std::string, FakeResponse> responses;  // by host + path
  std::vector<Request> sent;
  int openRequests = 0;
  // Every read's size, in order.
  std::vector<uint32_t> readSizes;

  std::unique_ptr<IHttpRequest> Send(const Request& request) override;
};

class FakeAddOnProcesses : public IAddOnProcesses {
 public:
  struct Start {
    std::u16string path;
    std::u16string parameters;
    bool elevated;
  };
  std::vector<uint32_t> startErrors;  // answered in order, each once, then 0
  bool elevatedWorks = true;
  std::set<std::string> heldMutexes;
  std::vector<std::string> probes;
  std::vector<Start> starts;
  uint32_t versionMS = 0x00030001;
  uint32_t versionLS = 0x0004000F;

  uint32_t Start(std::u16string_view path, const char16_t* parameters) override {
    const uint32_t error = startErrors.empty() ? 0 : startErrors.front();
    if (!startErrors.empty()) startErrors.erase(startErrors.begin());
    starts.push_back({std::u16string(path), parameters ? parameters : u"<null>", false});
    return error;
  }
  bool StartElevated(std::u16string_view path) override {
    starts.push_back({std::u16string(path), u"", true});
    return elevatedWorks;
  }
  bool ReadFileVersion(std::u16string_view, uint32_t& ms, uint32_t& ls) override {
    ms = versionMS;
    ls = versionLS;
    return true;
  }
  bool MutexExists(const std::string& name) override {
    probes.push_back(name);
    return heldMutexes.count(name) > 0;
  }
};

}  // namespace SASM
