// Throughput of BrokerWriteFile and BrokerReadFile in 64 KiB slices through a
// live broker server, against the raw transfer of the same slices through a
// bench-only server of the same interface whose methods only move the arrays
// (this program, started by COM), measured in the same run. Prints the medians
// of a few rounds and the broker's share of the raw rate; WriteFile and
// ReadFile in this process are printed for information. Registers the server
// and the test proxy for the run and removes both, with every file it made.
//
// Run from the build's bin directory under Wine:
//   $WINE lumen_file_bench.exe [MiB per round] [rounds]
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/BenchBrokerSession.h"
#include "bench/BenchClock.h"
#include "bench/BenchEchoServer.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/ScopedSafeArray.h"

using namespace SASM;

namespace {

constexpr ULONG kSlice = 64 * 1024;

using Session = BenchBrokerSession;

struct Rates {
  double write;
  double read;
};

// One round through the broker: the file written slice by slice, then read
// back. Each round truncates what the last one wrote.
bool BrokerRound(ILumenBroker6& broker, const std::wstring& path, const std::vector<uint8_t>& content, Rates& rates) {
  ScopedBstr name(path.c_str());
  ULONG cookie = 0;
  ScopedSafeArray slice(SafeArrayCreateVector(VT_UI1, 0, kSlice));
  void* data = nullptr;
  if (!slice || FAILED(SafeArrayAccessData(slice.get(), &data))) return false;
  std::memcpy(data, content.data(), kSlice);
  SafeArrayUnaccessData(slice.get());

  double start = BenchClock::Seconds();
  if (FAILED(broker.BrokerCreateFile(name.get(), 0, 1, &cookie))) return false;
  for (size_t at = 0; at < content.size(); at += kSlice) {
    ULONG written = 0;
    if (FAILED(broker.BrokerWriteFile(cookie, slice.get(), &written)) || written != kSlice) return false;
  }
  broker.BrokerCloseHandle(cookie);
  rates.write = static_cast<double>(content.size()) / (BenchClock::Seconds() - start);

  start = BenchClock::Seconds();
  if (FAILED(broker.BrokerCreateFile(name.get(), 1, 0, &cookie))) return false;
  size_t total = 0;
  for (;;) {
    ScopedSafeArray reply;
    ULONG read = 0;
    if (FAILED(broker.BrokerReadFile(cookie, kSlice, &read, reply.receive()))) return false;
    if (read == 0) break;
    total += read;
  }
  broker.BrokerCloseHandle(cookie);
  rates.read = static_cast<double>(content.size()) / (BenchClock::Seconds() - start);
  return total == content.size();
}

// The same slices through the bench server's methods, which only move them.
bool RawRound(ILumenBroker6& echo, const std::vector<uint8_t>& content, Rates& rates) {
  ScopedSafeArray slice(SafeArrayCreateVector(VT_UI1, 0, kSlice));
  if (!slice) return false;
  double start = BenchClock::Seconds();
  for (size_t at = 0; at < content.size(); at += kSlice) {
    ULONG written = 0;
    if (FAILED(echo.BrokerWriteFile(1, slice.get(), &written)) || written != kSlice) return false;
  }
  rates.write = static_cast<double>(content.size()) / (BenchClock::Seconds() - start);
  start = BenchClock::Seconds();
  for (size_t at = 0; at < content.size(); at += kSlice) {
    ScopedSafeArray reply;
    ULONG read = 0;
    if (FAILED(echo.BrokerReadFile(1, kSlice, &read, reply.receive())) || read != kSlice) return false;
  }
  rates.read = static_cast<double>(content.size()) / (BenchClock::Seconds() - start);
  return true;
}

// The same round with the file functions of this process.
bool ReferenceRound(const std::wstring& path, const std::vector<uint8_t>& content, Rates& rates) {
  std::vector<uint8_t> buffer(kSlice);
  double start = BenchClock::Seconds();
  {
    ScopedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                  FILE_FLAG_RANDOM_ACCESS, nullptr));
    if (!file) return false;
    for (size_t at = 0; at < content.size(); at += kSlice) {
      DWORD written = 0;
      if (!WriteFile(file.get(), content.data(), kSlice, &written, nullptr) || written != kSlice) return false;
    }
  }
  rates.write = static_cast<double>(content.size()) / (BenchClock::Seconds() - start);

  start = BenchClock::Seconds();
  size_t total = 0;
  {
    ScopedHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) return false;
    for (;;) {
      DWORD read = 0;
      if (!ReadFile(file.get(), buffer.data(), kSlice, &read, nullptr)) return false;
      if (read == 0) break;
      total += read;
    }
  }
  rates.read = static_cast<double>(content.size()) / (BenchClock::Seconds() - start);
  return total == content.size();
}

