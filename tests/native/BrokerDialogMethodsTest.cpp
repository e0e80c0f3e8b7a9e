// The dialog family over scripted dialogs: the client's filter decoded where it
// lies, the arguments both file dialogs refuse before anything is shown, the
// shapes of the open dialog's answer, the save dialog's write cookie, and the
// print dialog's request and write-backs.
#include "broker/BrokerDialogMethods.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/fakes/FakeDialogPlatform.h"
#include "tests/native/BrokerTestWorld.h"

using namespace SASM;
using OpenCall = FakeBrokerFilePlatform::OpenCall;
using Item = FakeDialogPlatform::Item;
using ByteArray = BrokerFilePlatform::ByteArray;

namespace {

constexpr int32_t kOutOfMemory = static_cast<int32_t>(0x8007000E);
constexpr int32_t kCancelled = FakeDialogPlatform::kCancelled;
constexpr uint32_t kOwner = 0x20040;
constexpr uint32_t kStranger = 0x20080;
const std::u16string kDocuments = u"C:\\Users\\a\\Documents";

// The bytes a client sends: the text as written, escapes and all, and its terminator.
std::string FilterBytes(std::u16string_view text) {
  std::string bytes;
  for (char16_t c : text) {
    bytes.push_back(static_cast<char>(c & 0xFF));
    bytes.push_back(static_cast<char>(c >> 8));
  }
  bytes.append(2, '\0');
  return bytes;
}

class BrokerDialogMethodsTest : public BrokerWorld {
 protected:
  BrokerDialogMethodsTest() {
    processes.AddImage(1, u"C:\\Program Files\\Browser\\browser.exe");
    processes.AddWindow(reinterpret_cast<void*>(uintptr_t{kOwner}), 1);
    processes.AddImage(2, u"C:\\Users\\a\\Downloads\\browser.exe");
    processes.AddWindow(reinterpret_cast<void*>(uintptr_t{kStranger}), 2);
    files.AddDirectory(kDocuments);
  }

  ByteArray Filter(std::u16string_view text) { return files.MakeArray(FilterBytes(text)); }
  uint32_t Length(ByteArray array) { return static_cast<uint32_t>(files.ArrayBytes(array).size()); }

  int32_t Parse(std::u16string_view text, uint32_t pairs, std::vector<std::pair<std::u16string, std::u16string>>& out) {
    ByteArray array = Filter(text);
    DialogPlatform::FilterSpec* specs = nullptr;
    int32_t result = dialogs.ParseFilterArray(pairs, array, specs);
    EXPECT_EQ(files.Locks(array), 0);
    out.clear();
    if (specs) {
      for (uint32_t i = 0; i < pairs; ++i) out.emplace_back(specs[i].name, specs[i].pattern);
      platform.FreeSpecs(specs);
    }
    return result;
  }

  int32_t Open(std::vector<std::u16string>& chosen, uint32_t flags = 0, uint32_t window = kOwner) {
    return dialogs.OpenDialog(window, 0, 0, nullptr, flags, &chosen);
  }
  int32_t Save(uint32_t& cookie, std::u16string& path, const char16_t* initial = u"clip.flv") {
    return dialogs.SaveDialog2(kOwner, initial, 0, 0, nullptr, 0, &cookie, &path);
  }

  FakeDialogPlatform platform;
  BrokerDialogMethods dialogs{platform, files, owners, cookies, protection};
};

}  // namespace

