#pragma once
// What a cookie record owns of an add-on download. The download work derives
// from this; the record only ever destroys it.
namespace SASM {

class BrokerDownloadSession {
 public:
  BrokerDownloadSession() = default;
  BrokerDownloadSession(const BrokerDownloadSession&) = delete;
  BrokerDownloadSession& operator=(const BrokerDownloadSession&) = delete;
  virtual ~BrokerDownloadSession() = default;
};

}  // namespace SASM
