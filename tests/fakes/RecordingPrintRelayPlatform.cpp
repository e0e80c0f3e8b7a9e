#include "tests/fakes/RecordingPrintRelayPlatform.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "broker/GdiByteLayout.h"

namespace SASM {
namespace {

// Touches every byte the way GDI's own reading would, so that a short buffer
// shows under the sanitizers.
uint32_t Touch(const void* data, size_t length) {
  const auto* bytes = static_cast<const uint8_t*>(data);
  uint32_t sum = 0;
  for (size_t i = 0; i < length; ++i) sum += bytes[i];
  return sum;
}

std::string Narrow(const char16_t* text, uint32_t count) {
  std::string narrow;
  for (uint32_t i = 0; i < count; ++i) narrow += text[i] < 0x80 ? static_cast<char>(text[i]) : '?';
  return narrow;
}

}  // namespace

std::string RecordingPrintRelayPlatform::Hex(uint64_t value) {
  char text[24];
  std::snprintf(text, sizeof(text), "0x%llX", static_cast<unsigned long long>(value));
  return text;
}

std::string RecordingPrintRelayPlatform::Name(GdiHandle handle) const {
  if (handle == 0) return "0";
  if (handle == Dc()) return "dc";
  if (handle == kOriginal) return "orig";
  auto made = made_.find(handle);
  if (made != made_.end()) return "obj" + std::to_string(made->second);
  return Hex(handle);
}

std::string RecordingPrintRelayPlatform::Rect(const GdiRect& rect) {
  return "{" + std::to_string(rect.left) + "," + std::to_string(rect.top) + "," + std::to_string(rect.right) + "," +
         std::to_string(rect.bottom) + "}";
}

std::string RecordingPrintRelayPlatform::Spacing(const int32_t* spacing, uint32_t values) {
  if (!spacing) return "null";
  std::string text = "{";
  for (uint32_t i = 0; i < values; ++i) text += (i ? "," : "") + std::to_string(spacing[i]);
  return text + "}";
}

int64_t RecordingPrintRelayPlatform::Record(const std::string& name, std::vector<std::string> arguments,
                                            int64_t otherwise) {
  std::string line = name + "(";
  for (size_t i = 0; i < arguments.size(); ++i) line += (i ? "," : "") + arguments[i];
  log_.push_back(line + ")");
  auto answer = answers_.find(name);
  return answer == answers_.end() ? otherwise : answer->second;
}

GdiHandle RecordingPrintRelayPlatform::Make(const std::string& name, std::vector<std::string> arguments) {
  int64_t scripted = Record(name, std::move(arguments));
  if (answers_.count(name)) return static_cast<GdiHandle>(scripted);
  GdiHandle object = nextObject_++;
  made_[object] = static_cast<int>(made_.size()) + 1;
  live_.insert(object);
  return object;
}

size_t RecordingPrintRelayPlatform::LockedArrays() const {
  return std::count_if(arrays_.begin(), arrays_.end(), [](const auto& array) { return array->locks != 0; });
}

PrintRelayPlatform::ByteArray RecordingPrintRelayPlatform::MakeArray(std::string_view bytes, uint32_t dimensions,
                                                                     uint32_t elementSize, int32_t lowerBound) {
  auto array = std::make_unique<FakeArray>();
  array->shape = {dimensions, elementSize, lowerBound, static_cast<uint32_t>(bytes.size())};
  array->bytes.assign(bytes.begin(), bytes.end());
  arrays_.push_back(std::move(array));
  return arrays_.back().get();
}

bool RecordingPrintRelayPlatform::DescribeByteArray(ByteArray array, ByteArrayShape& shape) {
  if (!array) return false;
  shape = static_cast<FakeArray*>(array)->shape;
  return true;
}

int32_t RecordingPrintRelayPlatform::AccessByteArray(ByteArray array, uint8_t*& data) {
  if (arrayAccessResult_ < 0) return arrayAccessResult_;
  auto* fake = static_cast<FakeArray*>(array);
  ++fake->locks;
  data = fake->bytes.data();
  return 0;
}

void RecordingPrintRelayPlatform::UnaccessByteArray(ByteArray array) { --static_cast<FakeArray*>(array)->locks; }

int32_t RecordingPrintRelayPlatform::StartDocW(GdiHandle dc, const GdiDocumentInfo& info) {
  std::string name = info.documentName ? Narrow(info.documentName, std::char_traits<char16_t>::length(info.documentName))
                                       : "null";
  return Record("StartDocW", {Name(dc), std::to_string(info.size), name}, 7);
}

int32_t RecordingPrintRelayPlatform::LPtoDP(GdiHandle dc, GdiPoint* points, int32_t count) {
  std::string text;
  for (int32_t i = 0; i < count; ++i) {
    text += (i ? " " : "") + std::to_string(points[i].x) + ":" + std::to_string(points[i].y);
    points[i] = {points[i].x * 2, points[i].y * 2};
  }
  return Record("LPtoDP", {Name(dc), text, std::to_string(count)});
}

int32_t RecordingPrintRelayPlatform::DPtoLP(GdiHandle dc, GdiPoint* points, int32_t count) {
  std::string text;
  for (int32_t i = 0; i < count; ++i) {
    text += (i ? " " : "") + std::to_string(points[i].x) + ":" + std::to_string(points[i].y);
    points[i] = {points[i].x + 100, points[i].y + 200};
  }
  return Record("DPtoLP", {Name(dc), text, std::to_string(count)});
}

int32_t RecordingPrintRelayPlatform::PolyBezierTo(GdiHandle dc, const GdiPoint* points, uint32_t count) {
  std::string text;
  for (uint32_t i = 0; i < count; ++i)
    text += (i ? " " : "") + std::to_string(points[i].x) + ":" + std::to_string(points[i].y);
  return Record("PolyBezierTo", {Name(dc), text, std::to_string(count)});
}

int32_t RecordingPrintRelayPlatform::StretchDIBits(GdiHandle dc, const GdiStretch& s) {
  // What GDI reads: the header, its masks and colours, and the pixel rows.
  GdiByteLayout::BitmapHeader header = GdiByteLayout::ReadBitmapHeader(s.header);
  uint32_t colors = header.colorsUsed ? header.colorsUsed : (header.bitCount <= 8 ? 1u << header.bitCount : 0);
  uint32_t masks = header.compression == 3 ? 12 : 0;
  Touch(s.header, GdiByteLayout::kBitmapInfoHeaderBytes + masks + 4ull * colors);
  uint64_t height = header.height < 0 ? 0 - static_cast<int64_t>(header.height) : header.height;
  uint64_t pixels = header.compression == 1 || header.compression == 2
                        ? header.sizeImage
                        : (static_cast<uint64_t>(std::max(header.width, 0)) * header.bitCount + 31) / 32 * 4 * height;
  Touch(s.bits, pixels);
  std::string bits;
  for (uint64_t i = 0; i < std::min<uint64_t>(pixels, 4); ++i) bits += (i ? "," : "") + std::to_string(s.bits[i]);
  return Record("StretchDIBits",
                {Name(dc), std::to_string(s.xDest), std::to_string(s.yDest), std::to_string(s.widthDest),
                 std::to_string(s.heightDest), std::to_string(s.xSource), std::to_string(s.ySource),
                 std::to_string(s.widthSource), std::to_string(s.heightSource), "bits{" + bits + "}",
                 std::to_string(header.width) + "x" + std::to_string(header.height) + "x" +
                     std::to_string(header.bitCount),
                 std::to_string(s.usage), Hex(s.rop)});
}

GdiHandle RecordingPrintRelayPlatform::CreateFontIndirectW(const uint8_t* logFont) {
  // The face name: 32 characters from offset 28.
  std::u16string face(32, u'\0');
  std::memcpy(face.data(), logFont + 28, 64);
  face.resize(std::char_traits<char16_t>::length(face.c_str()));
  int32_t height = 0;
  std::memcpy(&height, logFont, 4);
  return Make("CreateFontIndirectW", {std::to_string(height), Narrow(face.c_str(), face.size())});
}

GdiHandle RecordingPrintRelayPlatform::SelectObject(GdiHandle dc, GdiHandle object) {
  int64_t scripted = Record("SelectObject", {Name(dc), Name(object)});
  if (answers_.count("SelectObject")) return static_cast<GdiHandle>(scripted);
  GdiHandle old = selected_;
  selected_ = object;
  return old;
}

int32_t RecordingPrintRelayPlatform::DeleteObject(GdiHandle object) {
  int32_t result = static_cast<int32_t>(Record("DeleteObject", {Name(object)}));
  live_.erase(object);
  return result;
}

int32_t RecordingPrintRelayPlatform::ExtTextOutA(GdiHandle dc, int32_t x, int32_t y, uint32_t options,
                                                 const GdiRect* rect, const char* text, uint32_t count,
                                                 const int32_t* spacing) {
  Touch(text, count);
  uint32_t values = GdiByteLayout::SpacingValuesRead(count, options);
  if (spacing) Touch(spacing, values * 4ull);
  return Record("ExtTextOutA", {Name(dc), std::to_string(x), std::to_string(y), Hex(options),
                                rect ? Rect(*rect) : "null", "\"" + std::string(text, count) + "\"",
                                std::to_string(count), Spacing(spacing, values)});
}

int32_t RecordingPrintRelayPlatform::ExtTextOutW(GdiHandle dc, int32_t x, int32_t y, uint32_t options,
                                                 const GdiRect* rect, const char16_t* text, uint32_t count,
                                                 const int32_t* spacing) {
  Touch(text, count * 2ull);
  uint32_t values = GdiByteLayout::SpacingValuesRead(count, options);
  if (spacing) Touch(spacing, values * 4ull);
  return Record("ExtTextOutW", {Name(dc), std::to_string(x), std::to_string(y), Hex(options),
                                rect ? Rect(*rect) : "null", "\"" + Narrow(text, count) + "\"",
                                std::to_string(count), Spacing(spacing, values)});
}

int32_t RecordingPrintRelayPlatform::GetTextExtentPoint32A(GdiHandle dc, const char* text, int32_t count,
                                                           GdiSize& size) {
  Touch(text, static_cast<uint32_t>(count));
  size = {count * 7, 12};
  return static_cast<int32_t>(
      Record("GetTextExtentPoint32A", {Name(dc), "\"" + std::string(text, count) + "\"", std::to_string(count)}));
}

int32_t RecordingPrintRelayPlatform::GetTextExtentPoint32W(GdiHandle dc, const char16_t* text, int32_t count,
                                                           GdiSize& size) {
  Touch(text, static_cast<uint32_t>(count) * 2ull);
  size = {count * 9, 14};
  return static_cast<int32_t>(
      Record("GetTextExtentPoint32W", {Name(dc), "\"" + Narrow(text, count) + "\"", std::to_string(count)}));
}

int32_t RecordingPrintRelayPlatform::GetTextMetricsW(GdiHandle dc, uint8_t* textMetric) {
  for (uint32_t i = 0; i < kTextMetricBytes; ++i) textMetric[i] = static_cast<uint8_t>(i + 1);
  return static_cast<int32_t>(Record("GetTextMetricsW", {Name(dc)}));
}

int32_t RecordingPrintRelayPlatform::GetWorldTransform(GdiHandle dc, uint8_t* xform) {
  for (uint32_t i = 0; i < kXformBytes; ++i) xform[i] = static_cast<uint8_t>(0xA0 + i);
  return static_cast<int32_t>(Record("GetWorldTransform", {Name(dc)}));
}

int32_t RecordingPrintRelayPlatform::SetWorldTransform(GdiHandle dc, const uint8_t* xform) {
  float values[6];
  std::memcpy(values, xform, sizeof(values));
  std::string text;
  // Whole numbers as such; anything a client sends that no int holds, as a float.
  for (int i = 0; i < 6; ++i) {
    const bool whole = std::isfinite(values[i]) && values[i] > -2e9f && values[i] < 2e9f;
    text += (i ? " " : "") + (whole ? std::to_string(static_cast<int>(values[i])) : std::to_string(values[i]));
  }
  return static_cast<int32_t>(Record("SetWorldTransform", {Name(dc), text}));
}

int32_t RecordingPrintRelayPlatform::GetFontCodePages(GdiHandle dc, GdiHandle font, uint32_t& codePages) {
  codePages = 0x6000009F;
  return static_cast<int32_t>(Record("GetFontCodePages", {Name(dc), Name(font)}, 0));
}

int32_t RecordingPrintRelayPlatform::MapFont(GdiHandle dc, uint32_t codePages, GdiHandle sourceFont,
                                             GdiHandle& linkedFont) {
  linkedFont = 0xFFFFFFFF80007777ull;
  return static_cast<int32_t>(Record("MapFont", {Name(dc), Hex(codePages), Name(sourceFont)}, 0));
}

}  // namespace SASM
