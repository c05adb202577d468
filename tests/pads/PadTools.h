// Pads for tests: their bytes as slots of words.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/ScriptSurface.h"

namespace zyl::test {

struct Pad : RODPad {
  Pad() = default;
  explicit Pad(const std::string& bytes) { Set(bytes); }
  void Set(const std::string& bytes) {
    DataValue()->SetData(bytes.data(), static_cast<int>(bytes.size()));
  }
  std::string Bytes() const {
    const auto* data = reinterpret_cast<const char*>(DataValue()->Data());
    return data == nullptr ? "" : std::string(data, static_cast<size_t>(DataValue()->GetSize()));
  }
};

inline std::string Words(const std::vector<uint32_t>& words) {
  std::string bytes;
  for (const uint32_t word : words) {
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(word >> (8 * i));
  }
  return bytes;
}

// The word of one entry.
inline uint32_t Entry(int number, int value) {
  return static_cast<uint32_t>(number) | static_cast<uint32_t>(value) << 16;
}

}  // namespace zyl::test
