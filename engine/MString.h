#pragma once
// Shared, counted UTF-16 text. A value is a block pointer plus a start offset:
// copies share the block and cutting from the front only moves the offset.
#include <cstdint>
#include <string>
#include <string_view>

namespace SASM {

struct MStringBlock {
  int32_t refCount;
  int32_t length;  // code units, without the terminator
  void (*release)(MStringBlock*);
  char16_t* Chars() { return reinterpret_cast<char16_t*>(this + 1); }
  const char16_t* Chars() const { return reinterpret_cast<const char16_t*>(this + 1); }
};

class MString {
 public:
  MString() = default;
  // length below 1 measures to the terminator; copying stops at a 0 in the source.
  MString(const char16_t* text, int32_t length = 0);
  explicit MString(std::u16string_view text);
  MString(const MString& other);
  MString(MString&& other) noexcept;
  MString& operator=(const MString& other);
  MString& operator=(MString&& other) noexcept;
  ~MString();

  // Lead-byte decoding: trailing bytes are skipped, not read. byteLength -1 scans to the terminator.
  static MString FromUtf8(const char* text, int32_t byteLength = -1);
  // Narrow text widened unit by unit (ASCII literals, file names from byte APIs).
  static MString FromAscii(std::string_view text);
  static MString FromNumber(int64_t value, int radix = 10, int minDigits = 0, bool isSigned = true);
  static MString FromUnsigned(uint32_t value, int radix = 10, int minDigits = 0);
  static MString Empty();

  int32_t Length() const { return block_ ? block_->length - start_ : 0; }
  bool IsNull() const { return block_ == nullptr; }
  bool IsEmpty() const { return Length() == 0; }
  const char16_t* Data() const { return block_ ? block_->Chars() + start_ : nullptr; }
  char16_t At(int32_t index) const { return Data()[index]; }
  std::u16string ToU16() const { return std::u16string(View()); }
  std::u16string_view View() const { return block_ ? std::u16string_view(Data(), Length()) : std::u16string_view(); }

  uint32_t ParseDigits() const;
  // Each code unit cut to 8 bits; release with delete[].
  char* Narrow() const;
  std::string NarrowString() const;
  // UTF-8 proper, for handing text to byte APIs and test output.
  std::string ToUtf8() const;
  MString ToLower() const;

  bool Equals(const MString& other) const;
  bool StartsWith(const MString& other) const;
  bool EndsWith(const MString& other) const;
  bool operator==(const MString& other) const { return Equals(other); }

  MString& Append(const MString& other);
  MString& Append(const char16_t* other) { return Append(MString(other)); }
  // Joins with one separator, deciding at the seam by the whole blocks' edge characters.
  MString& AppendPath(char16_t separator, const MString& other);
  static MString Replace(const MString& source, const MString& from, const MString& to);

  MString SpanUntil(const char* set, bool invert = false) const;
  MString TakeUntil(const char* set, bool invert = false);
  MString Take(int32_t count);
  MString TailFrom(const char* set, bool invert = false) const;
  MString CutTail(const char* set, bool invert = false);

  // Index of the first unit that stops a scan, or Length().
  int32_t FindFirst(const char* set, bool invert = false) const;
  // Index of the last unit that stops a scan, or -1.
  int32_t FindLast(const char* set, bool invert = false) const;
  MString Substring(int32_t from, int32_t count) const;

 private:
  MString(MStringBlock* block, int32_t start) : block_(block), start_(start) {}
  static MStringBlock* Allocate(int32_t length);
  void Reset();

  MStringBlock* block_ = nullptr;
  int32_t start_ = 0;
};

}  // namespace SASM
