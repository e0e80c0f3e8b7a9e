#include "engine/FilePattern.h"

namespace SASM {

FilePattern::FilePattern(const MString& pattern) {
  int32_t first = pattern.FindFirst(":");
  if (first >= pattern.Length()) {
    prefix_ = pattern.IsNull() ? MString::Empty() : pattern;
    suffix_ = MString::Empty();
    return;
  }
  prefix_ = pattern.Substring(0, first);
  int32_t last = pattern.FindLast(":");
  suffix_ = pattern.Substring(last + 1, pattern.Length() - last - 1);
}

bool FilePattern::Matches(const MString& entry) const { return entry.StartsWith(prefix_) && entry.EndsWith(suffix_); }

bool FilePattern::FindLast(const MStringList& entries, const MString& directory, MString& path) const {
  bool found = false;
  for (const MStringList::MStringNode* node = entries.head; node; node = node->next) {
    if (!Matches(node->key)) continue;
    path = directory;
    path.AppendPath(u'\\', node->key);
    found = true;
  }
  return found;
}

int32_t FilePattern::CollectAll(const MStringList& entries, const MString& directory, MStringList& out) const {
  int32_t added = 0;
  for (const MStringList::MStringNode* node = entries.head; node; node = node->next) {
    if (!Matches(node->key)) continue;
    MString path = directory;
    path.Append(u"\\").Append(node->key);
    out.Add(path);
    ++added;
  }
  return added;
}

}  // namespace SASM
