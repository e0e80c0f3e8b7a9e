#include "host/FlowScript.h"

namespace SASM {
namespace {

// The bottom bar fills the last 68 rows; its buttons sit 18 below its top.
constexpr int32_t kBarHeight = 68;
constexpr int32_t kButtonTop = 18;
constexpr int32_t kButtonWidth = 140;
constexpr int32_t kButtonHeight = 33;
// A panel ends where the bar's body begins: the window's height less 66.
constexpr int32_t kPanelShortfall = 66;

std::string Narrow(const std::u16string& text) {
  std::string out;
  for (char16_t c : text) out.push_back(c < 128 ? static_cast<char>(c) : '?');
  return out;
}

struct Word {
  const char* text;
  FlowScript::Action action;
};

constexpr Word kWords[] = {
    {"tick", FlowScript::Action::kTick},           {"label", FlowScript::Action::kLabel},
    {"right", FlowScript::Action::kRight},         {"left", FlowScript::Action::kLeft},
    {"uninstall", FlowScript::Action::kUninstall}, {"reinstall", FlowScript::Action::kReinstall},
    {"done", FlowScript::Action::kDone},           {"close", FlowScript::Action::kClose},
    {"end", FlowScript::Action::kEnd},
};

}  // namespace

bool FlowScript::Parse(const std::u16string& text) {
  steps.clear();
  std::string all = Narrow(text);
  size_t start = 0;
  while (start <= all.size()) {
    size_t comma = all.find(',', start);
    std::string word = all.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
    start = comma == std::string::npos ? all.size() + 1 : comma + 1;
    if (word.empty()) continue;
    Step step{Action::kEnd, word, 0, ""};
    bool known = false;
    for (const Word& w : kWords) {
      if (word == w.text) {
        step.action = w.action;
        known = true;
      }
    }
    if (!known && word.rfind("wait=", 0) == 0) {
      std::string digits = word.substr(5);
      known = !digits.empty() && digits.size() <= 7 && digits.find_first_not_of("0123456789") == std::string::npos;
      if (known) {
        step.action = Action::kWait;
        step.milliseconds = static_cast<uint32_t>(std::stoul(digits));
      }
    } else if (!known && word.rfind("await=", 0) == 0 && word.size() > 6) {
      step.action = Action::kAwait;
      step.stage = word.substr(6);
      known = true;
    }
    if (!known) {
      error = "unknown step in the script: " + word;
      return false;
    }
    steps.push_back(step);
  }
  return true;
}

std::u16string FlowScript::DefaultFor(HostOptions::Mode mode, uint32_t installSource) {
  switch (mode) {
    case HostOptions::Mode::Install:
      // The first INSTALL is refused: the licence is not yet accepted.
      return u"right,tick,right,done";
    case HostOptions::Mode::Uninstall:
      return u"right,done";
    case HostOptions::Mode::Maintain:
      return u"uninstall,done";
    case HostOptions::Mode::Update:
      return installSource == 12 ? u"end" : u"right,end";
    default:
      return u"end";
  }
}

MRect FlowScript::Target(Action action, int32_t width, int32_t height) {
  const int32_t buttonTop = height - kBarHeight + kButtonTop;
  const int32_t panelHeight = height - kPanelShortfall;
  switch (action) {
    case Action::kTick:
      return MRect::FromSize(96, panelHeight - 49, 15, 15);
    case Action::kLabel:
      // The start of the text: its area runs past the window's edge.
      return MRect::FromSize(115, panelHeight - 50, 40, 20);
    case Action::kRight:
    case Action::kDone:
      return MRect::FromSize(width - 156, buttonTop, kButtonWidth, kButtonHeight);
    case Action::kLeft:
      return MRect::FromSize(94, buttonTop, kButtonWidth, kButtonHeight);
    case Action::kUninstall:
      return MRect::FromSize(19, 69, kButtonWidth, kButtonHeight);
    case Action::kReinstall:
      return MRect::FromSize(19, 19, kButtonWidth, kButtonHeight);
    default:
      return MRect{};
  }
}

}  // namespace SASM
