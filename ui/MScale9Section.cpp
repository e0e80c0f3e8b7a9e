#include "ui/MScale9Section.h"

namespace SASM {

MScale9Section::MScale9Section(const MScale9Data* data, MWindow* window) {
  if (!data) return;
  top = new MScale3Section(&data->rows[0], window);
  middle = new MScale3Section(&data->rows[1], window);
  bottom = new MScale3Section(&data->rows[2], window);
  AttachChild(top);
  AttachChild(middle);
  AttachChild(bottom);
}

MScale9Section::~MScale9Section() {
  delete top;
  delete middle;
  delete bottom;
}

void MScale9Section::Layout() {
  if (!top) return;
  const int32_t w = bounds.Width();
  const int32_t h = bounds.Height();
  const int32_t topH = top->data->left.height;
  const int32_t bottomH = bottom->data->left.height;
  top->bounds = MRect::FromEdges(0, 0, w, topH);
  middle->bounds = MRect::FromEdges(0, topH, w, h - bottomH);
  bottom->bounds = MRect::FromEdges(0, h - bottomH, w, h);
  top->alpha = alpha;
  middle->alpha = top->alpha;
  bottom->alpha = middle->alpha;
  top->Layout();
  middle->Layout();
  bottom->Layout();
}

}  // namespace SASM
