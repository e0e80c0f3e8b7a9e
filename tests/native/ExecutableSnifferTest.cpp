// The first write through a file cookie is judged for an executable image;
// everything after it is written unexamined.
#include <gtest/gtest.h>

#include <string>

#include "broker/ExecutableSniffer.h"
#include "tests/fakes/FakeBrokerFilePlatform.h"

using namespace SASM;

namespace {

constexpr int32_t kFail = static_cast<int32_t>(0x80004005);
constexpr int32_t kOutOfMemory = static_cast<int32_t>(0x8007000E);
const std::u16string kPath = u"C:\\Data\\plugin.dll";

// An image of `size` bytes with its header at `headerOffset`; `fourth` is the
// byte the header's last check wants to be 0.
std::string Image(uint32_t headerOffset = 0x80, size_t size = 0x200, char fourth = 0) {
  std::string bytes(size, '\x90');
  bytes[0] = 'M';
  bytes[1] = 'Z';
  for (size_t i = 0; i < 4 && 60 + i < size; ++i) bytes[60 + i] = static_cast<char>(headerOffset >> (8 * i));
  if (headerOffset + 3 < size) {
    bytes[headerOffset] = 'P';
    bytes[headerOffset + 1] = 'E';
    bytes[headerOffset + 2] = 0;
    bytes[headerOffset + 3] = fourth;
  }
  return bytes;
}

// A cookie as BrokerCreateFile leaves it: the file open for writing, sniffing on.
class SnifferTest : public ::testing::Test {
 protected:
  SnifferTest() {
    files.AddDirectory(u"C:\\Data");
    OpenCookie();
  }

  // A fresh cookie on the same file; the previous one is closed first.
  void OpenCookie() {
    if (files.IsOpen(handle)) files.CloseHandle(handle);
    record = BrokerCookieRecord();
    files.CreateFile(kPath.c_str(), FileAccess::kGenericWrite, FileShare::kRead, FileDisposition::kOpenAlways,
                     FileFlag::kRandomAccess, handle);
    record.handle = handle;
    record.filePath = kPath;
    record.sniffActive = 1;
  }

  // What BrokerSetFilePointer does to the record and the file.
  void Seek(int32_t distance) {
    uint32_t error = 0;
    files.SetFilePointer(handle, distance, FileMoveMethod::kBegin, error);
    record.seekBase = distance;
  }

  int32_t Write(const std::string& bytes) {
    written = 0;
    return sniffer.WriteSlice(record, handle, reinterpret_cast<const uint8_t*>(bytes.data()),
                              static_cast<uint32_t>(bytes.size()), written);
  }

  FakeBrokerFilePlatform files;
  ExecutableSniffer sniffer{files};
  BrokerCookieRecord record;
  BrokerFilePlatform::Handle handle = BrokerFilePlatform::kInvalidHandle;
  uint32_t written = 0;
};

}  // namespace

TEST_F(SnifferTest, AWholeImageInOneWriteIsRefusedAndTheFileDeleted) {
  EXPECT_EQ(Write(Image()), kFail);
  EXPECT_FALSE(files.Exists(kPath));
  EXPECT_EQ(written, 0u);
  EXPECT_EQ(record.executableSeen, 1);
  // The cookie stays, with no handle behind it.
  EXPECT_EQ(record.handle, BrokerCookieRecord::kNoHandle);
  EXPECT_EQ(files.OpenHandles(), 0u);

  // Every later write through that cookie is refused as well, and nothing is deleted again.
  EXPECT_EQ(Write("harmless"), kFail);
  EXPECT_FALSE(files.Exists(kPath));
  EXPECT_EQ(files.Deletes().size(), 1u);
}

TEST_F(SnifferTest, AnImageWhoseHeaderLiesBeyondTheFirstSlicePasses) {
  std::string image = Image();
  EXPECT_EQ(Write(image.substr(0, 64)), 0);
  EXPECT_EQ(record.sniffActive, 0);
  EXPECT_EQ(record.peOffset, 0x80);
  EXPECT_EQ(Write(image.substr(64)), 0);
  EXPECT_EQ(files.Content(kPath), image);
  EXPECT_EQ(record.executableSeen, 0);
}

