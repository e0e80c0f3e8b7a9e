#include "ui/win32/GdiTextCanvas.h"

#include <algorithm>
#include <cstring>

namespace SASM {
namespace {

constexpr BYTE kCharset = 1;
constexpr BYTE kQuality = 2;
constexpr BYTE kPitchAndFamily = 2;

HFONT MakeFont(const char* face, int32_t height, int weight) {
  return CreateFontA(height, 0, 0, 0, weight, 0, 0, 0, kCharset, 0, 0, kQuality, kPitchAndFamily, face);
}

}  // namespace

GdiTextCanvas::GdiTextCanvas(HDC compatibleWith, const char* face, int32_t height) {
  dc_ = CreateCompatibleDC(compatibleWith);
  if (!dc_) return;
  SetBkMode(dc_, TRANSPARENT);
  normalFont_ = MakeFont(face, height, FW_NORMAL);
  boldFont_ = MakeFont(face, height, FW_BOLD);
  if (normalFont_) originalFont_ = SelectObject(dc_, normalFont_);
}

GdiTextCanvas::~GdiTextCanvas() {
  if (dc_) {
    if (originalFont_) SelectObject(dc_, originalFont_);
    if (originalBitmap_) SelectObject(dc_, originalBitmap_);
    DeleteDC(dc_);
  }
  if (normalFont_) DeleteObject(normalFont_);
  if (boldFont_) DeleteObject(boldFont_);
  if (bitmap_) DeleteObject(bitmap_);
}

bool GdiTextCanvas::Resize(int32_t width, int32_t height) {
  if (!dc_ || width <= 0 || height <= 0) return false;
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  HBITMAP bitmap = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (!bitmap) return false;
  HGDIOBJ previous = SelectObject(dc_, bitmap);
  if (!originalBitmap_) originalBitmap_ = previous;
  if (bitmap_) DeleteObject(bitmap_);
  bitmap_ = bitmap;
  pixels_ = static_cast<uint32_t*>(bits);
  pixelCount_ = static_cast<size_t>(width) * static_cast<size_t>(height);
  return true;
}

void GdiTextCanvas::Clear() {
  GdiFlush();
  if (pixels_) std::memset(pixels_, 0, pixelCount_ * sizeof(uint32_t));
}

uint32_t* GdiTextCanvas::Pixels() {
  GdiFlush();
  return pixels_;
}

TextLineBreaker::Measure GdiTextCanvas::MeasureText(std::u16string_view text, bool bold, int32_t maxWidth) {
  TextLineBreaker::Measure measure;
  HFONT font = bold ? boldFont_ : normalFont_;
  if (font) SelectObject(dc_, font);
  if (extents_.size() < text.size()) extents_.resize(text.size());
  INT fit = 0;
  SIZE size{};
  if (!GetTextExtentExPointW(dc_, reinterpret_cast<const wchar_t*>(text.data()), static_cast<int>(text.size()),
                             std::max(maxWidth, 0), &fit, extents_.data(), &size))
    return measure;
  fit = std::clamp(fit, 0, static_cast<INT>(text.size()));
  measure.fit = fit;
  measure.extents.assign(extents_.begin(), extents_.begin() + fit);
  measure.width = size.cx;
  measure.height = size.cy;
  return measure;
}

int32_t GdiTextCanvas::DrawText(std::u16string_view text, const TextLineBreaker::Edges& e, uint32_t colour,
                                uint32_t format) {
  SetTextColor(dc_, colour);
  RECT r{e.left, e.top, e.right, e.bottom};
  return ::DrawTextW(dc_, reinterpret_cast<const wchar_t*>(text.data()), static_cast<int>(text.size()), &r, format);
}

void GdiTextCanvas::FillWhite(const MRect& rect) {
  HBRUSH white = CreateSolidBrush(16777215);
  RECT r{rect.left, rect.top, rect.right, rect.bottom};
  FillRect(dc_, &r, white);
  DeleteObject(white);
}

}  // namespace SASM
