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

enum Root {
  kNone,             // the tail is the whole path
  kPlayerData,       // the player's data folder, local or roaming as the configuration says
  kOtherPlayerData,  // the same folder under the other application data root
  kVendor,
  kSettings,  // the player's settings, inside its data folder
  kTemp,      // the sandbox's temp folder
  kRoaming,
  kLocal,
  kSystem,
  kLocalToken,       // "<LOCAL_APPDATA>"
  kShortFolder,      // the data folder + the short name of a long-named folder in it
  kShortSameLength,  // the same, for a folder whose short name is as long as its name
  kShortSettings,    // the data folder + the short name of the settings folder
  kShortFile,        // the data folder + the short name of "x.solution"
  kShortDataFolder,  // the data folder, every name of it short
};

// How the path is written after the root and the tail are joined.
enum Form {
  kAsIs,
  kUpper,
  kSlashes,
  kLong,          // "\\?\" + path
  kLongSlashed,   // "\\?\" + path with "/"
  kQuerySlashed,  // "//?/" + path with "/"
  kDevice,        // "\\.\" + path
  kObjectPrefix,  // "\??\" + path
  kUnc,           // "\\localhost\C$\..."
  kLongUnc,       // "\\?\UNC\localhost\C$\..."
};

enum Verdict { kNo, kYes, kIfLocal };

struct Row {
  Root root;
  const wchar_t* tail;  // null sends a null string
  Verdict expected;
  LONG check = 1;  // the extension is required only for exactly 1
  Form form = kAsIs;
};

const std::wstring kName240 = L"\\" + std::wstring(240, L'a') + L".sol";
const std::wstring kName255 = L"\\" + std::wstring(255, L'a') + L".sol";
const std::wstring kName256 = L"\\" + std::wstring(256, L'a') + L".sol";
const std::wstring kName1100 = L"\\" + std::wstring(1100, L'a') + L".sol";
const std::wstring kExtension300 = L"\\x." + std::wstring(300, L'a');
const std::wstring kTokenTooLong = L"\\Halcyonics\\Lumen Player" + kName240;
std::wstring Repeated(const wchar_t* part, int count) {
  std::wstring text;
  for (int i = 0; i < count; ++i) text += part;
  return text;
}
const std::wstring kLongDetour = Repeated(L"\\x\\..", 250) + L"\\x.sol";

