#include "engine/MString.h"

#include <cstdlib>
#include <cstring>

namespace SASM {
namespace {

void FreeBlock(MStringBlock* block) { std::free(block); }

bool InSet(char16_t unit, const char* set, bool invert) {
  if (unit >= 256) return invert;
  bool found = set && std::strchr(set, static_cast<char>(unit)) != nullptr && unit != 0;
  return invert ? !found : found;
}

int32_t MeasureUnits(const char16_t* text) {
  int32_t n = 0;
  while (text[n] != 0) ++n;
  return n;
}

}  // namespace

MStringBlock* MString::Allocate(int32_t length) {
  if (length < 0) length = 0;
  // Rounded as the block layout requires: header, units and terminator always fit.
  size_t size = ((static_cast<size_t>(length) * 2 + 17) & ~static_cast<size_t>(7)) + 8;
  auto* block = static_cast<MStringBlock*>(std::malloc(size));
  if (!block) std::abort();
  block->refCount = 1;
  block->length = length;
  block->release = &FreeBlock;
  block->Chars()[length] = 0;
  return block;
}

MString::MString(const char16_t* text, int32_t length) {
  if (!text) return;
  int32_t measured = 0;
  if (length < 1) {
    measured = MeasureUnits(text);
  } else {
    while (measured < length && text[measured] != 0) ++measured;
  }
  block_ = Allocate(measured);
  std::memcpy(block_->Chars(), text, static_cast<size_t>(measured) * 2);
}

MString::MString(std::u16string_view text) {
  int32_t n = 0;
  while (n < static_cast<int32_t>(text.size()) && text[n] != 0) ++n;
  block_ = Allocate(n);
  // An empty view may have no data at all.
  if (n > 0) std::memcpy(block_->Chars(), text.data(), static_cast<size_t>(n) * 2);
}

MString::MString(const MString& other) : block_(other.block_), start_(other.start_) {
  if (block_) ++block_->refCount;
}

MString::MString(MString&& other) noexcept : block_(other.block_), start_(other.start_) {
  other.block_ = nullptr;
  other.start_ = 0;
}

MString& MString::operator=(const MString& other) {
  // Count the source first so that self-assignment never frees the block.
  if (other.block_) ++other.block_->refCount;
  MStringBlock* old = block_;
  block_ = other.block_;
  start_ = other.start_;
  if (old && --old->refCount <= 0) old->release(old);
  return *this;
}

MString& MString::operator=(MString&& other) noexcept {
  if (this != &other) {
    Reset();
    block_ = other.block_;
    start_ = other.start_;
    other.block_ = nullptr;
    other.start_ = 0;
  }
  return *this;
}

MString::~MString() { Reset(); }

void MString::Reset() {
  if (block_ && --block_->refCount <= 0) block_->release(block_);
  block_ = nullptr;
  start_ = 0;
}

MString MString::Empty() { return MString(Allocate(0), 0); }

MString MString::FromUtf8(const char* text, int32_t byteLength) {
  if (!text) return MString();
  size_t limit = byteLength < 0 ? std::strlen(text) : static_cast<size_t>(byteLength);
  std::u16string units;
  size_t i = 0;
  while (i < limit) {
    auto lead = static_cast<unsigned char>(text[i]);
    size_t width;
    char16_t unit;
    if (lead < 128) {
      width = 1;
      unit = lead;
    } else if (lead < 224) {
      width = 2;
      unit = static_cast<char16_t>(((lead & 31) * 64) | (lead & 63));
    } else if (lead < 240) {
      width = 3;
      unit = static_cast<char16_t>((((lead & 15) * 64) | (lead & 63)) * 64 | (lead & 63));
    } else {
      width = 4;
      unit = 65535;
    }
    units.push_back(unit);
    // Trailing bytes are never read, so a sequence cut short by the bound
    // still yields its unit and simply ends the scan.
    i += width;
  }
  // Every sequence counts, even one that decodes to 0 (a 0 byte inside a stated
  // length, or the leads 0x80 and 0xC0): the block keeps them all.
  MStringBlock* block = Allocate(static_cast<int32_t>(units.size()));
  std::memcpy(block->Chars(), units.data(), units.size() * 2);
  return MString(block, 0);
}

MString MString::FromAscii(std::string_view text) {
  MStringBlock* block = Allocate(static_cast<int32_t>(text.size()));
  for (size_t i = 0; i < text.size(); ++i) block->Chars()[i] = static_cast<unsigned char>(text[i]);
  return MString(block, 0);
}

MString MString::FromNumber(int64_t value, int radix, int minDigits, bool isSigned) {
  static const char kDigits[] = "0123456789ABCDEF";
  if (radix != 16) radix = 10;
  bool negative = isSigned && value < 0;
  uint64_t magnitude = negative ? static_cast<uint64_t>(0) - static_cast<uint64_t>(value)
                                : (isSigned ? static_cast<uint64_t>(value) : static_cast<uint32_t>(value));
  std::u16string digits;
  do {
    digits.insert(digits.begin(), static_cast<char16_t>(kDigits[magnitude % radix]));
    magnitude /= radix;
  } while (magnitude != 0);
  while (static_cast<int>(digits.size()) < minDigits) digits.insert(digits.begin(), u'0');
  if (negative) digits.insert(digits.begin(), u'-');
  return MString(std::u16string_view(digits));
}

MString MString::FromUnsigned(uint32_t value, int radix, int minDigits) {
  return FromNumber(static_cast<int64_t>(value), radix, minDigits, false);
}

uint32_t MString::ParseDigits() const {
  uint32_t result = 0;
  const char16_t* p = Data();
  for (int32_t i = 0; i < Length() && p[i] >= u'0' && p[i] <= u'9'; ++i) result = result * 10 + (p[i] - u'0');
  return result;
}

char* MString::Narrow() const {
  int32_t n = Length();
  char* out = new char[static_cast<size_t>(n) + 1];
  for (int32_t i = 0; i < n; ++i) out[i] = static_cast<char>(At(i));
  out[n] = 0;
  return out;
}

std::string MString::NarrowString() const {
  std::string out;
  for (char16_t c : View()) out.push_back(static_cast<char>(c));
  return out;
}

std::string MString::ToUtf8() const {
  std::string out;
  std::u16string_view v = View();
  for (size_t i = 0; i < v.size(); ++i) {
    uint32_t c = v[i];
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < v.size() && v[i + 1] >= 0xDC00 && v[i + 1] < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (v[i + 1] - 0xDC00);
      ++i;
    }
    if (c < 0x80) {
      out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (c >> 6)));
      out.push_back(static_cast<char>(0x80 | (c & 63)));
    } else if (c < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (c >> 12)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 63)));
      out.push_back(static_cast<char>(0x80 | (c & 63)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (c >> 18)));
      out.push_back(static_cast<char>(0x80 | ((c >> 12) & 63)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 63)));
      out.push_back(static_cast<char>(0x80 | (c & 63)));
    }
  }
  return out;
}

