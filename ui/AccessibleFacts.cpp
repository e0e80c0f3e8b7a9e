#include "ui/AccessibleFacts.h"

#include "ui/MCheckboxButton.h"
#include "ui/MRegion.h"
#include "ui/MWindow.h"

namespace SASM {

const MString& AccessibleFacts::Name(const MRegion& region) { return region.label; }

int32_t AccessibleFacts::Role(const MRegion& region) {
  switch (region.controlKind) {
    case 1:
      return kRolePushButton;
    case 2:
      return kRoleCheckButton;
    case 3:
      return kRoleRadioButton;
    default:
      return kRoleStaticText;
  }
}

int32_t AccessibleFacts::State(const MRegion& region) {
  if (region.controlKind == 0) return kStateReadOnly;
  int32_t state = kStateFocusable;
  if (region.owner && region.owner->focusRegion == &region) state += kStateFocused;
  // Radio buttons answer through their check box base.
  const auto* box = dynamic_cast<const MCheckboxButton*>(&region);
  if (box && box->checked) state += kStateChecked;
  return state;
}

MRect AccessibleFacts::ClientLocation(const MRegion& region) { return region.AbsoluteBounds(); }

}  // namespace SASM