// clang-format off
const Row kRows[] = {
    // Each root, the root itself, with a separator, and its neighbours.
    {kPlayerData, L"", kNo},  // the root's name has no listed extension
    {kPlayerData, L"", kYes, 0}, {kPlayerData, L"\\", kYes, 0}, {kPlayerData, L"\\.", kYes, 0},
    {kPlayerData, L"\\..", kNo, 0},
    {kPlayerData, L"2.sol", kNo},  // C:\A\BC beside a root C:\A\B
    {kPlayerData, L" 2.sol", kNo}, {kPlayerData, L"2\\x.sol", kNo, 0}, {kPlayerData, L"\\x.sol", kYes},
    {kPlayerData, L"\\Nested\\x.sol", kYes},
    {kPlayerData, L"\\Missing\\x.sol", kNo, 0},  // a folder that isn't there can't be walked for links
    {kOtherPlayerData, L"\\x.sol", kNo}, {kVendor, L"", kYes, 0}, {kVendor, L"\\", kYes, 0}, {kVendor, L"", kNo},
    {kVendor, L"2.sol", kNo}, {kVendor, L"\\x.ico", kYes}, {kVendor, L"\\x.exe", kNo}, {kVendor, L"\\x.exe", kYes, 0},
    {kSettings, L"", kNo, 0}, {kSettings, L"\\", kNo, 0}, {kSettings, L"\\x.sol", kNo},
    {kSettings, L"\\x.sol", kNo, 0}, {kSettings, L"\\x.exe", kNo, 0}, {kSettings, L"\\x.sol", kNo, 1, kSlashes},
    {kSettings, L"\\x.sol", kNo, 1, kLong}, {kSettings, L"\\.\\x.sol", kNo}, {kSettings, L".\\x.sol", kNo},
    {kSettings, L"2.sol", kYes},  // a file beside the settings folder, in the data root
    {kSettings, L".sol", kYes}, {kSettings, L"\\..\\x.sol", kYes},
    {kTemp, L"", kYes},  // extensions don't count in the temp root
    {kTemp, L"\\", kYes}, {kTemp, L"\\x.exe", kYes}, {kTemp, L"\\x", kYes}, {kTemp, L"2.tmp", kNo},
    {kTemp, L"2\\x.tmp", kNo, 0},
    {kTemp, L"\\..\\x.tmp", kNo},  // the server's own temp folder is not the sandbox's
    {kTemp, L"\\..\\Low\\x.exe", kYes}, {kTemp, L"\\x.exe", kYes, 1, kSlashes}, {kTemp, L"\\x.exe", kYes, 1, kLong},
    {kRoaming, L"\\x.sol", kNo}, {kRoaming, L"\\Halcyonics", kNo, 0}, {kRoaming, L"\\Halcyonics\\x.sol", kNo},
    {kRoaming, L"\\Corva\\x.sol", kNo}, {kLocal, L"\\x.sol", kNo}, {kLocal, L"\\Corva\\Lumen Player\\x.sol", kNo},
    {kSystem, L"\\x.sol", kNo},
    {kSystem, L"\\Halcyons\\Lumen\\x.sol", kNo},  // listable, not writable
    {kNone, L"C:\\x.sol", kNo}, {kNone, L"C:\\", kNo, 0}, {kNone, L"C:\\windows\\x.sol", kNo},
    {kNone, L"Z:\\tmp\\x.sol", kNo},

    // Case and separators of the whole path.
    {kPlayerData, L"\\x.sol", kYes, 1, kUpper}, {kPlayerData, L"\\Nested\\x.sol", kYes, 1, kSlashes},
    {kVendor, L"\\x.sol", kYes, 1, kSlashes},

    // Traversal.
    {kPlayerData, L"\\..\\x.sol", kNo}, {kPlayerData, L"\\..\\..\\x.sol", kNo},
    {kPlayerData, L"\\..\\Lumen Player\\x.sol", kYes}, {kPlayerData, L"\\..\\Lumen Player2\\x.sol", kNo, 0},
    {kPlayerData, L"\\Nested\\..\\x.sol", kYes},
    {kPlayerData, L"\\Missing\\..\\x.sol", kYes},  // folded as text before anything is walked
    {kPlayerData, L"\\Nested\\..\\..\\x.sol", kNo}, {kPlayerData, L"\\x.sol\\..\\y.sol", kYes},
    {kPlayerData, L"\\.\\x.sol", kYes}, {kPlayerData, L"/x.sol", kYes}, {kPlayerData, L"/Nested/x.sol", kYes},
    {kPlayerData, L"\\/Nested\\\\x.sol", kYes}, {kPlayerData, L"\\\\\\x.sol", kYes},
    {kPlayerData, L"/../Lumen Player/./x.sol", kYes}, {kPlayerData, L"\\Nested/..\\..//x.sol", kNo},
    {kPlayerData, L"\\..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\windows\\x.sol", kNo},
    {kPlayerData, L"\\...\\x.sol", kNo},  // three dots are a name, and no name may begin with a dot
    {kPlayerData, L"\\..\\Lumen Player\\x.sol", kYes, 1, kLong},  // the platform folds behind the prefix too
    {kPlayerData, L"\\.\\x.sol", kYes, 1, kLong}, {kPlayerData, L"\\..\\..\\x.sol", kNo, 1, kLong},
    {kVendor, L"\\..\\Lumen Player\\x.sol", kYes}, {kVendor, L"\\..\\..\\x.sol", kNo}, {kNone, L"x.sol", kNo},
    {kNone, L".\\x.sol", kNo}, {kNone, L"..\\x.sol", kNo}, {kNone, L"C:x.sol", kNo}, {kNone, L"\\x.sol", kNo},

    // Trailing dots and spaces: the platform trims them from the last name
    // before any rule sees the path, and drops one dot ending an inner name.
    {kPlayerData, L"\\x.sol.", kYes}, {kPlayerData, L"\\x.sol ", kYes}, {kPlayerData, L"\\x.sol . .", kYes},
    {kPlayerData, L"\\x.exe.", kNo}, {kPlayerData, L"\\x.exe.", kYes, 0}, {kPlayerData, L"\\x.", kNo},
    {kPlayerData, L"\\Nested.\\x.sol", kYes}, {kPlayerData, L".\\x.sol", kYes},
    // An inner space stays, but the walk for links finds the folder: the platform
    // trims the last name it is asked about. Still inside the root.
    {kPlayerData, L"\\Nested \\x.sol", kYes}, {kPlayerData, L"\\.Nested\\x.sol", kNo},
    {kPlayerData, L"\\.x.sol", kNo, 0}, {kPlayerData, L"\\.sol", kNo, 0}, {kPlayerData, L"\\x.sol.", kYes, 1, kLong},
    {kPlayerData, L"\\x.exe. ", kNo, 1, kLong}, {kPlayerData, L"\\Nested.\\x.sol", kYes, 1, kLong},

    // Alternate data streams: only a drive letter may carry a colon.
    {kPlayerData, L"\\x.sol:s", kNo}, {kPlayerData, L"\\x.sol:s", kNo, 0}, {kPlayerData, L"\\x.sol::$DATA", kNo, 0},
    {kPlayerData, L"\\x.sol:Zone.Identifier", kNo, 0}, {kPlayerData, L"\\x:s.sol", kNo},
    {kPlayerData, L"\\:s", kNo, 0}, {kPlayerData, L"\\Nested:s\\x.sol", kNo}, {kPlayerData, L"::$DATA", kNo, 0},
    {kPlayerData, L"\\x.sol:s", kNo, 1, kLong}, {kTemp, L"\\x:s", kNo, 0}, {kNone, L"C:x.sol:s", kNo},

    // Device names become "\\.\" paths, which the dot rule refuses.
    {kPlayerData, L"\\CON", kNo, 0}, {kPlayerData, L"\\NUL", kNo, 0}, {kPlayerData, L"\\NUL.txt", kNo},
    {kPlayerData, L"\\nul.sol", kNo}, {kPlayerData, L"\\AUX.dat", kNo}, {kPlayerData, L"\\PRN.xml", kNo},
    {kPlayerData, L"\\COM1.sol", kNo}, {kPlayerData, L"\\com9.txt", kNo}, {kPlayerData, L"\\LPT1.txt", kNo},
    {kTemp, L"\\CON", kNo, 0}, {kTemp, L"\\nul.tmp", kNo, 0}, {kPlayerData, L"\\CONX.sol", kYes},
    {kPlayerData, L"\\xCON.sol", kYes}, {kPlayerData, L"\\COM10.sol", kYes}, {kPlayerData, L"\\NULL.sol", kYes},
    {kPlayerData, L"\\LPT.sol", kYes},
    {kPlayerData, L"\\CON\\x.sol", kYes},  // an inner CON stays; the walk finds the device, inside the root
    {kPlayerData, L"\\CON", kYes, 0, kLong},  // no device behind the prefix: a plain name in the root
    {kPlayerData, L"\\NUL.txt", kYes, 1, kLong}, {kNone, L"\\\\.\\CON", kNo, 0},
    {kNone, L"\\\\.\\PhysicalDrive0", kNo, 0}, {kNone, L"\\\\.\\C:", kNo, 0}, {kNone, L"\\\\.\\pipe\\x.sol", kNo},
    {kNone, L"\\\\?\\CON", kNo, 0}, {kNone, L"\\\\?\\GLOBALROOT\\Device\\HarddiskVolume1\\x.sol", kNo},
    {kNone, L"\\\\?\\Volume{00000000-0000-0000-0000-000000000000}\\x.sol", kNo},
    {kPlayerData, L"\\x.sol", kNo, 1, kDevice}, {kTemp, L"\\x.exe", kNo, 0, kDevice},
    {kPlayerData, L"\\x.sol", kNo, 1, kObjectPrefix},  // no Win32 form: a "?" and a second colon

    // Network forms: the same folders through a share lie under no root.
    {kNone, L"\\\\server\\share\\x.sol", kNo}, {kNone, L"//server/share/x.sol", kNo},
    {kNone, L"\\\\server\\x.sol", kNo}, {kNone, L"\\\\server", kNo, 0}, {kNone, L"\\\\", kNo, 0},
    {kNone, L"\\\\?\\UNC\\server\\share\\x.sol", kNo}, {kNone, L"\\\\?\\UNC\\", kNo, 0},
    {kNone, L"\\\\?\\UNC\\C:\\x.sol", kNo}, {kNone, L"\\\\localhost\\C$\\x.sol", kNo},
    {kPlayerData, L"\\x.sol", kNo, 1, kUnc}, {kPlayerData, L"\\x.sol", kNo, 1, kLongUnc},
    {kTemp, L"\\x.exe", kNo, 0, kUnc}, {kTemp, L"\\x.exe", kNo, 0, kLongUnc},

    // The long prefix: folded behind like any path, then cut.
    {kPlayerData, L"\\x.sol", kYes, 1, kLong}, {kPlayerData, L"\\Nested\\x.sol", kYes, 1, kLong},
    {kPlayerData, L"\\Nested\\\\x.sol", kYes, 1, kLong}, {kPlayerData, L"", kYes, 0, kLong},
    {kPlayerData, L"2.sol", kNo, 1, kLong}, {kPlayerData, L"\\x.exe", kNo, 1, kLong},
    {kPlayerData, L"\\x.exe", kYes, 0, kLong}, {kVendor, L"\\x.sol", kYes, 1, kLong},
    {kPlayerData, L"\\x.sol", kYes, 1, kLongSlashed}, {kPlayerData, L"/x.sol", kYes, 1, kLong},
    {kPlayerData, L"\\x.sol", kYes, 1, kQuerySlashed}, {kNone, L"\\\\?\\", kNo, 0}, {kNone, L"\\\\?\\C:\\x.sol", kNo},

    // "%2E", in every place the rule looks and a few it doesn't.
    {kPlayerData, L"\\%2E%2E\\x.sol", kNo}, {kPlayerData, L"\\%2E\\x.sol", kNo},
    {kPlayerData, L"\\%2e\\%2e\\x.sol", kNo}, {kPlayerData, L"\\%2E%2E", kNo, 0},
    {kPlayerData, L"\\Nested%2E\\x.sol", kNo}, {kPlayerData, L"\\%2ENested\\x.sol", kNo},
    {kPlayerData, L"%2E%2E\\x.sol", kNo}, {kPlayerData, L"\\%2Ex.sol", kNo}, {kPlayerData, L"\\%2ex.sol", kNo, 0},
    {kPlayerData, L"\\%2E%2E/x.sol", kNo}, {kPlayerData, L"\\..%2Fx.sol", kNo},
    {kPlayerData, L"\\%2E%2E\\x.sol", kNo, 1, kLong}, {kTemp, L"\\%2E%2E\\x.exe", kNo},
    {kPlayerData, L"\\x%2E.sol", kYes},  // a name holding "%2E" away from its ends is a plain name
    {kPlayerData, L"\\x%2e%2e.sol", kYes}, {kPlayerData, L"\\%252E%252E.sol", kYes},
    {kPlayerData, L"\\x.sol%2E", kNo}, {kPlayerData, L"\\x.sol%2E", kYes, 0}, {kTemp, L"\\x%2E", kYes},

    // Each forbidden character.
    {kPlayerData, L"\\x*.sol", kNo}, {kPlayerData, L"\\*.sol", kNo}, {kPlayerData, L"\\x?.sol", kNo},
    {kPlayerData, L"\\?.sol", kNo}, {kPlayerData, L"\\x\".sol", kNo}, {kPlayerData, L"\\\"x.sol\"", kNo, 0},
    {kPlayerData, L"\\x|.sol", kNo}, {kPlayerData, L"\\x<.sol", kNo}, {kPlayerData, L"\\x>.sol", kNo},
    {kPlayerData, L"\\Nested*\\x.sol", kNo}, {kPlayerData, L"\\Ne?ted\\x.sol", kNo},
    {kPlayerData, L"\\x.sol|y", kNo, 0}, {kTemp, L"\\x*", kNo, 0}, {kTemp, L"\\x|y", kNo, 0},
    {kTemp, L"\\x>y", kNo, 0},
    {kTemp, L"\\x", kYes, 0, kLongSlashed},  // "/" never gets this far: the platform makes it "\"

    // The allow-list, with case, and names it must not match.
    {kPlayerData, L"\\x.txt", kYes}, {kPlayerData, L"\\x.s", kYes}, {kPlayerData, L"\\x.directory", kYes},
    {kPlayerData, L"\\x.dll", kYes},  // listed on purpose: what is written is sniffed instead
    {kPlayerData, L"\\x.DlL", kYes}, {kPlayerData, L"\\x.exe.sol", kYes}, {kPlayerData, L"\\Nested\\x.JSON", kYes},
    {kPlayerData, L"\\x.exe", kNo}, {kPlayerData, L"\\x.lnk", kNo}, {kPlayerData, L"\\x.sol.exe", kNo},
    {kPlayerData, L"\\x.solx", kNo}, {kPlayerData, L"\\x.so", kNo}, {kPlayerData, L"\\xsol", kNo},
    {kPlayerData, L"\\x", kNo}, {kPlayerData, L"\\x", kYes, 0}, {kPlayerData, L"\\x.sol\\", kNo},
    {kPlayerData, L"\\x.sol\\", kNo, 0},  // no folder x.sol to walk
    {kPlayerData, L"\\x.exe", kYes, 2}, {kPlayerData, L"\\x.exe", kYes, -1},

    // The local application data token, with case, and when it can't expand.
    {kLocalToken, L"\\Halcyonics\\Lumen Player\\x.sol", kIfLocal},
    {kLocalToken, L"\\Corva\\Lumen Player\\x.sol", kNo}, {kLocalToken, L"x.sol", kNo},
    {kLocalToken, kTokenTooLong.c_str(), kNo},  // not expanded: the "<" refuses it
    {kNone, L"<local_appdata>\\Halcyonics\\Lumen Player\\x.sol", kNo},
    {kNone, L"C:\\<LOCAL_APPDATA>\\Halcyonics\\Lumen Player\\x.sol", kNo},

    // Empty, missing and over-long.
    {kNone, nullptr, kNo, 0}, {kNone, L"", kNo, 0}, {kNone, L" ", kNo, 0}, {kNone, L".", kNo, 0},
    {kNone, L"\\", kNo, 0},
    {kPlayerData, kName240.c_str(), kYes},  // past 260 units, each name fits: judged like any other
    {kPlayerData, kName255.c_str(), kYes},
    {kPlayerData, kName256.c_str(), kNo},  // a name too long to split can't be walked
    {kPlayerData, kExtension300.c_str(), kNo, 0},
    {kPlayerData, kName1100.c_str(), kNo},  // the canonical form must fit 1,040 units
    {kPlayerData, kLongDetour.c_str(), kYes},  // only the canonical form has to fit
    {kTemp, kName1100.c_str(), kNo, 0},

    // Short names made by the platform. Folders are made long again, in the
    // disk's case, which no upper-case root matches; a last name stays short.
    {kShortFolder, L"\\x.sol", kNo}, {kShortFolder, L"\\x.sol", kNo, 0}, {kShortFolder, L"", kYes, 0},
    {kShortDataFolder, L"\\x.sol", kNo}, {kShortDataFolder, L"", kNo, 0}, {kShortSettings, L"\\x.sol", kNo},
    {kShortSettings, L"\\x.sol", kNo, 0},
    {kShortSameLength, L"\\x.sol", kYes},  // no longer when made long: judged as given, inside the root
    {kShortFile, L"", kYes},  // a long extension behind a listed short one, inside the root
};
// clang-format on

