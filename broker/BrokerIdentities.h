#pragma once
// The broker's six generations of classes and interfaces, and their type
// library. All twelve stay known: the newest is served, the older ones are
// looked for and removed. Identifiers are upper-case with braces, as written
// to the registry.
#include <string_view>

namespace SASM {

struct BrokerGeneration {
  std::u16string_view className;
  std::u16string_view classId;
  std::u16string_view interfaceName;
  std::u16string_view interfaceId;
};

namespace BrokerIdentities {

inline constexpr std::u16string_view kLibraryId = u"{FAB3E735-69C7-453B-A446-B6823C6DF1C9}";

// Generation 1 first.
inline constexpr BrokerGeneration kGenerations[6] = {
    {u"LumenBrokerImp", u"{D4304BCF-B8E9-4B35-BEA0-DC5B522670C2}", u"ILumenBroker",
     u"{2E4BB6BE-A75F-4DC0-9500-68203655A2C4}"},
    {u"LumenBrokerImp2", u"{0BE09CC1-42E0-11DD-AE16-0800200C9A66}", u"ILumenBroker2",
     u"{DDF4CE26-4BDA-42BC-B0F0-0E75243AD285}"},
    {u"LumenBrokerImp3", u"{19114156-8E9A-4D4E-9EE9-17A0E48D3BBB}", u"ILumenBroker3",
     u"{1D4C8A81-B7AC-460A-8C23-98713C41D6B3}"},
    {u"LumenBrokerImp4", u"{A483C63A-CDBC-426E-BF93-872502E8144E}", u"ILumenBroker4",
     u"{E3F2C3CB-5EB8-4A04-B22C-7E3B4B6AF30F}"},
    {u"LumenBrokerImp5", u"{73C9DFA0-750D-11E1-B0C4-0800200C9A66}", u"ILumenBroker5",
     u"{6AE38AE0-750C-11E1-B0C4-0800200C9A66}"},
    {u"LumenBrokerImp6", u"{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}", u"ILumenBroker6",
     u"{299817DA-1FAC-4CE2-8F48-A108237013BD}"},
};

// The one generation this build registers and serves.
inline constexpr const BrokerGeneration& kServed = kGenerations[5];

}  // namespace BrokerIdentities
}  // namespace SASM
