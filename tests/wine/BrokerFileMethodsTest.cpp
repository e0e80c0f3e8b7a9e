// The file family through COM against the live server, as a sandboxed player
// reaches it: real files under the player's folders, written, sniffed, read
// back and refused.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "broker/win32/LumenBrokerZoneIdentifier.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedBstr.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/ScopedSafeArray.h"
#include "tests/wine/LiveBrokerTest.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;

namespace {

constexpr HRESULT kFailure = static_cast<HRESULT>(0x80004005);
constexpr HRESULT kBadArgument = static_cast<HRESULT>(0x80070057);

using WineTest::FileExists;
using WineTest::ReadAll;

std::string Pattern(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 7 + i / 251) & 0xFF);
  return bytes;
}

// One client of a fresh server, a working directory under the player data
// root, and a record of every file the server may have made there.
class BrokerFileMethodsLive : public WineTest::LiveBrokerTest {
 protected:
  void SetUp() override {
    LiveBrokerTest::SetUp();
    tree_.Directory(Data());
    ASSERT_EQ(Activate(broker_), S_OK);
  }
  void TearDown() override {
    broker_.reset();
    LiveBrokerTest::TearDown();
    // Writes through the broker leave the internet zone mark beside the file.
    for (const std::wstring& path : made_) {
      DeleteFileW((path + L":Zone.Identifier").c_str());
      DeleteFileW(path.c_str());
    }
  }

  static std::wstring Data() { return WineTest::RoamingFolder() + L"\\Halcyonics\\Lumen Player\\FileFamily"; }
  // A path the server may create; it is removed when the test ends.
  std::wstring Made(const std::wstring& path) {
    made_.push_back(path);
    return path;
  }

  ULONG Create(const std::wstring& path, LONG readOnly, LONG truncate, HRESULT* result) {
    ScopedBstr name(path.c_str());
    ULONG cookie = 0xDEAD;
    *result = broker_->BrokerCreateFile(name.get(), readOnly, truncate, &cookie);
    return cookie;
  }
  HRESULT Write(ULONG cookie, const std::string& bytes, ULONG* written = nullptr) {
    ULONG count = 0;
    HRESULT result = broker_->BrokerWriteFile(cookie, WineTest::ByteArray(bytes).get(), &count);
    if (written) *written = count;
    return result;
  }
  // The array as it came back, and how many of its bytes count.
  HRESULT Read(ULONG cookie, ULONG length, std::string& bytes, ULONG& read) {
    ScopedSafeArray array;
    read = 0xDEAD;
    HRESULT result = broker_->BrokerReadFile(cookie, length, &read, array.receive());
    bytes = WineTest::BytesOf(array.get());
    return result;
  }

  ComPtr<ILumenBroker6> broker_;
  WineTest::TempTree tree_;
  std::vector<std::wstring> made_;
};

}  // namespace

TEST_F(BrokerFileMethodsLive, AFileWrittenUnderThePlayerDataRootReadsBackByteForByteAndIsMarked) {
  const std::wstring path = Made(Data() + L"\\stream.dat");
  const std::string content = Pattern(3 * 65536 + 1234);
  HRESULT result = E_FAIL;
  ULONG writer = Create(path, 0, 1, &result);
  ASSERT_EQ(result, S_OK);
  ASSERT_NE(writer, 0u);
  for (size_t at = 0; at < content.size(); at += 65536) {
    ULONG written = 0;
    ASSERT_EQ(Write(writer, content.substr(at, 65536), &written), S_OK);
    EXPECT_EQ(written, std::min<size_t>(65536, content.size() - at));
  }
  EXPECT_EQ(broker_->BrokerCloseHandle(writer), S_OK);
  uint32_t zone = 0;
  EXPECT_TRUE(LumenBrokerZoneIdentifier::ReadMark(path.c_str(), zone));
  EXPECT_EQ(zone, 3u);

  ULONG reader = Create(path, 1, 0, &result);
  ASSERT_EQ(result, S_OK);
  std::string bytes;
  ULONG read = 0;
  // The array keeps the length asked for; the count says how much of it is the file.
  ASSERT_EQ(Read(reader, static_cast<ULONG>(content.size() + 16), bytes, read), S_OK);
  EXPECT_EQ(read, content.size());
  ASSERT_EQ(bytes.size(), content.size() + 16);
  EXPECT_TRUE(bytes.compare(0, content.size(), content) == 0);
  ULONG position = 0;
  EXPECT_EQ(broker_->BrokerSetFilePointer(reader, 70000, FILE_BEGIN, &position), S_OK);
  EXPECT_EQ(position, 70000u);
  ASSERT_EQ(Read(reader, 8, bytes, read), S_OK);
  EXPECT_EQ(bytes, content.substr(70000, 8));
  EXPECT_EQ(broker_->BrokerCloseHandle(reader), S_OK);

  ScopedBstr name(path.c_str());
  ULONG attributes = 0, c1, c2, a1, a2, w1, w2, sizeLow = 0, sizeHigh = 7;
  ASSERT_EQ(
      broker_->BrokerGetFileAttributesEx(name.get(), &attributes, &c1, &c2, &a1, &a2, &w1, &w2, &sizeLow, &sizeHigh),
      S_OK);
  EXPECT_EQ(attributes & FILE_ATTRIBUTE_DIRECTORY, 0u);
  EXPECT_EQ(sizeLow, content.size());
  EXPECT_EQ(sizeHigh, 0u);
  EXPECT_EQ(broker_->BrokerDeleteFile(name.get()), S_OK);
  EXPECT_FALSE(FileExists(path));
}

