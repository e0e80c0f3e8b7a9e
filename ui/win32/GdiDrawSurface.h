#pragma once
// The drawing surface over a GDI context: the window's back buffer.
#include "engine/win32/WindowsApi.h"
#include "ui/IDrawSurface.h"
#include "ui/win32/Msimg32DllHelper.h"

namespace SASM {

class GdiDrawSurface : public IDrawSurface {
 public:
  GdiDrawSurface(HDC dc, Msimg32DllHelper::AlphaBlendFn alphaBlend) : dc_(dc), alphaBlend_(alphaBlend) {}

  void FillSolid(const MRect& destination, uint32_t colour) override;
  void StretchCopy(const MBlit& blit, void* image) override;
  void AlphaBlend(const MBlit& blit, void* image, uint8_t alpha) override;

 private:
  HDC dc_;
  Msimg32DllHelper::AlphaBlendFn alphaBlend_;
};

}  // namespace SASM
