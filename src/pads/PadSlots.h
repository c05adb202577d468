// Parameter slots in the bytes of a pad: finding, reading, building, replacing and removing them.
//
// A pad holds slots without gaps between them. A slot is a header of three 32-bit words (size of
// the whole slot, slot id, 0) and entries of two 16-bit words (parameter number, signed value),
// padded with a zero word to a multiple of 8 bytes. All words are little-endian.
//
// The bytes of a pad may come from anywhere. A slot ends where its size says, at most at the end of
// the given bytes; nothing outside them is read or changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

using PadBytes = std::span<const std::byte>;

// The start of the first slot with that id, or null. The walk moves on by each slot's size,
// whatever it is; a size below 8 ends it, since no progress is possible.
const std::byte* FindPadSlot(uint32_t slotId, const std::byte* buffer, size_t length);

namespace zyl {

struct PadEntry {
  uint16_t number = 0;
  int16_t value = 0;

  bool operator==(const PadEntry&) const = default;
};

// The bytes of the slot that FindPadSlot finds, cut at the end of the buffer; empty without one.
PadBytes PadSlot(uint32_t slotId, PadBytes buffer);

// The whole entries of a found slot, without the padding word; none when the slot is shorter than
// its header or the reserved word is not 0.
std::vector<PadEntry> EntriesOfPadSlot(PadBytes slot);

std::vector<std::byte> MakePadSlot(uint32_t slotId, std::span<const PadEntry> entries);

// The buffer without the slot found in it, with room for `spare` more bytes.
std::vector<std::byte> WithoutPadSlot(PadBytes buffer, PadBytes slot, size_t spare = 0);

}  // namespace zyl
