#pragma once
// An intrusive sibling link. The pointers name MLink parts, not whole objects:
// the node types derive from MLink first, so a cast gives the object back.
namespace SASM {

class MLink {
 public:
  MLink* prev = nullptr;
  MLink* next = nullptr;
};

}  // namespace SASM
