#include "ui/MWindow.h"

#include "ui/MRegion.h"
#include "ui/MorphUI.h"

namespace SASM {

MWindow::MWindow(MorphUI* ui) : morph(ui) {
  rect = MRect{kDefaultPosition, kDefaultPosition, 100, 100};
  // The minimise box is for a host that listens; the shim builds the window before any callback is set.
  host_ = ui->System().CreateWindowHost(*this, ui->callback != nullptr);
  if (!host_) return;
  handle = host_->Handle();
  ApplyRect(false, false);
  host_->StartTimer(kTickMilliseconds);
}

MWindow::~MWindow() = default;

void MWindow::AttachRegion(MRegion* region) {
  region->parent = nullptr;
  region->owner = this;
  MRegion::AppendTo(firstRegion, region);
  if ((region->drawFlags & MRegion::kNativeWindow) && !region->nativeWindow && host_)
    region->nativeWindow = host_->CreateNativeChild(*region, region->AbsoluteBounds());
}

void MWindow::ApplyRect(bool animating, bool notify) {
  if (!animating) targetRect = rect;
  if (host_) host_->ApplyWindowRect(rect);
  if (!animating && notify) HandleEvent(2, 2, 0);
}

void MWindow::ApplyTitle() {
  if (host_) host_->SetTitle(title);
}

void MWindow::Show(bool show) {
  if (host_) host_->Show(show);
}

void MWindow::SetCursorKind(int32_t kind) {
  cursorKind = kind;
  if (host_) host_->SetCursorKind(kind);
}

void MWindow::CaptureRegion(MRegion* region) {
  capturedRegion = region;
  if (host_) host_->SetCapture();
}

void MWindow::ReleaseRegionCapture() {
  capturedRegion = nullptr;
  if (host_) host_->ReleaseCapture();
}

void MWindow::ExitInstaller(int32_t code) {
  morph->Notify(0, code);
  if (host_) host_->PostQuit(code);
}

namespace {

// A whole step of 1 arrives at once; otherwise half the way, rounding towards
// minus infinity, so -1 arrives too.
int32_t AnimationStep(int32_t difference) { return difference == 1 ? 1 : difference >> 1; }

void WalkTimer(MRegion* first, MWindow* window) {
  for (MRegion* region = first; region; region = region->Next()) {
    MPoint scratch;
    if (region->handler)
      region->handler(region, window, &scratch, false, MWindow::kTimer, region->handlerContext);
    WalkTimer(region->firstChild, window);
  }
}

}  // namespace

void MWindow::OnTimer() {
  const int32_t dW = targetRect.right - rect.right;
  const int32_t dH = targetRect.bottom - rect.bottom;
  if (dW != 0 || dH != 0) {
    rect.right += AnimationStep(dW);
    rect.bottom += AnimationStep(dH);
    ApplyRect(true, true);
    HandleEvent(2, 2, 0);
  }
  HandleEvent(2, 4, 0);
  WalkTimer(firstRegion, this);
}

void MWindow::OnMouse(uint32_t message, uint32_t lParam) {
  const MPoint point{static_cast<int32_t>(lParam & 0xFFFF), static_cast<int32_t>((lParam >> 16) & 0xFFFF)};
  bool consumed = false;
  if (capturedRegion) {
    MPoint local = point;
    for (const MRegion* r = capturedRegion; r; r = r->parent) {
      local.x -= r->bounds.left;
      local.y -= r->bounds.top;
    }
    consumed = capturedRegion->HitTest(local, message, true);
  }
  for (MRegion* region = firstRegion; !consumed && region; region = region->Next())
    consumed = region->HitTest({point.x - region->bounds.left, point.y - region->bounds.top}, message, false);
  if (message == kButtonDown && !consumed) SetFocusRegion(nullptr, false);
}

void MWindow::OnPaint(const MRect& dirty, IDrawSurface& backBuffer) {
  if (dirty.right == 0 || dirty.bottom == 0) return;
  backBuffer.FillSolid(MRect::FromSize(0, 0, dirty.Width(), dirty.Height()), backgroundColor);
  MRegion::DrawChain(firstRegion, dirty, MPoint{}, backBuffer);
}

void MWindow::OnClose() {
  HandleEvent(2, 0, 0);
  ExitInstaller(kCloseExitCode);
}

bool MWindow::IsFocusable(const MRegion* region) {
  return region && region->controlId >= 1 && region->visible && region->enabled;
}

MRegion* MWindow::NextFocus(void* start, bool forward) {
  if (!host_ || !start) return nullptr;
  void* current = start;
  for (;;) {
    void* next = host_->NativeNeighbour(current, forward ? NativeStep::kNext : NativeStep::kPrevious);
    if (!next) next = host_->NativeNeighbour(current, forward ? NativeStep::kFirst : NativeStep::kLast);
    if (!next) break;
    current = next;
    if (current == start || IsFocusable(host_->RegionOfNative(current))) break;
  }
  MRegion* region = host_->RegionOfNative(current);
  return IsFocusable(region) ? region : nullptr;
}

void MWindow::OnWindowTab(bool shiftDown) {
  if (!host_) return;
  SetFocusRegion(NextFocus(host_->FirstNativeChild(), shiftDown), true);
}

void MWindow::OnChildTab(void* child, bool shiftDown) { SetFocusRegion(NextFocus(child, !shiftDown), true); }

}  // namespace SASM
