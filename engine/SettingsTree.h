#pragma once
// The host's settings dictionary: token text with ";" and braces, looked up by dotted key.
#include "engine/MString.h"
#include "engine/MStringList.h"

namespace SASM {

struct SettingsNode {
  SettingsNode* next = nullptr;
  MString name;
  SettingsNode* values = nullptr;    // value nodes use only name and next
  SettingsNode* children = nullptr;  // a repeated block for one key is chained after the first
};

class SettingsTree {
 public:
  SettingsTree() = default;
  SettingsTree(const SettingsTree&) = delete;
  SettingsTree& operator=(const SettingsTree&) = delete;
  ~SettingsTree();

  // Documents, newest first; a document is a node with an empty name.
  SettingsNode* first = nullptr;
};

// Parses text into a new document at the front of the tree.
void ParseSettings(SettingsTree& tree, const MString& text);
const SettingsNode* FindSetting(const SettingsTree& tree, const MString& key);
// As FindSetting, but a node matches when the key part starts with its name.
const SettingsNode* FindSettingByPrefix(const SettingsTree& tree, const MString& key);
// Appends the values of a key; false only when the key is missing.
bool LoadStringList(MStringList& list, const SettingsTree& tree, const MString& name);

}  // namespace SASM
