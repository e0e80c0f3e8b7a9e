#include "ui/MProgressBar.h"

namespace SASM {

MProgressBar::MProgressBar(MWindow* w, const MScale3Data* trackLook, const MScale3Data* fillLook)
    : window(w), track(trackLook, w), fill(fillLook, w) {
  drawFlags = kNoDraw;
  AttachChild(&track);
  fill.parent = this;
}

MProgressBar::~MProgressBar() {
  track.next = nullptr;
  fill.prev = nullptr;
}

void MProgressBar::Layout() {
  if (value < 1) {
    value = 0;
    track.next = nullptr;
    fill.prev = nullptr;
  } else {
    track.next = &fill;
    fill.prev = &track;
    if (value > 100) value = 100;
  }
  // Attached after construction: the pieces learn their window here.
  track.owner = owner;
  fill.owner = owner;
  const int32_t w = bounds.Width(), h = bounds.Height();
  track.bounds = MRect::FromSize(0, 0, w, h);
  fill.bounds = MRect::FromSize(2, 2, (w - 7) * (value + 1) / 101 + 4, kFillHeight);
  track.Layout();
  fill.Layout();
  SyncNativeWindow();
  Invalidate();
}

}  // namespace SASM
