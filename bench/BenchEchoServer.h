#pragma once
// A bench-only local server of the broker's class: the same interface, the
// same apartment and the same proxy, but BrokerReadFile and BrokerWriteFile
// only move their arrays. What the broker's file methods cost beyond that is
// what the file benchmark measures.
#include <string>

namespace SASM::BenchEchoServer {

// Serves one object until its last release; COM starts the process with "-Embedding".
int Run();
// Points the served class at this program, or back at the broker's host.
bool SetServerPath(const std::wstring& path);
// Waits for every other copy of this program to end.
bool OthersEnded();

}  // namespace SASM::BenchEchoServer
