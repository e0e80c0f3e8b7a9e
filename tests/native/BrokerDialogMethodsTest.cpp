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
using ByteArray = BrokerFilePlatform::ByteArray;
using Pairs = std::vector<std::pair<std::u16string, std::u16string>>;

namespace {

constexpr int32_t kCancelled = FakeDialogPlatform::kCancelled;
constexpr uint32_t kOwner = 0x20040;
constexpr uint32_t kStranger = 0x20080;
const std::u16string kDocuments = u"C:\\Users\\a\\Documents";

// The bytes a client sends: the text as written, escapes and all, and its terminator.
std::string FilterBytes(std::u16string_view text) {
  std::string bytes;
  for (char16_t c : text) bytes += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
  return bytes.append(2, '\0');
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

  // The decoded pairs; the array is always released and the specs freed.
  int32_t Parse(ByteArray array, uint32_t pairs, Pairs& out) {
    DialogPlatform::FilterSpec* specs = nullptr;
    int32_t result = dialogs.ParseFilterArray(pairs, array, specs);
    EXPECT_EQ(files.Locks(array), 0);
    out.clear();
    for (uint32_t i = 0; specs && i < pairs; ++i) out.emplace_back(specs[i].name, specs[i].pattern);
    if (specs) platform.FreeSpecs(specs);
    return result;
  }
  int32_t Open(std::vector<std::u16string>& chosen) { return dialogs.OpenDialog(kOwner, 0, 0, nullptr, 0, &chosen); }
  int32_t Save(uint32_t& cookie, std::u16string& path) {
    return dialogs.SaveDialog2(kOwner, u"clip.lmv", 0, 0, nullptr, 0, &cookie, &path);
  }

  FakeDialogPlatform platform;
  BrokerDialogMethods dialogs{platform, files, owners, cookies, protection};
};

}  // namespace

TEST_F(BrokerDialogMethodsTest, FiltersAreDecodedInPlaceAndMustHoldExactlyTheirPairs) {
  ByteArray array = Filter(u"Clips\\0*.lmv\\0Back\\\\slash\\0a\\\\*\\0");
  Pairs pairs;
  ASSERT_EQ(Parse(array, 2, pairs), 0);
  EXPECT_EQ(pairs, (Pairs{{u"Clips", u"*.lmv"}, {u"Back\\slash", u"a\\*"}}));
  // The client's own array now holds the decoded fields.
  EXPECT_EQ(files.ArrayBytes(array).substr(0, 12), FilterBytes(u"Clips"));

  const std::string good = FilterBytes(u"All\\0*.*\\0");
  const struct {
    std::string bytes;
    uint32_t pairs;
  } kRefused[] = {
      {FilterBytes(u"All\\0*.*\\0Text\\0*.txt\\0"), 1},  // one pair too many
      {good, 2},                                         // one pair too few
      {FilterBytes(u"All\\0*.*"), 1},                    // the last field runs to the end
      {FilterBytes(u"All\\0"), 1},                       // a name without its pattern
      {FilterBytes(u"All\\x*.*\\0"), 1},                 // an unknown escape
      {FilterBytes(u"All\\0*.*\\0\\"), 1},               // a backslash before the terminator
      {FilterBytes(std::u16string(u"All\\0\0*.*\\0", 10)), 1},  // an early terminator
      {good.substr(0, good.size() - 1), 1},                     // an odd length
      {good.substr(0, good.size() - 2) + std::string("x\0", 2), 1},  // no terminator
      {"", 1},
  };
  for (const auto& c : kRefused) EXPECT_EQ(Parse(files.MakeArray(c.bytes), c.pairs, pairs), kInvalid);
  platform.failAllocation = true;
  EXPECT_EQ(Parse(Filter(u"All\\0*.*\\0"), 1, pairs), static_cast<int32_t>(0x8007000E));
  EXPECT_EQ(platform.LiveSpecs(), 0u);
}

