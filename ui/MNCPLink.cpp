#include "ui/MNCPLink.h"

#include "engine/HostCallbacks.h"
#include "engine/LumenBrokerShim.h"
#include "ui/MWindow.h"
#include "ui/MorphUI.h"

namespace SASM {

void MNCPLink::Open(MWindow* window) {
  if (window && window->morph && window->morph->host && window->morph->host->shim)
    window->morph->host->shim->OpenControlPanelApplet();
}

}  // namespace SASM
