// A second participant of the connection directory for the Wine suite.
//   lumen_lcd_child add NAME REALM FORMAT  exits 0 when the entry was added
//   lumen_lcd_child hold                   takes the lock and exits holding it
//   lumen_lcd_child stress INDEX COUNT MILLISECONDS GO_EVENT
//       lists lumen-stress-INDEX, waits for the named event, then for MILLISECONDS
//       sends to the other participants, collects what is addressed to it and now
//       and then leaves the list and rejoins it. Prints its counts and exits 0, or
//       4 with the reason on standard error when a message or the list is wrong.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "connections/win32/Win32LcdAccessor.h"
#include "tests/wine/helpers/LcdStressMessage.h"

namespace {

using SASM::Win32LcdAccessor;
namespace LcdStress = SASM::LcdStress;

constexpr int kDone = 0;
constexpr int kRefused = 1;
constexpr int kNotOpen = 2;
constexpr int kUsage = 3;
constexpr int kWrong = 4;
constexpr int kNoStart = 5;

constexpr DWORD kStartWait = 20000;
constexpr uint32_t kRealm = 0;
constexpr int32_t kStoredFormat = '4';  // reads back as 4
constexpr int32_t kExpectedFormat = 4;
// From version 11 on a mismatched message is cleared rather than left in the slot.
constexpr int32_t kSenderVersion = 11;

class StressParticipant {
 public:
  StressParticipant(Win32LcdAccessor& lcd, uint32_t index, uint32_t count)
      : lcd_(lcd), index_(index), count_(count), name_(LcdStress::ParticipantName(static_cast<int>(index))) {}

  int Run(HANDLE go, DWORD milliseconds) {
    if (!lcd_.TryAddConnection(name_.c_str(), kRealm, kRealm, kStoredFormat)) {
      Fail("first listing refused");
      return kWrong;
    }
    if (WaitForSingleObject(go, kStartWait) != WAIT_OBJECT_0) return kNoStart;
    if (!Work(milliseconds)) return kWrong;
    std::printf("sent=%u received=%u unanswered=%u busy=%u churns=%u pruned=%u\n", sent_, received_, unanswered_, busy_,
                churns_, pruned_);
    return kDone;
  }

 private:
  bool Work(DWORD milliseconds) {
    const ULONGLONG deadline = GetTickCount64() + milliseconds;
    bool listed = true;
    for (uint32_t turn = 0; GetTickCount64() < deadline; ++turn) {
      if (!Collect()) return false;
      // Off the list for one turn now and then: senders meanwhile hear "no such target".
      if (turn % 50 == 49) {
        if (!lcd_.RemoveConnection(name_.c_str(), kRealm)) return Fail("own entry was gone");
        listed = false;
        ++churns_;
      } else if (!listed) {
        if (!lcd_.TryAddConnection(name_.c_str(), kRealm, kRealm, kStoredFormat)) return Fail("relisting refused");
        listed = true;
      }
      if (!Send(turn)) return false;
      if (lcd_.PruneDeadMessage()) ++pruned_;
    }
    // Leave first, so that nothing new can be addressed here, then take what already was.
    if (listed && !lcd_.RemoveConnection(name_.c_str(), kRealm)) return Fail("own entry was gone");
    if (!Collect()) return false;
    if (lcd_.FindConnectionFormat(name_.c_str(), kRealm) != 0) return Fail("a second entry of this name");
    return true;
  }

  bool Fail(const char* why) {
    std::fprintf(stderr, "%s: %s\n", name_.c_str(), why);
    return false;
  }

