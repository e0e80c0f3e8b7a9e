#pragma once
// The shape and data of a byte array as the broker receives it: the one place
// the SAFEARRAY descriptor is read for the families' array rules.
#include "engine/win32/WindowsApi.h"

#include <oleauto.h>

#include <cstdint>

#include "broker/ByteArrayShape.h"

namespace SASM::SafeByteArray {

inline bool Describe(void* array, ByteArrayShape& shape) {
  auto* safeArray = static_cast<SAFEARRAY*>(array);
  if (!safeArray) return false;
  shape.dimensions = safeArray->cDims;
  shape.elementSize = safeArray->cbElements;
  // Only a dimension that exists is read.
  shape.lowerBound = safeArray->cDims >= 1 ? safeArray->rgsabound[safeArray->cDims - 1].lLbound : 0;
  shape.count = safeArray->cDims >= 1 ? safeArray->rgsabound[safeArray->cDims - 1].cElements : 0;
  return true;
}

inline int32_t Access(void* array, uint8_t*& data) {
  void* bytes = nullptr;
  HRESULT result = SafeArrayAccessData(static_cast<SAFEARRAY*>(array), &bytes);
  data = static_cast<uint8_t*>(bytes);
  return result;
}

}  // namespace SASM::SafeByteArray
