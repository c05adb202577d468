#include "pads/PadSlots.h"

#include <algorithm>

#include "host/qx.h"

namespace {

constexpr size_t kSizeAndId = 8;
constexpr size_t kHeaderBytes = 12;
constexpr size_t kEntryBytes = 4;
constexpr size_t kAlignment = 8;

size_t SlotBytes(size_t entries) {
  const size_t used = kHeaderBytes + kEntryBytes * entries;
  return (used + kAlignment - 1) / kAlignment * kAlignment;
}

}  // namespace

const std::byte* FindPadSlot(uint32_t slotId, const std::byte* buffer, size_t length) {
  size_t left = length;
  while (left >= kSizeAndId) {
    const std::byte* slot = buffer + (length - left);
    MemInterpreter in(slot, kSizeAndId);
    const size_t size = in.GetDWORD();
    const uint32_t id = in.GetDWORD();
    if (size < kSizeAndId) return nullptr;
    if (id == slotId) return slot;
    left -= std::min(size, left);
  }
  return nullptr;
}

namespace zyl {

PadBytes PadSlot(uint32_t slotId, PadBytes buffer) {
  const std::byte* slot = FindPadSlot(slotId, buffer.data(), buffer.size());
  if (slot == nullptr) return {};
  const PadBytes rest = buffer.subspan(static_cast<size_t>(slot - buffer.data()));
  const size_t size = MemInterpreter(slot, kSizeAndId).GetDWORD();
  return rest.first(std::min(size, rest.size()));
}

std::vector<PadEntry> EntriesOfPadSlot(PadBytes slot) {
  MemInterpreter in(slot.data(), slot.size());
  in.GetDWORD();
  in.GetDWORD();
  const uint32_t reserved = in.GetDWORD();
  if (!in.Good() || reserved != 0) return {};
  std::vector<PadEntry> entries(in.Remaining() / kEntryBytes);
  for (PadEntry& entry : entries) {
    entry.number = in.GetWORD();
    entry.value = in.GetSHORT();
  }
  // The header has three words and a padded slot is a multiple of 8 bytes long, so its number of
  // entries is odd. Parameter 0 doesn't exist and is never written with value 0, so a zero last
  // entry is padding.
  if (entries.size() % 2 == 1 && entries.back() == PadEntry()) entries.pop_back();
  return entries;
}

std::vector<std::byte> MakePadSlot(uint32_t slotId, std::span<const PadEntry> entries) {
  const size_t size = SlotBytes(entries.size());
  MemInterpreter out;
  out.PrepareWrite(size);
  out.AddDWORD(static_cast<uint32_t>(size));
  out.AddDWORD(slotId);
  out.AddDWORD(0);
  for (const PadEntry& entry : entries) {
    out.AddWORD(entry.number);
    out.AddSHORT(entry.value);
  }
  std::vector<std::byte> slot = out.Image();
  slot.resize(size);  // the padding is zero
  return slot;
}

std::vector<std::byte> WithoutPadSlot(PadBytes buffer, PadBytes slot, size_t spare) {
  std::vector<std::byte> kept;
  kept.reserve(buffer.size() - slot.size() + spare);
  const size_t before =
      slot.empty() ? buffer.size() : static_cast<size_t>(slot.data() - buffer.data());
  const auto start = buffer.begin();
  kept.insert(kept.end(), start, start + static_cast<ptrdiff_t>(before));
  kept.insert(kept.end(), start + static_cast<ptrdiff_t>(before + slot.size()), buffer.end());
  return kept;
}

}  // namespace zyl
