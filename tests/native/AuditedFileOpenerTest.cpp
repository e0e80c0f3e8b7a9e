// The audited open as a client sees it: what the plain open decides stands,
// and only a file protected to the server's own identity, asked for through
// an installed program's window and consented to, opens past a refusal.
#include <gtest/gtest.h>

#include "broker/AuditedFileOpener.h"
#include "tests/native/BrokerTestWorld.h"

using namespace SASM;
using Answer = FakeEnterpriseProtectionPlatform::Answer;
using Consent = FakeEnterpriseProtectionPlatform::ConsentRequest;

namespace {

constexpr uint32_t kBrowserWindow = 0x00010234;
constexpr uint32_t kStrayWindow = 0x00050678;

const std::u16string kReport = u"C:\\Corp\\Reports\\q3.xlsx";

// A corporate file on disk, a browser installed under Program Files with a
// window, and a stray program with another; the server's identity is set by
// each test.
class AuditedFileOpenerTest : public BrokerWorld {
 protected:
  AuditedFileOpenerTest() {
    files.AddFile(kReport, "figures");
    protection.AddFile(kReport);
    protection.SetAnswer(kReport, Answer::kProtected, u"corp.example");
    processes.AddImage(10, u"C:\\Program Files\\Browser\\browser.exe");
    processes.AddWindow(reinterpret_cast<void*>(uintptr_t{kBrowserWindow}), 10);
    processes.AddImage(11, u"C:\\Users\\a\\Downloads\\stray.exe");
    processes.AddWindow(reinterpret_cast<void*>(uintptr_t{kStrayWindow}), 11);
  }

  int32_t Open(const std::u16string& path, uint32_t window = kBrowserWindow) {
    cookie = 0xDEAD;
    return audited.Open(path.c_str(), u"https://upload.example/form", window, &cookie);
  }

  uint32_t cookie = 0;
};

}  // namespace

TEST_F(AuditedFileOpenerTest, ConsentOpensTheServersProtectedFileForReadingWithASniffingCookie) {
  MakeServerIdentities({u"other.example", u"corp.example"});
  ASSERT_EQ(Open(kReport), 0);
  ASSERT_NE(cookie, 0u);
  const BrokerCookieRecord* record = cookies.FindCookie(cookie);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->sniffActive, 1);
  EXPECT_EQ(*record->filePath, kReport);
  EXPECT_EQ(files.Opens().back().access, 0x80000000u);
  EXPECT_EQ(files.Opens().back().disposition, 3u);
  // A caller without an identity is asked about for nobody in particular.
  EXPECT_EQ(protection.ConsentRequests(),
            (std::vector<Consent>{{u"corp.example", u"", kBrowserWindow, u"q3.xlsx", u"https://upload.example/form"}}));
}

TEST_F(AuditedFileOpenerTest, WhatThePlainOpenDecidesOtherwiseStandsWithoutAsking) {
  MakeServerIdentities({u"corp.example"});
  protection.SetAnswer(kReport, Answer::kNotProtected);
  EXPECT_EQ(Open(kReport), 0);
  EXPECT_NE(cookie, 0u);
  EXPECT_EQ(Open(u"C:\\Corp\\missing.txt"), kNotFound);
  EXPECT_EQ(cookie, 0u);
  EXPECT_TRUE(protection.ConsentRequests().empty());
}

TEST_F(AuditedFileOpenerTest, EveryRefusalPastThePlainOneIsAccessDeniedWithNoCookie) {
  // The caller's identity isn't the file's, so the plain open refuses; the
  // server has no identity of its own to go further with.
  protection.SetClientIdentities({u"client.example"});
  EXPECT_EQ(Open(kReport), kDenied);
  EXPECT_EQ(cookie, 0u);

  // The file's identity isn't the server's either.
  MakeServerIdentities({u"corp.example"});
  protection.SetAnswer(kReport, Answer::kProtected, u"CORP.example");
  EXPECT_EQ(Open(kReport), kDenied);
  protection.SetClientIdentities({});
  protection.SetAnswer(kReport, Answer::kProtected, u"corp.example");

  // A window of a program that isn't installed.
  EXPECT_EQ(Open(kReport, kStrayWindow), kDenied);
  EXPECT_TRUE(protection.ConsentRequests().empty());

  // The user says no.
  protection.SetConsent(false);
  EXPECT_EQ(Open(kReport), kDenied);
  EXPECT_EQ(protection.ConsentRequests().size(), 1u);
  EXPECT_EQ(cookies.Head(), nullptr);
}

TEST_F(AuditedFileOpenerTest, WindowsAreSignExtendedAndAllOnesIsNeverAskedAbout) {
  MakeServerIdentities({u"corp.example"});
  processes.AddWindow(reinterpret_cast<void*>(~uintptr_t{0}), 10);
  processes.AddWindow(reinterpret_cast<void*>(uintptr_t{0xFFFFFFFF80001234}), 10);
  EXPECT_EQ(Open(kReport, 0xFFFFFFFF), kDenied);
  EXPECT_TRUE(protection.ConsentRequests().empty());
  EXPECT_EQ(Open(kReport, 0x80001234), 0);
  ASSERT_EQ(protection.ConsentRequests().size(), 1u);
  EXPECT_EQ(protection.ConsentRequests()[0].window, 0xFFFFFFFF80001234u);
}
