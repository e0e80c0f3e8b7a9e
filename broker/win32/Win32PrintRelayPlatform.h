#pragma once
// The print relay's GDI calls on the real device, the server's font-link
// service, and SAFEARRAY access.
#include "engine/win32/WindowsApi.h"

#include <mlang.h>

#include "broker/PrintRelayPlatform.h"

namespace SASM {

class Win32PrintRelayPlatform : public PrintRelayPlatform {
 public:
  // `fontLink` belongs to the broker object and may be null.
  explicit Win32PrintRelayPlatform(IMLangFontLink* fontLink) : fontLink_(fontLink) {}

  int32_t DeleteDC(GdiHandle dc) override;
  int32_t SaveDC(GdiHandle dc) override;
  int32_t RestoreDC(GdiHandle dc, int32_t savedDC) override;
  int32_t StartDocW(GdiHandle dc, const GdiDocumentInfo& info) override;
  int32_t StartPage(GdiHandle dc) override;
  int32_t EndPage(GdiHandle dc) override;
  int32_t EndDoc(GdiHandle dc) override;
  int32_t GetDeviceCaps(GdiHandle dc, int32_t index) override;
  int32_t LPtoDP(GdiHandle dc, GdiPoint* points, int32_t count) override;
  int32_t DPtoLP(GdiHandle dc, GdiPoint* points, int32_t count) override;
  int32_t IntersectClipRect(GdiHandle dc, int32_t left, int32_t top, int32_t right, int32_t bottom) override;
  int32_t SelectClipPath(GdiHandle dc, int32_t mode) override;
  int32_t SelectClipRgn(GdiHandle dc, GdiHandle region) override;
  int32_t SetPolyFillMode(GdiHandle dc, int32_t mode) override;
  int32_t BeginPath(GdiHandle dc) override;
  int32_t EndPath(GdiHandle dc) override;
  int32_t MoveToEx(GdiHandle dc, int32_t x, int32_t y) override;
  int32_t LineTo(GdiHandle dc, int32_t x, int32_t y) override;
  int32_t PolyBezierTo(GdiHandle dc, const GdiPoint* points, uint32_t count) override;
  int32_t FillPath(GdiHandle dc) override;
  int32_t StrokePath(GdiHandle dc) override;
  int32_t FillRect(GdiHandle dc, const GdiRect& rect, GdiHandle brush) override;
  int32_t StretchDIBits(GdiHandle dc, const GdiStretch& stretch) override;
  GdiHandle CreateSolidBrush(uint32_t color) override;
  GdiHandle ExtCreatePen(uint32_t style, uint32_t width, const GdiLogBrush& brush) override;
  GdiHandle CreateFontIndirectW(const uint8_t* logFont) override;
  GdiHandle SelectObject(GdiHandle dc, GdiHandle object) override;
  GdiHandle GetCurrentObject(GdiHandle dc, uint32_t type) override;
  int32_t DeleteObject(GdiHandle object) override;
  uint32_t GetObjectType(GdiHandle object) override;
  uint32_t GetTextAlign(GdiHandle dc) override;
  uint32_t SetTextAlign(GdiHandle dc, uint32_t align) override;
  int32_t GetBkMode(GdiHandle dc) override;
  int32_t SetBkMode(GdiHandle dc, int32_t mode) override;
  uint32_t GetTextColor(GdiHandle dc) override;
  uint32_t SetTextColor(GdiHandle dc, uint32_t color) override;
  int32_t SetTextCharacterExtra(GdiHandle dc, int32_t extra) override;
  int32_t SetGraphicsMode(GdiHandle dc, int32_t mode) override;
  int32_t ExtTextOutA(GdiHandle dc, int32_t x, int32_t y, uint32_t options, const GdiRect* rect, const char* text,
                      uint32_t count, const int32_t* spacing) override;
  int32_t ExtTextOutW(GdiHandle dc, int32_t x, int32_t y, uint32_t options, const GdiRect* rect,
                      const char16_t* text, uint32_t count, const int32_t* spacing) override;
  int32_t GetTextExtentPoint32A(GdiHandle dc, const char* text, int32_t count, GdiSize& size) override;
  int32_t GetTextExtentPoint32W(GdiHandle dc, const char16_t* text, int32_t count, GdiSize& size) override;
  int32_t GetTextMetricsW(GdiHandle dc, uint8_t* textMetric) override;
  int32_t GetWorldTransform(GdiHandle dc, uint8_t* xform) override;
  int32_t SetWorldTransform(GdiHandle dc, const uint8_t* xform) override;
  bool HasFontLink() override { return fontLink_ != nullptr; }
  int32_t GetFontCodePages(GdiHandle dc, GdiHandle font, uint32_t& codePages) override;
  int32_t MapFont(GdiHandle dc, uint32_t codePages, GdiHandle sourceFont, GdiHandle& linkedFont) override;
  int32_t ReleaseFont(GdiHandle font) override;
  bool DescribeByteArray(ByteArray array, ByteArrayShape& shape) override;
  int32_t AccessByteArray(ByteArray array, uint8_t*& data) override;
  void UnaccessByteArray(ByteArray array) override;

 private:
  IMLangFontLink* fontLink_;
};

}  // namespace SASM
