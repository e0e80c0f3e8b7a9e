// Several processes on the connection directory at once for a few seconds:
// they send to one another, collect what is theirs, and leave the list and
// rejoin it. This process watches the list and the slot under the lock while
// they run, then checks that every posted message arrived exactly once and
// intact, that the list holds only what it held before, and that the lock is
// still free to take.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <set>
#include <string>

#include "connections/win32/Win32LcdAccessor.h"
#include "engine/win32/ScopedHandle.h"
#include "tests/wine/WineTestSupport.h"
#include "tests/wine/helpers/LcdStressMessage.h"

using namespace SASM;

namespace {

constexpr int kParticipants = 4;
constexpr DWORD kRunMs = 3000;
// Past the run by this much a participant is taken to be stuck on the lock.
constexpr ULONGLONG kGraceMs = 15000;
// Nobody holds the lock for a single operation this long.
constexpr DWORD kAuditLockWaitMs = 2000;
constexpr DWORD kAuditEveryMs = 20;
constexpr const char* kWatcherName = "lumen-stress-watcher";
// What every entry of this run carries: format '4' and realm 0.
constexpr char kSuffixes[] = "::4\0::1";

struct Counts {
  unsigned sent = 0, received = 0, unanswered = 0, busy = 0, churns = 0, pruned = 0;
  void operator+=(const Counts& o) {
    sent += o.sent, received += o.received, unanswered += o.unanswered, busy += o.busy, churns += o.churns,
        pruned += o.pruned;
  }
};

// One participant, its standard output and error caught in a pipe.
class StressChild {
 public:
  StressChild() = default;
  StressChild(const StressChild&) = delete;
  StressChild& operator=(const StressChild&) = delete;
  // A participant still running here is stuck or abandoned by a failed assertion.
  ~StressChild() {
    if (process_ && WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT) {
      TerminateProcess(process_.get(), 99);
      WaitForSingleObject(process_.get(), 5000);
    }
  }

  bool Start(int index, const std::string& goEvent) {
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    HANDLE readEnd = nullptr, writeEnd = nullptr;
    if (!CreatePipe(&readEnd, &writeEnd, &inheritable, 0)) return false;
    output_.reset(readEnd);
    // Only this child may hold the write end, or the pipe never reports its end.
    ScopedHandle write(writeEnd);
    SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    std::wstring command = L"\"" + WineTest::BinaryDirectory() + L"\\lumen_lcd_child.exe\" stress " +
                           std::to_wstring(index) + L" " + std::to_wstring(kParticipants) + L" " +
                           std::to_wstring(kRunMs) + L" " + std::wstring(goEvent.begin(), goEvent.end());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = write.get();
    startup.hStdError = write.get();
    PROCESS_INFORMATION info{};
    // Wine, busy with the other participants, now and then fails a start with an internal error.
    bool started = false;
    for (int attempt = 0; attempt < 3 && !started; ++attempt) {
      if (attempt > 0) Sleep(100);
      started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                               &info) != FALSE;
    }
    if (!started) return false;
    process_.reset(info.hProcess);
    ScopedHandle thread(info.hThread);
    return true;
  }

  HANDLE process() const { return process_.get(); }

  // After the child has ended: its exit code, and its counts when it printed them.
  DWORD Finish(Counts* counts, std::string* output) {
    char buffer[512];
    DWORD read = 0;
    while (ReadFile(output_.get(), buffer, sizeof buffer, &read, nullptr) && read > 0) output->append(buffer, read);
    const size_t line = output->find("sent=");
    if (line == std::string::npos ||
        std::sscanf(output->c_str() + line, "sent=%u received=%u unanswered=%u busy=%u churns=%u pruned=%u",
                    &counts->sent, &counts->received, &counts->unanswered, &counts->busy, &counts->churns,
                    &counts->pruned) != 6)
      *counts = {};
    DWORD code = 0xFFFFFFFF;
    GetExitCodeProcess(process_.get(), &code);
    return code;
  }

 private:
  ScopedHandle process_;
  ScopedHandle output_;
};

bool IsRunName(const std::string& name) {
  if (name == kWatcherName) return true;
  for (int i = 0; i < kParticipants; ++i)
    if (name == LcdStress::ParticipantName(i)) return true;
  return false;
}

// Walks the list as any reader of the segment would. Every entry must be a name
// of this run with both suffixes as written, none twice, the watcher first, and
// the walk must end inside the block.
testing::AssertionResult ListIsWhole(const LcdSegment& segment, std::set<std::string>* names) {
  const char* p = reinterpret_cast<const char*>(segment.connectionList);
  const char* end = p + LcdSegment::kConnectionListSize + kLcdListOverrun;
  names->clear();
  for (;;) {
    const size_t length = strnlen(p, static_cast<size_t>(end - p));
    if (p + length == end) return testing::AssertionFailure() << "the list has no terminator";
    if (length == 0) return testing::AssertionSuccess();
    const std::string name(p, length);
    if (!IsRunName(name)) return testing::AssertionFailure() << "stray entry \"" << name << "\"";
    if (names->empty() && name != kWatcherName) return testing::AssertionFailure() << "the first entry was moved";
    if (!names->insert(name).second) return testing::AssertionFailure() << "\"" << name << "\" is listed twice";
    if (end - (p + length + 1) < static_cast<ptrdiff_t>(sizeof kSuffixes) ||
        std::memcmp(p + length + 1, kSuffixes, sizeof kSuffixes) != 0)
      return testing::AssertionFailure() << "\"" << name << "\" has damaged suffixes";
    p += length + 1 + sizeof kSuffixes;
  }
}

