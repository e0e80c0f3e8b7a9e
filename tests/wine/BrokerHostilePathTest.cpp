// Hostile paths put to the live server's writable-path question: one client,
// one object, a table of paths written against the roots of this prefix, each
// with the answer the path rules give.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "engine/VendorIdentity.h"
#include "engine/WindowsFileManager.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Platform.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

// Roots: non, none (the tail is the whole path); dat, the player's data folder, local or roaming as
// the configuration says; oth, the same folder under the other application data root; ven, the
// vendor's; set, the player's settings, inside dat; tmp, the sandbox's temp folder; roa, loc, sys:
// roaming, local, system; tok, "<LOCAL_APPDATA>". Short names the platform makes: shF, dat + a
// long-named folder's; shL, the same for one whose short name is as long as its name; shS, the
// settings folder's; shX, "x.solution"'s; shD, dat with every name short.
enum Root { non, dat, oth, ven, set, tmp, roa, loc, sys, tok, shF, shL, shS, shX, shD };
// How the joined path is written: as is, upper case, "/" for "\", "\\?\" +, "\\?\" + with "/",
// "//?/" + with "/", "\\.\" +, "\??\" +, "\\localhost\C$\...", "\\?\UNC\localhost\C$\...".
enum Form { asIs, upper, fwd, lng, lngFwd, qryFwd, dev, obj, unc, lngUnc };
enum Verdict { no, ok, ifLocal };

struct Row {
  Root root;
  const wchar_t* tail;  // null sends a null string
  Verdict expected;
  LONG check = 1;  // the extension is required only for exactly 1
  Form form = asIs;
};

const std::wstring kName240 = L"\\" + std::wstring(240, L'a') + L".sol";
const std::wstring kName255 = L"\\" + std::wstring(255, L'a') + L".sol";
const std::wstring kName256 = L"\\" + std::wstring(256, L'a') + L".sol";
const std::wstring kName1100 = L"\\" + std::wstring(1100, L'a') + L".sol";
const std::wstring kExtension300 = L"\\x." + std::wstring(300, L'a');
const std::wstring kTokenTooLong = L"\\Halcyonics\\Lumen Player" + kName240;
const std::wstring kLongDetour = [] {
  std::wstring text;
  for (int i = 0; i < 250; ++i) text += L"\\x\\..";
  return text + L"\\x.sol";
}();

