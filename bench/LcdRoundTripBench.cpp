// Costs of the connection directory against a bare Lock and Unlock pair of the
// accessor, measured in the same run. Prints the medians of a few rounds.
//
//   round trip  this process dispatches a 64-byte message to an echo process.
//               The echo polls, each poll one hold with GetMessageTarget in it,
//               until the target is its name; in the same hold it reads the data
//               with GetMessageData and clears the slot, then dispatches the same
//               payload back, and this process takes the reply the same way.
//               Timed from the dispatch to the clear of the reply.
//   find        FindConnectionFormat on a list filled until TryAddConnection
//               refuses, for the entry added last and for a name not listed:
//               both walk the whole list.
//
// The echo is this program started again with --echo. Every name added is
// removed again and the echo is ended, so the directory is left as found.
//
// Run from the build's bin directory under Wine:
//   $WINE lumen_lcd_bench.exe [rounds] [round trips per round]
#include "engine/win32/WindowsApi.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/BenchClock.h"
#include "connections/win32/Win32LcdAccessor.h"
#include "engine/win32/ScopedHandle.h"

using namespace SASM;

namespace {

constexpr uint32_t kRealm = 0;
constexpr int32_t kStoredFormat = '4';  // reads back as 4
constexpr int32_t kFormat = 4;
constexpr int32_t kSenderVersion = 11;
constexpr size_t kPayload = 64;
constexpr int kPairsPerRound = 5000;
constexpr int kFindsPerRound = 500;
// No single wait of this run may take longer; past it the run fails instead of hanging.
constexpr ULONGLONG kPatienceMs = 10000;

// The payload's first byte tells the echo what to do.
constexpr uint8_t kEcho = 'e';
constexpr uint8_t kRest = 'r';  // back to waiting for the next burst
constexpr uint8_t kQuit = 'q';

std::string Stem(DWORD mainProcess) { return "lumen-bench-" + std::to_string(mainProcess); }
std::string MainName(DWORD mainProcess) { return Stem(mainProcess) + "-main"; }
std::string EchoName(DWORD mainProcess) { return Stem(mainProcess) + "-echo"; }
std::string BurstEventName(DWORD mainProcess) { return Stem(mainProcess) + "-burst"; }

// A target header in the two-byte form, then the payload.
std::vector<uint8_t> Message(const std::string& target, const uint8_t* payload, size_t size) {
  std::vector<uint8_t> out(3 + target.size() + size);
  out[0] = 2;
  out[1] = static_cast<uint8_t>(target.size() >> 8);
  out[2] = static_cast<uint8_t>(target.size());
  std::memcpy(out.data() + 3, target.data(), target.size());
  std::memcpy(out.data() + 3 + target.size(), payload, size);
  return out;
}

std::vector<uint8_t> Message(const std::string& target, uint8_t kind) {
  std::vector<uint8_t> payload(kPayload);
  for (size_t i = 0; i < payload.size(); ++i) payload[i] = static_cast<uint8_t>(i * 7 + 3);
  payload[0] = kind;
  return Message(target, payload.data(), payload.size());
}

// Dispatches, trying again while the slot is busy. False when nobody is listed
// under the target or the slot stays busy past the patience.
bool Post(ILcdAccessor& lcd, const std::vector<uint8_t>& message) {
  const ULONGLONG deadline = GetTickCount64() + kPatienceMs;
  do {
    const int32_t result =
        lcd.DispatchMessage(message.data(), static_cast<int32_t>(message.size()), kSenderVersion, kFormat, kRealm);
    if (result != 0) return result == 1;
  } while (GetTickCount64() < deadline);
  return false;
}

// Polls until the slot holds a message for name, then copies out its payload and
// clears the slot within the same hold.
bool Take(ILcdAccessor& lcd, const std::string& name, std::vector<uint8_t>* payload) {
  const size_t header = 3 + name.size();
  const ULONGLONG deadline = GetTickCount64() + kPatienceMs;
  char target[CoreLcdAccessor::kTargetBufferSize];
  do {
    if (lcd.Lock() < 1) return false;
    if (lcd.GetMessageTarget(target, sizeof target) && name == target) {
      const uint8_t* data = nullptr;
      int32_t size = 0;
      const bool whole = lcd.GetMessageData(&data, &size) && static_cast<size_t>(size) > header;
      if (whole) payload->assign(data + header, data + size);
      lcd.ClearMessage();
      lcd.Unlock();
      return whole;
    }
    lcd.Unlock();
  } while (GetTickCount64() < deadline);
  return false;
}

// The other process: answers each message of a burst until told to rest or quit.
int Echo(DWORD mainProcess) {
  Win32LcdAccessor lcd;
  ScopedHandle burst(OpenEventA(SYNCHRONIZE, FALSE, BurstEventName(mainProcess).c_str()));
  const std::string name = EchoName(mainProcess), back = MainName(mainProcess);
  if (!lcd.IsOpen() || !burst || !lcd.TryAddConnection(name.c_str(), kRealm, kRealm, kStoredFormat)) return 2;
  int code = 1;
  bool resting = true;
  std::vector<uint8_t> payload;
  while (resting && WaitForSingleObject(burst.get(), static_cast<DWORD>(kPatienceMs)) == WAIT_OBJECT_0) {
    resting = false;
    while (Take(lcd, name, &payload)) {
      if (payload[0] == kEcho && Post(lcd, Message(back, payload.data(), payload.size()))) continue;
      resting = payload[0] == kRest;
      if (payload[0] == kQuit) code = 0;
      break;
    }
  }
  lcd.RemoveConnection(name.c_str(), kRealm);
  return code;
}

// Names this run listed, removed again whatever happens.
class Listed {
 public:
  explicit Listed(ILcdAccessor& lcd) : lcd_(lcd) {}
  Listed(const Listed&) = delete;
  Listed& operator=(const Listed&) = delete;
  ~Listed() { RemoveAll(); }

