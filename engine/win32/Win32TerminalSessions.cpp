#include "engine/win32/Win32TerminalSessions.h"

#include "engine/win32/WindowsApi.h"

#include "engine/win32/WideText.h"
#include "engine/win32/WtsapiDllHelper.h"

namespace SASM {

Win32TerminalSessions::Win32TerminalSessions() = default;
Win32TerminalSessions::~Win32TerminalSessions() = default;

WtsapiDllHelper& Win32TerminalSessions::Helper() {
  if (!helper_) helper_ = std::make_unique<WtsapiDllHelper>();
  return *helper_;
}

bool Win32TerminalSessions::Available() { return Helper().available() != 0; }

bool Win32TerminalSessions::EnumerateSessions(std::vector<uint32_t>& sessionIds, uint32_t& error) {
  WtsapiDllHelper& wts = Helper();
  WTS_SESSION_INFOA* sessions = nullptr;
  DWORD count = 0;
  if (!wts.WTSEnumerateSessionsA()(WTS_CURRENT_SERVER_HANDLE, 0, 1, &sessions, &count)) {
    error = GetLastError();
    return false;
  }
  for (DWORD i = 0; i < count; ++i) sessionIds.push_back(sessions[i].SessionId);
  if (sessions) wts.WTSFreeMemory()(sessions);
  return true;
}

bool Win32TerminalSessions::QueryConnectState(uint32_t sessionId, uint32_t& state, uint32_t& error) {
  WtsapiDllHelper& wts = Helper();
  LPWSTR buffer = nullptr;
  DWORD bytes = 0;
  // Cleared first: the call may fail without setting it.
  SetLastError(ERROR_SUCCESS);
  if (!wts.WTSQuerySessionInformationW()(WTS_CURRENT_SERVER_HANDLE, sessionId, WTSConnectState, &buffer, &bytes)) {
    error = GetLastError();
    return false;
  }
  bool complete = buffer && bytes >= sizeof(INT);
  if (complete) state = static_cast<uint32_t>(*reinterpret_cast<const INT*>(buffer));
  if (buffer) wts.WTSFreeMemory()(buffer);
  if (!complete) error = ERROR_INVALID_DATA;
  return complete;
}

uint32_t Win32TerminalSessions::QueryText(uint32_t sessionId, uint32_t infoClass, std::u16string& text) {
  WtsapiDllHelper& wts = Helper();
  text.clear();
  LPWSTR buffer = nullptr;
  DWORD bytes = 0;
  SetLastError(ERROR_SUCCESS);
  BOOL answered = wts.WTSQuerySessionInformationW()(WTS_CURRENT_SERVER_HANDLE, sessionId,
                                                    static_cast<WTS_INFO_CLASS>(infoClass), &buffer, &bytes);
  DWORD error = GetLastError();
  // Only an answered query has a text, bounded by the bytes returned whether or not it
  // carries its terminator; a failure that leaves the last error at 0 reads as an empty name.
  if (answered && buffer) text = FromWide(buffer, wcsnlen(buffer, bytes / sizeof(wchar_t)));
  if (buffer) wts.WTSFreeMemory()(buffer);
  return error;
}

uint32_t Win32TerminalSessions::ActiveConsoleSessionId() { return WTSGetActiveConsoleSessionId(); }

}  // namespace SASM
