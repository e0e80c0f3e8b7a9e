#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "broker/BrokerCookieTable.h"

using SASM::BrokerCookieRecord;
using SASM::BrokerCookieTable;
using SASM::BrokerDownloadSession;
using SASM::DeferredOpen;

namespace {

constexpr uint64_t kNone = BrokerCookieRecord::kNoHandle;

// A download that says when it is destroyed.
class WatchedDownload : public BrokerDownloadSession {
 public:
  explicit WatchedDownload(int& destroyed) : destroyed_(destroyed) {}
  ~WatchedDownload() override { ++destroyed_; }

 private:
  int& destroyed_;
};

// Stands in for the deferred open: records each call and answers a fixed handle.
struct Opener {
  static uint64_t Open(void* context, BrokerCookieRecord& record) {
    auto* self = static_cast<Opener*>(context);
    self->opened.push_back(record.cookie);
    return self->answer;
  }
  std::vector<uint32_t> opened;
  uint64_t answer = 0x1234;
};

std::unique_ptr<DeferredOpen> SaveDialogOpen() {
  auto open = std::make_unique<DeferredOpen>();
  open->desiredAccess = 0x40000000;
  open->creationDisposition = 2;
  open->identity = u"corp.example";
  return open;
}

class BrokerCookieTableTest : public ::testing::Test {
 protected:
  BrokerCookieTableTest() { table.SetDeferredOpen(&Opener::Open, &opener); }

  uint32_t AddFile(uint64_t handle, bool sniff = false, const char16_t* path = u"C:\\f.txt") {
    uint32_t cookie = 0;
    EXPECT_TRUE(table.AddFileCookie(handle, cookie, sniff, path, nullptr));
    return cookie;
  }
  uint32_t AddChosen(const char16_t* path = u"C:\\chosen.sol") {
    uint32_t cookie = 0;
    EXPECT_TRUE(table.AddFileCookie(kNone, cookie, false, path, SaveDialogOpen()));
    return cookie;
  }

  // The cookies from the head of the list on.
  std::vector<uint32_t> Order() {
    std::vector<uint32_t> cookies;
    for (const BrokerCookieRecord* record = table.Head(); record; record = record->next)
      cookies.push_back(record->cookie);
    return cookies;
  }

  Opener opener;
  BrokerCookieTable table;
};

}  // namespace

TEST_F(BrokerCookieTableTest, NumbersStartAtOneAndTheNewestStandsFirst) {
  EXPECT_EQ(AddFile(0x10), 1u);
  EXPECT_EQ(AddFile(0x20), 2u);
  EXPECT_EQ(Order(), (std::vector<uint32_t>{2, 1}));
}

TEST_F(BrokerCookieTableTest, CounterWrapsToOneSkippingZeroWithoutAskingWhatIsInUse) {
  EXPECT_EQ(AddFile(0x10), 1u);
  table.SetNextCookie(0xFFFFFFFF);
  EXPECT_EQ(AddFile(0x20), 0xFFFFFFFFu);
  EXPECT_EQ(table.NextCookie(), 0u);
  // A second record numbered 1: the newer one hides the older until it is freed.
  EXPECT_EQ(AddFile(0x30), 1u);
  EXPECT_EQ(table.FindCookie(1)->handle, 0x30u);
  EXPECT_TRUE(table.FreeCookie(1));
  EXPECT_EQ(table.FindCookie(1)->handle, 0x10u);
}

TEST_F(BrokerCookieTableTest, AddFileRefusesNoHandleUnlessTheOpenIsDeferred) {
  uint32_t cookie = 77;
  EXPECT_FALSE(table.AddFileCookie(kNone, cookie, true, u"C:\\a.txt", nullptr));
  EXPECT_EQ(cookie, 0u);
  EXPECT_EQ(table.Head(), nullptr);
  EXPECT_EQ(table.NextCookie(), 1u);

  // A deferred open accepts either, and 0 is kept as "no handle".
  ASSERT_TRUE(table.AddFileCookie(0, cookie, false, u"C:\\b.sol", SaveDialogOpen()));
  BrokerCookieRecord* record = table.FindCookie(cookie);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->handle, kNone);
  EXPECT_EQ(record->filePath, u"C:\\b.sol");
}

TEST_F(BrokerCookieTableTest, ResolveFileHandleOpensADeferredFileUnlessToldNotTo) {
  uint32_t open = AddFile(0x10);
  uint32_t chosen = AddChosen();
  uint64_t handle = 0;

  EXPECT_EQ(table.ResolveFileHandle(open, handle, false), table.FindCookie(open));
  EXPECT_EQ(handle, 0x10u);
  EXPECT_EQ(table.ResolveFileHandle(chosen, handle, true), table.FindCookie(chosen));
  EXPECT_EQ(handle, kNone);
  EXPECT_TRUE(opener.opened.empty());

  EXPECT_EQ(table.ResolveFileHandle(chosen, handle, false), table.FindCookie(chosen));
  EXPECT_EQ(handle, 0x1234u);
  EXPECT_EQ(opener.opened, std::vector<uint32_t>{chosen});

  // A failed open still answers the record: callers must look at the handle too.
  opener.answer = kNone;
  EXPECT_EQ(table.ResolveFileHandle(chosen, handle, false), table.FindCookie(chosen));
  EXPECT_EQ(handle, kNone);
}

TEST_F(BrokerCookieTableTest, RawHandleOfAChosenFileIsNotReadableAndNeverOpens) {
  uint32_t chosen = AddChosen();
  uint64_t handle = 0;
  EXPECT_FALSE(table.ResolveRawHandle(chosen, handle));
  EXPECT_EQ(handle, kNone);
  EXPECT_TRUE(opener.opened.empty());
  EXPECT_TRUE(table.ResolveRawHandle(AddFile(0x44), handle));
  EXPECT_EQ(handle, 0x44u);
}

TEST_F(BrokerCookieTableTest, FreeingContentsReleasesWhatTheRecordOwnsButNotItsHandle) {
  int destroyed = 0;
  BrokerCookieRecord* record = table.FindCookie(AddChosen());
  record->handle = 0x50;
  record->download = std::make_unique<WatchedDownload>(destroyed);
  BrokerCookieTable::FreeCookieRecordContents(*record);
  EXPECT_EQ(destroyed, 1);
  EXPECT_FALSE(record->download);
  EXPECT_FALSE(record->filePath);
  EXPECT_FALSE(record->deferredOpen);
  EXPECT_EQ(record->handle, 0x50u);

  // Freeing a cookie and destroying the table free the same way.
  destroyed = 0;
  {
    BrokerCookieTable owner;
    for (int i = 0; i < 3; ++i) owner.AllocateCookie()->download = std::make_unique<WatchedDownload>(destroyed);
    EXPECT_TRUE(owner.FreeCookie(2));
    EXPECT_EQ(destroyed, 1);
  }
  EXPECT_EQ(destroyed, 3);
}