  bool Add(const std::string& name) {
    if (!lcd_.TryAddConnection(name.c_str(), kRealm, kRealm, kStoredFormat)) return false;
    names_.push_back(name);
    return true;
  }
  // Newest first, which also empties the list from its end.
  size_t RemoveAll() {
    size_t removed = 0;
    for (auto it = names_.rbegin(); it != names_.rend(); ++it) removed += lcd_.RemoveConnection(it->c_str(), kRealm);
    names_.clear();
    return removed;
  }
  size_t size() const { return names_.size(); }
  const std::string& last() const { return names_.back(); }

 private:
  ILcdAccessor& lcd_;
  std::vector<std::string> names_;
};

// The echo process; told to quit when it goes, ended by force if it will not.
class EchoProcess {
 public:
  EchoProcess(ILcdAccessor& lcd, HANDLE burst) : lcd_(lcd), burst_(burst) {}
  EchoProcess(const EchoProcess&) = delete;
  EchoProcess& operator=(const EchoProcess&) = delete;
  ~EchoProcess() { End(); }

  bool Start() {
    wchar_t self[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring command = L"\"" + std::wstring(self, length) + L"\" --echo " + std::to_wstring(GetCurrentProcessId());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info))
      return false;
    process_.reset(info.hProcess);
    ScopedHandle thread(info.hThread);
    // Ready once its name is listed.
    const std::string name = EchoName(GetCurrentProcessId());
    const ULONGLONG deadline = GetTickCount64() + kPatienceMs;
    while (lcd_.FindConnectionFormat(name.c_str(), kRealm) != kFormat) {
      if (GetTickCount64() >= deadline || WaitForSingleObject(process_.get(), 1) != WAIT_TIMEOUT) return false;
    }
    return true;
  }

  // Ends a burst and waits until the echo has taken the word and freed the slot.
  bool Rest() { return Post(lcd_, Message(EchoName(GetCurrentProcessId()), kRest)) && SlotFreed(); }

  // True when the echo quit by itself with success.
  bool End() {
    if (!process_) return ended_;
    SetEvent(burst_);
    Post(lcd_, Message(EchoName(GetCurrentProcessId()), kQuit));
    DWORD code = 1;
    if (WaitForSingleObject(process_.get(), static_cast<DWORD>(kPatienceMs)) == WAIT_OBJECT_0) {
      GetExitCodeProcess(process_.get(), &code);
    } else {
      TerminateProcess(process_.get(), 1);
      WaitForSingleObject(process_.get(), static_cast<DWORD>(kPatienceMs));
    }
    process_.reset();
    ended_ = code == 0;
    return ended_;
  }

 private:
  bool SlotFreed() {
    const ULONGLONG deadline = GetTickCount64() + kPatienceMs;
    const uint8_t* data = nullptr;
    int32_t size = 0;
    while (lcd_.GetMessageData(&data, &size)) {
      if (GetTickCount64() >= deadline) return false;
    }
    return true;
  }

  ILcdAccessor& lcd_;
  HANDLE burst_;
  ScopedHandle process_;
  bool ended_ = false;
};

double LockPairSeconds(ILcdAccessor& lcd) {
  const double start = BenchClock::Seconds();
  for (int i = 0; i < kPairsPerRound; ++i) {
    lcd.Lock();
    lcd.Unlock();
  }
  return (BenchClock::Seconds() - start) / kPairsPerRound;
}