// A message in the slot must be one a participant sent, whole.
testing::AssertionResult SlotIsWhole(const LcdSegment& segment) {
  if (segment.messageSize == 0) return testing::AssertionSuccess();
  std::string target;
  LcdStress::Fields fields{};
  if (segment.messageSize > LcdSegment::kMessageAreaSize ||
      !LcdStress::Decode(segment.messageArea, segment.messageSize, &target, &fields) ||
      fields.sender >= kParticipants || fields.receiver >= kParticipants)
    return testing::AssertionFailure() << "damaged message of " << segment.messageSize << " bytes in the slot";
  return testing::AssertionSuccess();
}

class LcdStressTest : public ::testing::Test {
 protected:
  // The segment goes with its last handle; a fresh one keeps other tests' names out.
  void SetUp() override { ASSERT_FALSE(WineTest::LcdMappingExists()); }
  void TearDown() override { EXPECT_FALSE(WineTest::LcdMappingExists()); }
};

}  // namespace

TEST_F(LcdStressTest, ParticipantsRacingForTheSlotLoseNothingAndLeaveTheListWhole) {
  Win32LcdAccessor lcd;
  ASSERT_TRUE(lcd.IsOpen());
  ASSERT_TRUE(lcd.TryAddConnection(kWatcherName, 0, 0, '4'));
  // Audits read the segment through a view of their own and take the mutex with
  // a time limit, where the accessor would wait for ever.
  ScopedHandle mapping(OpenFileMappingA(FILE_MAP_READ, FALSE, Win32LcdAccessor::kMappingName));
  ScopedHandle mutex(OpenMutexA(SYNCHRONIZE | MUTEX_MODIFY_STATE, FALSE, Win32LcdAccessor::kMutexName));
  ASSERT_TRUE(mapping.valid() && mutex.valid());
  ScopedMappedView view(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0));
  ASSERT_NE(view.get(), nullptr);
  const auto& segment = *static_cast<const LcdSegment*>(view.get());

  const std::string goName = "LumenLcdStress-" + std::to_string(GetCurrentProcessId()) + "-go";
  ScopedHandle go(CreateEventA(nullptr, TRUE, FALSE, goName.c_str()));
  ASSERT_TRUE(go.valid());
  StressChild children[kParticipants];
  HANDLE processes[kParticipants];
  for (int i = 0; i < kParticipants; ++i) {
    ASSERT_TRUE(children[i].Start(i, goName)) << "participant " << i << ": error " << GetLastError();
    processes[i] = children[i].process();
  }
  SetEvent(go.get());
  const ULONGLONG started = GetTickCount64();

  unsigned audits = 0;
  std::set<std::string> names;
  DWORD ended;
  while ((ended = WaitForMultipleObjects(kParticipants, processes, TRUE, kAuditEveryMs)) == WAIT_TIMEOUT &&
         GetTickCount64() - started < kRunMs + kGraceMs) {
    ASSERT_EQ(WaitForSingleObject(mutex.get(), kAuditLockWaitMs), WAIT_OBJECT_0) << "the lock is stuck or abandoned";
    const testing::AssertionResult list = ListIsWhole(segment, &names);
    const testing::AssertionResult slot = SlotIsWhole(segment);
    ReleaseMutex(mutex.get());
    ASSERT_TRUE(list);
    ASSERT_TRUE(slot);
    ++audits;
  }
  ASSERT_LT(ended - WAIT_OBJECT_0, static_cast<DWORD>(kParticipants)) << "a participant did not end in time";

  Counts total;
  for (int i = 0; i < kParticipants; ++i) {
    Counts counts;
    std::string output;
    const DWORD code = children[i].Finish(&counts, &output);
    EXPECT_EQ(code, 0u) << "participant " << i << ": " << output;
    if (code != 0) continue;
    // Every participant must have done real work both ways.
    EXPECT_GT(counts.sent, 0u) << "participant " << i << ": " << output;
    EXPECT_GT(counts.received, 0u) << "participant " << i << ": " << output;
    total += counts;
  }
  // Each left the list before taking its last message, so nothing can be in flight.
  EXPECT_EQ(total.received, total.sent);
  EXPECT_GT(total.unanswered, 0u);
  EXPECT_GT(total.churns, 0u);
  EXPECT_EQ(total.pruned, 0u) << "no message can grow old within the run";
  EXPECT_GT(audits, 0u);

  ASSERT_EQ(lcd.Lock(), 1);
  EXPECT_TRUE(ListIsWhole(segment, &names));
  EXPECT_EQ(names, std::set<std::string>{kWatcherName});
  EXPECT_EQ(segment.messageSize, 0u);
  EXPECT_EQ(lcd.Unlock(), 0);
  EXPECT_TRUE(lcd.RemoveConnection(kWatcherName, 0));
  std::printf("[  RESULT  ] %u sent and received, %u to nobody, %u busy, %u relistings, %u audits in %u ms\n",
              total.sent, total.unanswered, total.busy, total.churns, audits,
              static_cast<unsigned>(GetTickCount64() - started));
}
