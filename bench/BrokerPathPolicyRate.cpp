// Calls per second of BrokerIsWritablePath through a live broker server, and
// of IsWritableDataPath on a path policy in this process over the real
// platform, each for a path the policy allows and one it refuses. The round
// trip of BrokerSaveDialog, a placeholder that returns at once, is measured in
// the same run as the reference: what COM alone costs a call. Prints the
// medians of a few rounds and the ratios. Registers the server and the test
// proxy for the run and removes both.
//
// Run from the build's bin directory under Wine:
//   $WINE lumen_path_bench.exe [calls per round] [rounds]
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/BenchBrokerSession.h"
#include "bench/BenchClock.h"
#include "broker/BrokerPathPolicy.h"
#include "broker/win32/Win32PathPlatform.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/WideText.h"

using namespace SASM;

namespace {

using Session = BenchBrokerSession;

struct Subject {
  const char* label;
  std::wstring path;
  bool writable;
};

// Calls per second of one call made count times; false when an answer is not the expected one.
template <typename Call>
bool Rate(int count, Call call, double& rate) {
  const double start = BenchClock::Seconds();
  for (int i = 0; i < count; ++i) {
    if (!call()) return false;
  }
  rate = count / (BenchClock::Seconds() - start);
  return true;
}

// A file the broker may write in the session's directory, and the same name in the system directory.
std::vector<Subject> Subjects(const std::wstring& directory) {
  wchar_t system[MAX_PATH];
  if (directory.empty() || GetSystemDirectoryW(system, MAX_PATH) == 0) return {};
  return {{"allowed", directory + L"\\settings.sol", true},
          {"refused", std::wstring(system) + L"\\settings.sol", false}};
}

int Run(int calls, int rounds) {
  Session session;
  const std::vector<Subject> subjects = Subjects(session.PlayerDataDirectory());
  if (subjects.empty()) return 2;
  if (!session.ready()) {
    std::fprintf(stderr, "the test proxy did not register\n");
    return 2;
  }

  Win32PathPlatform platform;
  BrokerPathPolicy policy(platform, true);
  std::vector<double> reference;
  std::vector<std::vector<double>> viaBroker(subjects.size()), inProcess(subjects.size());
  bool ok = true;
  {
    ComPtr<ILumenBroker6> broker;
    if (FAILED(Session::Activate(broker))) {
      std::fprintf(stderr, "the broker could not be activated\n");
      return 2;
    }
    ScopedBstr empty(L"");
    auto saveDialog = [&] {
      ULONG cookie = 0;
      ScopedBstr chosen;
      return broker->BrokerSaveDialog(0, empty.get(), &cookie, chosen.receive()) == E_NOTIMPL;
    };
    std::vector<ScopedBstr> names;
    std::vector<std::u16string> texts;
    for (const Subject& subject : subjects) {
      names.emplace_back(subject.path.c_str());
      texts.push_back(FromWide(subject.path.c_str()));
    }

    // The first round warms the server, the proxy and the policy's roots; it isn't counted.
    for (int round = 0; round <= rounds && ok; ++round) {
      double rate = 0;
      ok = Rate(calls, saveDialog, rate);
      if (round > 0) reference.push_back(rate);
      for (size_t s = 0; s < subjects.size() && ok; ++s) {
        const Subject& subject = subjects[s];
        const HRESULT expected = subject.writable ? S_OK : E_FAIL;
        const char16_t* path = texts[s].c_str();
        auto viaCom = [&] { return broker->BrokerIsWritablePath(names[s].get(), 1) == expected; };
        auto here = [&] { return policy.IsWritableDataPath(path, true, nullptr) == subject.writable; };
        ok = Rate(calls, viaCom, rate);
        if (round > 0) viaBroker[s].push_back(rate);
        ok = ok && Rate(calls, here, rate);
        if (round > 0) inProcess[s].push_back(rate);
      }
    }
  }
  const bool ended = Session::ServersEnded();
  if (!ok) {
    std::fprintf(stderr, "a call gave an unexpected answer\n");
    return 1;
  }

  constexpr double kMicro = 1e6;
  const double referenceRate = BenchClock::Median(reference);
  std::printf(
      "BrokerIsWritablePath through COM against IsWritableDataPath in this process,\n"
      "median of %d rounds of %d calls each\n",
      rounds, calls);
  std::printf("  reference: BrokerSaveDialog round trip %9.0f calls/s %9.2f us\n", referenceRate,
              kMicro / referenceRate);
  for (size_t s = 0; s < subjects.size(); ++s) {
    const double broker = BenchClock::Median(viaBroker[s]), local = BenchClock::Median(inProcess[s]);
    std::printf("  %s %ls\n", subjects[s].label, subjects[s].path.c_str());
    std::printf("    broker     %9.0f calls/s %9.2f us   ratio to reference %.4f\n", broker, kMicro / broker,
                broker / referenceRate);
    std::printf("    in-process %9.0f calls/s %9.2f us   ratio broker/in-process %.4f\n", local, kMicro / local,
                broker / local);
  }
  if (!ended) std::fprintf(stderr, "a server was still running at the end\n");
  return ended ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  int calls = argc > 1 ? std::atoi(argv[1]) : 500;
  int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
  if (calls <= 0 || rounds <= 0) {
    std::fprintf(stderr, "usage: lumen_path_bench [calls per round] [rounds]\n");
    return 2;
  }
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
  int result = Run(calls, rounds);
  CoUninitialize();
  return result;
}