// One burst of round trips; the first wakes the echo and is not timed. Negative on failure.
double RoundTripSeconds(ILcdAccessor& lcd, EchoProcess& echo, HANDLE burst, int trips) {
  const DWORD self = GetCurrentProcessId();
  const std::vector<uint8_t> message = Message(EchoName(self), kEcho);
  const std::string name = MainName(self);
  std::vector<uint8_t> reply;
  SetEvent(burst);
  if (!Post(lcd, message) || !Take(lcd, name, &reply)) return -1;
  const double start = BenchClock::Seconds();
  for (int i = 0; i < trips; ++i) {
    if (!Post(lcd, message) || !Take(lcd, name, &reply) || reply.size() != kPayload) return -1;
  }
  const double elapsed = (BenchClock::Seconds() - start) / trips;
  return echo.Rest() ? elapsed : -1;
}

double FindSeconds(ILcdAccessor& lcd, const std::string& name, int32_t expected) {
  const double start = BenchClock::Seconds();
  for (int i = 0; i < kFindsPerRound; ++i) {
    if (lcd.FindConnectionFormat(name.c_str(), kRealm) != expected) return -1;
  }
  return (BenchClock::Seconds() - start) / kFindsPerRound;
}

int Fail(const char* why) {
  std::fprintf(stderr, "%s\n", why);
  return 1;
}

int Run(int rounds, int trips) {
  Win32LcdAccessor lcd;
  if (!lcd.IsOpen()) return Fail("the directory could not be opened");
  const DWORD self = GetCurrentProcessId();
  ScopedHandle burst(CreateEventA(nullptr, FALSE, FALSE, BurstEventName(self).c_str()));
  Listed own(lcd);
  if (!burst || !own.Add(MainName(self))) return Fail("could not list this process");

  std::vector<double> pair, trip, findLast, findAbsent;
  size_t filled = 0;
  {
    EchoProcess echo(lcd, burst.get());
    if (!echo.Start()) return Fail("the echo process did not start");
    // Round 0 warms both processes and is not counted.
    for (int round = 0; round <= rounds; ++round) {
      const double reference = LockPairSeconds(lcd);
      const double roundTrip = RoundTripSeconds(lcd, echo, burst.get(), trips);
      if (roundTrip < 0) return Fail("a round trip failed");
      if (round == 0) continue;
      pair.push_back(reference);
      trip.push_back(roundTrip);
    }
    if (!echo.End()) return Fail("the echo process did not end cleanly");
  }

  {
    Listed fill(lcd);
    while (fill.Add(Stem(self) + "-fill-" + std::to_string(fill.size()))) {
    }
    filled = fill.size();
    if (filled == 0) return Fail("no room to fill the list");
    const std::string absent = Stem(self) + "-absent";
    for (int round = 0; round <= rounds; ++round) {
      const double reference = LockPairSeconds(lcd);
      const double last = FindSeconds(lcd, fill.last(), kFormat);
      const double missing = FindSeconds(lcd, absent, 0);
      if (last < 0 || missing < 0) return Fail("a lookup on the full list went wrong");
      if (round == 0) continue;
      pair.push_back(reference);
      findLast.push_back(last);
      findAbsent.push_back(missing);
    }
    if (fill.RemoveAll() != filled) return Fail("not every filling name could be removed");
  }
  if (own.RemoveAll() != 1) return Fail("this process's name was gone");

  const double reference = BenchClock::Median(pair);
  std::printf("Connection directory, median of %d rounds (%d pairs, %d round trips, %d lookups per round)\n", rounds,
              kPairsPerRound, trips, kFindsPerRound);
  const auto line = [reference](const std::string& what, double seconds) {
    std::printf("  %-42s %9.2f us   ratio %7.2f\n", what.c_str(), seconds * 1e6, seconds / reference);
  };
  line("Lock/Unlock pair (the reference)", reference);
  line("round trip, " + std::to_string(kPayload) + "-byte payload", BenchClock::Median(trip));
  line("FindConnectionFormat, last of " + std::to_string(filled), BenchClock::Median(findLast));
  line("FindConnectionFormat, absent, " + std::to_string(filled) + " listed", BenchClock::Median(findAbsent));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--echo") == 0)
    return Echo(static_cast<DWORD>(std::strtoul(argv[2], nullptr, 10)));
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
  const int trips = argc > 2 ? std::atoi(argv[2]) : 200;
  if (rounds <= 0 || trips <= 0) {
    std::fprintf(stderr, "usage: lumen_lcd_bench [rounds] [round trips per round]\n");
    return 2;
  }
  return Run(rounds, trips);
}