// clang-format off
const Row kRows[] = {
    // Each root, the root itself, with a separator, and its neighbours.
    {dat, L"", no},  // the root's name has no listed extension
    {dat, L"", ok, 0}, {dat, L"\\", ok, 0}, {dat, L"\\.", ok, 0}, {dat, L"\\..", no, 0},
    {dat, L"2.sol", no},  // C:\A\BC beside a root C:\A\B
    {dat, L" 2.sol", no}, {dat, L"2\\x.sol", no, 0}, {dat, L"\\x.sol", ok}, {dat, L"\\Nested\\x.sol", ok},
    {dat, L"\\Missing\\x.sol", no, 0},  // a folder that isn't there can't be walked for links
    {oth, L"\\x.sol", no}, {ven, L"", ok, 0}, {ven, L"\\", ok, 0}, {ven, L"", no}, {ven, L"2.sol", no},
    {ven, L"\\x.ico", ok}, {ven, L"\\x.exe", no}, {ven, L"\\x.exe", ok, 0}, {set, L"", no, 0}, {set, L"\\", no, 0},
    {set, L"\\x.sol", no}, {set, L"\\x.sol", no, 0}, {set, L"\\x.exe", no, 0}, {set, L"\\x.sol", no, 1, fwd},
    {set, L"\\x.sol", no, 1, lng}, {set, L"\\.\\x.sol", no}, {set, L".\\x.sol", no},
    {set, L"2.sol", ok},  // a file beside the settings folder, in the data root
    {set, L".sol", ok}, {set, L"\\..\\x.sol", ok}, {tmp, L"", ok},  // extensions don't count in the temp root
    {tmp, L"\\", ok}, {tmp, L"\\x.exe", ok}, {tmp, L"\\x", ok}, {tmp, L"2.tmp", no}, {tmp, L"2\\x.tmp", no, 0},
    {tmp, L"\\..\\x.tmp", no},  // the server's own temp folder is not the sandbox's
    {tmp, L"\\..\\Low\\x.exe", ok}, {tmp, L"\\x.exe", ok, 1, fwd}, {tmp, L"\\x.exe", ok, 1, lng}, {roa, L"\\x.sol", no},
    {roa, L"\\Halcyonics", no, 0}, {roa, L"\\Halcyonics\\x.sol", no}, {roa, L"\\Corva\\x.sol", no},
    {loc, L"\\x.sol", no}, {loc, L"\\Corva\\Lumen Player\\x.sol", no}, {sys, L"\\x.sol", no},
    {sys, L"\\Halcyons\\Lumen\\x.sol", no},  // listable, not writable
    {non, L"C:\\x.sol", no}, {non, L"C:\\", no, 0}, {non, L"C:\\windows\\x.sol", no}, {non, L"Z:\\tmp\\x.sol", no},

    // Case and separators of the whole path.
    {dat, L"\\x.sol", ok, 1, upper}, {dat, L"\\Nested\\x.sol", ok, 1, fwd}, {ven, L"\\x.sol", ok, 1, fwd},

    // Traversal.
    {dat, L"\\..\\x.sol", no}, {dat, L"\\..\\..\\x.sol", no}, {dat, L"\\..\\Lumen Player\\x.sol", ok},
    {dat, L"\\..\\Lumen Player2\\x.sol", no, 0}, {dat, L"\\Nested\\..\\x.sol", ok},
    {dat, L"\\Missing\\..\\x.sol", ok},  // folded as text before anything is walked
    {dat, L"\\Nested\\..\\..\\x.sol", no}, {dat, L"\\x.sol\\..\\y.sol", ok}, {dat, L"\\.\\x.sol", ok},
    {dat, L"/x.sol", ok}, {dat, L"/Nested/x.sol", ok}, {dat, L"\\/Nested\\\\x.sol", ok}, {dat, L"\\\\\\x.sol", ok},
    {dat, L"/../Lumen Player/./x.sol", ok}, {dat, L"\\Nested/..\\..//x.sol", no},
    {dat, L"\\..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\windows\\x.sol", no},
    {dat, L"\\...\\x.sol", no},  // three dots are a name, and no name may begin with a dot
    {dat, L"\\..\\Lumen Player\\x.sol", ok, 1, lng},  // the platform folds behind the prefix too
    {dat, L"\\.\\x.sol", ok, 1, lng}, {dat, L"\\..\\..\\x.sol", no, 1, lng}, {ven, L"\\..\\Lumen Player\\x.sol", ok},
    {ven, L"\\..\\..\\x.sol", no}, {non, L"x.sol", no}, {non, L".\\x.sol", no}, {non, L"..\\x.sol", no},
    {non, L"C:x.sol", no}, {non, L"\\x.sol", no},

    // Trailing dots and spaces: the platform trims them from the last name
    // before any rule sees the path, and drops one dot ending an inner name.
    {dat, L"\\x.sol.", ok}, {dat, L"\\x.sol ", ok}, {dat, L"\\x.sol . .", ok}, {dat, L"\\x.exe.", no},
    {dat, L"\\x.exe.", ok, 0}, {dat, L"\\x.", no}, {dat, L"\\Nested.\\x.sol", ok}, {dat, L".\\x.sol", ok},
    // An inner space stays, but the walk for links finds the folder: the platform
    // trims the last name it is asked about. Still inside the root.
    {dat, L"\\Nested \\x.sol", ok}, {dat, L"\\.Nested\\x.sol", no}, {dat, L"\\.x.sol", no, 0}, {dat, L"\\.sol", no, 0},
    {dat, L"\\x.sol.", ok, 1, lng}, {dat, L"\\x.exe. ", no, 1, lng}, {dat, L"\\Nested.\\x.sol", ok, 1, lng},

    // Alternate data streams: only a drive letter may carry a colon.
    {dat, L"\\x.sol:s", no}, {dat, L"\\x.sol:s", no, 0}, {dat, L"\\x.sol::$DATA", no, 0},
    {dat, L"\\x.sol:Zone.Identifier", no, 0}, {dat, L"\\x:s.sol", no}, {dat, L"\\:s", no, 0},
    {dat, L"\\Nested:s\\x.sol", no}, {dat, L"::$DATA", no, 0}, {dat, L"\\x.sol:s", no, 1, lng}, {tmp, L"\\x:s", no, 0},
    {non, L"C:x.sol:s", no},

    // Device names become "\\.\" paths, which the dot rule refuses.
    {dat, L"\\CON", no, 0}, {dat, L"\\NUL", no, 0}, {dat, L"\\NUL.txt", no}, {dat, L"\\nul.sol", no},
    {dat, L"\\AUX.dat", no}, {dat, L"\\PRN.xml", no}, {dat, L"\\COM1.sol", no}, {dat, L"\\com9.txt", no},
    {dat, L"\\LPT1.txt", no}, {tmp, L"\\CON", no, 0}, {tmp, L"\\nul.tmp", no, 0}, {dat, L"\\CONX.sol", ok},
    {dat, L"\\xCON.sol", ok}, {dat, L"\\COM10.sol", ok}, {dat, L"\\NULL.sol", ok}, {dat, L"\\LPT.sol", ok},
    {dat, L"\\CON\\x.sol", ok},  // an inner CON stays; the walk finds the device, inside the root
    {dat, L"\\CON", ok, 0, lng},  // no device behind the prefix: a plain name in the root
    {dat, L"\\NUL.txt", ok, 1, lng}, {non, L"\\\\.\\CON", no, 0}, {non, L"\\\\.\\PhysicalDrive0", no, 0},
    {non, L"\\\\.\\C:", no, 0}, {non, L"\\\\.\\pipe\\x.sol", no}, {non, L"\\\\?\\CON", no, 0},
    {non, L"\\\\?\\GLOBALROOT\\Device\\HarddiskVolume1\\x.sol", no},
    {non, L"\\\\?\\Volume{00000000-0000-0000-0000-000000000000}\\x.sol", no}, {dat, L"\\x.sol", no, 1, dev},
    {tmp, L"\\x.exe", no, 0, dev}, {dat, L"\\x.sol", no, 1, obj},  // no Win32 form: a "?" and a second colon

    // Network forms: the same folders through a share lie under no root.
    {non, L"\\\\server\\share\\x.sol", no}, {non, L"//server/share/x.sol", no}, {non, L"\\\\server\\x.sol", no},
    {non, L"\\\\server", no, 0}, {non, L"\\\\", no, 0}, {non, L"\\\\?\\UNC\\server\\share\\x.sol", no},
    {non, L"\\\\?\\UNC\\", no, 0}, {non, L"\\\\?\\UNC\\C:\\x.sol", no}, {non, L"\\\\localhost\\C$\\x.sol", no},
    {dat, L"\\x.sol", no, 1, unc}, {dat, L"\\x.sol", no, 1, lngUnc}, {tmp, L"\\x.exe", no, 0, unc},
    {tmp, L"\\x.exe", no, 0, lngUnc},

    // The long prefix: folded behind like any path, then cut.
    {dat, L"\\x.sol", ok, 1, lng}, {dat, L"\\Nested\\x.sol", ok, 1, lng}, {dat, L"\\Nested\\\\x.sol", ok, 1, lng},
    {dat, L"", ok, 0, lng}, {dat, L"2.sol", no, 1, lng}, {dat, L"\\x.exe", no, 1, lng}, {dat, L"\\x.exe", ok, 0, lng},
    {ven, L"\\x.sol", ok, 1, lng}, {dat, L"\\x.sol", ok, 1, lngFwd}, {dat, L"/x.sol", ok, 1, lng},
    {dat, L"\\x.sol", ok, 1, qryFwd}, {non, L"\\\\?\\", no, 0}, {non, L"\\\\?\\C:\\x.sol", no},

    // "%2E", in every place the rule looks and a few it doesn't.
    {dat, L"\\%2E%2E\\x.sol", no}, {dat, L"\\%2E\\x.sol", no}, {dat, L"\\%2e\\%2e\\x.sol", no},
    {dat, L"\\%2E%2E", no, 0}, {dat, L"\\Nested%2E\\x.sol", no}, {dat, L"\\%2ENested\\x.sol", no},
    {dat, L"%2E%2E\\x.sol", no}, {dat, L"\\%2Ex.sol", no}, {dat, L"\\%2ex.sol", no, 0}, {dat, L"\\%2E%2E/x.sol", no},
    {dat, L"\\..%2Fx.sol", no}, {dat, L"\\%2E%2E\\x.sol", no, 1, lng}, {tmp, L"\\%2E%2E\\x.exe", no},
    {dat, L"\\x%2E.sol", ok},  // a name holding "%2E" away from its ends is a plain name
    {dat, L"\\x%2e%2e.sol", ok}, {dat, L"\\%252E%252E.sol", ok}, {dat, L"\\x.sol%2E", no}, {dat, L"\\x.sol%2E", ok, 0},
    {tmp, L"\\x%2E", ok},

    // Each forbidden character.
    {dat, L"\\x*.sol", no}, {dat, L"\\*.sol", no}, {dat, L"\\x?.sol", no}, {dat, L"\\?.sol", no},
    {dat, L"\\x\".sol", no}, {dat, L"\\\"x.sol\"", no, 0}, {dat, L"\\x|.sol", no}, {dat, L"\\x<.sol", no},
    {dat, L"\\x>.sol", no}, {dat, L"\\Nested*\\x.sol", no}, {dat, L"\\Ne?ted\\x.sol", no}, {dat, L"\\x.sol|y", no, 0},
    {tmp, L"\\x*", no, 0}, {tmp, L"\\x|y", no, 0}, {tmp, L"\\x>y", no, 0},
    {tmp, L"\\x", ok, 0, lngFwd},  // "/" never gets this far: the platform makes it "\"

    // The allow-list, with case, and names it must not match.
    {dat, L"\\x.txt", ok}, {dat, L"\\x.s", ok}, {dat, L"\\x.directory", ok},
    {dat, L"\\x.dll", ok},  // listed on purpose: what is written is sniffed instead
    {dat, L"\\x.DlL", ok}, {dat, L"\\x.exe.sol", ok}, {dat, L"\\Nested\\x.JSON", ok}, {dat, L"\\x.exe", no},
    {dat, L"\\x.lnk", no}, {dat, L"\\x.sol.exe", no}, {dat, L"\\x.solx", no}, {dat, L"\\x.so", no},
    {dat, L"\\xsol", no}, {dat, L"\\x", no}, {dat, L"\\x", ok, 0}, {dat, L"\\x.sol\\", no},
    {dat, L"\\x.sol\\", no, 0},  // no folder x.sol to walk
    {dat, L"\\x.exe", ok, 2}, {dat, L"\\x.exe", ok, -1},

    // The local application data token, with case, and when it can't expand.
    {tok, L"\\Halcyonics\\Lumen Player\\x.sol", ifLocal}, {tok, L"\\Corva\\Lumen Player\\x.sol", no},
    {tok, L"x.sol", no}, {tok, kTokenTooLong.c_str(), no},  // not expanded: the "<" refuses it
    {non, L"<local_appdata>\\Halcyonics\\Lumen Player\\x.sol", no},
    {non, L"C:\\<LOCAL_APPDATA>\\Halcyonics\\Lumen Player\\x.sol", no},

    // Empty, missing and over-long.
    {non, nullptr, no, 0}, {non, L"", no, 0}, {non, L" ", no, 0}, {non, L".", no, 0}, {non, L"\\", no, 0},
    {dat, kName240.c_str(), ok},  // past 260 units, each name fits: judged like any other
    {dat, kName255.c_str(), ok}, {dat, kName256.c_str(), no},  // a name too long to split can't be walked
    {dat, kExtension300.c_str(), no, 0}, {dat, kName1100.c_str(), no},  // the canonical form must fit 1,040 units
    {dat, kLongDetour.c_str(), ok},  // only the canonical form has to fit
    {tmp, kName1100.c_str(), no, 0},

    // Short names made by the platform. Folders are made long again, in the
    // disk's case, which no upper-case root matches; a last name stays short.
    {shF, L"\\x.sol", no}, {shF, L"\\x.sol", no, 0}, {shF, L"", ok, 0}, {shD, L"\\x.sol", no}, {shD, L"", no, 0},
    {shS, L"\\x.sol", no}, {shS, L"\\x.sol", no, 0},
    {shL, L"\\x.sol", ok},  // no longer when made long: judged as given, inside the root
    {shX, L"", ok},  // a long extension behind a listed short one, inside the root
};
// clang-format on

