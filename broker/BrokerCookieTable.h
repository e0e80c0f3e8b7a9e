#pragma once
// A broker object's cookies: a singly linked list, newest first, numbered from
// 1 by a counter of the object's own. All calls come on the server's one
// apartment thread, so nothing here locks.
#include <cstdint>
#include <memory>

#include "broker/BrokerCookieRecord.h"

namespace SASM {

class BrokerCookieTable {
 public:
  // Opens the file of a record made by a save dialog; answers the new handle or
  // BrokerCookieRecord::kNoHandle. It owns the record's deferredOpen from here on.
  using DeferredOpenFunction = uint64_t (*)(void* context, BrokerCookieRecord& record);

  BrokerCookieTable() = default;
  BrokerCookieTable(const BrokerCookieTable&) = delete;
  BrokerCookieTable& operator=(const BrokerCookieTable&) = delete;
  // Frees every record; no handle is closed.
  ~BrokerCookieTable() { Clear(); }

  void SetDeferredOpen(DeferredOpenFunction open, void* context) {
    deferredOpen_ = open;
    deferredOpenContext_ = context;
  }

  // A new, cleared record at the head with the next number; null when out of memory.
  BrokerCookieRecord* AllocateCookie();
  // Refuses a handle of 0 or all ones unless the file's open is deferred. The
  // path is kept only when sniffing or deferring.
  bool AddFileCookie(uint64_t handle, uint32_t& cookieOut, bool sniff, const char16_t* path,
                     std::unique_ptr<DeferredOpen> deferredOpen);
  BrokerCookieRecord* FindCookie(uint32_t cookie) const;
  // The record, or null. A deferred file is opened here unless noDeferredOpen;
  // the handle out may then be all ones though a record is returned.
  BrokerCookieRecord* ResolveFileHandle(uint32_t cookie, uint64_t& handleOut, bool noDeferredOpen);
  // The stored handle as it stands: false when there is none, deferred or not.
  bool ResolveRawHandle(uint32_t cookie, uint64_t& handleOut) const;
  // Unlinks and frees the record, closing nothing; false for an unknown number.
  bool FreeCookie(uint32_t cookie);
  static void FreeCookieRecordContents(BrokerCookieRecord& record);
  // Frees every record from the head, closing nothing.
  void Clear();

  BrokerCookieRecord* Head() const { return head_; }
  uint32_t NextCookie() const { return nextCookie_; }
  // Lets a test reach the wrap without four billion allocations.
  void SetNextCookie(uint32_t next) { nextCookie_ = next; }

 private:
  uint32_t nextCookie_ = 1;
  BrokerCookieRecord* head_ = nullptr;
  DeferredOpenFunction deferredOpen_ = nullptr;
  void* deferredOpenContext_ = nullptr;
};

}  // namespace SASM
