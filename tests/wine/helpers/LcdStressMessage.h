#pragma once
// Messages of the connection directory's stress run, shared by the suite and
// lumen_lcd_child. Every field and a checksum over all bytes, the target
// header included, are checked on receipt, so a torn, stale or misdelivered
// copy shows up as a failed Decode or a sequence that does not follow.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace SASM::LcdStress {

constexpr uint32_t kMagic = 0x5453434C;
constexpr int kMaxParticipants = 16;
constexpr const char* kAbsentName = "lumen-stress-absent";

inline std::string ParticipantName(int index) { return "lumen-stress-" + std::to_string(index); }

struct Fields {
  uint32_t sender;
  uint32_t receiver;
  uint32_t sequence;
};

inline uint32_t Checksum(const uint8_t* bytes, size_t size) {
  uint32_t hash = 2166136261u;  // FNV-1a
  for (size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 16777619u;
  return hash;
}

// Both target encodings, and lengths from a few bytes to most of the message area.
inline std::vector<uint8_t> Encode(const std::string& target, const Fields& fields) {
  const bool longHeader = fields.sequence % 2 == 1;
  const size_t padding = fields.sequence % 32 == 31 ? 32768 : (fields.sequence * 2654435761u >> 16) % 2048;
  std::vector<uint8_t> out;
  const uint32_t length = static_cast<uint32_t>(target.size());
  if (longHeader) {
    out = {12, static_cast<uint8_t>(length >> 24), static_cast<uint8_t>(length >> 16),
           static_cast<uint8_t>(length >> 8), static_cast<uint8_t>(length)};
  } else {
    out = {2, static_cast<uint8_t>(length >> 8), static_cast<uint8_t>(length)};
  }
  out.insert(out.end(), target.begin(), target.end());
  const uint32_t words[] = {kMagic, fields.sender, fields.receiver, fields.sequence};
  const auto* wordBytes = reinterpret_cast<const uint8_t*>(words);
  out.insert(out.end(), wordBytes, wordBytes + sizeof words);
  for (size_t i = 0; i < padding; ++i) out.push_back(static_cast<uint8_t>(fields.sequence * 31 + i));
  const uint32_t sum = Checksum(out.data(), out.size());
  out.insert(out.end(), reinterpret_cast<const uint8_t*>(&sum), reinterpret_cast<const uint8_t*>(&sum) + 4);
  return out;
}

// True when the message is byte for byte what Encode makes of its fields, and its
// target is the receiver its body names.
inline bool Decode(const uint8_t* data, size_t size, std::string* target, Fields* fields) {
  if (size < 3 + 16 + 4) return false;
  uint32_t checksum;
  std::memcpy(&checksum, data + size - 4, 4);
  if (Checksum(data, size - 4) != checksum) return false;
  size_t header = 0, length = 0;
  if (data[0] == 2) {
    header = 3;
    length = (size_t{data[1]} << 8) | data[2];
  } else if (data[0] == 12 && size >= 5) {
    header = 5;
    length = (size_t{data[1]} << 24) | (size_t{data[2]} << 16) | (size_t{data[3]} << 8) | data[4];
  } else {
    return false;
  }
  if (header + length + 16 + 4 > size) return false;
  uint32_t words[4];
  std::memcpy(words, data + header + length, sizeof words);
  if (words[0] != kMagic) return false;
  *fields = {words[1], words[2], words[3]};
  target->assign(reinterpret_cast<const char*>(data + header), length);
  if (fields->receiver >= kMaxParticipants || *target != ParticipantName(static_cast<int>(fields->receiver)))
    return false;
  const std::vector<uint8_t> expected = Encode(*target, *fields);
  return expected.size() == size && std::memcmp(expected.data(), data, size) == 0;
}

}  // namespace SASM::LcdStress
