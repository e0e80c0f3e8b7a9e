#include "host/InstallerFlow.h"

#include "engine/LumenBrokerShim.h"
#include "engine/ProductKind.h"
#include "host/ReferenceHost.h"

namespace SASM {
namespace {

// Notify's codes and the window's events that the host posts.
constexpr int32_t kNotifyExit = 0;
constexpr int32_t kNotifyInstall = 2;
constexpr int32_t kNotifyUninstall = 3;
constexpr int32_t kNotifyUpdate = 4;
constexpr int32_t kNotifyProductMask = 6;
constexpr int32_t kCommandEventId = 3;
constexpr int32_t kFinish = 5;
constexpr int32_t kOpenPanel = 6;
constexpr int32_t kFailureEventId = 4;
constexpr int32_t kShowError = 8;

struct Opening {
  HostOptions::Mode mode;
  intptr_t panel;
  const char* stage;
};

constexpr Opening kOpenings[] = {
    {HostOptions::Mode::Install, 0, "installer-splash"},
    {HostOptions::Mode::Uninstall, 1, "uninstaller-splash"},
    {HostOptions::Mode::Maintain, 2, "maintain"},
    {HostOptions::Mode::Update, 3, "auto-update"},
};

}  // namespace

InstallerFlow::InstallerFlow(const HostOptions& options, ReferenceHost& host, LumenBrokerShim& shim, Print print)
    : options_(options), host_(host), shim_(shim), print_(std::move(print)) {
  host_.SetObserver([this](const char* operation, int32_t value) { OnHostCall(operation, value); });
}

int32_t InstallerFlow::Callback(MorphUI*, int32_t code, intptr_t value, void* context) {
  return static_cast<InstallerFlow*>(context)->OnNotify(code, value);
}

void InstallerFlow::Open(Post post) {
  post_ = std::move(post);
  for (const Opening& opening : kOpenings) {
    if (opening.mode != options_.mode) continue;
    if (opening.mode == HostOptions::Mode::Maintain) {
      // The maintenance panel neither sizes nor shows the window: the uninstaller
      // splash opened first does both and names it, and the maintenance panel
      // takes its place before anything is painted.
      Say("PostEvent 3 6 1");
      post_(kCommandEventId, kOpenPanel, 1);
    }
    SetStage(opening.stage);
    Say("PostEvent 3 6 " + std::to_string(opening.panel));
    post_(kCommandEventId, kOpenPanel, opening.panel);
  }
}

int32_t InstallerFlow::OnNotify(int32_t code, intptr_t value) {
  switch (code) {
    case kNotifyExit: {
      Say("Notify 0: exit code " + std::to_string(static_cast<int32_t>(value)));
      std::lock_guard<std::mutex> lock(mutex_);
      ended_ = true;
      exitCode_ = static_cast<int32_t>(value);
      stage_ = kEnded;
      break;
    }
    case kNotifyInstall: {
      Say("Notify 2: the install bar is full");
      bool registered = RegisterKinds(shim_, options_, host_.Kinds(), true, [this](const std::string& line) { Say(line); });
      if (registered) {
        SetStage(kFinished);
      } else {
        SetStage(kFailure);
        Say("PostEvent 4 8 0");
        if (post_) post_(kFailureEventId, kShowError, 0);
      }
      break;
    }
    case kNotifyUninstall: {
      Say("Notify 3: the uninstall bar is empty");
      RemoveKinds(shim_, options_, host_.Kinds(), [this](const std::string& line) { Say(line); });
      SetStage(kFinished);
      break;
    }
    case kNotifyUpdate:
      // The update itself is the updater's; this host has none to run, so the window ends.
      Say("Notify 4: the update is asked for");
      SetStage(kFinished);
      Say("PostEvent 3 5 0");
      if (post_) post_(kCommandEventId, kFinish, 0);
      break;
    case kNotifyProductMask: {
      uint32_t kinds = host_.Kinds();
      Say("Notify 6: product mask " + std::to_string(kinds));
      if (value) *reinterpret_cast<uint32_t*>(value) = kinds;
      std::lock_guard<std::mutex> lock(mutex_);
      // The conflicts panel asks as it opens, and the search that follows keeps the
      // window from painting; it is the panel on screen once it asks again at a poll.
      if (stage_ == "installer-splash" || stage_ == "installer-splash-ticked" || stage_ == "uninstaller-splash") {
        if (conflictsAsked_) stage_ = kConflicts;
        conflictsAsked_ = true;
      }
      break;
    }
    default:
      Say("Notify " + std::to_string(code) + ": " + std::to_string(static_cast<int64_t>(value)));
  }
  return 0;
}

void InstallerFlow::OnHostCall(const char* operation, int32_t value) {
  std::string name(operation);
  Say(name + " " + std::to_string(value));
  if (name == "NotifyConflictsCleared") SetStage(kProgress);
}

bool InstallerFlow::RegisterKinds(LumenBrokerShim& shim, const HostOptions& options, uint32_t kinds,
                                  bool stopAtFailure, const Print& print) {
  bool all = true;
  for (uint32_t kind : ProductKind::kAll) {
    if (!(kinds & kind)) continue;
    bool registered = shim.RegisterProduct(kind, MString(std::u16string_view(options.playerPath)),
                                           MString(std::u16string_view(options.uninstallerPath)), MString(),
                                           options.writeUninstallEntry ? 1 : 0);
    print("RegisterProduct " + std::to_string(kind) + ": " + (registered ? "true" : "false"));
    all = all && registered;
    if (!registered && stopAtFailure) break;
  }
  return all;
}

bool InstallerFlow::RemoveKinds(LumenBrokerShim& shim, const HostOptions& options, uint32_t kinds,
                                const Print& print) {
  MString directory{std::u16string_view(options.directory)};
  bool all = true;
  for (uint32_t kind : ProductKind::kAll) {
    if (!(kinds & kind)) continue;
    bool removed = shim.RemoveProductKind(kind, directory, 0, 0);
    print("RemoveProductKind " + std::to_string(kind) + ": " + (removed ? "true" : "false"));
    all = all && removed;
  }
  shim.RemoveNamedFiles(kinds, directory);
  shim.RemovePatternFiles(kinds, directory);
  print("RemoveNamedFiles, RemovePatternFiles " + std::to_string(kinds));
  return all;
}

std::string InstallerFlow::Stage() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return stage_;
}

void InstallerFlow::SetStage(const std::string& stage) {
  std::lock_guard<std::mutex> lock(mutex_);
  // Nothing follows the end.
  if (!ended_) stage_ = stage;
}

bool InstallerFlow::Ended() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return ended_;
}

int32_t InstallerFlow::ExitCode() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return exitCode_;
}

void InstallerFlow::Say(const std::string& line) {
  if (print_) print_(line);
}

}  // namespace SASM
