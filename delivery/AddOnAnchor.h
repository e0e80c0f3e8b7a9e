#pragma once
// The certificate that every signed add-on message must chain to: built in,
// or a file the host names instead.
#include <string_view>

#include "delivery/ByteBuffer.h"

namespace SASM {

class IProductFiles;

class AddOnAnchor {
 public:
  // A fresh copy of the built-in certificate.
  static bool LoadBuiltInAnchor(ByteBuffer& buffer);
  // The whole file at overridePath when it is not empty, else the built-in certificate.
  static bool LoadAnchor(IProductFiles& files, std::u16string_view overridePath, ByteBuffer& buffer);
};

}  // namespace SASM
