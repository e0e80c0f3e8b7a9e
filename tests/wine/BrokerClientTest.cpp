// The broker client as a script runs it: a process of its own against the live
// server, judged by its lines on standard output, standard error and exit code.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/ScopedHandle.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

struct ClientRun {
  DWORD exitCode = 0xDEAD;
  std::string out;
  std::string err;
};

// Standard output and error go to files rather than pipes: a server that COM
// starts from the client could inherit a pipe and hold it open.
ClientRun RunClient(const std::wstring& arguments) {
  const std::wstring directory = WineTest::BinaryDirectory();
  const std::wstring outPath = directory + L"\\client.out", errPath = directory + L"\\client.err";
  ClientRun run;
  {
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    auto capture = [&](const std::wstring& path) {
      return ScopedHandle(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                                      CREATE_ALWAYS, 0, nullptr));
    };
    ScopedHandle out = capture(outPath), err = capture(errPath);
    run.exitCode = WineTest::RunToEnd(L"\"" + directory + L"\\LumenBrokerClient.exe\" " + arguments, 30000,
                                      out.get(), err.get());
  }
  run.out = WineTest::ReadAll(outPath);
  run.err = WineTest::ReadAll(errPath);
  DeleteFileW(outPath.c_str());
  DeleteFileW(errPath.c_str());
  return run;
}

class BrokerClientLive : public WineTest::LiveBrokerTest {
 protected:
  static std::wstring Data() { return WineTest::RoamingFolder() + L"\\Halcyonics\\Lumen Player\\Client"; }
  WineTest::TempTree tree_;
};

}  // namespace

TEST_F(BrokerClientLive, AnswersByHresultAndExitCodeWithOutValuesOneALine) {
  tree_.File(Data() + L"\\50%.sol", "12345");
  const struct {
    std::wstring arguments;
    DWORD exitCode;
    std::string out;
  } kCases[] = {
      {L"brokeriswritablepath \"" + Data() + L"\\settings.sol\" 1", 0, "hresult=0x00000000\n"},
      {L"BrokerIsWritablePath \"" + Data() + L"\\program.exe\" 0x1", 1, "hresult=0x80004005\n"},
      // The leaf name's '%' is escaped so that any text comes back exactly.
      {L"BrokerFindFirstFile \"" + Data() + L"\\*.sol\"", 0,
       "hresult=0x00000000\np_fileLeafName=50%25.sol\np_fileAttrs=32\np_findCookie=1\n"},
  };
  for (const auto& c : kCases) {
    ClientRun run = RunClient(c.arguments);
    EXPECT_EQ(run.exitCode, c.exitCode) << run.err;
    EXPECT_EQ(run.out, c.out);
    EXPECT_EQ(run.err, "");
  }
  // Bad input: one line on standard error and exit code 2.
  ClientRun run = RunClient(L"BrokerIsWritablePath a 0x100000000");
  EXPECT_EQ(run.exitCode, 2u);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
}

TEST_F(BrokerClientLive, ByteArraysGoInAndComeBackAsHex) {
  // A connection held here keeps the directory and names the message's target.
  ComPtr<ILumenBroker6> keeper;
  ASSERT_EQ(Activate(keeper), S_OK);
  ScopedBstr name(L"client");
  ASSERT_EQ(keeper->BrokerLcdTryAddConnection(name.get(), 0, 0, '3'), S_OK);
  // Two-byte-length form: 2, the name's length, the name "client", the payload "hi".
  const std::string message = "020006636c69656e746869";
  ClientRun sent = RunClient(L"BrokerLcdDispatchMessage " + std::wstring(message.begin(), message.end()) + L" 11 3 0");
  EXPECT_EQ(sent.exitCode, 0u) << sent.err;
  ClientRun got = RunClient(L"BrokerLcdGetMessageData");
  EXPECT_EQ(got.exitCode, 0u) << got.err;
  EXPECT_EQ(got.out, "hresult=0x00000000\np_msgData=" + message + "\n");
  EXPECT_EQ(keeper->BrokerLcdRemoveConnection(name.get(), 0), S_OK);
}

// Read from the type library: names, types, directions and defaults as the marshaller sees them.
TEST_F(BrokerClientLive, ListGivesEveryMethodWithItsParameters) {
  ClientRun run = RunClient(L"-list");
  EXPECT_EQ(run.exitCode, 0u) << run.err;
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 102);
  for (const char* line : {
           "BrokerReadFile(p_fileCookie UI4, p_numToRead UI4, out p_numRead UI4, out p_data SAFEARRAY(UI1))",
           "BrokerLcdClearMessage()",
           "BrokerPrintDialog(p_hwnd UI4, inout p_nFromPage UI4, inout p_nToPage UI4, inout p_dwFlags UI4, "
           "out p_hdc UI4)",
           "BrokerGetTextMetrics(dwHDC UI4, out p_VarTextmetricArray VARIANT)",
           "BrokerIsDriveAvailable(p_lpwRootPathName LPWSTR)",
           "BrokerCreateIconPathV2(p_fileName BSTR, out p_iconPath BSTR, [p_overwrite I4 = 0])",
           // A full pointer in a 64-bit library.
           "BrokerMMNotificationClientCreate(sourceProcessHandle LONG_PTR, out lpClientCookie LONG_PTR)",
       })
    EXPECT_NE(run.out.find("\n" + std::string(line) + "\n"), std::string::npos) << line;
}