std::wstring Shaped(Form form, const std::wstring& path) {
  // "C:\rest" as seen through the drive's administrative share.
  std::wstring share = path.size() > 2 ? L"localhost\\" + path.substr(0, 1) + L"$" + path.substr(2) : path;
  std::wstring cased = path, slashed = path;
  std::replace(slashed.begin(), slashed.end(), L'\\', L'/');
  switch (form) {
    case asIs: return path;
    case upper: CharUpperBuffW(cased.data(), static_cast<DWORD>(cased.size())); return cased;
    case fwd: return slashed;
    case lng: return L"\\\\?\\" + path;
    case lngFwd: return L"\\\\?\\" + slashed;
    case qryFwd: return L"//?/" + slashed;
    case dev: return L"\\\\.\\" + path;
    case obj: return L"\\??\\" + path;
    case unc: return L"\\\\" + share;
    case lngUnc: return L"\\\\?\\UNC\\" + share;
  }
  return path;
}

// The short or long form the platform gives; empty, or the path as given, when it gives none.
std::wstring PathForm(const std::wstring& path, bool shortForm) {
  wchar_t buffer[MAX_PATH];
  DWORD n = (shortForm ? GetShortPathNameW : GetLongPathNameW)(path.c_str(), buffer, MAX_PATH);
  return n > 0 && n < MAX_PATH ? std::wstring(buffer, n) : shortForm ? L"" : path;
}