TEST_F(SnifferTest, AOneByteFirstWriteEndsTheSniffingWhateverItIs) {
  EXPECT_EQ(Write("X"), 0);
  EXPECT_EQ(record.sniffActive, 0);
  EXPECT_EQ(record.sniffBytes[0], 0);
}

TEST_F(SnifferTest, AnImageWithANonZeroFourthHeaderBytePassesAndLaterWritesAreNotExamined) {
  std::string image = Image(0x80, 0x200, 1);
  EXPECT_EQ(Write(image), 0);
  EXPECT_EQ(files.Content(kPath), image);
  EXPECT_EQ(record.executableSeen, 0);
  EXPECT_EQ(record.sniffActive, 0);
  // A real image written next through the same cookie isn't examined.
  EXPECT_EQ(Write(Image()), 0);
  EXPECT_EQ(files.Content(kPath), image + Image());
}

TEST_F(SnifferTest, TheByteJustBehindASliceCountsAsZero) {
  // 63 bytes reach position 63 through the range's upper end, so the header
  // offset is taken with its top byte read as 0, and a header inside the slice
  // is found.
  std::string image = Image(8, 63);
  EXPECT_EQ(Write(image), kFail);
  EXPECT_EQ(record.peOffset, 8);
  EXPECT_FALSE(files.Exists(kPath));
}

TEST_F(SnifferTest, TheBytesBeforeTheSliceAreReadBackFromTheFile) {
  // An earlier cookie left the image's first 64 bytes; this one seeks past them.
  std::string image = Image();
  files.AddFile(kPath, image.substr(0, 64));
  Seek(64);
  EXPECT_EQ(Write(image.substr(64)), kFail);
  EXPECT_FALSE(files.Exists(kPath));
}

TEST_F(SnifferTest, AFailedReadBackBecomesTheResultThoughTheSliceIsWritten) {
  files.AddFile(kPath, std::string(100, 'A'));
  files.FailOpen(kPath, FakeBrokerFilePlatform::kErrorAccessDenied);
  Seek(10);
  EXPECT_EQ(Write("BB"), static_cast<int32_t>(0x80070005));
  EXPECT_EQ(written, 2u);
  EXPECT_EQ(files.Content(kPath).substr(0, 2), "BB");
}

TEST_F(SnifferTest, ANegativeSeekReadsNothingBackAndIsReportedAsNoMemory) {
  files.AddFile(kPath, std::string(100, 'A'));
  uint32_t error = 0;
  files.SetFilePointer(handle, 0, FileMoveMethod::kEnd, error);
  record.seekBase = -10;
  size_t opensBefore = files.Opens().size();
  EXPECT_EQ(Write("BB"), kOutOfMemory);
  EXPECT_EQ(files.Opens().size(), opensBefore);
  EXPECT_EQ(written, 2u);
}

TEST_F(SnifferTest, AfterTheJudgedWriteSlicesGoStraightToTheFileAndAFailureStillMovesThePosition) {
  EXPECT_EQ(Write("hello"), 0);
  size_t opens = files.Opens().size();
  EXPECT_EQ(Write(" world"), 0);
  EXPECT_EQ(files.SetPointerCalls(), 0);
  EXPECT_EQ(files.Opens().size(), opens);
  EXPECT_EQ(files.Content(kPath), "hello world");
  EXPECT_EQ(record.writePosition, 11u);

  OpenCookie();
  files.FailWrites(112);
  EXPECT_EQ(Write("hello"), static_cast<int32_t>(0x80070070));
  EXPECT_EQ(written, 0u);
  EXPECT_EQ(record.writePosition, 5u);
  EXPECT_EQ(record.lastWriteSize, 5u);
}

