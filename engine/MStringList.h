#pragma once
// Ordered list of key/value text pairs; a plain string list stores the text as both.
#include <cstdint>

#include "engine/MString.h"

namespace SASM {

class MStringList {
 public:
  struct MStringNode {
    MStringNode(const MString& k, const MString& v) : key(k), value(v) {}
    virtual ~MStringNode() = default;
    MString key;
    MString value;
    MStringNode* next = nullptr;
    MStringNode* previous = nullptr;
  };

  // Heap object owned by the caller of Iterate.
  class Iterator {
   public:
    explicit Iterator(const MStringList* list) : list_(list), current_(list->head) {}
    bool AtEnd() const { return current_ == nullptr; }
    void Next() {
      if (current_) current_ = current_->next;
    }
    MString Key() const { return current_ ? current_->key : MString::Empty(); }
    MString Value() const { return current_ ? current_->value : MString::Empty(); }

   private:
    const MStringList* list_;
    MStringNode* current_;
  };

  MStringList() = default;
  MStringList(const MStringList&) = delete;
  MStringList& operator=(const MStringList&) = delete;
  ~MStringList() { Clear(); }

  bool Add(const MString& key, const MString& value);
  bool Add(const MString& text) { return Add(text, text); }
  void Clear();
  Iterator* Iterate() const { return new Iterator(this); }
  // With asPrefix an entry matches when text starts with it.
  bool Contains(const MString& text, bool asPrefix = false) const;
  int32_t Count() const { return count; }

  MStringNode* head = nullptr;
  MStringNode* tail = nullptr;
  int32_t count = 0;
};

}  // namespace SASM
