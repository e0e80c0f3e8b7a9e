#pragma once
// A text area's bitmap on GDI: a bottom-up 32-bit DIB section in its own
// memory context, compatible with the window's back buffer, transparent
// text in two weights of one face.
#include <vector>

#include "engine/win32/WindowsApi.h"
#include "ui/ITextCanvas.h"

namespace SASM {

class GdiTextCanvas : public ITextCanvas {
 public:
  // Both fonts of the area in this face and height.
  GdiTextCanvas(HDC compatibleWith, const char* face, int32_t height);
  ~GdiTextCanvas() override;
  GdiTextCanvas(const GdiTextCanvas&) = delete;
  GdiTextCanvas& operator=(const GdiTextCanvas&) = delete;

  bool Resize(int32_t width, int32_t height) override;
  void Clear() override;
  uint32_t* Pixels() override;
  void* Image() override { return dc_; }
  TextLineBreaker::Measure MeasureText(std::u16string_view text, bool bold, int32_t maxWidth) override;
  int32_t DrawText(std::u16string_view text, const TextLineBreaker::Edges& rect, uint32_t colour,
                   uint32_t format) override;
  void FillWhite(const MRect& rect) override;

 private:
  HDC dc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ originalBitmap_ = nullptr;
  HGDIOBJ originalFont_ = nullptr;
  HFONT normalFont_ = nullptr;
  HFONT boldFont_ = nullptr;
  uint32_t* pixels_ = nullptr;
  size_t pixelCount_ = 0;
  // As long as the longest text measured; kept from one layout to the next.
  std::vector<INT> extents_;
};

}  // namespace SASM
