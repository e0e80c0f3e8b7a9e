#include "broker/BrokerPrintMethods.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "broker/BrokerFileRules.h"
#include "broker/BrokerHresult.h"
#include "broker/GdiByteLayout.h"

namespace SASM {
namespace {

using Layout = GdiByteLayout;

// One array argument, accessed for as long as the method runs and released
// on every path. An array that isn't well formed, or can't be accessed, is
// absent.
class RelayedBytes {
 public:
  RelayedBytes(PrintRelayPlatform& gdi, PrintRelayPlatform::ByteArray array) : gdi_(gdi) {
    ByteArrayShape shape;
    if (!gdi_.DescribeByteArray(array, shape) || !BrokerFileRules::IsWellFormedByteArray(shape)) return;
    uint8_t* data = nullptr;
    if (gdi_.AccessByteArray(array, data) < 0) return;
    array_ = array;
    data_ = data;
    size_ = shape.count;
  }
  RelayedBytes(const RelayedBytes&) = delete;
  RelayedBytes& operator=(const RelayedBytes&) = delete;
  ~RelayedBytes() {
    if (array_) gdi_.UnaccessByteArray(array_);
  }

  bool present() const { return array_ != nullptr; }
  // Present and exactly `length` bytes long.
  bool Holds(uint32_t length) const { return present() && size_ == length; }
  const uint8_t* data() const { return data_; }
  uint32_t size() const { return size_; }

 private:
  PrintRelayPlatform& gdi_;
  PrintRelayPlatform::ByteArray array_ = nullptr;
  const uint8_t* data_ = nullptr;
  uint32_t size_ = 0;
};

int32_t I32(uint32_t value) { return static_cast<int32_t>(value); }
GdiHandle H(uint32_t value) { return BrokerPrintMethods::Handle(value); }

using Thin = BrokerPrintMethods::Thin;
using Shape = BrokerPrintMethods::Shape;
using Gdi = PrintRelayPlatform;

constexpr BrokerPrintMethods::ThinRow kThinTable[] = {
    {Thin::kDeleteDC, Shape::kOut, [](Gdi& g, const uint32_t* a) -> int64_t { return g.DeleteDC(H(a[0])); }},
    {Thin::kSaveDC, Shape::kOut, [](Gdi& g, const uint32_t* a) -> int64_t { return g.SaveDC(H(a[0])); }},
    {Thin::kRestoreDC, Shape::kHresult,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.RestoreDC(H(a[0]), I32(a[1])); }},
    {Thin::kStartPage, Shape::kHresultPositive,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.StartPage(H(a[0])); }},
    {Thin::kEndPage, Shape::kHresultPositive, [](Gdi& g, const uint32_t* a) -> int64_t { return g.EndPage(H(a[0])); }},
    {Thin::kEndDoc, Shape::kHresultPositive, [](Gdi& g, const uint32_t* a) -> int64_t { return g.EndDoc(H(a[0])); }},
    {Thin::kIntersectClipRect, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t {
       return g.IntersectClipRect(H(a[0]), I32(a[1]), I32(a[2]), I32(a[3]), I32(a[4]));
     }},
    {Thin::kSetPolyFillMode, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.SetPolyFillMode(H(a[0]), I32(a[1])); }},
    {Thin::kBeginPath, Shape::kHresult, [](Gdi& g, const uint32_t* a) -> int64_t { return g.BeginPath(H(a[0])); }},
    {Thin::kEndPath, Shape::kHresult, [](Gdi& g, const uint32_t* a) -> int64_t { return g.EndPath(H(a[0])); }},
    {Thin::kMoveTo, Shape::kHresult,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.MoveToEx(H(a[0]), I32(a[1]), I32(a[2])); }},
    {Thin::kLineTo, Shape::kHresult,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.LineTo(H(a[0]), I32(a[1]), I32(a[2])); }},
    {Thin::kSelectClipPath, Shape::kHresult,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.SelectClipPath(H(a[0]), I32(a[1])); }},
    {Thin::kSelectClipRgnNULL, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.SelectClipRgn(H(a[0]), 0); }},
    {Thin::kGetTextAlign, Shape::kOut, [](Gdi& g, const uint32_t* a) -> int64_t { return g.GetTextAlign(H(a[0])); }},
    {Thin::kSetTextAlign, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.SetTextAlign(H(a[0]), a[1]); }},
    {Thin::kGetBkMode, Shape::kOut, [](Gdi& g, const uint32_t* a) -> int64_t { return g.GetBkMode(H(a[0])); }},
    {Thin::kSetBkMode, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.SetBkMode(H(a[0]), I32(a[1])); }},
    {Thin::kGetTextColor, Shape::kOut, [](Gdi& g, const uint32_t* a) -> int64_t { return g.GetTextColor(H(a[0])); }},
    {Thin::kSetTextColor, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.SetTextColor(H(a[0]), a[1]); }},
    {Thin::kGetDeviceCaps, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.GetDeviceCaps(H(a[0]), I32(a[1])); }},
    {Thin::kSetTextCharacterExtra, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.SetTextCharacterExtra(H(a[0]), I32(a[1])); }},
    {Thin::kSetGraphicsMode, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return g.SetGraphicsMode(H(a[0]), I32(a[1])); }},
    {Thin::kGetObjectType, Shape::kOut, [](Gdi& g, const uint32_t* a) -> int64_t { return g.GetObjectType(H(a[0])); }},
    {Thin::kGetCurrentObject, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return static_cast<int64_t>(g.GetCurrentObject(H(a[0]), a[1])); }},
    {Thin::kSelectObject, Shape::kOut,
     [](Gdi& g, const uint32_t* a) -> int64_t { return static_cast<int64_t>(g.SelectObject(H(a[0]), H(a[1]))); }},
    {Thin::kDeleteObject, Shape::kOut, [](Gdi& g, const uint32_t* a) -> int64_t { return g.DeleteObject(H(a[0])); }},
};

