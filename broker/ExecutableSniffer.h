#pragma once
// The write path of a file cookie, with the sniffing that keeps executable
// images off the disk. A Portable Executable image is told by ten bytes: "M"
// and "Z" at 0 and 1, the header offset at 60 to 63, and "P", "E", 0, 0 at
// that offset. Only the first write through a cookie is judged: it sees its
// own slice and, after a seek, what the file already holds before it. A file
// found to be an image is deleted and the write refused.
#include <cstdint>
#include <vector>

#include "broker/BrokerCookieRecord.h"
#include "broker/BrokerFilePlatform.h"

namespace SASM {

class ExecutableSniffer {
 public:
  static constexpr int32_t kHeaderOffsetPosition = 60;
  // The header offset is known once the judged bytes reach this far.
  static constexpr uint32_t kHeaderOffsetEnd = 64;

  explicit ExecutableSniffer(BrokerFilePlatform& files) : files_(files) {}

  // Judges the slice if the record's sniffing asks for it, then writes it or
  // refuses it. `handle` is the one the record resolved to; numWritten is what
  // WriteFile reported. Returns the method's HRESULT.
  int32_t WriteSlice(BrokerCookieRecord& record, BrokerFilePlatform::Handle handle, const uint8_t* data,
                     uint32_t length, uint32_t& numWritten);

 private:
  // Where the byte of a position was found.
  enum class Source { kSlice, kPrior, kReadBack, kNowhere };

  struct Judgement {
    BrokerCookieRecord& record;
    const uint8_t* data;
    uint32_t length;
    const std::vector<uint8_t>& readBack;
    uint32_t prior;
  };

  // Reads the seekBase bytes in front of the slice through a second handle.
  // Errors only set the result; the judgement goes on with what was read.
  int32_t ReadBack(BrokerCookieRecord& record, BrokerFilePlatform::Handle handle, std::vector<uint8_t>& bytes);
  static void Judge(Judgement& judgement);
  static Source Locate(const Judgement& judgement, int64_t position, uint8_t& byte);
  // A test for an expected byte: the verdict goes to `verdict` unless the
  // position can't be seen at all.
  static void Want(Judgement& judgement, int64_t position, uint8_t expected, int slot, uint8_t& verdict);
  // A test that keeps whatever byte is there.
  static void Keep(Judgement& judgement, int64_t position, int slot);
  // Deletes the image: closes the handle and, if that worked, the file goes.
  void Refuse(BrokerCookieRecord& record, BrokerFilePlatform::Handle handle);

  BrokerFilePlatform& files_;
};

}  // namespace SASM
