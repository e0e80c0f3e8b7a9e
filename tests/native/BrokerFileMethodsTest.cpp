// The file family as a client sees it: HRESULTs, cookies, files on the fake
// disk, and the enterprise decisions under each answer a protection query
// can give.
#include <gtest/gtest.h>

#include "broker/BrokerFileMethods.h"
#include "tests/native/BrokerTestWorld.h"

using namespace SASM;
using Answer = FakeEnterpriseProtectionPlatform::Answer;
using Strings = std::vector<std::string>;

namespace {

const std::u16string kTempLow = kTemp + u"\\Low";
const std::u16string kOutside = u"C:\\Windows\\win.ini";

class FileMethodsWorld : public BrokerWorld {
 protected:
  uint32_t Open(const std::u16string& path, int32_t readOnly, int32_t truncate = 0, int32_t* result = nullptr) {
    uint32_t cookie = 0xDEAD;
    int32_t hr = methods.CreateFile(path.c_str(), readOnly, truncate, &cookie);
    if (result) *result = hr;
    return cookie;
  }
  // The answer of an open that must give no cookie.
  int32_t Refusal(const std::u16string& path, int32_t readOnly, int32_t truncate = 0) {
    int32_t hr = 0;
    EXPECT_EQ(Open(path, readOnly, truncate, &hr), 0u);
    return hr;
  }
};

using BrokerFileMethodsTest = FileMethodsWorld;

}  // namespace

TEST_F(BrokerFileMethodsTest, ReadingNeedsNoPolicyButWritingDoes) {
  files.AddFile(kOutside, "[fonts]");
  EXPECT_NE(Open(kOutside, 1), 0u);
  EXPECT_EQ(Refusal(kOutside, 0), kDenied);
  EXPECT_EQ(Refusal(kPlayerData + u"\\x.exe", 0), kDenied);
  EXPECT_EQ(Refusal(kPlayerData + u"\\missing.sol", 1), kNotFound);
  files.Unbind(BrokerFilePlatform::Function::kCreateFile);
  EXPECT_EQ(Refusal(kOutside, 1), kFail);
}

TEST_F(BrokerFileMethodsTest, WrittenFilesAreMarkedAndEveryCookieKeepsItsPathForSniffing) {
  uint32_t writer = Open(u"<LOCAL_APPDATA>\\Temp\\Low\\x.bin", 0);
  ASSERT_NE(writer, 0u);
  EXPECT_EQ(marks.Log(), (Strings{"Zone C:\\Users\\a\\AppData\\Local\\Temp\\Low\\x.bin"}));
  EXPECT_EQ(*cookies.FindCookie(writer)->filePath, kTempLow + u"\\x.bin");
  files.AddFile(kPlayerData + u"\\a.sol", "abc");
  uint32_t reader = Open(kPlayerData + u"\\a.sol", 1);
  EXPECT_EQ(cookies.FindCookie(reader)->sniffActive, 1);
  EXPECT_EQ(marks.Log().size(), 1u);
}

TEST_F(BrokerFileMethodsTest, ACallerWithAnIdentityReadsOnlyFilesProtectedToIt) {
  protection.SetClientIdentities({u"client.example", u"second.example"});
  struct Case {
    const char16_t* name;
    Answer answer;
    const char16_t* identity;
    int32_t expected;
  };
  const Case cases[] = {{u"mine", Answer::kProtected, u"client.example", 0},
                        {u"theirs", Answer::kProtected, u"CLIENT.example", kDenied},
                        {u"broken", Answer::kFailed, u"", 0}};
  for (const Case& c : cases) {
    std::u16string path = kOutside + c.name;
    files.AddFile(path, "x");
    protection.AddFile(path);
    protection.SetAnswer(path, c.answer, c.identity);
    int32_t hr = 1;
    Open(path, 1, 0, &hr);
    EXPECT_EQ(hr, c.expected) << MString(path).ToUtf8();
  }
  // The client is asked about under impersonation, once per open.
  EXPECT_EQ(protection.Impersonations(), 3);
  EXPECT_EQ(protection.Reverts(), 3);
}

