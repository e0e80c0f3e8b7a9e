// The first write through a file cookie is judged for an executable image;
// everything after it is written unexamined.
#include <gtest/gtest.h>

#include <string>

#include "broker/ExecutableSniffer.h"
#include "tests/fakes/FakeBrokerFilePlatform.h"

using namespace SASM;
using OpenCall = FakeBrokerFilePlatform::OpenCall;

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
  EXPECT_EQ(record.sniffActive, 0);
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

TEST_F(SnifferTest, AShortMZSliceLeavesTheHeaderOffsetZeroAndEndsTheSniffing) {
  std::string image = Image();
  // Position 0 then wants "P", sees "M", and the chain ends there.
  EXPECT_EQ(Write(image.substr(0, 40)), 0);
  EXPECT_EQ(record.peOffset, 0);
  EXPECT_EQ(record.sniffActive, 0);
  EXPECT_EQ(Write(image.substr(40)), 0);
  EXPECT_EQ(files.Content(kPath), image);
}

TEST_F(SnifferTest, AOneByteFirstWriteEndsTheSniffingWhateverItIs) {
  EXPECT_EQ(Write("X"), 0);
  EXPECT_EQ(record.sniffActive, 0);
  EXPECT_EQ(record.sniffBytes[0], 0);

  // An "M" alone passes its own test, but the byte behind it can't be "Z".
  OpenCookie();
  EXPECT_EQ(Write("M"), 0);
  EXPECT_EQ(record.sniffActive, 0);
  EXPECT_EQ(record.sniffBytes[0], 'M');
  EXPECT_EQ(record.sniffBytes[1], 0);
}

TEST_F(SnifferTest, AnImageWithANonZeroFourthHeaderByteOrABrokenSignaturePasses) {
  std::string image = Image(0x80, 0x200, 1);
  EXPECT_EQ(Write(image), 0);
  EXPECT_EQ(files.Content(kPath), image);
  EXPECT_EQ(record.executableSeen, 0);
  EXPECT_EQ(record.sniffActive, 0);

  OpenCookie();
  std::string notPe = Image();
  notPe[0x81] = 'X';
  EXPECT_EQ(Write(notPe), 0);
  // A real image written next through the same cookie isn't examined.
  EXPECT_EQ(Write(Image()), 0);
  EXPECT_EQ(files.Content(kPath), notPe + Image());
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
  // The read-back opened the file a second time, for reading, and had to
  // share writing with the cookie's own handle.
  ASSERT_GE(files.Opens().size(), 3u);
  const OpenCall first{kPath, FileAccess::kGenericRead, FileShare::kRead, FileDisposition::kOpenExisting,
                       FileFlag::kSequentialScan};
  EXPECT_EQ(files.Opens()[1], first);
  EXPECT_EQ(files.Opens()[2].shareMode, FileShare::kReadWrite);
}

TEST_F(SnifferTest, TheSliceIsWrittenFromTheStartOfTheFile) {
  // The read-back moves the cookie's own file pointer back to 0 first.
  files.AddFile(kPath, std::string(100, 'A'));
  Seek(50);
  EXPECT_EQ(Write("BB"), 0);
  EXPECT_EQ(files.Content(kPath), "BB" + std::string(98, 'A'));
  EXPECT_EQ(record.writePosition, 2u);
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

TEST_F(SnifferTest, SlotsKeptFromAnEarlierWriteAnswerThePositionsBeforeIt) {
  // A record whose sniffing survived a write of "MZ" (only a hand-made state
  // gets here): the slots stand in for the bytes that slice had.
  std::string image = Image();
  files.AddFile(kPath, "MZ");
  uint32_t error = 0;
  files.SetFilePointer(handle, 2, FileMoveMethod::kBegin, error);
  record.sniffBytes[0] = 'M';
  record.sniffBytes[1] = 'Z';
  record.writePosition = 2;
  record.lastWriteSize = 2;
  EXPECT_EQ(Write(image.substr(2)), kFail);
  EXPECT_FALSE(files.Exists(kPath));

  OpenCookie();
  record.sniffBytes[0] = 'X';
  record.writePosition = 2;
  record.lastWriteSize = 2;
  EXPECT_EQ(Write(image.substr(2)), 0);
}

TEST_F(SnifferTest, AfterTheJudgedWriteSlicesGoStraightToTheFileAndAFailureStillMovesThePosition) {
  EXPECT_EQ(Write("hello"), 0);
  size_t opens = files.Opens().size();
  EXPECT_EQ(Write(" world"), 0);
  EXPECT_EQ(files.SetPointerCalls(), 0);
  EXPECT_EQ(files.Opens().size(), opens);
  EXPECT_EQ(files.Content(kPath), "hello world");
  EXPECT_EQ(record.writePosition, 11u);
  EXPECT_EQ(record.lastWriteSize, 6u);

  OpenCookie();
  files.FailWrites(112);
  EXPECT_EQ(Write("hello"), static_cast<int32_t>(0x80070070));
  EXPECT_EQ(written, 0u);
  EXPECT_EQ(record.writePosition, 5u);
  EXPECT_EQ(record.lastWriteSize, 5u);
}

TEST_F(SnifferTest, AnImageIsKeptWhenItsHandleCannotBeClosed) {
  files.FailCloses(true);
  EXPECT_EQ(Write(Image()), kFail);
  EXPECT_TRUE(files.Exists(kPath));
  EXPECT_EQ(record.handle, handle);
  EXPECT_TRUE(files.Deletes().empty());
}