int Run(size_t mebibytes, int rounds) {
  std::vector<uint8_t> content(mebibytes * 1024 * 1024);
  for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<uint8_t>(i * 13 + 1);
  Session session;
  const std::wstring directory = session.PlayerDataDirectory();
  if (directory.empty()) return 2;
  if (!session.ready()) {
    std::fprintf(stderr, "the test proxy did not register\n");
    return 2;
  }

  std::vector<double> brokerWrite, brokerRead, rawWrite, rawRead, referenceWrite, referenceRead;
  bool ok = true;
  // The raw rounds first: while a broker server runs, activation goes to it.
  wchar_t self[MAX_PATH];
  std::wstring selfPath(self, GetModuleFileNameW(nullptr, self, MAX_PATH));
  if (!BenchEchoServer::SetServerPath(selfPath)) {
    std::fprintf(stderr, "the bench server could not be registered\n");
    return 2;
  }
  {
    ComPtr<ILumenBroker6> echo;
    ok = SUCCEEDED(Session::Activate(echo));
    for (int round = 0; round <= rounds && ok; ++round) {
      Rates raw{};
      ok = RawRound(*echo.get(), content, raw);
      if (round == 0) continue;
      rawWrite.push_back(raw.write);
      rawRead.push_back(raw.read);
    }
  }
  ok = BenchEchoServer::OthersEnded() && BenchEchoServer::SetServerPath(Session::BinaryDirectory() + L"\\LumenUtilHost.exe") && ok;
  if (!ok) {
    std::fprintf(stderr, "the bench server's rounds failed\n");
    return 2;
  }
  {
    ComPtr<ILumenBroker6> broker;
    if (FAILED(Session::Activate(broker))) {
      std::fprintf(stderr, "the broker could not be activated\n");
      return 2;
    }
    // The first round warms the server, the proxy and the file cache; it isn't counted.
    for (int round = 0; round <= rounds && ok; ++round) {
      Rates viaBroker{}, inProcess{};
      ok = BrokerRound(*broker.get(), directory + L"\\broker.dat", content, viaBroker) &&
           ReferenceRound(directory + L"\\reference.dat", content, inProcess);
      if (round == 0) continue;
      brokerWrite.push_back(viaBroker.write);
      brokerRead.push_back(viaBroker.read);
      referenceWrite.push_back(inProcess.write);
      referenceRead.push_back(inProcess.read);
    }
  }
  DeleteFileW((directory + L"\\broker.dat:Zone.Identifier").c_str());
  DeleteFileW((directory + L"\\broker.dat").c_str());
  DeleteFileW((directory + L"\\reference.dat").c_str());
  bool ended = Session::ServersEnded();
  if (!ok) {
    std::fprintf(stderr, "a round failed\n");
    return 1;
  }

  constexpr double kMegabyte = 1e6;
  std::printf("%zu MiB per round in %lu KiB slices, median of %d rounds\n", mebibytes,
              static_cast<unsigned long>(kSlice / 1024), rounds);
  auto line = [](const char* what, const std::vector<double>& broker, const std::vector<double>& raw,
                 const std::vector<double>& local) {
    const double b = BenchClock::Median(broker), r = BenchClock::Median(raw), l = BenchClock::Median(local);
    std::printf("  %-5s  broker %8.1f MB/s   raw transfer %8.1f MB/s   ratio %.3f (goal >= 0.9)   in-process %8.1f MB/s\n",
                what, b / kMegabyte, r / kMegabyte, b / r, l / kMegabyte);
  };
  line("write", brokerWrite, rawWrite, referenceWrite);
  line("read", brokerRead, rawRead, referenceRead);
  if (!ended) std::fprintf(stderr, "a server was still running at the end\n");
  return ended ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  // COM starts this program as the bench server.
  if (argc > 1 && (std::strcmp(argv[1], "-Embedding") == 0 || std::strcmp(argv[1], "/Embedding") == 0))
    return BenchEchoServer::Run();
  size_t mebibytes = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 16;
  int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
  if (mebibytes == 0 || rounds <= 0) {
    std::fprintf(stderr, "usage: lumen_file_bench [MiB per round] [rounds]\n");
    return 2;
  }
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
  int result = Run(mebibytes, rounds);
  CoUninitialize();
  return result;
}