TEST_F(BrokerDialogMethodsTest, BothFileDialogsRefuseBadFilterArgumentsAndStrangeOwnersBeforeShowingAnything) {
  ByteArray good = Filter(u"All\\0*.*\\0");
  const uint32_t length = Length(good);
  const struct {
    uint32_t window, pairs, length;
    ByteArray array;
  } kRefused[] = {
      {kOwner, 0x10000000, length, good},                                    // above the bound on pairs
      {kOwner, 1, 0, good},                                                  // pairs without a length
      {kOwner, 1, length, nullptr},                                          // pairs without an array
      {kOwner, 1, length, files.MakeArray(FilterBytes(u"All\\0*.*\\0"), 2)}, // two dimensions
      {kOwner, 1, length - 2, good},                                         // not the array's length
      {kOwner, 0, 0, good},                                                  // an array without pairs
      {kOwner, 0, length, nullptr},                                          // a length without pairs
      {kStranger, 0, 0, nullptr},  // a program from outside both program folders
      {0, 0, 0, nullptr},
  };
  for (const auto& c : kRefused) {
    std::vector<std::u16string> chosen;
    uint32_t cookie = 7;
    std::u16string path;
    EXPECT_EQ(dialogs.OpenDialog(c.window, c.pairs, c.length, c.array, 0, &chosen), kInvalid);
    EXPECT_EQ(dialogs.SaveDialog2(c.window, u"a", c.pairs, c.length, c.array, 0, &cookie, &path), kInvalid);
  }
  // Nowhere to put the answer.
  uint32_t cookie = 0;
  std::u16string path;
  EXPECT_EQ(dialogs.OpenDialog(kOwner, 0, 0, nullptr, 0, nullptr), kInvalid);
  EXPECT_EQ(dialogs.SaveDialog2(kOwner, u"a", 0, 0, nullptr, 0, nullptr, &path), kInvalid);
  EXPECT_EQ(dialogs.SaveDialog2(kOwner, u"a", 0, 0, nullptr, 0, &cookie, nullptr), kInvalid);
  EXPECT_TRUE(platform.Dialogs().empty());
}

TEST_F(BrokerDialogMethodsTest, OneChosenFileIsItsPathAndSeveralAreTheirDirectoryThenEachName) {
  ByteArray filter = Filter(u"Clips\\0*.lmv\\0");
  processes.AddWindow(reinterpret_cast<void*>(~uintptr_t{0xFFBF}), 1);
  platform.items = {{u"a.lmv", kDocuments + u"\\a.lmv"}};
  std::vector<std::u16string> chosen;
  ASSERT_EQ(dialogs.OpenDialog(0xFFFF0040, 1, Length(filter), filter, 0xFFFFFFFF, &chosen), 0);
  EXPECT_EQ(chosen, std::vector<std::u16string>{kDocuments + u"\\a.lmv"});
  const FakeDialogPlatform::Given& given = platform.Dialogs()[0];
  EXPECT_EQ(given.fileTypes, (Pairs{{u"Clips", u"*.lmv"}}));
  EXPECT_EQ(given.options, 0xFF31FF1Au);
  // Handles are sign-extended; the specs live until the dialog is gone.
  EXPECT_EQ(given.owner, 0xFFFFFFFFFFFF0040u);
  EXPECT_TRUE(given.specsLiveWhileShown);

  // The directory is cut at the first name's last occurrence in its path.
  platform.items = {{u"x", u"C:\\x\\x"}, {u"y", u"C:\\x\\y"}};
  ASSERT_EQ(Open(chosen), 0);
  EXPECT_EQ(chosen, (std::vector<std::u16string>{u"C:\\x\\", u"x", u"y"}));
  platform.items = {{u"other", u"C:\\x\\y"}, {u"y", u"C:\\x\\y"}};
  EXPECT_EQ(Open(chosen), kFail);
  EXPECT_TRUE(chosen.empty());
}

TEST_F(BrokerDialogMethodsTest, TheUsersCancelComesBackAsItIsWithNothingMadeOrLeftAllocated) {
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
}

