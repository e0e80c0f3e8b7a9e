// Throughput of BrokerWriteFile and BrokerReadFile in 64 KiB slices through a
// live broker server, against WriteFile and ReadFile of the same slices in
// this process, measured in the same run. Prints the medians of a few rounds
// and the broker's share of the in-process rate. Registers the server and the
// test proxy for the run and removes both, with every file it made.
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

  std::vector<double> brokerWrite, brokerRead, referenceWrite, referenceRead;
  bool ok = true;
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
  std::printf("  write  broker %8.1f MB/s   in-process %8.1f MB/s   ratio %.4f\n",
              BenchClock::Median(brokerWrite) / kMegabyte, BenchClock::Median(referenceWrite) / kMegabyte,
              BenchClock::Median(brokerWrite) / BenchClock::Median(referenceWrite));
  std::printf("  read   broker %8.1f MB/s   in-process %8.1f MB/s   ratio %.4f\n",
              BenchClock::Median(brokerRead) / kMegabyte, BenchClock::Median(referenceRead) / kMegabyte,
              BenchClock::Median(brokerRead) / BenchClock::Median(referenceRead));
  if (!ended) std::fprintf(stderr, "a server was still running at the end\n");
  return ended ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
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
