#pragma once
// Shared helpers of the Wine suite: where the built binaries are, and a
// directory tree that cleans itself up.
#include "engine/win32/WindowsApi.h"

#include <string>
#include <vector>

namespace SASM::WineTest {

// Directory of the running test executable; the module and the host sit beside it.
std::wstring BinaryDirectory();
std::wstring ModulePath();
// The real system directory and roaming folder of this prefix.
std::wstring SystemDirectory();
std::wstring WindowsDirectory();
std::wstring RoamingFolder();

// Creates directories and files on demand; removes what it created, deepest first.
class TempTree {
 public:
  TempTree() = default;
  TempTree(const TempTree&) = delete;
  TempTree& operator=(const TempTree&) = delete;
  ~TempTree();
  // Creates every missing directory of path.
  void Directory(const std::wstring& path);
  void File(const std::wstring& path, const std::string& content = "");

 private:
  std::vector<std::wstring> files_;
  std::vector<std::wstring> directories_;
};

// Keeps a path out of the way for one test (a demo run may have left it) and puts it back.
class MovedAside {
 public:
  explicit MovedAside(std::wstring path);
  MovedAside(const MovedAside&) = delete;
  MovedAside& operator=(const MovedAside&) = delete;
  ~MovedAside();

 private:
  std::wstring path_;
  bool moved_ = false;
};

}  // namespace SASM::WineTest