TEST_F(BrokerDialogMethodsTest, FilterFieldsAreDecodedInPlaceIntoNameAndPatternPairs) {
  ByteArray array = Filter(u"Clips\\0*.flv;*.f4v\\0Back\\\\slash\\0a\\\\*\\0");
  DialogPlatform::FilterSpec* specs = nullptr;
  ASSERT_EQ(dialogs.ParseFilterArray(2, array, specs), 0);
  ASSERT_NE(specs, nullptr);
  EXPECT_EQ(std::u16string(specs[0].name), u"Clips");
  EXPECT_EQ(std::u16string(specs[0].pattern), u"*.flv;*.f4v");
  EXPECT_EQ(std::u16string(specs[1].name), u"Back\\slash");
  EXPECT_EQ(std::u16string(specs[1].pattern), u"a\\*");
  // The pairs point into the client's own array, which now holds the decoded fields.
  EXPECT_EQ(files.ArrayBytes(array).substr(0, 12), FilterBytes(u"Clips").substr(0, 12));
  EXPECT_EQ(files.Locks(array), 0);
  EXPECT_EQ(platform.LiveSpecs(), 1u);
  platform.FreeSpecs(specs);

  std::vector<std::pair<std::u16string, std::u16string>> pairs;
  EXPECT_EQ(Parse(u"All\\0*.*\\0", 1, pairs), 0);
  EXPECT_EQ(pairs, (std::vector<std::pair<std::u16string, std::u16string>>{{u"All", u"*.*"}}));
  EXPECT_EQ(Parse(u"\\0\\0", 1, pairs), 0);
  EXPECT_EQ(pairs, (std::vector<std::pair<std::u16string, std::u16string>>{{u"", u""}}));
}

TEST_F(BrokerDialogMethodsTest, MalformedFiltersAndPairCountsThatDoNotMatchAreRefused) {
  const struct {
    std::u16string text;
    uint32_t pairs;
  } kRefused[] = {
      {u"All\\0*.*\\0Text\\0*.txt\\0", 1},  // one pair too many
      {u"All\\0*.*\\0", 2},                 // one pair too few
      {u"All\\0*.*", 1},                    // the last field runs to the end
      {u"All\\0", 1},                       // a name without its pattern
      {u"All\\x*.*\\0", 1},                 // an unknown escape
      {u"All\\0*.*\\", 1},                  // a backslash before the terminator
      {std::u16string(u"All\\0\0*.*\\0", 10), 1},  // a terminator before the end
      {u"", 1},
  };
  std::vector<std::pair<std::u16string, std::u16string>> pairs;
  for (const auto& c : kRefused) EXPECT_EQ(Parse(c.text, c.pairs, pairs), kInvalid) << c.pairs;

  std::string bytes = FilterBytes(u"All\\0*.*\\0");
  for (std::string broken : {bytes.substr(0, bytes.size() - 1), bytes.substr(0, bytes.size() - 2) + std::string("x\0", 2),
                             std::string()}) {
    ByteArray array = files.MakeArray(broken);
    DialogPlatform::FilterSpec* specs = nullptr;
    EXPECT_EQ(dialogs.ParseFilterArray(1, array, specs), kInvalid);
    EXPECT_EQ(specs, nullptr);
    EXPECT_EQ(files.Locks(array), 0);
  }
  EXPECT_EQ(platform.LiveSpecs(), 0u);
}

TEST_F(BrokerDialogMethodsTest, ParsingReportsAFailedAllocationOrAccessAndReleasesTheArray) {
  std::vector<std::pair<std::u16string, std::u16string>> pairs;
  platform.failAllocation = true;
  EXPECT_EQ(Parse(u"All\\0*.*\\0", 1, pairs), kOutOfMemory);
  platform.failAllocation = false;
  files.FailArrayAccess(static_cast<int32_t>(0x8002000D));
  ByteArray array = Filter(u"All\\0*.*\\0");
  DialogPlatform::FilterSpec* specs = nullptr;
  EXPECT_EQ(dialogs.ParseFilterArray(1, array, specs), static_cast<int32_t>(0x8002000D));
  EXPECT_EQ(files.Locks(array), 0);
}

