// Finds, reads, builds, replaces and removes parameter slots in the bytes of a pad.
//
// A pad contains slots without gaps between them. A slot is a header of three 32-bit words (size of
// the whole slot, slot id, 0) and entries of two 16-bit words (parameter number, signed value),
// padded with a zero word to a multiple of 8 bytes. All words are little-endian.
//
// The bytes of a pad are untrusted. A slot is truncated at the end of the given bytes; nothing
// outside them is read or changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

using PadBytes = std::span<const std::byte>;

// Returns the start of the first slot with that id, or null. Slot sizes aren't required to be
// multiples of 8; the search ends at a size less than 8, which can't be a slot.
const std::byte* FindPadSlot(uint32_t slotId, const std::byte* buffer, size_t length);

namespace zyl {

struct PadEntry {
  uint16_t number = 0;
  int16_t value = 0;

  bool operator==(const PadEntry&) const = default;
};

// The bytes of the slot that FindPadSlot finds, truncated at the end of the buffer; empty if none.
PadBytes PadSlot(uint32_t slotId, PadBytes buffer);

// The complete entries of a slot, without the padding word; none if the slot is shorter than its
// header or the reserved word isn't 0.
std::vector<PadEntry> EntriesOfPadSlot(PadBytes slot);

std::vector<std::byte> MakePadSlot(uint32_t slotId, std::span<const PadEntry> entries);

// Copies the buffer without the slot, with capacity for `spare` more bytes.
std::vector<std::byte> WithoutPadSlot(PadBytes buffer, PadBytes slot, size_t spare = 0);

}  // namespace zyl