std::wstring Replaced(std::wstring text, wchar_t from, wchar_t to) {
  std::replace(text.begin(), text.end(), from, to);
  return text;
}

std::wstring Shaped(Form form, const std::wstring& path) {
  // "C:\rest" as seen through the drive's administrative share.
  std::wstring share = path.size() > 2 ? L"localhost\\" + path.substr(0, 1) + L"$" + path.substr(2) : path;
  std::wstring cased = path;
  switch (form) {
    case kAsIs: return path;
    case kUpper: CharUpperBuffW(cased.data(), static_cast<DWORD>(cased.size())); return cased;
    case kSlashes: return Replaced(path, L'\\', L'/');
    case kLong: return L"\\\\?\\" + path;
    case kLongSlashed: return L"\\\\?\\" + Replaced(path, L'\\', L'/');
    case kQuerySlashed: return L"//?/" + Replaced(path, L'\\', L'/');
    case kDevice: return L"\\\\.\\" + path;
    case kObjectPrefix: return L"\\??\\" + path;
    case kUnc: return L"\\\\" + share;
    case kLongUnc: return L"\\\\?\\UNC\\" + share;
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
    if (roots_.back().empty()) reasons_[kShortDataFolder] = "no short form of the player data folder";
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
  ASSERT_FALSE(world.Base(kRoaming, &none).empty());
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
    bool writable = row.expected == kYes || (row.expected == kIfLocal && world.LocalData());
    ++asked;
    EXPECT_EQ(broker->BrokerIsWritablePath(name.get(), row.check), writable ? S_OK : E_FAIL)
        << (row.tail ? path : L"<null>") << " (check " << row.check << ")";
  }
  for (const std::string& reason : skipped) std::printf("[  SKIPPED ] short-name rows: %s\n", reason.c_str());
  std::printf("%zu paths asked of one broker object\n", asked);
}
