#pragma once
// The fixed lists of registry keys that removal visits, told as walks: each
// family calls a visitor with every full key name in a fixed order. A name
// begins with its root word, "MACHINE\" or "CLASSES_ROOT\".
#include <cstdint>

namespace SASM {

class IRegistry;

class RegistryKeyFamilies {
 public:
  enum class Family {
    // Five earlier class and interface pairs, then the control family.
    ActiveXMachineClasses,
    // The control this build registers: its class, interface and library.
    Control,
    // The control generation before this one.
    SecondControl,
    // Keys of the oldest players, with the program id family inside it.
    ClassRoot,
    ProgramId,
  };

  // The two selections of the clean-up: the ActiveX classes, and the old class keys.
  enum class Selection { ActiveXClasses, OldClassKeys };

  using Visitor = void (*)(void* context, const char* keyName);

  static constexpr char kMachineRoot[] = "MACHINE\\";

  static void Walk(Family family, Visitor visitor, void* context);
  static void Walk(Selection selection, Visitor visitor, void* context);

  // Deletes a "MACHINE\" name's key tree from the machine hive; any other name is
  // left alone and answers 0. The status is the platform's.
  static int32_t DeleteMachineKey(IRegistry& registry, const char* keyName);
  // A visitor whose context is the IRegistry to delete from.
  static void DeleteVisitor(void* registry, const char* keyName);

  // The order the lists come with: names of digits only (or empty) compare by value
  // and sort after all others; other names compare byte for byte. Below 0, 0, above 0.
  static int32_t CompareNames(const char* a, const char* b);
};

}  // namespace SASM
