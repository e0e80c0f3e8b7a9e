#include "ui/panels/MUIPanel.h"

namespace SASM {

MSkinnedSection* MakeLogo(void* skinImage) { return new MSkinnedSection(skinImage, MSourceRect{34, 0, 47, 71}); }

}  // namespace SASM