// The pointer a GDI call gets for an array's bytes.
template <typename T>
std::vector<T> Copied(const uint8_t* bytes, size_t count, size_t available) {
  std::vector<T> values(count);
  if (count) std::memcpy(values.data(), bytes, std::min(count * sizeof(T), available));
  return values;
}

std::u16string WideText(const uint8_t* bytes, uint32_t count) {
  std::u16string text(count, u'\0');
  if (count) std::memcpy(text.data(), bytes, count * sizeof(char16_t));
  return text;
}

}  // namespace

std::span<const BrokerPrintMethods::ThinRow> BrokerPrintMethods::ThinTable() { return kThinTable; }

int32_t BrokerPrintMethods::CallThin(Thin method, const ThinArguments& arguments, uint32_t* out) {
  const ThinRow& row = kThinTable[static_cast<size_t>(method)];
  int64_t result = row.call(gdi_, arguments.data());
  switch (row.shape) {
    case Shape::kOut:
      // Handles come back truncated to their low 32 bits.
      *out = static_cast<uint32_t>(result);
      return BrokerHresult::kOk;
    case Shape::kHresult: return result == 0 ? BrokerHresult::kFail : BrokerHresult::kOk;
    case Shape::kHresultPositive: return result < 1 ? BrokerHresult::kFail : BrokerHresult::kOk;
  }
  return BrokerHresult::kFail;
}