TEST_F(BrokerDialogMethodsTest, BothFileDialogsRefuseBadFilterArgumentsAndStrangeOwnersBeforeShowingAnything) {
  ByteArray good = Filter(u"All\\0*.*\\0");
  const uint32_t length = Length(good);
  ByteArray flat = files.MakeArray(FilterBytes(u"All\\0*.*\\0"), 2);
  const struct {
    uint32_t window;
    uint32_t pairs;
    uint32_t length;
    ByteArray array;
  } kRefused[] = {
      {kOwner, 0x10000000, length, good},  // above the bound on pairs
      {kOwner, 1, 0, good},                // pairs without a length
      {kOwner, 1, length, nullptr},        // pairs without an array
      {kOwner, 1, length, flat},           // an array of two dimensions
      {kOwner, 1, length - 2, good},       // a length that isn't the array's
      {kOwner, 0, 0, good},                // an array without pairs
      {kOwner, 0, length, nullptr},        // a length without pairs
      {kStranger, 0, 0, nullptr},          // a window of a program from outside both program folders
      {0, 0, 0, nullptr},
      {0x20100, 0, 0, nullptr},  // no such window
  };
  for (const auto& c : kRefused) {
    std::vector<std::u16string> chosen;
    uint32_t cookie = 7;
    std::u16string path = u"x";
    EXPECT_EQ(dialogs.OpenDialog(c.window, c.pairs, c.length, c.array, 0, &chosen), kInvalid) << c.pairs;
    EXPECT_EQ(dialogs.SaveDialog2(c.window, u"a", c.pairs, c.length, c.array, 0, &cookie, &path), kInvalid);
  }
  EXPECT_TRUE(platform.Dialogs().empty());

  // A browser allowed by its name owns dialogs from anywhere.
  processes.AddImage(3, u"C:\\Windows\\SystemApps\\MicrosoftEdge.exe");
  processes.AddWindow(reinterpret_cast<void*>(uintptr_t{0x20200}), 3);
  std::vector<std::u16string> chosen;
  EXPECT_EQ(Open(chosen, 0, 0x20200), 0);
}

TEST_F(BrokerDialogMethodsTest, TheOpenDialogIsGivenTheFileTypesMaskedOptionsAndTheWidenedOwner) {
  ByteArray filter = Filter(u"Clips\\0*.flv\\0All\\0*.*\\0");
  std::vector<std::u16string> chosen;
  platform.items = {{u"a.flv", kDocuments + u"\\a.flv"}};
  ASSERT_EQ(dialogs.OpenDialog(0xFFFF0040, 2, Length(filter), filter, 0xFFFFFFFF, &chosen), kInvalid);
  processes.AddWindow(reinterpret_cast<void*>(~uintptr_t{0xFFBF}), 1);
  ASSERT_EQ(dialogs.OpenDialog(0xFFFF0040, 2, Length(filter), filter, 0xFFFFFFFF, &chosen), 0);

  ASSERT_EQ(platform.Dialogs().size(), 1u);
  const FakeDialogPlatform::Given& given = platform.Dialogs()[0];
  EXPECT_FALSE(given.save);
  EXPECT_EQ(given.fileTypes,
            (std::vector<std::pair<std::u16string, std::u16string>>{{u"Clips", u"*.flv"}, {u"All", u"*.*"}}));
  EXPECT_EQ(given.options, 0xFF31FF1Au);
  EXPECT_EQ(given.owner, 0xFFFFFFFFFFFF0040u);
  EXPECT_TRUE(given.specsLiveWhileShown);
  EXPECT_EQ(platform.LiveSpecs(), 0u);
  // One item: its full path is the whole answer.
  EXPECT_EQ(chosen, std::vector<std::u16string>{kDocuments + u"\\a.flv"});
}

TEST_F(BrokerDialogMethodsTest, SeveralChosenFilesAnswerTheirDirectoryThenEachName) {
  platform.items = {{u"b.flv", kDocuments + u"\\b.flv"}, {u"a.flv", kDocuments + u"\\a.flv"}};
  std::vector<std::u16string> chosen;
  ASSERT_EQ(Open(chosen), 0);
  EXPECT_EQ(chosen, (std::vector<std::u16string>{kDocuments + u"\\", u"b.flv", u"a.flv"}));

  // The directory is cut at the name's last occurrence.
  platform.items = {{u"x", u"C:\\x\\x"}, {u"y", u"C:\\x\\y"}};
  ASSERT_EQ(Open(chosen), 0);
  EXPECT_EQ(chosen, (std::vector<std::u16string>{u"C:\\x\\", u"x", u"y"}));

  // A name the path doesn't hold, or one that can't be read, ends the answer.
  platform.items = {{u"other", u"C:\\x\\y"}, {u"y", u"C:\\x\\y"}};
  EXPECT_EQ(Open(chosen), kFail);
  EXPECT_TRUE(chosen.empty());
  platform.items = {{u"x", u"C:\\x\\x"}, {u"y", u"C:\\x\\y"}};
  platform.failName = std::make_pair(1u, BrokerDialogMethods::kParentRelativeName);
  EXPECT_EQ(Open(chosen), FakeDialogPlatform::kNoResult);
  EXPECT_TRUE(chosen.empty());
}

