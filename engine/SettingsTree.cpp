#include "engine/SettingsTree.h"

namespace SASM {
namespace {

void FreeChain(SettingsNode* node) {
  // Siblings iteratively; only nesting depth recurses.
  while (node) {
    SettingsNode* next = node->next;
    FreeChain(node->values);
    FreeChain(node->children);
    delete node;
    node = next;
  }
}

bool EndsToken(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == u'"' || c == u';' || c == u'{' || c == u'}';
}

class Parser {
 public:
  explicit Parser(std::u16string_view text) : text_(text) {}

  // Parses one level and returns its entries, newest first. Stops after "}" is
  // seen (left for the caller to consume) or at the end of the text.
  SettingsNode* ParseLevel() {
    SettingsNode* level = nullptr;
    SettingsNode* key = nullptr;
    // Where the key's next value and next block go: appends stay constant-time.
    SettingsNode** valueSlot = nullptr;
    SettingsNode** blockSlot = nullptr;
    bool haveKey = false;
    while (true) {
      std::u16string_view token = ReadToken();
      if (!token.empty()) {
        if (!haveKey) {
          key = new SettingsNode;
          key->name = MString(token);
          key->next = level;
          level = key;
          valueSlot = &key->values;
          blockSlot = &key->children;
          haveKey = true;
        } else {
          valueSlot = Append(valueSlot, NewValue(token));
        }
      }
      if (pos_ >= text_.size()) return level;
      char16_t delimiter = text_[pos_];
      if (delimiter < 9) return level;
      if (delimiter == u'}') return level;
      ++pos_;
      if (delimiter == u'"') {
        quoted_ = !quoted_;
      } else if (delimiter == u';') {
        haveKey = false;
      } else if (delimiter == u'{') {
        if (!haveKey) continue;
        // Nesting deeper than any real settings text would exhaust the stack.
        if (depth_ >= kMaxDepth) {
          pos_ = text_.size();
          return level;
        }
        ++depth_;
        SettingsNode* block = ParseLevel();
        --depth_;
        if (pos_ < text_.size() && text_[pos_] == u'}') ++pos_;
        blockSlot = Append(blockSlot, block);
      }
    }
  }

 private:
  std::u16string_view ReadToken() {
    size_t begin = pos_;
    while (pos_ < text_.size()) {
      char16_t c = text_[pos_];
      if (quoted_ ? c == u'"' : (EndsToken(c) || c < 9)) break;
      ++pos_;
    }
    return text_.substr(begin, pos_ - begin);
  }

  static SettingsNode* NewValue(std::u16string_view token) {
    auto* value = new SettingsNode;
    value->name = MString(token);
    return value;
  }

  // Links node (and whatever already follows it) at slot; returns the slot after the chain's end.
  static SettingsNode** Append(SettingsNode** slot, SettingsNode* node) {
    *slot = node;
    while (*slot) slot = &(*slot)->next;
    return slot;
  }

  static constexpr int kMaxDepth = 200;
  std::u16string_view text_;
  size_t pos_ = 0;
  int depth_ = 0;
  bool quoted_ = false;
};

using NameTest = bool (*)(const MString& part, const MString& name);

bool ExactName(const MString& part, const MString& name) { return part.Equals(name); }
bool PrefixName(const MString& part, const MString& name) { return part.StartsWith(name); }

const SettingsNode* FindIn(const SettingsNode* level, MString key, NameTest test) {
  MString head = key.TakeUntil(".");
  bool last = key.IsEmpty();
  if (!last) key.Take(1);
  for (const SettingsNode* node = level; node; node = node->next) {
    if (!test(head, node->name)) continue;
    if (last) return node;
    if (const SettingsNode* found = FindIn(node->children, key, test)) return found;
  }
  return nullptr;
}

const SettingsNode* Find(const SettingsTree& tree, const MString& key, NameTest test) {
  for (const SettingsNode* document = tree.first; document; document = document->next) {
    if (const SettingsNode* found = FindIn(document->children, key, test)) return found;
  }
  return nullptr;
}

}  // namespace

SettingsTree::~SettingsTree() { FreeChain(first); }

void ParseSettings(SettingsTree& tree, const MString& text) {
  Parser parser(text.View());
  auto* document = new SettingsNode;
  document->name = MString::Empty();
  document->children = parser.ParseLevel();
  document->next = tree.first;
  tree.first = document;
}

const SettingsNode* FindSetting(const SettingsTree& tree, const MString& key) { return Find(tree, key, ExactName); }

const SettingsNode* FindSettingByPrefix(const SettingsTree& tree, const MString& key) {
  return Find(tree, key, PrefixName);
}

bool LoadStringList(MStringList& list, const SettingsTree& tree, const MString& name) {
  const SettingsNode* node = FindSetting(tree, name);
  if (!node) return false;
  for (const SettingsNode* value = node->values; value; value = value->next) list.Add(value->name);
  return true;
}

}  // namespace SASM