std::wstring LastName(const std::wstring& path) { return path.substr(path.find_last_of(L'\\') + 1); }

// The roots of this prefix, found as the server finds them, and the folders the rows need.
class HostileWorld {
 public:
  HostileWorld() {
    localData_ = WindowsFileManager(Win32Platform()).EnableLocalAppData();
    const std::wstring roaming = WineTest::Folder(CSIDL_APPDATA), local = WineTest::Folder(CSIDL_LOCAL_APPDATA);
    const std::wstring playerData = (localData_ ? local : roaming) + L"\\Halcyonics\\Lumen Player";
    const std::wstring settings = playerData + L"\\" + ToWide(Vendor::kSettingsDirectory);
    wchar_t temp[MAX_PATH];
    std::wstring sandboxTemp(temp, GetTempPathW(MAX_PATH, temp));
    if (sandboxTemp.size() < 5 || sandboxTemp.compare(sandboxTemp.size() - 5, 5, L"\\Low\\") != 0)
      sandboxTemp += L"Low\\";
    sandboxTemp.pop_back();
    for (const std::wstring& folder : {sandboxTemp, playerData + L"\\Nested", roaming + L"\\Corva\\Lumen Player",
                                       settings, playerData + L"\\Long Folder Name", playerData + L"\\Eight Ch"})
      tree_.Directory(folder);
    tree_.File(playerData + L"\\x.solution");
    roots_ = {L"", playerData, (localData_ ? roaming : local) + L"\\Halcyonics\\Lumen Player",
              roaming + L"\\Corva\\Lumen Player", settings, PathForm(sandboxTemp, false), roaming, local,
              WineTest::SystemDirectory(), L"<LOCAL_APPDATA>"};
    // Each in its turn: a short name's reason is kept under the root it is made for.
    roots_.push_back(ShortName(playerData + L"\\Long Folder Name", false));
    roots_.push_back(ShortName(playerData + L"\\Eight Ch", true));
    roots_.push_back(ShortName(settings, false));
    roots_.push_back(ShortName(playerData + L"\\x.solution", false));
    std::wstring shortData = PathForm(playerData, true);
    roots_.push_back(shortData == playerData ? L"" : shortData);
    if (roots_.back().empty()) reasons_[shD] = "no short form of the player data folder";
  }