TEST_F(BrokerDialogMethodsTest, TheUsersCancelAndABadFilterComeBackAsTheyAreWithNothingLeftAllocated) {
  ByteArray filter = Filter(u"All\\0*.*\\0");
  std::vector<std::u16string> chosen;
  platform.showResult = kCancelled;
  EXPECT_EQ(dialogs.OpenDialog(kOwner, 1, Length(filter), filter, 0, &chosen), kCancelled);
  uint32_t cookie = 7;
  std::u16string path = u"x";
  EXPECT_EQ(Save(cookie, path), kCancelled);
  EXPECT_EQ(cookie, 0u);
  EXPECT_EQ(path, u"");
  EXPECT_EQ(cookies.Head(), nullptr);
  EXPECT_EQ(platform.LiveSpecs(), 0u);

  platform.showResult = 0;
  ByteArray tooMany = Filter(u"All\\0*.*\\0Text\\0*.txt\\0");
  EXPECT_EQ(dialogs.OpenDialog(kOwner, 1, Length(tooMany), tooMany, 0, &chosen), kInvalid);
  EXPECT_FALSE(platform.Dialogs().back().shown);
  platform.createResult = static_cast<int32_t>(0x80040154);
  EXPECT_EQ(Open(chosen), static_cast<int32_t>(0x80040154));
}

TEST_F(BrokerDialogMethodsTest, TheSavedChoiceBecomesAnUnsniffedWriteCookieWhoseFirstWriteCreatesTheFile) {
  protection.SetClientIdentities({u"corp.example", u"other.example"});
  platform.items = {{u"clip.flv", kDocuments + u"\\clip.flv"}};
  uint32_t cookie = 0;
  std::u16string path;
  ASSERT_EQ(dialogs.SaveDialog2(kOwner, u"clip.flv", 0, 0, nullptr, 0x20000, &cookie, &path), 0);
  EXPECT_EQ(path, kDocuments + u"\\clip.flv");
  ASSERT_NE(cookie, 0u);

  const FakeDialogPlatform::Given& given = platform.Dialogs()[0];
  EXPECT_TRUE(given.save);
  EXPECT_EQ(given.fileName, u"clip.flv");
  EXPECT_EQ(given.collected, u"prop:System.Security.EncryptionOwners");
  EXPECT_EQ(given.offeredOwners, std::vector<std::u16string>{u"corp.example"});
  EXPECT_EQ(given.options, 0u);

  BrokerCookieRecord* record = cookies.FindCookie(cookie);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->handle, BrokerCookieRecord::kNoHandle);
  EXPECT_EQ(record->sniffActive, 0);
  EXPECT_EQ(record->filePath, path);
  ASSERT_NE(record->deferredOpen, nullptr);
  EXPECT_FALSE(record->deferredOpen->identity.has_value());
  EXPECT_TRUE(files.Opens().empty());

  // Reading isn't what the cookie is for; writing opens it, and an image goes through.
  uint32_t read = 0;
  ByteArray data = nullptr;
  EXPECT_EQ(methods.ReadFile(cookie, 4, &read, &data), kInvalid);
  uint32_t written = 0;
  EXPECT_EQ(methods.WriteFile(cookie, files.MakeArray(std::string("MZ\x90\0", 4)), &written), 0);
  EXPECT_EQ(written, 4u);
  EXPECT_EQ(files.Opens(), (std::vector<OpenCall>{{path, 0x40000000, 0, 2, 0x10000000}}));
  EXPECT_EQ(files.Content(path), std::string("MZ\x90\0", 4));
}

