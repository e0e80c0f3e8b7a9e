#include "engine/StringVector.h"

#include <cstring>

namespace SASM {

StringVector::~StringVector() { DeleteAll(); }

void StringVector::DeleteItem(void* item) {
  auto* holder = static_cast<Holder*>(item);
  if (!holder) return;
  delete[] holder->text;
  delete holder;
}

void* StringVector::CopyItem(const void* item) {
  const char* text = static_cast<const char*>(item);
  auto* holder = new Holder{nullptr};
  if (text) {
    size_t n = std::strlen(text);
    holder->text = new char[n + 1];
    std::memcpy(holder->text, text, n + 1);
  }
  return holder;
}

const char* StringVector::At(int32_t index) const {
  auto* holder = static_cast<Holder*>(Get(index));
  return holder ? holder->text : nullptr;
}

}  // namespace SASM
