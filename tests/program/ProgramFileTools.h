// Helpers that split and assemble program files.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "support/ProgramRecord.h"
#include "support/ScriptSurface.h"

namespace zyl::test {

inline std::string AsText(const FieldWriter& bytes) {
  return {reinterpret_cast<const char*>(bytes.block.data()), bytes.block.size()};
}
inline std::string Little32(uint32_t value) {
  return AsText(FieldWriter(ByteOrder::kLittle).U32(value));
}
inline std::string Chunk(const std::string& id, const std::string& data) {
  return id + Little32(static_cast<uint32_t>(data.size())) + data;
}

// CRC-32, bit by bit.
inline uint32_t PlainChecksum(const std::string& bytes) {
  uint32_t sum = 0xFFFFFFFFu;
  for (const char c : bytes) {
    sum ^= static_cast<uint8_t>(c);
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ (0xEDB88320u & (0u - (sum & 1u)));
  }
  return ~sum;
}
inline constexpr size_t kSumChunkBytes = 12;
// A program file without its checksum, and with a valid one.
inline std::string Body(const std::string& file) {
  return file.substr(0, file.size() - kSumChunkBytes);
}
inline std::string WithSum(const std::string& body) {
  return body + Chunk("CSUM", Little32(PlainChecksum(body)));
}

}  // namespace zyl::test
