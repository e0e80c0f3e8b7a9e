#include <gtest/gtest.h>

#include <memory>

#include "broker/DeferredFileOpener.h"
#include "tests/native/BrokerTestWorld.h"

using namespace SASM;
using OpenCall = FakeBrokerFilePlatform::OpenCall;

namespace {

const std::u16string kChosen = u"C:\\Users\\a\\Documents\\movie.lmv";
constexpr uint64_t kNone = BrokerCookieRecord::kNoHandle;

// A save dialog's choice: write, share reading, the given disposition.
class DeferredFileOpenerTest : public BrokerWorld {
 protected:
  DeferredFileOpenerTest() {
    files.AddDirectory(u"C:\\Users\\a\\Documents");
    protection.SetProcessIdentities({u"corp.example"});
    record.filePath = kChosen;
  }

  void Choose(uint32_t disposition, const char16_t* identity = nullptr, uint32_t access = 0x40000000) {
    auto open = std::make_unique<DeferredOpen>();
    open->desiredAccess = access;
    open->shareMode = 1;
    open->creationDisposition = disposition;
    open->flagsAndAttributes = 0x80;
    if (identity) open->identity = identity;
    record.deferredOpen = std::move(open);
  }

  BrokerCookieRecord record;
};

}  // namespace

TEST_F(DeferredFileOpenerTest, TheFileIsOpenedWithTheChosenValuesAndMarked) {
  Choose(2);
  uint64_t handle = opener.Open(record);
  EXPECT_TRUE(files.IsOpen(handle));
  EXPECT_EQ(record.handle, handle);
  EXPECT_EQ(record.deferredOpen, nullptr);
  EXPECT_EQ(files.Opens(), (std::vector<OpenCall>{{kChosen, 0x40000000, 1, 2, 0x80}}));
  EXPECT_EQ(marks.Log(), std::vector<std::string>{"Attachment C:\\Users\\a\\Documents\\movie.lmv"});
}

TEST_F(DeferredFileOpenerTest, AFailedOpenIsStillMarked) {
  Choose(3);
  EXPECT_EQ(opener.Open(record), kNone);
  EXPECT_EQ(record.deferredOpen, nullptr);
  EXPECT_EQ(marks.Log().size(), 1u);
}

TEST_F(DeferredFileOpenerTest, AFileChosenForAnIdentityIsCreatedProtectedThenOpened) {
  Choose(2, u"corp.example");
  uint64_t handle = opener.Open(record);
  EXPECT_TRUE(files.IsOpen(handle));
  // Created alone first, then opened as it now exists.
  ASSERT_EQ(files.Opens().size(), 2u);
  EXPECT_EQ(files.Opens()[0], (OpenCall{kChosen, 0x40000000, 0, 2, 0x80}));
  EXPECT_EQ(files.Opens()[1].disposition, 3u);
  EXPECT_EQ(protection.Protected(),
            (std::vector<std::pair<std::u16string, std::u16string>>{{kChosen, u"corp.example"}}));
}

TEST_F(DeferredFileOpenerTest, AProtectionThatFailsLeavesTheFileUnopened) {
  protection.SetProtectResult(static_cast<int32_t>(0x80070005));
  Choose(2, u"corp.example");
  EXPECT_EQ(opener.Open(record), kNone);
  EXPECT_EQ(record.deferredOpen, nullptr);
  EXPECT_EQ(files.Opens().size(), 1u);
  EXPECT_TRUE(marks.Log().empty());
}

TEST_F(DeferredFileOpenerTest, NoProtectionWithoutAServerIdentityOrForReading) {
  protection.SetProcessIdentities({});
  Choose(2, u"corp.example");
  opener.Open(record);
  EXPECT_EQ(files.Opens().back().disposition, 2u);
  files.CloseHandle(record.handle);

  protection.SetProcessIdentities({u"corp.example"});
  Choose(3, u"corp.example", 0x80000000);
  EXPECT_NE(opener.Open(record), kNone);
  EXPECT_TRUE(protection.Protected().empty());
}