TEST_F(BrokerDialogMethodsTest, TheOwnerChosenInTheDialogProtectsTheFileAndNoIdentityOffersAnEmptyOne) {
  platform.items = {{u"clip.flv", kDocuments + u"\\clip.flv"}};
  platform.ownersChosen = {u"corp.example", u"ignored.example"};
  uint32_t cookie = 0;
  std::u16string path;
  ASSERT_EQ(Save(cookie, path), 0);
  EXPECT_EQ(platform.Dialogs()[0].offeredOwners, std::vector<std::u16string>{u""});
  EXPECT_EQ(cookies.FindCookie(cookie)->deferredOpen->identity, u"corp.example");

  // A dialog that can't report an owner still saves, for nobody in particular.
  platform.ownersResult = static_cast<int32_t>(0x80004001);
  ASSERT_EQ(Save(cookie, path), 0);
  EXPECT_FALSE(cookies.FindCookie(cookie)->deferredOpen->identity.has_value());
}

TEST_F(BrokerDialogMethodsTest, ASaveWithoutAChosenPathOrOutArgumentsFails) {
  uint32_t cookie = 7;
  std::u16string path = u"x";
  EXPECT_EQ(Save(cookie, path), kFail);
  EXPECT_EQ(cookie, 0u);
  EXPECT_EQ(path, u"");
  EXPECT_EQ(dialogs.SaveDialog2(kOwner, u"a", 0, 0, nullptr, 0, nullptr, &path), kInvalid);
  EXPECT_EQ(dialogs.SaveDialog2(kOwner, u"a", 0, 0, nullptr, 0, &cookie, nullptr), kInvalid);
  EXPECT_EQ(platform.Dialogs().size(), 1u);
  EXPECT_EQ(cookies.Head(), nullptr);
}

TEST_F(BrokerDialogMethodsTest, ThePrintDialogIsFilledAsToldAndWritesBackOnlyWhatTheUserChose) {
  platform.printAnswer.dc = 0x123456789ABC;
  platform.printAnswer.devMode = 0x5000;
  platform.printAnswer.devNames = 0x6000;
  platform.printAnswer.flags = 0x140500;
  platform.printAnswer.fromPage = 2;
  platform.printAnswer.toPage = 9;
  uint32_t from = 0x10003, to = 0x2000C, flags = 0x500, dc = 0;
  ASSERT_EQ(dialogs.PrintDialog(0xFFFF0040, &from, &to, &flags, &dc), 0);
  const DialogPlatform::PrintRequest& request = platform.PrintRequests().at(0);
  EXPECT_EQ(request.structSize, 120u);
  EXPECT_EQ(request.owner, 0xFFFFFFFFFFFF0040u);
  EXPECT_EQ(request.flags, 0x500u);
  EXPECT_EQ(request.fromPage, 3);
  EXPECT_EQ(request.minPage, 3);
  EXPECT_EQ(request.toPage, 12);
  EXPECT_EQ(request.maxPage, 12);
  EXPECT_EQ(request.copies, 1);
  EXPECT_EQ((std::vector<uint32_t>{from, to, flags, dc}), (std::vector<uint32_t>{2, 9, 0x140500, 0x56789ABC}));
  EXPECT_EQ(platform.FreedGlobals(), (std::vector<uint64_t>{0x5000, 0x6000}));

  // No owner test: any window, and a refusal leaves the caller's values alone.
  platform.printResult = false;
  from = 1, to = 1, flags = 0x500, dc = 0xDEAD;
  EXPECT_EQ(dialogs.PrintDialog(kStranger, &from, &to, &flags, &dc), kFail);
  EXPECT_EQ((std::vector<uint32_t>{from, to, flags, dc}), (std::vector<uint32_t>{1, 1, 0x500, 0xDEAD}));
  EXPECT_EQ(platform.FreedGlobals().size(), 4u);
  EXPECT_EQ(dialogs.PrintDialog(kOwner, &from, nullptr, &flags, &dc), kInvalid);
  EXPECT_EQ(platform.PrintRequests().size(), 2u);
}