int32_t BrokerPrintMethods::StartDocument(uint32_t dwHDC, DocumentMetrics& metrics) {
  GdiHandle dc = H(dwHDC);
  if (gdi_.StartDocW(dc, {kDocInfoSize, kDocumentName}) == -1) return BrokerHresult::kFail;
  int32_t width = gdi_.GetDeviceCaps(dc, kHorzRes);
  int32_t height = gdi_.GetDeviceCaps(dc, kVertRes);
  metrics.pixelWidth = static_cast<uint32_t>(width);
  metrics.pixelHeight = static_cast<uint32_t>(height);
  GdiPoint corners[2] = {{0, 0}, {width, height}};
  gdi_.LPtoDP(dc, corners, 2);
  metrics.deviceWidth = static_cast<uint32_t>(corners[1].x);
  metrics.deviceHeight = static_cast<uint32_t>(corners[1].y);
  metrics.paperPixelWidth = static_cast<uint32_t>(gdi_.GetDeviceCaps(dc, kPhysicalWidth));
  metrics.paperPixelHeight = static_cast<uint32_t>(gdi_.GetDeviceCaps(dc, kPhysicalHeight));
  metrics.hRes = static_cast<uint32_t>(gdi_.GetDeviceCaps(dc, kLogPixelsX));
  metrics.vRes = static_cast<uint32_t>(gdi_.GetDeviceCaps(dc, kLogPixelsY));
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::AddRectangle(uint32_t dwHDC, ByteArray p_RectArray, uint32_t dwRGB) {
  RelayedBytes rect(gdi_, p_RectArray);
  if (!rect.Holds(Layout::kRectBytes)) return BrokerHresult::kFail;
  GdiHandle dc = H(dwHDC);
  GdiHandle brush = gdi_.CreateSolidBrush(dwRGB);
  GdiHandle old = gdi_.SelectObject(dc, brush);
  gdi_.FillRect(dc, Layout::ReadRect(rect.data()), brush);
  gdi_.SelectObject(dc, old);
  gdi_.DeleteObject(brush);
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::PathToSolidFill(uint32_t dwHDC, uint32_t dwRGB) {
  GdiHandle dc = H(dwHDC);
  GdiHandle brush = gdi_.CreateSolidBrush(dwRGB);
  GdiHandle old = gdi_.SelectObject(dc, brush);
  gdi_.FillPath(dc);
  gdi_.SelectObject(dc, old);
  gdi_.DeleteObject(brush);
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::PathToStrokedLine(uint32_t dwHDC, uint32_t dwThickness, uint32_t dwRGB) {
  GdiHandle dc = H(dwHDC);
  GdiLogBrush solid;
  solid.color = dwRGB;
  GdiHandle pen = gdi_.ExtCreatePen(kGeometricPen, dwThickness, solid);
  GdiHandle old = gdi_.SelectObject(dc, pen);
  gdi_.StrokePath(dc);
  gdi_.SelectObject(dc, old);
  gdi_.DeleteObject(pen);
  return BrokerHresult::kOk;
}

void BrokerPrintMethods::Stretch(GdiHandle dc, const uint8_t* target, const uint8_t* source, const uint8_t* bits,
                                 uint32_t bitsLength, const uint8_t* header, uint32_t headerLength, uint32_t rop) {
  // GDI reads the colour table and masks past the client's header: it reads zeros here.
  alignas(8) uint8_t padded[Layout::kPaddedHeaderBytes] = {};
  std::memcpy(padded, header, headerLength);
  // A header for which GDI would read past the pixels counts as a failed draw, which the fills don't notice.
  if (!Layout::StaysInsidePixels(Layout::ReadBitmapHeader(padded), bits ? bitsLength : 0)) return;
  // The third and fourth values are passed as a width and a height, as the client sent them.
  GdiRect t = Layout::ReadRect(target), s = Layout::ReadRect(source);
  GdiStretch stretch{t.left, t.top, t.right, t.bottom, s.left, s.top, s.right, s.bottom, bits, padded, 0, rop};
  gdi_.StretchDIBits(dc, stretch);
}

int32_t BrokerPrintMethods::PathToBitmapFill(uint32_t dwHDC, ByteArray p_tRectArray, ByteArray p_sRectArray,
                                             ByteArray p_BitmapArray, ByteArray p_BitmapInfoArray,
                                             uint32_t dwSaveRestore) {
  RelayedBytes target(gdi_, p_tRectArray), source(gdi_, p_sRectArray), header(gdi_, p_BitmapInfoArray);
  if (!target.Holds(Layout::kRectBytes) || !source.Holds(Layout::kRectBytes) ||
      !header.Holds(Layout::kBitmapFillHeaderBytes))
    return BrokerHresult::kFail;
  // An absent pixel array is an empty one here: only the bound decides.
  RelayedBytes bits(gdi_, p_BitmapArray);
  if (!Layout::PixelsWithinBound(Layout::ReadBitmapHeader(header.data()), bits.size())) return BrokerHresult::kFail;

  GdiHandle dc = H(dwHDC);
  int32_t saved = 0;
  if (dwSaveRestore) {
    saved = gdi_.SaveDC(dc);
    gdi_.SelectClipPath(dc, kRgnAnd);
  }
  Stretch(dc, target.data(), source.data(), bits.data(), bits.size(), header.data(), header.size(), kSrcCopy);
  if (dwSaveRestore) gdi_.RestoreDC(dc, saved);
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::PathToTransparentBitmapFill(uint32_t dwHDC, ByteArray p_tRectArray,
                                                        ByteArray p_sRectArray, ByteArray p_BitmapArray,
                                                        ByteArray p_BitmapInfoArray, uint32_t dwRGB, uint32_t dwROP) {
  RelayedBytes target(gdi_, p_tRectArray), source(gdi_, p_sRectArray), header(gdi_, p_BitmapInfoArray);
  if (!target.Holds(Layout::kRectBytes) || !source.Holds(Layout::kRectBytes) ||
      !header.Holds(Layout::kTransparentFillHeaderBytes))
    return BrokerHresult::kFail;
  RelayedBytes bits(gdi_, p_BitmapArray);
  if (!bits.present() || !Layout::PixelsWithinBound(Layout::ReadBitmapHeader(header.data()), bits.size()))
    return BrokerHresult::kFail;

  GdiHandle dc = H(dwHDC);
  int32_t saved = gdi_.SaveDC(dc);
  GdiHandle brush = gdi_.CreateSolidBrush(dwRGB);
  GdiHandle old = gdi_.SelectObject(dc, brush);
  gdi_.SelectClipPath(dc, kRgnAnd);
  Stretch(dc, target.data(), source.data(), bits.data(), bits.size(), header.data(), header.size(), dwROP);
  gdi_.SelectObject(dc, old);
  gdi_.DeleteObject(brush);
  gdi_.RestoreDC(dc, saved);
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::PolyBezierTo(uint32_t dwHDC, ByteArray p_CubicArray, uint32_t dwCount) {
  RelayedBytes cubic(gdi_, p_CubicArray);
  uint32_t length = Layout::CubicBytes(dwCount);
  if (!cubic.present() || (length != 0 && cubic.size() != length)) return BrokerHresult::kFail;
  // A count whose byte length wrapped names more points than the array holds: not drawn.
  if (!Layout::CubicBytesExact(dwCount)) return BrokerHresult::kOk;
  std::vector<GdiPoint> points = Copied<GdiPoint>(cubic.data(), dwCount, cubic.size());
  gdi_.PolyBezierTo(H(dwHDC), points.data(), dwCount);
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::DPtoLP(uint32_t dwHDC, uint32_t* p_dwX, uint32_t* p_dwY, uint32_t dwCount,
                                   uint32_t* p_dwRC) {
  // The count goes to GDI as given; the buffer behind the client's one point
  // holds that many, so a count above 1 converts zeros after it. A count the
  // buffer can't hold fails as GDI would, with nothing converted.
  if (dwCount > kMaxTransformPoints) {
    *p_dwRC = 0;
    return BrokerHresult::kOk;
  }
  std::vector<GdiPoint> points(std::max<uint32_t>(dwCount, 1));
  points[0] = {I32(*p_dwX), I32(*p_dwY)};
  *p_dwRC = static_cast<uint32_t>(gdi_.DPtoLP(H(dwHDC), points.data(), I32(dwCount)));
  *p_dwX = static_cast<uint32_t>(points[0].x);
  *p_dwY = static_cast<uint32_t>(points[0].y);
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::CreateFontFromBytes(ByteArray p_LogFontArray, uint32_t* p_dwFont) {
  RelayedBytes logFont(gdi_, p_LogFontArray);
  if (!logFont.Holds(Layout::kLogFontBytes)) return BrokerHresult::kFail;
  // A null font isn't a failure: the client sees 0.
  *p_dwFont = static_cast<uint32_t>(gdi_.CreateFontIndirectW(logFont.data()));
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::RelayText(uint32_t charSize, uint32_t dwHDC, uint32_t dwX, uint32_t dwY,
                                       uint32_t dwOptions, uint32_t dwIsRectNULL, ByteArray p_RectArray,
                                       ByteArray p_StrArray, uint32_t dwCount, uint32_t dwIsDxNULL, ByteArray p_DxArray,
                                       uint32_t* p_dwRC) {
  if (dwCount > Layout::kTextLimit) return BrokerHresult::kInvalidArgument;
  RelayedBytes rect(gdi_, p_RectArray);
  RelayedBytes text(gdi_, p_StrArray);
  RelayedBytes spacing(gdi_, p_DxArray);
  // Every array must arrive, used or not: the interface can't carry a null one through here.
  uint32_t textBytes = Layout::StringBytes(dwCount, charSize);
  bool textPresent = textBytes == 0 ? text.present() : text.Holds(textBytes);
  if (!rect.Holds(Layout::kRectBytes) || !textPresent || !spacing.present()) return BrokerHresult::kFail;

  GdiRect bounds = Layout::ReadRect(rect.data());
  std::vector<int32_t> advances;
  if (!dwIsDxNULL) {
    if (spacing.size() < Layout::SpacingBytes(dwCount, dwOptions)) return BrokerHresult::kFail;
    // The length rule leaves the last value out, but GDI reads one per
    // character (two with ETO_PDY): what the client didn't send reads as 0.
    advances = Copied<int32_t>(spacing.data(), Layout::SpacingValuesRead(dwCount, dwOptions), spacing.size());
  }
  const GdiRect* clip = dwIsRectNULL ? nullptr : &bounds;
  const int32_t* dx = dwIsDxNULL ? nullptr : advances.data();
  GdiHandle dc = H(dwHDC);
  int32_t result = 0;
  if (charSize == 1) {
    std::string characters(reinterpret_cast<const char*>(text.data()), dwCount);
    result = gdi_.ExtTextOutA(dc, I32(dwX), I32(dwY), dwOptions, clip, characters.c_str(), dwCount, dx);
  } else {
    std::u16string characters = WideText(text.data(), dwCount);
    result = gdi_.ExtTextOutW(dc, I32(dwX), I32(dwY), dwOptions, clip, characters.c_str(), dwCount, dx);
  }
  *p_dwRC = static_cast<uint32_t>(result);
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::ExtTextOutA(uint32_t dwHDC, uint32_t dwX, uint32_t dwY, uint32_t dwOptions,
                                        uint32_t dwIsRectNULL, ByteArray p_RectArray, ByteArray p_StrArray,
                                        uint32_t dwCount, uint32_t dwIsDxNULL, ByteArray p_DxArray, uint32_t* p_dwRC) {
  return RelayText(1, dwHDC, dwX, dwY, dwOptions, dwIsRectNULL, p_RectArray, p_StrArray, dwCount, dwIsDxNULL,
                    p_DxArray, p_dwRC);
}

int32_t BrokerPrintMethods::ExtTextOutW(uint32_t dwHDC, uint32_t dwX, uint32_t dwY, uint32_t dwOptions,
                                        uint32_t dwIsRectNULL, ByteArray p_RectArray, ByteArray p_StrArray,
                                        uint32_t dwCount, uint32_t dwIsDxNULL, ByteArray p_DxArray, uint32_t* p_dwRC) {
  return RelayText(2, dwHDC, dwX, dwY, dwOptions, dwIsRectNULL, p_RectArray, p_StrArray, dwCount, dwIsDxNULL,
                    p_DxArray, p_dwRC);
}

int32_t BrokerPrintMethods::MeasureText(uint32_t charSize, uint32_t dwHDC, ByteArray p_StrArray,
                                                 uint32_t dwCount, uint32_t* p_dwCx, uint32_t* p_dwCy) {
  if (dwCount > Layout::kTextLimit) return BrokerHresult::kInvalidArgument;
  RelayedBytes text(gdi_, p_StrArray);
  uint32_t textBytes = Layout::StringBytes(dwCount, charSize);
  if (textBytes == 0 ? !text.present() : !text.Holds(textBytes)) return BrokerHresult::kFail;
  GdiSize size;
  GdiHandle dc = H(dwHDC);
  int32_t result = 0;
  if (charSize == 1) {
    std::string characters(reinterpret_cast<const char*>(text.data()), dwCount);
    result = gdi_.GetTextExtentPoint32A(dc, characters.c_str(), I32(dwCount), size);
  } else {
    std::u16string characters = WideText(text.data(), dwCount);
    result = gdi_.GetTextExtentPoint32W(dc, characters.c_str(), I32(dwCount), size);
  }
  if (result == 0) return BrokerHresult::kFail;
  *p_dwCx = static_cast<uint32_t>(size.cx);
  *p_dwCy = static_cast<uint32_t>(size.cy);
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::GetTextExtentPoint32A(uint32_t dwHDC, ByteArray p_StrArray, uint32_t dwCount,
                                                  uint32_t* p_dwCx, uint32_t* p_dwCy) {
  return MeasureText(1, dwHDC, p_StrArray, dwCount, p_dwCx, p_dwCy);
}

int32_t BrokerPrintMethods::GetTextExtentPoint32W(uint32_t dwHDC, ByteArray p_StrArray, uint32_t dwCount,
                                                  uint32_t* p_dwCx, uint32_t* p_dwCy) {
  return MeasureText(2, dwHDC, p_StrArray, dwCount, p_dwCx, p_dwCy);
}

int32_t BrokerPrintMethods::TextMetrics(uint32_t dwHDC,
                                           std::array<uint8_t, PrintRelayPlatform::kTextMetricBytes>& reply) {
  reply.fill(0);
  return gdi_.GetTextMetricsW(H(dwHDC), reply.data()) == 0 ? BrokerHresult::kFail : BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::GetWorldTransform(uint32_t dwHDC,
                                              std::array<uint8_t, PrintRelayPlatform::kXformBytes>& reply) {
  reply.fill(0);
  return gdi_.GetWorldTransform(H(dwHDC), reply.data()) == 0 ? BrokerHresult::kFail : BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::SetWorldTransform(uint32_t dwHDC, ByteArray p_XformArray, uint32_t* p_dwRC) {
  RelayedBytes xform(gdi_, p_XformArray);
  if (!xform.Holds(Layout::kXformBytes)) return BrokerHresult::kFail;
  *p_dwRC = static_cast<uint32_t>(gdi_.SetWorldTransform(H(dwHDC), xform.data()));
  return BrokerHresult::kOk;
}

int32_t BrokerPrintMethods::FontLinkGetFontCodePages(uint32_t dwDC, uint32_t dwhFont, uint32_t* p_dwCodePages) {
  if (!gdi_.HasFontLink()) return BrokerHresult::kFail;
  return gdi_.GetFontCodePages(H(dwDC), H(dwhFont), *p_dwCodePages);
}

int32_t BrokerPrintMethods::FontLinkMapFont(uint32_t dwDC, uint32_t dwCodePages, uint32_t dwhSrcFont,
                                            uint32_t* p_dwhDestFont) {
  if (!gdi_.HasFontLink()) return BrokerHresult::kFail;
  // The linked font stays the font-link object's; the client releases it through it.
  GdiHandle linked = 0;
  int32_t result = gdi_.MapFont(H(dwDC), dwCodePages, H(dwhSrcFont), linked);
  *p_dwhDestFont = static_cast<uint32_t>(linked);
  return result;
}

int32_t BrokerPrintMethods::FontLinkReleaseFont(uint32_t dwhFont) {
  if (!gdi_.HasFontLink()) return BrokerHresult::kFail;
  return gdi_.ReleaseFont(H(dwhFont));
}

}  // namespace SASM