  bool LocalData() const { return localData_; }
  // The root's text, or empty with the reason when this platform can't give it.
  std::wstring Base(Root root, std::string* reason) const {
    if (reasons_.count(root)) *reason = reasons_.at(root);
    return roots_[root];
  }

 private:
  // The data folder + the short name the platform made for the last name of path.
  std::wstring ShortName(const std::wstring& path, bool sameLength) {
    std::wstring name = LastName(PathForm(path, true)), longName = LastName(path);
    if (!name.empty() && name != longName && (!sameLength || name.size() == longName.size()))
      return path.substr(0, path.size() - longName.size()) + name;
    reasons_[static_cast<Root>(roots_.size())] =
        "no fitting short name for \"" + std::string(longName.begin(), longName.end()) + "\"";
    return L"";
  }

  WineTest::TempTree tree_;
  bool localData_ = false;
  std::vector<std::wstring> roots_;
  std::map<Root, std::string> reasons_;
};

class BrokerHostilePathTest : public WineTest::LiveBrokerTest {};

}  // namespace

TEST_F(BrokerHostilePathTest, EveryRowGetsTheAnswerOfThePathRulesFromOneLiveObject) {
  static_assert(std::size(kRows) >= 200);
  HostileWorld world;
  std::string none;
  ASSERT_FALSE(world.Base(roa, &none).empty());
  ComPtr<ILumenBroker6> broker;
  ASSERT_EQ(Activate(broker), S_OK);

  std::set<std::string> skipped;
  size_t asked = 0;
  for (const Row& row : kRows) {
    std::string reason;
    std::wstring base = world.Base(row.root, &reason);
    if (!reason.empty()) {
      skipped.insert(reason);
      continue;
    }
    std::wstring path = row.tail ? Shaped(row.form, base + row.tail) : L"";
    ScopedBstr name(row.tail ? path.c_str() : nullptr);
    bool writable = row.expected == ok || (row.expected == ifLocal && world.LocalData());
    ++asked;
    EXPECT_EQ(broker->BrokerIsWritablePath(name.get(), row.check), writable ? S_OK : E_FAIL)
        << (row.tail ? path : L"<null>") << " (check " << row.check << ")";
  }
  for (const std::string& reason : skipped) std::printf("[  SKIPPED ] short-name rows: %s\n", reason.c_str());
  std::printf("%zu paths asked of one broker object\n", asked);
}

