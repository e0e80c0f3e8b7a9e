// MString's conversions and cuts over text and numbers from the input.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "engine/MString.h"

using namespace SASM;

namespace {

bool IsAscii(const MString& text) {
  for (char16_t unit : text.View()) {
    if (unit == 0 || unit >= 0x80) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const std::string bytes = input.ConsumeRandomLengthString(2048);
  const std::string set = input.ConsumeRandomLengthString(8);
  const bool invert = input.ConsumeBool();

  // With a stated length, and as a C string that ends at the first 0.
  const MString raw = MString::FromUtf8(bytes.data(), static_cast<int32_t>(bytes.size()));
  MString measured = MString::FromUtf8(bytes.c_str());
  if (measured.Length() > raw.Length()) std::abort();
  // Copies and cuts end at a 0 unit; the rest works on text without one.
  if (raw.ToLower().Length() > raw.Length() || raw.Substring(0, -1).Length() > raw.Length()) std::abort();
  MString text(raw.View());

  // Narrow and wide forms agree in length; ASCII survives the UTF-8 round trip.
  std::unique_ptr<char[]> narrow(raw.Narrow());
  if (raw.NarrowString().size() != static_cast<size_t>(raw.Length())) std::abort();
  if (std::memcmp(narrow.get(), raw.NarrowString().data(), static_cast<size_t>(raw.Length())) != 0) std::abort();
  const std::string utf8 = raw.ToUtf8();
  if (IsAscii(raw) && !MString::FromUtf8(utf8.data(), static_cast<int32_t>(utf8.size())).Equals(raw)) std::abort();
  if (text.ToLower().Length() != text.Length()) std::abort();
  MString ascii = MString::FromAscii(bytes);
  if (ascii.Length() != static_cast<int32_t>(bytes.size())) std::abort();
  MString wide(text.Data(), input.ConsumeBool() ? input.ConsumeIntegral<int32_t>()
                                                : input.ConsumeIntegralInRange<int32_t>(-1, text.Length() + 2));
  if (wide.Length() > text.Length()) std::abort();
  text.ParseDigits();

  // Scans and cuts, each within the text.
  const int32_t first = text.FindFirst(set.c_str(), invert);
  const int32_t last = text.FindLast(set.c_str(), invert);
  if (first < 0 || first > text.Length() || last < -1 || last >= text.Length()) std::abort();
  MString span = text.SpanUntil(set.c_str(), invert);
  MString tail = text.TailFrom(set.c_str(), invert);
  if (span.Length() != first || (last >= 0 && tail.Length() != text.Length() - last)) std::abort();
  MString from = MString::FromUtf8(set.data(), static_cast<int32_t>(set.size()));
  MString replaced = MString::Replace(text, from, ascii);
  text.StartsWith(from);
  text.EndsWith(from);
  // Near the edges mostly, anywhere now and then.
  auto index = [&] {
    return input.ConsumeBool() ? input.ConsumeIntegral<int32_t>()
                               : input.ConsumeIntegralInRange<int32_t>(-2, text.Length() + 2);
  };
  const int32_t subFrom = index();
  MString sub = text.Substring(subFrom, index());
  if (sub.Length() > text.Length()) std::abort();

  MString cut = text;
  MString head = cut.Take(index());
  MString until = cut.TakeUntil(set.c_str(), invert);
  MString cutTail = cut.CutTail(set.c_str(), invert);
  if (head.Length() + until.Length() + cut.Length() + cutTail.Length() != text.Length()) std::abort();
  // A front-cut value joined as a path, either way round.
  MString joined = cut;
  joined.AppendPath(static_cast<char16_t>(input.ConsumeIntegralInRange<int>(0, 0x7F)), until);
  MString other = until;
  other.AppendPath(u'\\', cut).Append(replaced).Append(MString());

  const int64_t number = input.ConsumeIntegral<int64_t>();
  const int radix = input.ConsumeIntegralInRange<int>(0, 17);
  const int digits = input.ConsumeIntegralInRange<int>(-1, 70);
  MString printed = MString::FromNumber(number, radix, digits, input.ConsumeBool());
  if (printed.Length() < digits || printed.Length() > 72) std::abort();
  MString::FromUnsigned(static_cast<uint32_t>(number), radix, digits);
  if (radix == 10 && number >= 0 && number < 1000000000 && MString::FromNumber(number).ParseDigits() != number) {
    std::abort();
  }
  return 0;
}
