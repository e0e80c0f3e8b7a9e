#pragma once
// "prefix:suffix" file-name patterns of the removal lists.
#include "engine/MString.h"
#include "engine/MStringList.h"

namespace SASM {

class FilePattern {
 public:
  // The prefix is the text before the first ":", the suffix the text from the
  // last ":" with every ":" removed; no ":" makes the whole text the prefix.
  explicit FilePattern(const MString& pattern);
  bool Matches(const MString& entry) const;
  // Single-file form: the last matching entry wins; path is directory joined with it.
  bool FindLast(const MStringList& entries, const MString& directory, MString& path) const;
  // Multi-file form: adds directory + "\" + entry for each match; returns the number added.
  int32_t CollectAll(const MStringList& entries, const MString& directory, MStringList& out) const;

  const MString& Prefix() const { return prefix_; }
  const MString& Suffix() const { return suffix_; }

 private:
  MString prefix_;
  MString suffix_;
};

}  // namespace SASM