TEST_F(BrokerFileMethodsLive, AnImageInOneWriteIsRefusedAndRemoved) {
  const std::wstring path = Made(Data() + L"\\plugin.dll");
  HRESULT result = E_FAIL;
  ULONG writer = Create(path, 0, 1, &result);
  ASSERT_EQ(result, S_OK);
  ULONG written = 99;
  EXPECT_EQ(Write(writer, WineTest::PeImage(), &written), kFailure);
  EXPECT_EQ(written, 0u);
  EXPECT_FALSE(FileExists(path));
  // The cookie outlives its file; closing it is still the client's to do, and once only.
  EXPECT_EQ(broker_->BrokerCloseHandle(writer), S_OK);
  EXPECT_EQ(broker_->BrokerCloseHandle(writer), kBadArgument);
}

TEST_F(BrokerFileMethodsLive, EachClientNumbersItsOwnCookiesFromOne) {
  WineTest::TempTree tree;
  const std::wstring path = Data() + L"\\shared.sol";
  tree.File(path, "both");
  ComPtr<ILumenBroker6> other;
  ASSERT_EQ(Activate(other), S_OK);
  ScopedBstr name(path.c_str());
  ULONG first = 0, second = 0, again = 0;
  ASSERT_EQ(broker_->BrokerCreateFile(name.get(), 1, 0, &first), S_OK);
  ASSERT_EQ(other->BrokerCreateFile(name.get(), 1, 0, &second), S_OK);
  ASSERT_EQ(broker_->BrokerCreateFile(name.get(), 1, 0, &again), S_OK);
  EXPECT_EQ(first, 1u);
  EXPECT_EQ(second, 1u);
  EXPECT_EQ(again, 2u);
  // A number of one table means nothing in the other.
  EXPECT_EQ(other->BrokerCloseHandle(2), kBadArgument);
  EXPECT_EQ(other->BrokerCloseHandle(1), S_OK);
  std::string bytes;
  ULONG read = 0;
  EXPECT_EQ(Read(1, 8, bytes, read), S_OK);
  EXPECT_EQ(bytes.substr(0, read), "both");
  EXPECT_EQ(broker_->BrokerCloseHandle(1), S_OK);
  EXPECT_EQ(broker_->BrokerCloseHandle(2), S_OK);
}

TEST_F(BrokerFileMethodsLive, BesideAWriterThatSharesReadingAReaderGetsInAndAWriterDoesNot) {
  WineTest::TempTree tree;
  const std::wstring path = Data() + L"\\busy.sol";
  tree.File(path, "busy");
  ScopedHandle holder(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(holder);
  HRESULT result = E_FAIL;
  ULONG reader = Create(path, 1, 0, &result);
  EXPECT_EQ(result, S_OK);
  EXPECT_EQ(Create(path, 0, 0, &result), 0u);
  EXPECT_EQ(result, static_cast<HRESULT>(0x80070020));
  EXPECT_EQ(broker_->BrokerCloseHandle(reader), S_OK);
}
