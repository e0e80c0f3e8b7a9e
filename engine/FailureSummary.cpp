#include "engine/FailureSummary.h"

#include "engine/ErrorCodes.h"
#include "engine/MessageLog.h"

namespace SASM {

FailureSummary FailureSummary::Select(MessageLog& log, HostCallbacks* host) {
  FailureSummary summary;
  int32_t count = log.Count();
  // An empty log has no entry to read.
  if (count <= 0) return summary;
  int32_t index = count - 1;
  while (index > 0 && log.Severity(index) < Severity::kUserMustKnow) --index;
  summary.hasEntry = true;
  summary.index = index;
  summary.code = log.Code(index);
  summary.severity = log.Severity(index);
  MString text;
  log.Text(text, index);
  log.Format(summary.text, host, summary.severity, summary.code, text, 0);
  switch (summary.code) {
    case ErrorCode::kLockedSystemFileQueued:
    case ErrorCode::kSystemFileNotRemoved:
      summary.headingId = StringId::kUninstallerAttention;
      summary.titleId = StringId::kUninstallerTitle;
      break;
    case ErrorCode::kInstallerAttention1:
    case ErrorCode::kInstallerAttention2:
      summary.headingId = StringId::kInstallerAttention;
      break;
    default:
      break;
  }
  return summary;
}

}  // namespace SASM