MString MString::ToLower() const {
  if (!block_) return MString();
  MString copy(View());
  char16_t* p = copy.block_->Chars();
  for (int32_t i = 0; i < copy.Length(); ++i)
    if (p[i] >= u'A' && p[i] <= u'Z') p[i] = static_cast<char16_t>(p[i] + 32);
  return copy;
}

bool MString::Equals(const MString& other) const { return View() == other.View(); }

bool MString::StartsWith(const MString& other) const {
  if (other.Length() > Length()) return false;
  return View().substr(0, other.Length()) == other.View();
}

bool MString::EndsWith(const MString& other) const {
  if (other.Length() > Length()) return false;
  return View().substr(Length() - other.Length()) == other.View();
}

MString& MString::Append(const MString& other) {
  if (!block_) *this = Empty();
  if (!other.block_) return *this;
  int32_t a = Length(), b = other.Length();
  MStringBlock* fresh = Allocate(a + b);
  std::memcpy(fresh->Chars(), Data(), static_cast<size_t>(a) * 2);
  std::memcpy(fresh->Chars() + a, other.Data(), static_cast<size_t>(b) * 2);
  *this = MString(fresh, 0);
  return *this;
}

MString& MString::AppendPath(char16_t separator, const MString& other) {
  if (!other.block_ || separator == 0) return *this;
  if (IsEmpty() || other.IsEmpty()) return Append(other);
  // The seam test reads the blocks' edges, not the views': a front-cut "other"
  // is judged by the first unit of its whole block.
  bool leftHas = block_->length > 0 && block_->Chars()[block_->length - 1] == separator;
  bool rightHas = other.block_->length > 0 && other.block_->Chars()[0] == separator;
  if (leftHas && rightHas) return Append(other.Substring(1, other.Length() - 1));
  if (!leftHas && !rightHas) Append(MString(std::u16string_view(&separator, 1)));
  return Append(other);
}

MString MString::Replace(const MString& source, const MString& from, const MString& to) {
  if (source.IsEmpty() || from.IsEmpty()) return source;
  std::u16string out;
  std::u16string_view s = source.View(), f = from.View();
  size_t i = 0;
  while (i < s.size()) {
    size_t next = s.find(f[0], i);
    if (next == std::u16string_view::npos) {
      out.append(s.substr(i));
      break;
    }
    out.append(s.substr(i, next - i));
    if (s.substr(next, f.size()) == f) {
      out.append(to.View());
      i = next + f.size();
    } else {
      out.push_back(s[next]);
      i = next + 1;
    }
  }
  return MString(std::u16string_view(out));
}

int32_t MString::FindFirst(const char* set, bool invert) const {
  for (int32_t i = 0; i < Length(); ++i)
    if (InSet(At(i), set, invert)) return i;
  return Length();
}

int32_t MString::FindLast(const char* set, bool invert) const {
  for (int32_t i = Length() - 1; i >= 0; --i)
    if (InSet(At(i), set, invert)) return i;
  return -1;
}

MString MString::Substring(int32_t from, int32_t count) const {
  if (!block_) return MString();
  if (from < 0) from = 0;
  if (from > Length()) from = Length();
  // Compared as room left, so that a count near the type's limit can't overflow.
  if (count < 0 || count > Length() - from) count = Length() - from;
  return MString(std::u16string_view(Data() + from, count));
}

MString MString::SpanUntil(const char* set, bool invert) const { return Substring(0, FindFirst(set, invert)); }

MString MString::TakeUntil(const char* set, bool invert) {
  int32_t n = FindFirst(set, invert);
  MString head = Substring(0, n);
  start_ += n;
  return head;
}

MString MString::Take(int32_t count) {
  if (IsEmpty() || count <= 0) return Empty();
  if (count > Length()) count = Length();
  MString head = Substring(0, count);
  start_ += count;
  return head;
}

MString MString::TailFrom(const char* set, bool invert) const {
  int32_t at = FindLast(set, invert);
  if (at < 0) return Empty();
  return Substring(at, Length() - at);
}

MString MString::CutTail(const char* set, bool invert) {
  int32_t at = FindLast(set, invert);
  if (at < 0) return Empty();
  MString tail = Substring(at, Length() - at);
  *this = Substring(0, at);
  return tail;
}

}  // namespace SASM
