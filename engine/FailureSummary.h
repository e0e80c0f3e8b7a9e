#pragma once
// What the failure panel shows: the last entry the user must be told of, or
// the first entry when none is that serious, with the heading it calls for.
#include <cstdint>

#include "engine/MString.h"

namespace SASM {

class HostCallbacks;
class MessageLog;

struct FailureSummary {
  bool hasEntry = false;
  int32_t index = -1;
  int32_t code = 0;
  int32_t severity = 0;
  MString text;  // the log's own display text of the entry
  // String ids to use instead of the panel's own; 0 leaves it as it is.
  uint32_t headingId = 0;
  uint32_t titleId = 0;

  static FailureSummary Select(MessageLog& log, HostCallbacks* host);
};

}  // namespace SASM
