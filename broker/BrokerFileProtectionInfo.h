#pragma once
// Whether a file is protected to an enterprise identity, and to which. The
// platform's query is asynchronous and runs from the process's worker; the
// asking thread waits without a time limit for the answer. A failed query
// leaves the file unprotected: the settled behaviour is to fail open.
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>

#include "broker/EnterpriseProtectionPlatform.h"
#include "broker/TaskJob.h"

namespace SASM {

class BrokerFileProtectionInfo : public TaskJob {
 public:
  static constexpr uint32_t kQueryRunning = 2;
  static constexpr uint32_t kFoundProtected = 3;
  static constexpr uint32_t kFailed = 4;
  // The longest path handed to the platform, in characters.
  static constexpr size_t kMaxPath = 260;

  // Asks and waits. A file that doesn't exist isn't protected, and no worker
  // is started for it.
  BrokerFileProtectionInfo(EnterpriseProtectionPlatform& platform, const char16_t* path);
  BrokerFileProtectionInfo(const BrokerFileProtectionInfo&) = delete;
  BrokerFileProtectionInfo& operator=(const BrokerFileProtectionInfo&) = delete;
  ~BrokerFileProtectionInfo() = default;

  bool IsProtected() const { return isProtected_ != 0; }
  // The identity's characters and length; null with length 0 when there is none.
  const char16_t* GetIdentity(uint32_t& length) const;
  uint32_t Status() const { return status_; }
  const std::u16string& Path() const { return path_; }

  // The job, on the worker: starts the platform's query.
  void Run() override;

  // Answers from the platform, on any thread. A status of 3 (protected), 4 (by
  // another user), 5 (to another enterprise) or 7 (to another identity) counts
  // as protected; any other fails the query.
  void OnQueryRunning();
  void OnProtectionStatus(int32_t platformStatus, std::u16string identity);
  void OnQueryFailed();
  static bool IsProtectedStatus(int32_t platformStatus);

 private:
  void Signal();

  EnterpriseProtectionPlatform& platform_;
  std::u16string path_;
  uint32_t isProtected_ = 0;
  std::u16string identity_;
  bool hasIdentity_ = false;
  uint32_t status_ = 0;
  // The `done` event: manual reset, set once.
  std::mutex doneLock_;
  std::condition_variable doneSignal_;
  bool done_ = false;
};

}  // namespace SASM
