#pragma once
// Telling browsers about the installed product: where the plug-in browsers
// look for plug-ins, and the restart of the utility in each running
// explorer's user context so that it rereads its elevation policies.
#include "engine/MString.h"
#include "engine/Platform.h"

namespace SASM {

class LumenBrokerShim;

class BrowserRefresh {
 public:
  static constexpr uint32_t kMaxProcesses = 1024;
  // Subkey names longer than this end the scan, as the bounded enumeration does.
  static constexpr size_t kMaxSubkeyName = 255;

  BrowserRefresh(LumenBrokerShim& shim, const Platform& platform) : shim_(shim), platform_(platform) {}

  // Fills the engine's plug-in directories once: the Mozilla products' plug-in
  // folders, Opera's two, then the fallback. Does nothing when the list has entries.
  void RefreshPluginDirectories(const MString& fallback);
  // Neither waits nor reports; a process whose step fails is passed over.
  void AskBrowsersToRefresh();

 private:
  // Opera's value from the current user, else the machine, when it names a plug-in folder.
  bool ReadOperaDirectory(const char16_t* valueName, MString& directory);

  LumenBrokerShim& shim_;
  Platform platform_;
};

}  // namespace SASM
