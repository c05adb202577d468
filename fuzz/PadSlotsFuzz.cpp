// Treats arbitrary bytes as pad slots: finds, reads, replaces and removes the slot of every id that
// they may contain.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "pads/PadSlots.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// Whether the buffer is a sequence of complete slots as the writer produces them.
bool IsWhole(PadBytes buffer) {
  while (!buffer.empty()) {
    uint32_t size = 0;
    if (buffer.size() < 16) return false;
    std::memcpy(&size, buffer.data(), sizeof size);
    if (size < 16 || size % 8 != 0 || size > buffer.size()) return false;
    buffer = buffer.subspan(size);
  }
  return true;
}

void TryId(uint32_t id, const std::vector<std::byte>& bytes) {
  const PadBytes buffer(bytes);
  const PadBytes slot = zyl::PadSlot(id, buffer);
  const std::vector<zyl::PadEntry> entries = zyl::EntriesOfPadSlot(slot);
  if (!slot.empty()) {
    Require(slot.data() >= buffer.data());
    Require(slot.data() + slot.size() <= buffer.data() + buffer.size());
    Require(slot.size() >= 8 && (entries.empty() || entries.size() * 4 + 12 <= slot.size()));
  }
  const std::vector<std::byte> kept = zyl::WithoutPadSlot(buffer, slot);
  Require(kept.size() == bytes.size() - slot.size());
  // Entries that were read can be written, and read back unchanged.
  const std::vector<std::byte> made = zyl::MakePadSlot(id, entries);
  Require(zyl::EntriesOfPadSlot(made) == entries);
  std::vector<std::byte> rebuilt = zyl::WithoutPadSlot(buffer, slot, made.size());
  rebuilt.insert(rebuilt.end(), made.begin(), made.end());
  if (!IsWhole(buffer)) return;
  Require(IsWhole(rebuilt) && zyl::EntriesOfPadSlot(zyl::PadSlot(id, kept)).size() <= bytes.size());
  // Of two slots with the same id, which the writer never produces, the first counts.
  if (zyl::PadSlot(id, kept).empty()) {
    const PadBytes found = zyl::PadSlot(id, rebuilt);
    Require(std::equal(found.begin(), found.end(), made.begin(), made.end()));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  // An exact-size allocation, so that a sanitizer detects reads past the end.
  const auto* first = reinterpret_cast<const std::byte*>(bytes);
  const std::vector<std::byte> buffer(first, first + count);
  constexpr uint32_t kSmallIds = 4;
  for (uint32_t id = 0; id < kSmallIds; ++id) TryId(id, buffer);
  // Try every word that may be an id.
  constexpr size_t kMostIds = 64;
  for (size_t i = 0; i + 8 <= count && i < 8 * kMostIds; i += 8) {
    uint32_t id = 0;
    std::memcpy(&id, bytes + i + 4, sizeof id);
    TryId(id, buffer);
  }
  return 0;
}
