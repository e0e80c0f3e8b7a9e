#include "broker/BrokerCookieTable.h"

#include <new>
#include <utility>

namespace SASM {

BrokerCookieRecord* BrokerCookieTable::AllocateCookie() {
  // Zero is never handed out; whether the number after the wrap is still in
  // use is not asked.
  if (nextCookie_ == 0) nextCookie_ = 1;
  auto* record = new (std::nothrow) BrokerCookieRecord();
  if (!record) return nullptr;
  record->cookie = nextCookie_++;
  record->next = head_;
  head_ = record;
  return record;
}

bool BrokerCookieTable::AddFileCookie(uint64_t handle, uint32_t& cookieOut, bool sniff, const char16_t* path,
                                      std::unique_ptr<DeferredOpen> deferredOpen) {
  cookieOut = 0;
  if ((handle == 0 || handle == BrokerCookieRecord::kNoHandle) && !deferredOpen) return false;
  BrokerCookieRecord* record = AllocateCookie();
  if (!record) return false;
  bool keepPath = sniff || deferredOpen;
  record->deferredOpen = std::move(deferredOpen);
  record->sniffActive = sniff ? 1 : 0;
  record->handle = handle == 0 ? BrokerCookieRecord::kNoHandle : handle;
  if (keepPath && path) {
    // An unchecked copy: without memory the record simply keeps no path.
    try {
      record->filePath.emplace(path);
    } catch (const std::bad_alloc&) {
      record->filePath.reset();
    }
  }
  cookieOut = record->cookie;
  return true;
}

BrokerCookieRecord* BrokerCookieTable::FindCookie(uint32_t cookie) const {
  for (BrokerCookieRecord* record = head_; record; record = record->next) {
    if (record->cookie == cookie) return record;
  }
  return nullptr;
}

BrokerCookieRecord* BrokerCookieTable::ResolveFileHandle(uint32_t cookie, uint64_t& handleOut, bool noDeferredOpen) {
  BrokerCookieRecord* record = FindCookie(cookie);
  if (!record) return nullptr;
  if (noDeferredOpen || !record->deferredOpen) {
    handleOut = record->handle;
  } else {
    handleOut = deferredOpen_ ? deferredOpen_(deferredOpenContext_, *record) : BrokerCookieRecord::kNoHandle;
  }
  return record;
}

bool BrokerCookieTable::ResolveRawHandle(uint32_t cookie, uint64_t& handleOut) const {
  const BrokerCookieRecord* record = FindCookie(cookie);
  handleOut = record ? record->handle : BrokerCookieRecord::kNoHandle;
  return handleOut != BrokerCookieRecord::kNoHandle;
}

bool BrokerCookieTable::FreeCookie(uint32_t cookie) {
  for (BrokerCookieRecord** link = &head_; *link; link = &(*link)->next) {
    BrokerCookieRecord* record = *link;
    if (record->cookie != cookie) continue;
    *link = record->next;
    FreeCookieRecordContents(*record);
    delete record;
    return true;
  }
  return false;
}

void BrokerCookieTable::FreeCookieRecordContents(BrokerCookieRecord& record) {
  record.download.reset();
  record.filePath.reset();
  record.deferredOpen.reset();
}

void BrokerCookieTable::Clear() {
  // A loop, not a chain of owners: a long table must not recurse.
  while (head_) {
    BrokerCookieRecord* record = head_;
    head_ = record->next;
    FreeCookieRecordContents(*record);
    delete record;
  }
}

}  // namespace SASM
