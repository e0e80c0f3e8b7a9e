#pragma once
// What the print relay asks of the system: the GDI calls a sandboxed player's
// print path needs, the font-link service, and access to the automation byte
// arrays that carry GDI's structures. Each operation is one platform call with
// its own conventions (BOOL and int results widened, handles widened to 64
// bits), so the Win32 side is a pass-through and a recording stub can stand in.
#include <cstdint>

#include "broker/ByteArrayShape.h"

namespace SASM {

// A GDI handle as the platform knows it: 64 bits.
using GdiHandle = uint64_t;

struct GdiPoint {
  int32_t x = 0;
  int32_t y = 0;
};

struct GdiRect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;
};

struct GdiSize {
  int32_t cx = 0;
  int32_t cy = 0;
};

// LOGBRUSH: style, colour, hatch.
struct GdiLogBrush {
  uint32_t style = 0;
  uint32_t color = 0;
  uint64_t hatch = 0;
};

// DOCINFOW: its size and the document name; every other field is null.
struct GdiDocumentInfo {
  uint32_t size = 0;
  const char16_t* documentName = nullptr;
};

// StretchDIBits' arguments past the DC. `header` points at a BITMAPINFO.
struct GdiStretch {
  int32_t xDest = 0, yDest = 0, widthDest = 0, heightDest = 0;
  int32_t xSource = 0, ySource = 0, widthSource = 0, heightSource = 0;
  const uint8_t* bits = nullptr;
  const uint8_t* header = nullptr;
  uint32_t usage = 0;
  uint32_t rop = 0;
};

class PrintRelayPlatform {
 public:
  // An automation array of bytes (SAFEARRAY*), opaque to the portable code.
  using ByteArray = void*;

  static constexpr uint32_t kLogFontBytes = 92;
  static constexpr uint32_t kTextMetricBytes = 60;
  static constexpr uint32_t kXformBytes = 24;

  virtual ~PrintRelayPlatform() = default;

  // Device contexts and documents.
  virtual int32_t DeleteDC(GdiHandle dc) = 0;
  virtual int32_t SaveDC(GdiHandle dc) = 0;
  virtual int32_t RestoreDC(GdiHandle dc, int32_t savedDC) = 0;
  virtual int32_t StartDocW(GdiHandle dc, const GdiDocumentInfo& info) = 0;
  virtual int32_t StartPage(GdiHandle dc) = 0;
  virtual int32_t EndPage(GdiHandle dc) = 0;
  virtual int32_t EndDoc(GdiHandle dc) = 0;
  virtual int32_t GetDeviceCaps(GdiHandle dc, int32_t index) = 0;
  virtual int32_t LPtoDP(GdiHandle dc, GdiPoint* points, int32_t count) = 0;
  virtual int32_t DPtoLP(GdiHandle dc, GdiPoint* points, int32_t count) = 0;

  // Clipping, paths and lines.
  virtual int32_t IntersectClipRect(GdiHandle dc, int32_t left, int32_t top, int32_t right, int32_t bottom) = 0;
  virtual int32_t SelectClipPath(GdiHandle dc, int32_t mode) = 0;
  virtual int32_t SelectClipRgn(GdiHandle dc, GdiHandle region) = 0;
  virtual int32_t SetPolyFillMode(GdiHandle dc, int32_t mode) = 0;
  virtual int32_t BeginPath(GdiHandle dc) = 0;
  virtual int32_t EndPath(GdiHandle dc) = 0;
  // MoveToEx with a null previous point.
  virtual int32_t MoveToEx(GdiHandle dc, int32_t x, int32_t y) = 0;
  virtual int32_t LineTo(GdiHandle dc, int32_t x, int32_t y) = 0;
  virtual int32_t PolyBezierTo(GdiHandle dc, const GdiPoint* points, uint32_t count) = 0;
  virtual int32_t FillPath(GdiHandle dc) = 0;
  virtual int32_t StrokePath(GdiHandle dc) = 0;
  virtual int32_t FillRect(GdiHandle dc, const GdiRect& rect, GdiHandle brush) = 0;
  virtual int32_t StretchDIBits(GdiHandle dc, const GdiStretch& stretch) = 0;

  // Objects.
  virtual GdiHandle CreateSolidBrush(uint32_t color) = 0;
  // No custom style entries.
  virtual GdiHandle ExtCreatePen(uint32_t style, uint32_t width, const GdiLogBrush& brush) = 0;
  // `logFont` holds kLogFontBytes of LOGFONTW.
  virtual GdiHandle CreateFontIndirectW(const uint8_t* logFont) = 0;
  virtual GdiHandle SelectObject(GdiHandle dc, GdiHandle object) = 0;
  virtual GdiHandle GetCurrentObject(GdiHandle dc, uint32_t type) = 0;
  virtual int32_t DeleteObject(GdiHandle object) = 0;
  virtual uint32_t GetObjectType(GdiHandle object) = 0;

  // Text and its attributes.
  virtual uint32_t GetTextAlign(GdiHandle dc) = 0;
  virtual uint32_t SetTextAlign(GdiHandle dc, uint32_t align) = 0;
  virtual int32_t GetBkMode(GdiHandle dc) = 0;
  virtual int32_t SetBkMode(GdiHandle dc, int32_t mode) = 0;
  virtual uint32_t GetTextColor(GdiHandle dc) = 0;
  virtual uint32_t SetTextColor(GdiHandle dc, uint32_t color) = 0;
  virtual int32_t SetTextCharacterExtra(GdiHandle dc, int32_t extra) = 0;
  virtual int32_t SetGraphicsMode(GdiHandle dc, int32_t mode) = 0;
  virtual int32_t ExtTextOutA(GdiHandle dc, int32_t x, int32_t y, uint32_t options, const GdiRect* rect,
                              const char* text, uint32_t count, const int32_t* spacing) = 0;
  virtual int32_t ExtTextOutW(GdiHandle dc, int32_t x, int32_t y, uint32_t options, const GdiRect* rect,
                              const char16_t* text, uint32_t count, const int32_t* spacing) = 0;
  virtual int32_t GetTextExtentPoint32A(GdiHandle dc, const char* text, int32_t count, GdiSize& size) = 0;
  virtual int32_t GetTextExtentPoint32W(GdiHandle dc, const char16_t* text, int32_t count, GdiSize& size) = 0;
  // TEXTMETRICW as kTextMetricBytes bytes.
  virtual int32_t GetTextMetricsW(GdiHandle dc, uint8_t* textMetric) = 0;
  // XFORM as kXformBytes bytes, both ways.
  virtual int32_t GetWorldTransform(GdiHandle dc, uint8_t* xform) = 0;
  virtual int32_t SetWorldTransform(GdiHandle dc, const uint8_t* xform) = 0;

  // The font-link service; absent when the server could not create it.
  virtual bool HasFontLink() = 0;
  virtual int32_t GetFontCodePages(GdiHandle dc, GdiHandle font, uint32_t& codePages) = 0;
  virtual int32_t MapFont(GdiHandle dc, uint32_t codePages, GdiHandle sourceFont, GdiHandle& linkedFont) = 0;
  virtual int32_t ReleaseFont(GdiHandle font) = 0;

  // Byte arrays. False for a null array.
  virtual bool DescribeByteArray(ByteArray array, ByteArrayShape& shape) = 0;
  // SafeArrayAccessData: its HRESULT.
  virtual int32_t AccessByteArray(ByteArray array, uint8_t*& data) = 0;
  virtual void UnaccessByteArray(ByteArray array) = 0;
};

}  // namespace SASM
