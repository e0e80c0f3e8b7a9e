#pragma once
// The product's own class, interface and type library ids: the control this
// build registers, and those of earlier controls that removal still cleans up.
#include "engine/ClassId.h"

namespace SASM::ProductIds {

// The control: its class registration, compatibility flags and download entry use it.
inline constexpr ClassId kControlClass = ClassId::Parse("{7B1C3F52-4D0A-11CF-96B8-5A1E0C2D7F10}");
inline constexpr ClassId kControlInterface = ClassId::Parse("{25964DD5-EC91-4CA5-B4AF-056246B304B5}");
inline constexpr ClassId kControlTypeLibrary = ClassId::Parse("{1292A30D-27C0-48F0-9A7C-EB8B6786C020}");

struct ClassAndInterface {
  ClassId classId;
  ClassId interfaceId;
};

// Earlier control classes, one interface each, oldest first.
inline constexpr ClassAndInterface kEarlierControls[5] = {
    {ClassId::Parse("{1AD8C0A3-6AD0-4DB8-9A15-971353C43256}"), ClassId::Parse("{F5C67B90-6071-4A01-A55E-9C73365C8829}")},
    {ClassId::Parse("{154F230D-691D-4B7C-8BBB-B5DAEECF863D}"), ClassId::Parse("{8DBD5511-6C9F-4348-BA6B-9C27E65326E6}")},
    {ClassId::Parse("{06272B19-4AC9-46A3-BC0C-4F3EC2ACE4D9}"), ClassId::Parse("{D3923D10-874D-4D8F-8A79-1F719DB51D13}")},
    {ClassId::Parse("{62B361A1-38D6-4A51-A780-A14273117017}"), ClassId::Parse("{E79547E6-D4DC-474E-8DA7-F1E5F109CB98}")},
    {ClassId::Parse("{FD98EFF4-09E5-4662-9DF7-1DDD702EC60A}"), ClassId::Parse("{30094ACB-25E5-4C00-89B0-FCCFB0942050}")},
};

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
