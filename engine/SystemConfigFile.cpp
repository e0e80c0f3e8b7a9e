#include "engine/SystemConfigFile.h"

namespace SASM {
namespace {

constexpr size_t kMarkBytes = 4;
constexpr size_t kFirstLineCapacity = 1024;

// Signed on purpose: bytes of 128 and up are negative and count as blanks too.
bool IsBlank(char c) { return static_cast<signed char>(c) <= 32; }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool StartsWith(std::string_view text, std::string_view prefix) { return text.substr(0, prefix.size()) == prefix; }

}  // namespace

SystemConfigFile::SystemConfigFile(IFileSystem& files, std::u16string_view path) {
  std::string bytes;
  if (files.ReadAll(path, bytes) != FileError::kSuccess || bytes.size() < kMarkBytes) return;
  std::string_view text(bytes);
  if (StartsWith(text, "\xEF\xBB\xBF")) {
    state_ = kUtf8Marked;
    Parse(text.substr(3));
  } else if (StartsWith(text, "\xFF\xFE") || StartsWith(text, "\xFE\xFF")) {
    // UTF-16 isn't read: every key keeps its default.
    state_ = kUtf16Marked;
  } else {
    state_ = kPlain;
    Parse(text);
  }
}

std::string SystemConfigFile::Get(std::string_view key) const {
  auto found = values_.find(key);
  return found == values_.end() ? std::string() : found->second;
}

bool SystemConfigFile::IsTrue(std::string_view value) {
  std::string lowered(value);
  for (char& c : lowered) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  if (lowered == "true" || lowered == "t" || lowered == "yes" || lowered == "y") return true;
  // The decimal reading: blanks, a sign, then digits up to the first other character.
  size_t at = 0;
  while (at < lowered.size() && (lowered[at] == ' ' || (lowered[at] >= '\t' && lowered[at] <= '\r'))) ++at;
  if (at < lowered.size() && (lowered[at] == '+' || lowered[at] == '-')) ++at;
  for (; at < lowered.size() && lowered[at] >= '0' && lowered[at] <= '9'; ++at) {
    if (lowered[at] != '0') return true;
  }
  return false;
}

void SystemConfigFile::Parse(std::string_view text) {
  // Lines have no length limit: the buffer starts at 1024 bytes and doubles.
  std::string line;
  line.reserve(kFirstLineCapacity);
  for (size_t at = 0; at < text.size(); ++at) {
    char c = text[at];
    if (c == '\n' || c == '\r') {
      AcceptLine(line);
      line.clear();
      if (c == '\r' && at + 1 < text.size() && text[at + 1] == '\n') ++at;
      continue;
    }
    if (line.size() == line.capacity()) line.reserve(line.capacity() * 2);
    line.push_back(c);
  }
  // The last line needs no end.
  if (!line.empty()) AcceptLine(line);
}

void SystemConfigFile::AcceptLine(std::string_view line) {
  size_t equals = line.find('=');
  if (equals == std::string_view::npos) return;
  std::string_view key = Trim(line.substr(0, equals));
  std::string_view value = Trim(line.substr(equals + 1));
  if (key.empty() || value.empty()) return;
  // The last line with a key wins.
  values_.insert_or_assign(std::string(key), std::string(value));
}

}  // namespace SASM
