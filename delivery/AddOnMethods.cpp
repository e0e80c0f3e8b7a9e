#include "delivery/AddOnMethods.h"

#include <algorithm>
#include <new>

#include "delivery/AddOnNames.h"
#include "delivery/ProductDownload.h"
#include "engine/HostCallbacks.h"

namespace SASM {
namespace {

ProductDownload* DownloadOf(BrokerCookieRecord* record) {
  return record ? static_cast<ProductDownload*>(record->download.get()) : nullptr;
}

}  // namespace

std::u16string AddOnMethods::OverridePath() {
  MString path;
  uint8_t flag = 0;
  // The flag has no bearing on the checks.
  if (host_) host_->GetDownloadSettings(path, flag);
  return path.ToU16();
}

int32_t AddOnMethods::OpenDownload(const char* url, uint32_t& cookie) {
  cookie = 0;
  BrokerCookieRecord* record = cookies_.AllocateCookie();
  if (!record) return kFailure;
  const uint32_t number = record->cookie;
  auto* download = new (std::nothrow) ProductDownload();
  if (!download) {
    cookies_.FreeCookie(number);
    return kFailure;
  }
  record->download.reset(download);

  std::string host;
  std::string path;
  bool secure = false;
  uint32_t status = 0;
  bool opened = AddOnNames::ParseProductUrl(url, host, path, secure);
  if (opened) {
    download->request = http_.Send(IHttpClient::Request{kAgent, host, secure ? kHttpsPort : kHttpPort, "GET", path,
                                                        "HTTP/1.0", secure ? kRequestFlags | kSecureFlag : kRequestFlags});
    // The content length is all that bounds the buffer; a length the process
    // cannot have fails the open like any other step.
    opened = download->request && download->request->QueryStatus(status) && status < kFirstBadStatus &&
             download->request->QueryContentLength(download->total) &&
             download->buffer.Allocate(std::max<size_t>(download->total, 1));
  }
  if (!opened) {
    // Freeing the record closes the request's handles and the buffer with it.
    cookies_.FreeCookie(number);
    return kFailure;
  }
  cookie = number;
  return kOk;
}

int32_t AddOnMethods::UpdateDownload(uint32_t cookie, uint32_t* position, uint32_t* length) {
  if (!position || !length) return kInvalidArgument;
  ProductDownload* download = DownloadOf(cookies_.FindCookie(cookie));
  if (!download) return kInvalidArgument;
  if (download->buffer.empty() || !download->request) return kFailure;
  const uint32_t wanted = std::min(download->total - download->received, ProductDownload::kMaxRead);
  uint32_t read = 0;
  if (!download->request->Read(download->buffer.data() + download->received, wanted, read)) return kFailure;
  // A client that claims more than was asked for would move the position past the buffer.
  download->received += std::min(read, wanted);
  *position = download->received;
  *length = download->total;
  return kOk;
}

int32_t AddOnMethods::CloseDownload(uint32_t cookie, const char16_t* name, uint32_t* resultCode) {
  if (!resultCode) return kInvalidArgument;
  BrokerCookieRecord* record = cookies_.FindCookie(cookie);
  ProductDownload* download = DownloadOf(record);
  if (!download) return kInvalidArgument;
  uint32_t code = AddOnResult::kStored;
  if (name) {
    const std::u16string overridePath = OverridePath();
    const std::u16string_view text(name);
    const std::u16string_view mark(kDigestMark);
    // The whole buffer goes on, as long as the content length said, read to the end or not.
    if (download->buffer.empty())
      code = AddOnResult::kNoData;
    else if (text.substr(0, mark.size()) == mark)
      code = store_.StoreProductDigest(name + mark.size(), download->buffer.data(), download->total);
    else
      code = store_.InstallSignedPackage(name, download->buffer.data(), download->total, overridePath);
    download->Close();
  }
  *resultCode = code;
  cookies_.FreeCookie(cookie);
  return kOk;
}

bool AddOnMethods::VerifiedExecutable(const char16_t* name, std::u16string& path) {
  return AddOnNames::IsValidProductName(name) &&
         store_.Folders().ExecutablePath(name, ProductFolders::kPerUser, path) &&
         store_.VerifyProductDigest(name, OverridePath(), ProductFolders::kPerUser);
}

int32_t AddOnMethods::Launch(const char16_t* name, const char16_t* parameters) {
  if (!name) return kInvalidArgument;
  std::u16string path;
  if (!VerifiedExecutable(name, path)) return kFailure;
  const uint32_t error = processes_.Start(path, parameters);
  if (error == 0) return kOk;
  // An elevated start loses its parameters.
  if (error == IAddOnProcesses::kElevationRequired && processes_.StartElevated(path)) return kOk;
  return kFailure;
}

int32_t AddOnMethods::GetVersion(const char16_t* name, uint32_t* mostSignificant, uint32_t* leastSignificant) {
  if (!name || !mostSignificant || !leastSignificant) return kInvalidArgument;
  std::u16string path;
  uint32_t ms = 0;
  uint32_t ls = 0;
  if (!VerifiedExecutable(name, path) || !processes_.ReadFileVersion(path, ms, ls)) return kFailure;
  *mostSignificant = ms;
  *leastSignificant = ls;
  return kOk;
}

int32_t AddOnMethods::IsRunning(const char16_t* name) {
  if (!name || !AddOnNames::IsValidProductName(name)) return kInvalidArgument;
  std::string mutex(kRunningMutexPrefix);
  for (const char16_t* c = name; *c; ++c)
    mutex.push_back(static_cast<char>(*c >= u'A' && *c <= u'Z' ? *c - u'A' + u'a' : *c));
  return processes_.MutexExists(mutex) ? kOk : kNotRunning;
}

}  // namespace SASM
