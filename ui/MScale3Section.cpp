#include "ui/MScale3Section.h"

namespace SASM {

MScale3Section::MScale3Section(const MScale3Data* d, MWindow* w) : data(d), window(w) {
  if (!data) return;
  left = new MSkinnedSection(data->image, data->left);
  middle = new MSkinnedSection(data->image, data->middle);
  right = new MSkinnedSection(data->image, data->right);
  for (MSkinnedSection* piece : {left, middle, right}) piece->parent = this;
  left->next = middle;
  middle->prev = left;
  middle->next = right;
  right->prev = middle;
  firstChild = left;
}

MScale3Section::~MScale3Section() {
  delete left;
  delete middle;
  delete right;
}

void MScale3Section::Layout() {
  if (!data) return;
  const int32_t h = bounds.Height();
  const int32_t w = bounds.Width();
  left->bounds = MRect::FromEdges(0, 0, data->left.width, h);
  right->bounds = MRect::FromEdges(w - data->right.width, 0, w, h);
  middle->bounds = MRect::FromEdges(left->bounds.right, 0, right->bounds.left, h);
  left->alpha = alpha;
  middle->alpha = left->alpha;
  right->alpha = middle->alpha;
  left->sourceRect = data->left;
  middle->sourceRect = data->middle;
  right->sourceRect = data->right;
  for (MSkinnedSection* piece : {left, middle, right}) piece->SetDrawMode(data->drawMode);
  SyncNativeWindow();
  Invalidate();
}

}  // namespace SASM
