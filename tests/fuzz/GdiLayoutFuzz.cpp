// The print relay's byte-layout checks under arbitrary arrays, counts and
// flags: every method that takes arrays runs over the recording stub, which
// reads from each pointer what GDI would read. No array may stay accessed and
// no brush or pen may be left behind, whatever the answer.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "broker/BrokerPrintMethods.h"
#include "tests/fakes/RecordingPrintRelayPlatform.h"

using namespace SASM;

namespace {

class Input {
 public:
  Input(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  uint32_t U32() {
    uint32_t value = 0;
    size_t n = size_ < 4 ? size_ : 4;
    std::memcpy(&value, data_, n);
    Skip(n);
    return value;
  }
  uint8_t U8() {
    uint8_t value = size_ ? data_[0] : 0;
    Skip(size_ ? 1 : 0);
    return value;
  }
  // A length-prefixed array; shape bits from `shape` make some malformed, and 0xFF is a null array.
  PrintRelayPlatform::ByteArray Array(RecordingPrintRelayPlatform& gdi) {
    uint8_t shape = U8();
    if (shape == 0xFF) return nullptr;
    uint16_t length = static_cast<uint16_t>(U8() | U8() << 8);
    if (length > size_) length = static_cast<uint16_t>(size_);
    std::string bytes(reinterpret_cast<const char*>(data_), length);
    Skip(length);
    return gdi.MakeArray(bytes, shape == 0xFE ? 2 : 1, shape == 0xFD ? 2 : 1, shape == 0xFC ? 1 : 0);
  }

 private:
  void Skip(size_t n) {
    data_ += n;
    size_ -= n;
  }
  const uint8_t* data_;
  size_t size_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input in(data, size);
  RecordingPrintRelayPlatform gdi;
  BrokerPrintMethods print(gdi);
  const uint32_t dc = RecordingPrintRelayPlatform::kDc;
  uint8_t method = in.U8() % 9;
  uint32_t count = in.U32();
  uint32_t options = in.U32();
  uint8_t flags = in.U8();
  // Counts near the arrays' lengths are the interesting ones; the limit itself is checked too.
  if (!(flags & 0x80)) count %= 0x2100;
  uint32_t rc = 0, cx = 0, cy = 0, font = 0, x = 1, y = 2;
  switch (method) {
    case 0: print.AddRectangle(dc, in.Array(gdi), 0xFF); break;
    case 1: {
      auto t = in.Array(gdi), s = in.Array(gdi), bits = in.Array(gdi), header = in.Array(gdi);
      print.PathToBitmapFill(dc, t, s, bits, header, flags & 1);
      break;
    }
    case 2: {
      auto t = in.Array(gdi), s = in.Array(gdi), bits = in.Array(gdi), header = in.Array(gdi);
      print.PathToTransparentBitmapFill(dc, t, s, bits, header, 0xFF, options);
      break;
    }
    case 3: print.PolyBezierTo(dc, in.Array(gdi), count); break;
    case 4:
    case 5: {
      auto rect = in.Array(gdi), text = in.Array(gdi), spacing = in.Array(gdi);
      if (method == 4)
        print.ExtTextOutA(dc, 1, 2, options, flags & 1, rect, text, count, flags & 2, spacing, &rc);
      else
        print.ExtTextOutW(dc, 1, 2, options, flags & 1, rect, text, count, flags & 2, spacing, &rc);
      break;
    }
    case 6:
      if (flags & 1)
        print.GetTextExtentPoint32A(dc, in.Array(gdi), count, &cx, &cy);
      else
        print.GetTextExtentPoint32W(dc, in.Array(gdi), count, &cx, &cy);
      break;
    case 7:
      // The font is the client's to delete.
      if (print.CreateFontFromBytes(in.Array(gdi), &font) == 0) gdi.DeleteObject(font);
      print.SetWorldTransform(dc, in.Array(gdi), &rc);
      break;
    case 8: print.DPtoLP(dc, &x, &y, count, &rc); break;
  }
  if (gdi.LockedArrays() != 0 || gdi.LiveObjects() != 0 || gdi.Selected() != RecordingPrintRelayPlatform::kOriginal)
    __builtin_trap();
  return 0;
}
