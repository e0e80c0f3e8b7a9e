#include "engine/MStringList.h"

namespace SASM {

bool MStringList::Add(const MString& key, const MString& value) {
  auto* node = new MStringNode(key, value);
  node->previous = tail;
  if (tail) tail->next = node;
  else head = node;
  tail = node;
  ++count;
  return true;
}

void MStringList::Clear() {
  if (!head) return;
  // Tail first, as the list has always been torn down; a loop rather than
  // recursion so that a long list cannot exhaust the stack.
  MStringNode* node = head;
  while (node->next) node = node->next;
  while (node) {
    MStringNode* previous = node->previous;
    delete node;
    node = previous;
  }
  head = tail = nullptr;
  count = 0;
}

bool MStringList::Contains(const MString& text, bool asPrefix) const {
  for (MStringNode* node = head; node; node = node->next) {
    if (asPrefix ? text.StartsWith(node->key) : text.Equals(node->key)) return true;
  }
  return false;
}

}  // namespace SASM
