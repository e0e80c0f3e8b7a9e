#pragma once
// The host's record of what was reported; the failure panel reads it back.
#include <cstdint>

#include "engine/MString.h"

namespace SASM {

class HostCallbacks;

class MessageLog {
 public:
  virtual ~MessageLog() = default;
  virtual int32_t Count() = 0;
  virtual int32_t Code(int32_t index) = 0;
  virtual int32_t Severity(int32_t index) = 0;
  virtual MString& Text(MString& out, int32_t index) = 0;
  // Display text of one entry; the last argument is always 0.
  virtual MString& Format(MString& out, HostCallbacks* host, int32_t severity, int32_t code, MString text,
                          int32_t reserved) = 0;
};

}  // namespace SASM
