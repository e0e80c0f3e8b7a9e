#include "host/MemoryMessageLog.h"

namespace SASM {

int32_t MemoryMessageLog::Code(int32_t index) { return Valid(index) ? entries_[index].code : 0; }

int32_t MemoryMessageLog::Severity(int32_t index) { return Valid(index) ? entries_[index].severity : 0; }

MString& MemoryMessageLog::Text(MString& out, int32_t index) {
  out = Valid(index) ? entries_[index].text : MString::Empty();
  return out;
}

MString& MemoryMessageLog::Format(MString& out, HostCallbacks*, int32_t severity, int32_t code, MString text,
                                  int32_t) {
  static const char16_t* const kWords[] = {u"Info", u"Warning", u"Error"};
  out = MString(severity >= 0 && severity <= 2 ? kWords[severity] : u"Error");
  out.Append(u" ").Append(MString::FromNumber(code));
  if (!text.IsEmpty()) out.Append(u": ").Append(text);
  return out;
}

}  // namespace SASM
