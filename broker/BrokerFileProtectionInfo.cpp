#include "broker/BrokerFileProtectionInfo.h"

#include <utility>

#include "broker/Task.h"

namespace SASM {

BrokerFileProtectionInfo::BrokerFileProtectionInfo(EnterpriseProtectionPlatform& platform, const char16_t* path)
    : platform_(platform) {
  if (!path || !platform_.FileExists(path)) {
    status_ = kFailed;
    return;
  }
  path_ = std::u16string(path).substr(0, kMaxPath);
  Task* task = GetTask();
  if (!task || !task->Post(this)) {
    status_ = kFailed;
    return;
  }
  // The apartment thread blocks here while the worker and the platform answer.
  std::unique_lock<std::mutex> hold(doneLock_);
  doneSignal_.wait(hold, [this] { return done_; });
}

const char16_t* BrokerFileProtectionInfo::GetIdentity(uint32_t& length) const {
  length = hasIdentity_ ? static_cast<uint32_t>(identity_.size()) : 0;
  return hasIdentity_ ? identity_.c_str() : nullptr;
}

void BrokerFileProtectionInfo::Run() { platform_.BeginProtectionQuery(path_.c_str(), *this); }

void BrokerFileProtectionInfo::OnQueryRunning() { status_ = kQueryRunning; }

void BrokerFileProtectionInfo::OnProtectionStatus(int32_t platformStatus, std::u16string identity) {
  if (!IsProtectedStatus(platformStatus)) {
    OnQueryFailed();
    return;
  }
  identity_ = std::move(identity);
  hasIdentity_ = true;
  isProtected_ = 1;
  status_ = kFoundProtected;
  Signal();
}

void BrokerFileProtectionInfo::OnQueryFailed() {
  status_ = kFailed;
  Signal();
}

bool BrokerFileProtectionInfo::IsProtectedStatus(int32_t platformStatus) {
  return platformStatus == 3 || platformStatus == 4 || platformStatus == 5 || platformStatus == 7;
}

void BrokerFileProtectionInfo::Signal() {
  // Notified under the lock: once the waiter returns, this object may be gone.
  std::lock_guard<std::mutex> hold(doneLock_);
  done_ = true;
  doneSignal_.notify_all();
}

}  // namespace SASM
