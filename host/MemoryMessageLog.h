#pragma once
// The reference host's message log: every report kept in memory, in order.
#include <vector>

#include "engine/MessageLog.h"
#include "engine/MString.h"

namespace SASM {

class MemoryMessageLog : public MessageLog {
 public:
  struct Entry {
    int32_t severity;
    int32_t code;
    MString text;
  };

  void Add(int32_t severity, int32_t code, const MString& text) { entries_.push_back({severity, code, text}); }
  const std::vector<Entry>& Entries() const { return entries_; }

  int32_t Count() override { return static_cast<int32_t>(entries_.size()); }
  int32_t Code(int32_t index) override;
  int32_t Severity(int32_t index) override;
  MString& Text(MString& out, int32_t index) override;
  // "Error 1015: C:\x.dll 20" and the like; "Info" and "Warning" for the lower severities.
  MString& Format(MString& out, HostCallbacks* host, int32_t severity, int32_t code, MString text,
                  int32_t reserved) override;

 private:
  bool Valid(int32_t index) const { return index >= 0 && index < static_cast<int32_t>(entries_.size()); }
  std::vector<Entry> entries_;
};

}  // namespace SASM
