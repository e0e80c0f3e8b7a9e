#include "tests/fakes/FakeTerminalSessions.h"

namespace SASM {
namespace {
constexpr uint32_t kInvalidParameter = 87;
}

const FakeTerminalSessions::Session* FakeTerminalSessions::Find(uint32_t id) const {
  for (const Session& session : sessions_) {
    if (session.id == id) return &session;
  }
  auto found = unlisted_.find(id);
  return found == unlisted_.end() ? nullptr : &found->second;
}

bool FakeTerminalSessions::EnumerateSessions(std::vector<uint32_t>& sessionIds, uint32_t& error) {
  if (enumerationError_ != 0) {
    error = enumerationError_;
    return false;
  }
  for (const Session& session : sessions_) sessionIds.push_back(session.id);
  return true;
}

bool FakeTerminalSessions::QueryConnectState(uint32_t sessionId, uint32_t& state, uint32_t& error) {
  const Session* session = Find(sessionId);
  if (!session || session->stateError != 0) {
    error = session ? session->stateError : kInvalidParameter;
    return false;
  }
  state = session->state;
  return true;
}

uint32_t FakeTerminalSessions::QueryText(uint32_t sessionId, uint32_t infoClass, std::u16string& text) {
  text.clear();
  const Session* session = Find(sessionId);
  if (!session) return kInvalidParameter;
  bool user = infoClass == SessionInfo::kUserName;
  uint32_t error = user ? session->userError : session->domainError;
  if (error == 0) text = user ? session->user : session->domain;
  return error;
}

}  // namespace SASM
