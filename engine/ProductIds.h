#pragma once
// The product's own class, interface and type library ids: the control this
// build registers, and those of earlier controls that removal still cleans up.
#include "engine/ClassId.h"

namespace SASM::ProductIds {

// The control: its class registration, compatibility flags and download entry use it.
inline constexpr ClassId kControlClass = ClassId::Parse("{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}");
inline constexpr ClassId kControlInterface = ClassId::Parse("{25964DD5-EC91-4CA5-B4AF-056246B304B5}");
inline constexpr ClassId kControlTypeLibrary = ClassId::Parse("{1292A30D-27C0-48F0-9A7C-EB8B6786C020}");

// The control generation before this one: its class, its property page and its library.
inline constexpr ClassId kFormerControlClass = ClassId::Parse("{8A008F5F-7E46-4C5C-99D0-516298B0AF2E}");
inline constexpr ClassId kFormerPropertyPageClass = ClassId::Parse("{A3CA76E7-0442-4923-AF22-3671804A212D}");
inline constexpr ClassId kFormerTypeLibrary = ClassId::Parse("{84F2C518-2D2C-43DE-AE35-37FD098D61EB}");

// Ids of the oldest players, registered straight under the classes root.
inline constexpr ClassId kLegacyPlayerClass = ClassId::Parse("{7E8F861B-0D66-485B-8AE6-5885973F15A1}");
inline constexpr ClassId kLegacyFactoryClass = ClassId::Parse("{B2DCA997-E81C-48C8-B791-59A440198925}");
inline constexpr ClassId kLegacyPlayerInterface = ClassId::Parse("{CE882ADF-F6CB-4555-A5F9-5C588F18CB3E}");
inline constexpr ClassId kLegacyTypeLibrary = ClassId::Parse("{E81B8B1C-3F5E-4C14-8FF9-1308C8A572C6}");
inline constexpr ClassId kLegacyPropertyClass = ClassId::Parse("{EFA8B149-4428-44B9-B2D6-9FF97202B91E}");
inline constexpr ClassId kLegacyMachineClass = ClassId::Parse("{5D3E7A90-2B41-4C6E-9F08-7A1C2E4B6D83}");

}  // namespace SASM::ProductIds
