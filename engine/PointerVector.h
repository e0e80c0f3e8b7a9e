#pragma once
// Growable array of owned items of the file layer; subclasses say how an item
// is copied in and deleted.
#include <cstdint>

namespace SASM {
namespace SMImplementation {

class PointerVector {
 public:
  PointerVector();
  PointerVector(const PointerVector&) = delete;
  PointerVector& operator=(const PointerVector&) = delete;
  virtual ~PointerVector();
  virtual void DeleteItem(void* item) = 0;
  virtual void* CopyItem(const void* item) = 0;

  // Stores what CopyItem returns; false when the array cannot grow.
  bool Append(const void* item);
  void* Get(int32_t index) const { return index >= 0 && index < count ? items[index] : nullptr; }
  int32_t Count() const { return count; }
  int32_t Capacity() const { return capacity; }

 protected:
  // Growth goes through here so that a failing allocator can be put in its place.
  virtual void** Reallocate(void** old, int32_t newCapacity);
  void DeleteAll();

  void** items = nullptr;
  int32_t count = 0;
  int32_t capacity = 0;
};

}  // namespace SMImplementation
}  // namespace SASM