  // Takes the message in the slot if it is addressed here, checked under one hold.
  bool Collect() {
    if (lcd_.Lock() < 1) return Fail("lock not obtained");
    bool good = true;
    char target[Win32LcdAccessor::kTargetBufferSize];
    if (lcd_.GetMessageTarget(target, sizeof target) && name_ == target) {
      const uint8_t* data = nullptr;
      int32_t size = 0;
      std::string named;
      LcdStress::Fields fields{};
      if (!lcd_.GetMessageData(&data, &size) || !LcdStress::Decode(data, static_cast<size_t>(size), &named, &fields) ||
          fields.receiver != index_ || fields.sender >= count_ || fields.sender == index_) {
        good = Fail("a damaged message");
      } else if (fields.sequence != expected_[fields.sender]) {
        std::fprintf(stderr, "%s: from %u got %u, expected %u\n", name_.c_str(), fields.sender, fields.sequence,
                     expected_[fields.sender]);
        good = false;
      } else {
        ++expected_[fields.sender];
        ++received_;
        lcd_.ClearMessage();
      }
    }
    lcd_.Unlock();
    return good;
  }

  // The others in turn, and every sixteenth turn a name nobody lists.
  bool Send(uint32_t turn) {
    const bool absent = turn % 16 == 15;
    const uint32_t receiver = absent ? LcdStress::kMaxParticipants : (index_ + 1 + turn % (count_ - 1)) % count_;
    const std::string target = absent ? LcdStress::kAbsentName : LcdStress::ParticipantName(static_cast<int>(receiver));
    const std::vector<uint8_t> message =
        LcdStress::Encode(target, {index_, receiver, absent ? 0 : sequence_[receiver]});
    switch (lcd_.DispatchMessage(message.data(), static_cast<int32_t>(message.size()), kSenderVersion, kExpectedFormat,
                                 kRealm)) {
      case 0:
        ++busy_;
        return true;
      case 1:
        if (absent) return Fail("a message to nobody was posted");
        ++sequence_[receiver];
        ++sent_;
        return true;
      case 2:
        ++unanswered_;
        return true;
      default:
        return Fail("unknown dispatch result");
    }
  }

  Win32LcdAccessor& lcd_;
  const uint32_t index_;
  const uint32_t count_;
  const std::string name_;
  uint32_t sequence_[LcdStress::kMaxParticipants] = {};  // next to send, per receiver
  uint32_t expected_[LcdStress::kMaxParticipants] = {};  // next to receive, per sender
  unsigned sent_ = 0, received_ = 0, unanswered_ = 0, busy_ = 0, churns_ = 0, pruned_ = 0;
};

int RunStress(Win32LcdAccessor& lcd, int argc, char** argv) {
  if (argc != 6) return kUsage;
  const auto index = static_cast<uint32_t>(std::strtoul(argv[2], nullptr, 10));
  const auto count = static_cast<uint32_t>(std::strtoul(argv[3], nullptr, 10));
  const auto milliseconds = static_cast<DWORD>(std::strtoul(argv[4], nullptr, 10));
  if (count < 2 || count > LcdStress::kMaxParticipants || index >= count) return kUsage;
  SASM::ScopedHandle go(OpenEventA(SYNCHRONIZE, FALSE, argv[5]));
  if (!go) return kNoStart;
  return StressParticipant(lcd, index, count).Run(go.get(), milliseconds);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return kUsage;
  Win32LcdAccessor lcd;
  if (!lcd.IsOpen()) return kNotOpen;
  if (std::strcmp(argv[1], "add") == 0 && argc == 5) {
    const auto realm = static_cast<uint32_t>(std::strtoul(argv[3], nullptr, 10));
    const auto format = static_cast<int32_t>(std::strtol(argv[4], nullptr, 10));
    return lcd.TryAddConnection(argv[2], realm, realm, format) ? kDone : kRefused;
  }
  if (std::strcmp(argv[1], "hold") == 0) {
    // The accessor closes its handles on the way out but never releases a hold,
    // so the thread ends owning the mutex.
    return lcd.Lock() == 1 ? kDone : kRefused;
  }
  if (std::strcmp(argv[1], "stress") == 0) {
    const int result = RunStress(lcd, argc, argv);
    std::fflush(stdout);
    return result;
  }
  return kUsage;
}
