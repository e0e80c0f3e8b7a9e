#pragma once
// A link run that opens the player's settings applet instead of an address.
#include "ui/MHTMLLink.h"

namespace SASM {

class MNCPLink : public MHTMLLink {
 public:
  using MHTMLLink::MHTMLLink;

 protected:
  void Open(MWindow* window) override;
};

}  // namespace SASM
