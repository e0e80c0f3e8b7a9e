#include "engine/PointerVector.h"

#include <cstdlib>

namespace SASM {
namespace SMImplementation {

PointerVector::PointerVector() {
  items = static_cast<void**>(std::malloc(8 * sizeof(void*)));
  capacity = items ? 8 : 0;
}

PointerVector::~PointerVector() { std::free(items); }

void** PointerVector::Reallocate(void** old, int32_t newCapacity) {
  return static_cast<void**>(std::realloc(old, static_cast<size_t>(newCapacity) * sizeof(void*)));
}

bool PointerVector::Append(const void* item) {
  if (count == capacity) {
    int32_t wanted = capacity ? capacity * 2 : 8;
    void** grown = Reallocate(items, wanted);
    if (!grown) {
      capacity = count;
      return false;
    }
    items = grown;
    capacity = wanted;
  }
  items[count++] = CopyItem(item);
  return true;
}

void PointerVector::DeleteAll() {
  for (int32_t i = 0; i < count; ++i) DeleteItem(items[i]);
  count = 0;
}

}  // namespace SMImplementation
}  // namespace SASM
