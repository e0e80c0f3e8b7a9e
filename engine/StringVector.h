#pragma once
// Vector of owned byte strings: each append stores a private copy of the text.
#include "engine/PointerVector.h"

namespace SASM {

class StringVector : public SMImplementation::PointerVector {
 public:
  struct Holder {
    char* text;
  };
  ~StringVector() override;
  void DeleteItem(void* item) override;
  void* CopyItem(const void* item) override;
  const char* At(int32_t index) const;
};

}  // namespace SASM