TEST_F(BrokerHostilePathTest, NoFileMethodReachesTheSettingsFolderThroughItsShortName) {
  HostileWorld world;
  std::string none;
  const std::wstring data = world.Base(dat, &none), settings = world.Base(set, &none);
  const std::wstring inner = settings + L"\\Inner Folder Name";
  WineTest::TempTree tree;
  tree.Directory(inner);
  tree.File(settings + L"\\kept.sol", "kept");
  tree.File(data + L"\\in.sol", "in");
  const std::wstring shortSettings = LastName(PathForm(settings, true)), shortInner = LastName(PathForm(inner, true));
  if (shortSettings.empty() || shortSettings == LastName(settings) || shortInner == LastName(inner))
    GTEST_SKIP() << "the platform made no short names here";
  const std::wstring alias = data + L"\\" + shortSettings;
  // Long enough that the long form with this name passes 260 units; the alias stays below.
  const std::wstring longName = std::wstring(257 - settings.size(), L'a') + L".sol";
  ASSERT_LT(alias.size() + 1 + longName.size(), 260u);
  ComPtr<ILumenBroker6> broker;
  ASSERT_EQ(Activate(broker), S_OK);
  auto bstr = [](const std::wstring& text) { return ScopedBstr(text.c_str()); };

  for (const std::wstring& path : {alias + L"\\" + longName, alias + L"\\x.sol", alias + L"\\" + shortInner + L"\\x.sol",
                                   settings + L"\\x.sol"})
    EXPECT_EQ(broker->BrokerIsWritablePath(bstr(path).get(), 1), E_FAIL) << WineTest::Utf8(path);
  EXPECT_EQ(broker->BrokerIsWritablePath(bstr(alias).get(), 0), E_FAIL);

  ULONG cookie = 0;
  EXPECT_EQ(broker->BrokerCreateFile(bstr(alias + L"\\" + longName).get(), 0, 1, &cookie), E_ACCESSDENIED);
  EXPECT_FALSE(WineTest::FileExists(L"\\\\?\\" + settings + L"\\" + longName));
  EXPECT_EQ(broker->BrokerCreateFile(bstr(alias + L"\\kept.sol").get(), 1, 0, &cookie), E_ACCESSDENIED);
  EXPECT_NE(broker->BrokerDeleteFile(bstr(alias + L"\\kept.sol").get()), S_OK);
  EXPECT_NE(broker->BrokerMoveFileEx(bstr(alias + L"\\kept.sol").get(), bstr(data + L"\\out.sol").get(), 0), S_OK);
  EXPECT_TRUE(WineTest::FileExists(settings + L"\\kept.sol"));
  EXPECT_NE(broker->BrokerMoveFileEx(bstr(data + L"\\in.sol").get(), bstr(alias + L"\\in.sol").get(), 0), S_OK);
  EXPECT_TRUE(WineTest::FileExists(data + L"\\in.sol"));
  EXPECT_NE(broker->BrokerCreateDirectory(bstr(alias + L"\\New Folder").get()), S_OK);
  EXPECT_FALSE(WineTest::FileExists(settings + L"\\New Folder"));
  EXPECT_NE(broker->BrokerRemoveDirectory(bstr(alias + L"\\" + shortInner).get()), S_OK);
  EXPECT_TRUE(WineTest::FileExists(inner));

  ScopedBstr leaf;
  ULONG attributes = 0, find = 0, times[8] = {};
  EXPECT_EQ(broker->BrokerFindFirstFile(bstr(alias + L"\\*").get(), leaf.receive(), &attributes, &find), E_ACCESSDENIED);
  EXPECT_EQ(broker->BrokerGetFileAttributesEx(bstr(alias + L"\\kept.sol").get(), &attributes, &times[0], &times[1],
                                              &times[2], &times[3], &times[4], &times[5], &times[6], &times[7]),
            E_ACCESSDENIED);

  // Emptied, the folder itself named by its alias as the last component still stays.
  ASSERT_TRUE(DeleteFileW((settings + L"\\kept.sol").c_str()) && RemoveDirectoryW(inner.c_str()));
  EXPECT_NE(broker->BrokerRemoveDirectory(bstr(alias).get()), S_OK);
  EXPECT_TRUE(WineTest::FileExists(settings));
}