TEST_F(BrokerFileMethodsTest, ASharedObjectIsCreatedAndProtectedToTheCallerBeforeItOpens) {
  protection.SetClientIdentities({u"client.example", u"second.example"});
  MakeServerIdentities({u"corp.example"});
  EXPECT_NE(Open(kShared + u"\\new.sol", 0, 1), 0u);
  // The open itself no longer creates: the file is to keep its protection.
  ASSERT_EQ(files.Opens().size(), 2u);
  EXPECT_EQ(files.Opens()[1].disposition, 3u);
  EXPECT_EQ(protection.Protected().at(0).second, u"client.example");

  // A failed protection is the answer; elsewhere the policy alone decides.
  protection.SetProtectResult(static_cast<int32_t>(0x80071771));
  EXPECT_EQ(Refusal(kShared + u"\\third.sol", 0), static_cast<int32_t>(0x80071771));
  EXPECT_NE(Open(kPlayerData + u"\\plain.sol", 0), 0u);
  EXPECT_EQ(files.Opens().back().disposition, 4u);
}

TEST_F(BrokerFileMethodsTest, AReadKeepsTheLengthAskedForSaysHowMuchCountsAndAFailureDestroysTheArray) {
  files.AddFile(kPlayerData + u"\\a.sol", "hello");
  uint32_t cookie = Open(kPlayerData + u"\\a.sol", 1);
  uint32_t read = 0;
  BrokerFilePlatform::ByteArray data = nullptr;
  EXPECT_EQ(methods.ReadFile(cookie, 8, &read, &data), 0);
  EXPECT_EQ(read, 5u);
  EXPECT_EQ(files.ArrayBytes(data), std::string("hello\0\0\0", 8));
  EXPECT_EQ(methods.ReadFile(cookie, 0, &read, &data), 0);
  EXPECT_EQ(read, 0u);
  EXPECT_EQ(files.ArrayBytes(data), "");

  // An array that can't be opened goes back as success, the count untouched.
  files.FailArrayAccess(static_cast<int32_t>(0x8002000D));
  read = 77;
  EXPECT_EQ(methods.ReadFile(cookie, 4, &read, &data), 0);
  EXPECT_EQ(read, 77u);
  EXPECT_NE(data, nullptr);

  // A write-only cookie can't read back what it wrote.
  files.FailArrayAccess(0);
  uint32_t writer = Open(kPlayerData + u"\\w.sol", 0);
  data = nullptr;
  size_t live = files.LiveArrays();
  EXPECT_EQ(methods.ReadFile(writer, 4, &read, &data), kDenied);
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(files.LiveArrays(), live);
  files.LimitArrays(16);
  EXPECT_EQ(methods.ReadFile(writer, 17, &read, &data), kFail);
}

TEST_F(BrokerFileMethodsTest, OnlyAWellFormedArrayIsWritten) {
  uint32_t cookie = Open(kPlayerData + u"\\w.sol", 0);
  uint32_t written = 9;
  EXPECT_EQ(methods.WriteFile(cookie, files.MakeArray("ab", 2), &written), kFail);
  EXPECT_EQ(written, 0u);
  EXPECT_EQ(methods.WriteFile(cookie, files.MakeArray("ab", 1, 2), &written), kFail);
  EXPECT_EQ(methods.WriteFile(cookie, files.MakeArray("ab", 1, 1, 1), &written), kFail);
  EXPECT_EQ(methods.WriteFile(cookie, nullptr, &written), kInvalid);
  files.FailArrayAccess(static_cast<int32_t>(0x8002000D));
  EXPECT_EQ(methods.WriteFile(cookie, files.MakeArray("ab"), &written), static_cast<int32_t>(0x8002000D));
  EXPECT_EQ(files.Content(kPlayerData + u"\\w.sol"), "");
}

TEST_F(BrokerFileMethodsTest, AMoveHoldsTheTargetsDirectoryAndPassesItsFlags) {
  files.AddFile(kPlayerData + u"\\a.sol", "data");
  EXPECT_EQ(methods.MoveFileEx((kPlayerData + u"\\a.sol").c_str(), (kShared + u"\\b.sol").c_str(), 9), 0);
  EXPECT_EQ(files.Content(kShared + u"\\b.sol"), "data");
  EXPECT_EQ(files.MoveFlags(), (std::vector<uint32_t>{9}));
  ASSERT_EQ(files.PinnedDuringMoves().size(), 1u);
  EXPECT_EQ(MString(files.PinnedDuringMoves()[0]).ToUtf8(),
            "C:\\USERS\\A\\APPDATA\\ROAMING\\HALCYONICS\\LUMEN PLAYER\\#SHAREDOBJECTS\\ABC");
  EXPECT_EQ(files.Opens().back().shareMode, 3u);
  EXPECT_EQ(files.Opens().back().flags, 0x42000000u);
  EXPECT_EQ(files.OpenHandles(), 0u);
}