TEST_F(BrokerDialogMethodsTest, TheSavedChoiceBecomesAnUnsniffedWriteCookieWhoseFirstWriteCreatesTheFile) {
  protection.SetClientIdentities({u"corp.example", u"other.example"});
  platform.items = {{u"clip.lmv", kDocuments + u"\\clip.lmv"}};
  uint32_t cookie = 0;
  std::u16string path;
  ASSERT_EQ(dialogs.SaveDialog2(kOwner, u"clip.lmv", 0, 0, nullptr, 0x20000, &cookie, &path), 0);
  EXPECT_EQ(path, kDocuments + u"\\clip.lmv");
  const FakeDialogPlatform::Given& given = platform.Dialogs()[0];
  EXPECT_EQ(given.collected, u"prop:System.Security.EncryptionOwners");
  EXPECT_EQ(given.offeredOwners, std::vector<std::u16string>{u"corp.example"});
  EXPECT_EQ(given.options, 0u);
  BrokerCookieRecord* record = cookies.FindCookie(cookie);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->handle, BrokerCookieRecord::kNoHandle);
  EXPECT_FALSE(record->deferredOpen->identity.has_value());
  EXPECT_TRUE(files.Opens().empty());

  // Not for reading; the first write opens it, and an image goes through.
  uint32_t read = 0;
  ByteArray data = nullptr;
  EXPECT_EQ(methods.ReadFile(cookie, 4, &read, &data), kInvalid);
  uint32_t written = 0;
  EXPECT_EQ(methods.WriteFile(cookie, files.MakeArray(std::string("MZ\x90\0", 4)), &written), 0);
  EXPECT_EQ(files.Opens(), (std::vector<OpenCall>{{path, 0x40000000, 0, 2, 0x10000000}}));
  EXPECT_EQ(files.Content(path), std::string("MZ\x90\0", 4));
}

TEST_F(BrokerDialogMethodsTest, TheOwnerChosenInTheDialogGoesWithTheFileAndAMissingPathFails) {
  platform.items = {{u"clip.lmv", kDocuments + u"\\clip.lmv"}};
  platform.ownersChosen = {u"corp.example", u"ignored.example"};
  uint32_t cookie = 0;
  std::u16string path;
  ASSERT_EQ(Save(cookie, path), 0);
  // A caller without identities offers an empty one.
  EXPECT_EQ(platform.Dialogs()[0].offeredOwners, std::vector<std::u16string>{u""});
  EXPECT_EQ(cookies.FindCookie(cookie)->deferredOpen->identity, u"corp.example");
  // A dialog that can't report an owner still saves, for nobody in particular.
  platform.ownersResult = static_cast<int32_t>(0x80004001);
  ASSERT_EQ(Save(cookie, path), 0);
  EXPECT_FALSE(cookies.FindCookie(cookie)->deferredOpen->identity.has_value());

  platform.items.clear();
  EXPECT_EQ(Save(cookie, path), kFail);
  EXPECT_EQ(path, u"");
}

TEST_F(BrokerDialogMethodsTest, ThePrintDialogIsFilledAsToldWritesBackOnSuccessAndFreesItsMemoryAlways) {
  platform.printAnswer = {.devMode = 0x5000, .devNames = 0x6000, .dc = 0x123456789ABC, .flags = 0x140500,
                          .fromPage = 2, .toPage = 9};
  uint32_t from = 0x10003, to = 0x2000C, flags = 0x500, dc = 0;
  ASSERT_EQ(dialogs.PrintDialog(0xFFFF0040, &from, &to, &flags, &dc), 0);
  const DialogPlatform::PrintRequest& r = platform.PrintRequests().at(0);
  EXPECT_EQ((std::vector<uint64_t>{r.structSize, r.owner, r.flags, r.fromPage, r.minPage, r.toPage, r.maxPage,
                                   r.copies}),
            (std::vector<uint64_t>{120, 0xFFFFFFFFFFFF0040u, 0x500, 3, 3, 12, 12, 1}));
  EXPECT_EQ((std::vector<uint32_t>{from, to, flags, dc}), (std::vector<uint32_t>{2, 9, 0x140500, 0x56789ABC}));

  // No owner test; a refusal leaves the caller's values alone.
  platform.printResult = false;
  from = 1, to = 1, flags = 0x500, dc = 0xDEAD;
  EXPECT_EQ(dialogs.PrintDialog(kStranger, &from, &to, &flags, &dc), kFail);
  EXPECT_EQ((std::vector<uint32_t>{from, to, flags, dc}), (std::vector<uint32_t>{1, 1, 0x500, 0xDEAD}));
  EXPECT_EQ(platform.FreedGlobals(), (std::vector<uint64_t>{0x5000, 0x6000, 0x5000, 0x6000}));
  EXPECT_EQ(dialogs.PrintDialog(kOwner, &from, nullptr, &flags, &dc), kInvalid);
  EXPECT_EQ(platform.PrintRequests().size(), 2u);
}
