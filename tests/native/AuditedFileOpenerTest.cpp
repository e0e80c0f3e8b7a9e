// The audited open as a client sees it: what the plain open decides stands,
// and only a file protected to the server's own identity, asked for through
// an installed program's window and consented to, opens past a refusal.
#include "broker/AuditedFileOpener.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "broker/Task.h"
#include "tests/fakes/FakeBrokerFilePlatform.h"
#include "tests/fakes/FakeEnterpriseProtectionPlatform.h"
#include "tests/fakes/FakeInternetMarkPlatform.h"
#include "tests/fakes/FakePathPlatform.h"
#include "tests/fakes/FakeProcesses.h"

using namespace SASM;
using Answer = FakeEnterpriseProtectionPlatform::Answer;
using Consent = FakeEnterpriseProtectionPlatform::ConsentRequest;

namespace {

constexpr int32_t kDenied = static_cast<int32_t>(0x80070005);
constexpr int32_t kNotFound = static_cast<int32_t>(0x80070002);
constexpr uint32_t kBrowserWindow = 0x00010234;
constexpr uint32_t kStrayWindow = 0x00050678;

const std::u16string kReport = u"C:\\Corp\\Reports\\q3.xlsx";

// A corporate file on disk, a browser installed under Program Files with a
// window, and a stray program with another; the server's identity is set by
// each test.
class AuditedFileOpenerTest : public ::testing::Test {
 protected:
  AuditedFileOpenerTest() {
    paths.SetFolder(26, u"C:\\Users\\a\\AppData\\Roaming");
    paths.SetFolder(28, u"C:\\Users\\a\\AppData\\Local");
    paths.SetFolder(38, u"C:\\Program Files");
    files.AddFile(kReport, "figures");
    protection.AddFile(kReport);
    protection.SetAnswer(kReport, Answer::kProtected, u"corp.example");
    processes.AddImage(10, u"C:\\Program Files\\Browser\\browser.exe");
    processes.AddWindow(reinterpret_cast<void*>(uintptr_t{kBrowserWindow}), 10);
    processes.AddImage(11, u"C:\\Users\\a\\Downloads\\stray.exe");
    processes.AddWindow(reinterpret_cast<void*>(uintptr_t{kStrayWindow}), 11);
  }
  ~AuditedFileOpenerTest() override { StopTask(); }

  void MakeServerIdentities(std::vector<std::u16string> identities) {
    protection.SetProcessIdentities(std::move(identities));
    serverIdentities = EnterpriseIdentityList(protection, EnterpriseIdentityList::kServerProcess);
  }

  int32_t Open(const std::u16string& path, uint32_t window = kBrowserWindow) {
    cookie = 0xDEAD;
    return opener.Open(path.c_str(), u"https://upload.example/form", window, &cookie);
  }

  FakePathPlatform paths;
  FakeBrokerFilePlatform files;
  FakeEnterpriseProtectionPlatform protection;
  FakeInternetMarkPlatform marks;
  FakeProcesses processes;
  BrokerPathPolicy policy{paths, true};
  BrokerCookieTable cookies;
  EnterpriseIdentityList serverIdentities;
  BrokerFileMethods methods{files, protection, marks, policy, cookies, serverIdentities};
  DialogOwnerPolicy owners{paths, processes};
  AuditedFileOpener opener{methods, files, protection, policy, cookies, owners, serverIdentities};
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

TEST_F(AuditedFileOpenerTest, TheConsentIsForTheCallersFirstIdentity) {
  MakeServerIdentities({u"corp.example"});
  protection.SetClientIdentities({u"client.example", u"second.example"});
  ASSERT_EQ(Open(kReport), 0);
  ASSERT_EQ(protection.ConsentRequests().size(), 1u);
  EXPECT_EQ(protection.ConsentRequests()[0].target, u"client.example");
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

  // A window of a program that isn't installed, or no window at all.
  EXPECT_EQ(Open(kReport, kStrayWindow), kDenied);
  EXPECT_EQ(Open(kReport, 0), kDenied);
  EXPECT_TRUE(protection.ConsentRequests().empty());

  // The user says no.
  protection.SetConsent(false);
  EXPECT_EQ(Open(kReport), kDenied);
  EXPECT_EQ(protection.ConsentRequests().size(), 1u);
  // Consent given, but the open itself fails.
  protection.SetConsent(true);
  files.HoldForWriting(kReport);
  files.FailOpen(kReport, 32);
  EXPECT_EQ(Open(kReport), kDenied);
  EXPECT_EQ(cookie, 0u);
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
