#pragma once
// The reference host's side of the installer window: which panel it opens,
// the work it does inside Notify (registration on 2, removal on 3), the mask it
// answers on 6, and a record of the flow that an unattended run waits on. The
// window calls in on its own thread; the record may be read from any thread.
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

#include "host/HostOptions.h"

namespace SASM {

class LumenBrokerShim;
class MorphUI;
class ReferenceHost;

class InstallerFlow {
 public:
  // PostEvent of the window's MorphUI: (id, message, param).
  using Post = std::function<void(int32_t id, int32_t message, intptr_t param)>;
  // One line of the flow's account, without its line end.
  using Print = std::function<void(const std::string& line)>;

  // The stages of the record.
  static constexpr const char* kEnded = "ended";
  static constexpr const char* kFinished = "finished";
  static constexpr const char* kFailure = "failure";
  static constexpr const char* kConflicts = "conflicts";
  static constexpr const char* kProgress = "progress";

  InstallerFlow(const HostOptions& options, ReferenceHost& host, LumenBrokerShim& shim, Print print);

  // The window's event callback; context is the flow.
  static int32_t Callback(MorphUI* ui, int32_t code, intptr_t value, void* context);
  // Opens the mode's panel through post, which later failures also go through.
  void Open(Post post);
  int32_t OnNotify(int32_t code, intptr_t value);

  // Registers each selected kind in the order 8, 16, 32768; with stopAtFailure the first failure ends it.
  static bool RegisterKinds(LumenBrokerShim& shim, const HostOptions& options, uint32_t kinds, bool stopAtFailure,
                            const Print& print);
  // Removes each selected kind in the same order, then the named and pattern files of them all.
  static bool RemoveKinds(LumenBrokerShim& shim, const HostOptions& options, uint32_t kinds, const Print& print);

  // The record.
  std::string Stage() const;
  // An unattended run names the stages that only its clicks reveal.
  void SetStage(const std::string& stage);
  bool Ended() const;
  int32_t ExitCode() const;
  void Say(const std::string& line);

 private:
  // What the host is told of outside Notify.
  void OnHostCall(const char* operation, int32_t value);

  const HostOptions options_;
  ReferenceHost& host_;
  LumenBrokerShim& shim_;
  Print print_;
  Post post_;
  mutable std::mutex mutex_;
  std::string stage_;
  bool conflictsAsked_ = false;
  bool ended_ = false;
  int32_t exitCode_ = 0;
};

}  // namespace SASM
