#include "broker/win32/Win32PrintRelayPlatform.h"

#include <oleauto.h>

#include <cstring>

#include "engine/win32/SafeByteArray.h"

namespace SASM {
namespace {

HDC Dc(GdiHandle handle) { return reinterpret_cast<HDC>(static_cast<uintptr_t>(handle)); }
HGDIOBJ Object(GdiHandle handle) { return reinterpret_cast<HGDIOBJ>(static_cast<uintptr_t>(handle)); }
HFONT Font(GdiHandle handle) { return reinterpret_cast<HFONT>(static_cast<uintptr_t>(handle)); }
GdiHandle Widened(const void* handle) { return static_cast<GdiHandle>(reinterpret_cast<uintptr_t>(handle)); }
POINT* Points(GdiPoint* points) { return reinterpret_cast<POINT*>(points); }

static_assert(sizeof(GdiPoint) == sizeof(POINT) && sizeof(GdiRect) == sizeof(RECT) && sizeof(GdiSize) == sizeof(SIZE));
static_assert(sizeof(LOGFONTW) == PrintRelayPlatform::kLogFontBytes);
static_assert(sizeof(TEXTMETRICW) == PrintRelayPlatform::kTextMetricBytes);
static_assert(sizeof(XFORM) == PrintRelayPlatform::kXformBytes);
static_assert(sizeof(DOCINFOW) == 40);

RECT Rect(const GdiRect& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

}  // namespace

int32_t Win32PrintRelayPlatform::DeleteDC(GdiHandle dc) { return ::DeleteDC(Dc(dc)); }
int32_t Win32PrintRelayPlatform::SaveDC(GdiHandle dc) { return ::SaveDC(Dc(dc)); }
int32_t Win32PrintRelayPlatform::RestoreDC(GdiHandle dc, int32_t savedDC) { return ::RestoreDC(Dc(dc), savedDC); }

int32_t Win32PrintRelayPlatform::StartDocW(GdiHandle dc, const GdiDocumentInfo& info) {
  DOCINFOW document{};
  document.cbSize = static_cast<int>(info.size);
  document.lpszDocName = reinterpret_cast<LPCWSTR>(info.documentName);
  return ::StartDocW(Dc(dc), &document);
}

int32_t Win32PrintRelayPlatform::StartPage(GdiHandle dc) { return ::StartPage(Dc(dc)); }
int32_t Win32PrintRelayPlatform::EndPage(GdiHandle dc) { return ::EndPage(Dc(dc)); }
int32_t Win32PrintRelayPlatform::EndDoc(GdiHandle dc) { return ::EndDoc(Dc(dc)); }
int32_t Win32PrintRelayPlatform::GetDeviceCaps(GdiHandle dc, int32_t index) { return ::GetDeviceCaps(Dc(dc), index); }

int32_t Win32PrintRelayPlatform::LPtoDP(GdiHandle dc, GdiPoint* points, int32_t count) {
  return ::LPtoDP(Dc(dc), Points(points), count);
}

int32_t Win32PrintRelayPlatform::DPtoLP(GdiHandle dc, GdiPoint* points, int32_t count) {
  return ::DPtoLP(Dc(dc), Points(points), count);
}

int32_t Win32PrintRelayPlatform::IntersectClipRect(GdiHandle dc, int32_t left, int32_t top, int32_t right,
                                                   int32_t bottom) {
  return ::IntersectClipRect(Dc(dc), left, top, right, bottom);
}

int32_t Win32PrintRelayPlatform::SelectClipPath(GdiHandle dc, int32_t mode) { return ::SelectClipPath(Dc(dc), mode); }

int32_t Win32PrintRelayPlatform::SelectClipRgn(GdiHandle dc, GdiHandle region) {
  return ::SelectClipRgn(Dc(dc), reinterpret_cast<HRGN>(static_cast<uintptr_t>(region)));
}

int32_t Win32PrintRelayPlatform::SetPolyFillMode(GdiHandle dc, int32_t mode) { return ::SetPolyFillMode(Dc(dc), mode); }
int32_t Win32PrintRelayPlatform::BeginPath(GdiHandle dc) { return ::BeginPath(Dc(dc)); }
int32_t Win32PrintRelayPlatform::EndPath(GdiHandle dc) { return ::EndPath(Dc(dc)); }
int32_t Win32PrintRelayPlatform::MoveToEx(GdiHandle dc, int32_t x, int32_t y) {
  return ::MoveToEx(Dc(dc), x, y, nullptr);
}
int32_t Win32PrintRelayPlatform::LineTo(GdiHandle dc, int32_t x, int32_t y) { return ::LineTo(Dc(dc), x, y); }

int32_t Win32PrintRelayPlatform::PolyBezierTo(GdiHandle dc, const GdiPoint* points, uint32_t count) {
  return ::PolyBezierTo(Dc(dc), reinterpret_cast<const POINT*>(points), count);
}

int32_t Win32PrintRelayPlatform::FillPath(GdiHandle dc) { return ::FillPath(Dc(dc)); }
int32_t Win32PrintRelayPlatform::StrokePath(GdiHandle dc) { return ::StrokePath(Dc(dc)); }

int32_t Win32PrintRelayPlatform::FillRect(GdiHandle dc, const GdiRect& rect, GdiHandle brush) {
  RECT area = Rect(rect);
  return ::FillRect(Dc(dc), &area, reinterpret_cast<HBRUSH>(static_cast<uintptr_t>(brush)));
}

int32_t Win32PrintRelayPlatform::StretchDIBits(GdiHandle dc, const GdiStretch& s) {
  return ::StretchDIBits(Dc(dc), s.xDest, s.yDest, s.widthDest, s.heightDest, s.xSource, s.ySource, s.widthSource,
                         s.heightSource, s.bits, reinterpret_cast<const BITMAPINFO*>(s.header), s.usage, s.rop);
}

GdiHandle Win32PrintRelayPlatform::CreateSolidBrush(uint32_t color) { return Widened(::CreateSolidBrush(color)); }

GdiHandle Win32PrintRelayPlatform::ExtCreatePen(uint32_t style, uint32_t width, const GdiLogBrush& brush) {
  LOGBRUSH logBrush{brush.style, brush.color, static_cast<ULONG_PTR>(brush.hatch)};
  return Widened(::ExtCreatePen(style, width, &logBrush, 0, nullptr));
}

GdiHandle Win32PrintRelayPlatform::CreateFontIndirectW(const uint8_t* logFont) {
  LOGFONTW font;
  std::memcpy(&font, logFont, sizeof(font));
  return Widened(::CreateFontIndirectW(&font));
}

GdiHandle Win32PrintRelayPlatform::SelectObject(GdiHandle dc, GdiHandle object) {
  return Widened(::SelectObject(Dc(dc), Object(object)));
}

GdiHandle Win32PrintRelayPlatform::GetCurrentObject(GdiHandle dc, uint32_t type) {
  return Widened(::GetCurrentObject(Dc(dc), type));
}

int32_t Win32PrintRelayPlatform::DeleteObject(GdiHandle object) { return ::DeleteObject(Object(object)); }
uint32_t Win32PrintRelayPlatform::GetObjectType(GdiHandle object) { return ::GetObjectType(Object(object)); }
uint32_t Win32PrintRelayPlatform::GetTextAlign(GdiHandle dc) { return ::GetTextAlign(Dc(dc)); }
uint32_t Win32PrintRelayPlatform::SetTextAlign(GdiHandle dc, uint32_t align) { return ::SetTextAlign(Dc(dc), align); }
int32_t Win32PrintRelayPlatform::GetBkMode(GdiHandle dc) { return ::GetBkMode(Dc(dc)); }
int32_t Win32PrintRelayPlatform::SetBkMode(GdiHandle dc, int32_t mode) { return ::SetBkMode(Dc(dc), mode); }
uint32_t Win32PrintRelayPlatform::GetTextColor(GdiHandle dc) { return ::GetTextColor(Dc(dc)); }
uint32_t Win32PrintRelayPlatform::SetTextColor(GdiHandle dc, uint32_t color) { return ::SetTextColor(Dc(dc), color); }
int32_t Win32PrintRelayPlatform::SetTextCharacterExtra(GdiHandle dc, int32_t extra) {
  return ::SetTextCharacterExtra(Dc(dc), extra);
}
int32_t Win32PrintRelayPlatform::SetGraphicsMode(GdiHandle dc, int32_t mode) { return ::SetGraphicsMode(Dc(dc), mode); }

int32_t Win32PrintRelayPlatform::ExtTextOutA(GdiHandle dc, int32_t x, int32_t y, uint32_t options, const GdiRect* rect,
                                             const char* text, uint32_t count, const int32_t* spacing) {
  RECT area = rect ? Rect(*rect) : RECT{};
  return ::ExtTextOutA(Dc(dc), x, y, options, rect ? &area : nullptr, text, count,
                       reinterpret_cast<const INT*>(spacing));
}

int32_t Win32PrintRelayPlatform::ExtTextOutW(GdiHandle dc, int32_t x, int32_t y, uint32_t options, const GdiRect* rect,
                                             const char16_t* text, uint32_t count, const int32_t* spacing) {
  RECT area = rect ? Rect(*rect) : RECT{};
  return ::ExtTextOutW(Dc(dc), x, y, options, rect ? &area : nullptr, reinterpret_cast<LPCWSTR>(text), count,
                       reinterpret_cast<const INT*>(spacing));
}

int32_t Win32PrintRelayPlatform::GetTextExtentPoint32A(GdiHandle dc, const char* text, int32_t count, GdiSize& size) {
  return ::GetTextExtentPoint32A(Dc(dc), text, count, reinterpret_cast<SIZE*>(&size));
}

int32_t Win32PrintRelayPlatform::GetTextExtentPoint32W(GdiHandle dc, const char16_t* text, int32_t count,
                                                       GdiSize& size) {
  return ::GetTextExtentPoint32W(Dc(dc), reinterpret_cast<LPCWSTR>(text), count, reinterpret_cast<SIZE*>(&size));
}

int32_t Win32PrintRelayPlatform::GetTextMetricsW(GdiHandle dc, uint8_t* textMetric) {
  TEXTMETRICW metrics{};
  BOOL result = ::GetTextMetricsW(Dc(dc), &metrics);
  std::memcpy(textMetric, &metrics, sizeof(metrics));
  return result;
}

int32_t Win32PrintRelayPlatform::GetWorldTransform(GdiHandle dc, uint8_t* xform) {
  XFORM transform{};
  BOOL result = ::GetWorldTransform(Dc(dc), &transform);
  std::memcpy(xform, &transform, sizeof(transform));
  return result;
}

int32_t Win32PrintRelayPlatform::SetWorldTransform(GdiHandle dc, const uint8_t* xform) {
  XFORM transform;
  std::memcpy(&transform, xform, sizeof(transform));
  return ::SetWorldTransform(Dc(dc), &transform);
}

int32_t Win32PrintRelayPlatform::GetFontCodePages(GdiHandle dc, GdiHandle font, uint32_t& codePages) {
  DWORD pages = 0;
  HRESULT result = fontLink_->GetFontCodePages(Dc(dc), Font(font), &pages);
  codePages = pages;
  return result;
}

int32_t Win32PrintRelayPlatform::MapFont(GdiHandle dc, uint32_t codePages, GdiHandle sourceFont,
                                         GdiHandle& linkedFont) {
  HFONT linked = nullptr;
  HRESULT result = fontLink_->MapFont(Dc(dc), codePages, Font(sourceFont), &linked);
  linkedFont = Widened(linked);
  return result;
}

int32_t Win32PrintRelayPlatform::ReleaseFont(GdiHandle font) { return fontLink_->ReleaseFont(Font(font)); }

bool Win32PrintRelayPlatform::DescribeByteArray(ByteArray array, ByteArrayShape& shape) {
  return SafeByteArray::Describe(array, shape);
}

int32_t Win32PrintRelayPlatform::AccessByteArray(ByteArray array, uint8_t*& data) {
  return SafeByteArray::Access(array, data);
}

void Win32PrintRelayPlatform::UnaccessByteArray(ByteArray array) {
  SafeArrayUnaccessData(static_cast<SAFEARRAY*>(array));
}

}  // namespace SASM
