#pragma once
// The running processes that stand in the way of an install: those the
// settings name for a selected kind, and those that have loaded an installed
// player file. Around them the smaller process rules: the running browser, the
// ActiveX helper, Internet Explorer's elevation refresh and browser windows.
#include <cstdint>
#include <vector>

#include "engine/MString.h"
#include "engine/MStringList.h"
#include "engine/Platform.h"

namespace SASM {

class HostCallbacks;

class ConflictingProcesses {
 public:
  // One listing call is told this many bytes, so only the first 256 processes are ever seen.
  static constexpr uint32_t kListBytes = 1024;
  static constexpr char16_t kStoreKey[] = u"Software\\Halcyonics\\LumenPlayer";
  static constexpr char16_t kStoreValue[] = u"ConflictingProcs";

  ConflictingProcesses(HostCallbacks& host, const Platform& platform) : host_(host), platform_(platform) {}

  // False when the process can't be opened; name and path may be empty otherwise.
  bool GetProcessIdentity(uint32_t processId, MString& name, MString& path);
  // Key (lower-case name without extension) and name to show, once per key. A new list the
  // caller frees; null, never an empty list, when the processes can't be listed.
  MStringList* FindConflicts(uint32_t kinds);
  // Ends the installed control's helper unless Internet Explorer is in the way or the helper
  // is the payload this run installs from.
  void TerminateActiveXHelper(const MStringList& conflicts, const MString& helperPath, uint32_t helperId);
  // True when a non-empty list was written for the next run.
  bool StoreConflicts(uint32_t kinds);
  // Asking clears the store: true only when there was one to delete.
  bool HasStoredConflicts();
  // Full path of the last running browser in table order, empty when none runs, and
  // "firefox.exe" alone when the processes can't be listed.
  MString FindDefaultBrowser();
  // Starts the utility once per running Internet Explorer, in that process's user context.
  void RefreshIEElevationInSessions();
  // Whether a client's window belongs to Internet Explorer or to Edge.
  bool IsBrowserWindow(void* window);
  bool IsBadRealPlayer();

 private:
  IProcesses::ListResult ListFirstProcesses(std::vector<uint32_t>& ids);

  HostCallbacks& host_;
  Platform platform_;
};

}  // namespace SASM
