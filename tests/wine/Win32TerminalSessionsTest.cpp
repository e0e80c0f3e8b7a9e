// The session functions of the prefix. Wine lists no session at all, so the
// notifier task's user comes from the console session.
#include "engine/win32/Win32TerminalSessions.h"

#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include "engine/win32/Win32Platform.h"
#include "host/ReferenceHost.h"
#include "removal/NotifierTask.h"

using namespace SASM;

namespace {

TEST(Win32TerminalSessions, NotifierTaskRegistersForTheConsoleSessionsDomainAndUser) {
  Win32TerminalSessions sessions;
  ASSERT_TRUE(sessions.Available());
  std::vector<uint32_t> ids;
  uint32_t error = 0;
  EXPECT_TRUE(sessions.EnumerateSessions(ids, error));
  std::u16string user, domain;
  EXPECT_EQ(sessions.QueryText(sessions.ActiveConsoleSessionId(), SessionInfo::kUserName, user), 0u);
  EXPECT_EQ(sessions.QueryText(sessions.ActiveConsoleSessionId(), SessionInfo::kDomainName, domain), 0u);
  ASSERT_FALSE(user.empty());
  ASSERT_FALSE(domain.empty());

  ReferenceHost host(HostOptions(), MString(u""));
  NotifierTask task(MString(u"p"), MString(u"a"), host, Win32Platform());
  EXPECT_EQ(task.userName, domain + u"\\" + user);
  if (!ids.empty()) GTEST_SKIP() << "this platform lists its sessions";
  ASSERT_EQ(host.Log().Count(), 3);
  EXPECT_EQ(host.Log().Entries()[0].code, 37);
  EXPECT_EQ(host.Log().Entries()[1].code, 36);
  EXPECT_EQ(host.Log().Entries()[1].text.ToUtf8(), std::to_string(sessions.ActiveConsoleSessionId()));
  EXPECT_EQ(host.Log().Entries()[2].code, 1106);
}

}  // namespace