TEST_F(BrokerFileMethodsTest, ASearchListsEntriesUntilTheEndOfTheListing) {
  files.AddFile(kPlayerData + u"\\a.sol", "a");
  std::u16string leaf;
  uint32_t attributes = 0;
  uint32_t cookie = 0;
  ASSERT_EQ(methods.FindFirstFile((kPlayerData + u"\\a*").c_str(), &leaf, &attributes, &cookie), 0);
  EXPECT_EQ(leaf, u"A.SOL");
  EXPECT_EQ(methods.FindNextFile(cookie, &leaf, &attributes), static_cast<int32_t>(0x80070012));
  EXPECT_EQ(methods.FindClose(cookie), 0);
  EXPECT_EQ(methods.FindClose(cookie), kInvalid);
  EXPECT_EQ(methods.FindFirstFile(u"C:\\Windows\\*", &leaf, &attributes, &cookie), kDenied);
}

TEST_F(BrokerFileMethodsTest, FindCloseOnAFileCookieHandsTheFileHandleOnAndFreesTheCookie) {
  uint32_t cookie = Open(kPlayerData + u"\\a.sol", 0);
  EXPECT_EQ(methods.FindClose(cookie), static_cast<int32_t>(0x80070006));
  EXPECT_EQ(cookies.FindCookie(cookie), nullptr);
  EXPECT_EQ(files.OpenHandles(), 1u);
}

TEST_F(BrokerFileMethodsTest, HistoryIsDeletedAndTheFolderMadeAgainEmpty) {
  files.AddFile(kShared + u"\\x.sol", "x");
  EXPECT_EQ(methods.DeleteBrowsingHistory(kPlayerData.c_str()), 0);
  std::u16string expected = kPlayerData + u"\\#SharedObjects";
  expected.push_back(u'\0');
  EXPECT_EQ(files.FileOperations(), (std::vector<std::u16string>{expected}));
  EXPECT_FALSE(files.Exists(kShared + u"\\x.sol"));
  EXPECT_TRUE(files.Exists(kPlayerData + u"\\#SharedObjects"));

  for (int32_t answer : {2, 124, 1026}) {
    files.SetFileOperationResult(answer);
    EXPECT_EQ(methods.DeleteBrowsingHistory(kPlayerData.c_str()), 0) << answer;
  }
  files.SetFileOperationResult(5);
  EXPECT_EQ(methods.DeleteBrowsingHistory(kPlayerData.c_str()), kFail);
  EXPECT_EQ(methods.DeleteBrowsingHistory(u"C:\\Windows"), kFail);
}

TEST_F(BrokerFileMethodsTest, TheAttachmentServicesGetThePathAndWhicheverUrlsWereGivenAndEarlyFailuresAreTheAnswer) {
  EXPECT_EQ(methods.MarkFileUnsafe(kOutside.c_str(), u"http://a.example/f", u"http://b.example/"), 0);
  EXPECT_EQ(marks.Log(),
            (Strings{"Initialize", "Create 1", "LocalPath C:\\Windows\\win.ini", "Referrer http://b.example/",
                     "Source http://a.example/f", "Save", "Release", "Uninitialize"}));
  marks.SetSaveResult(kDenied);
  EXPECT_EQ(methods.MarkFileUnsafe(kOutside.c_str(), u"", nullptr), kDenied);
  EXPECT_EQ(marks.Log().size(), 14u);

  // Failures before saving are the answer.
  marks.SetSaveResult(0);
  marks.SetCreateResult(static_cast<int32_t>(0x80040154));
  EXPECT_EQ(methods.MarkFileUnsafe(kOutside.c_str(), u"", u""), static_cast<int32_t>(0x80040154));
  EXPECT_EQ(Strings(marks.Log().begin() + 14, marks.Log().end()), (Strings{"Initialize", "Create 1", "Uninitialize"}));
}

