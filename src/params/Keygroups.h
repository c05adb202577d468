// The keygroups that an index addresses, and iteration over them. Iteration ends at the number of
// allocated keygroups, not at the record's count field.
#pragma once

#include <cstdint>

#include "host/akai.h"
#include "params/Parameter.h"

// The result of reading several keygroups whose values differ, or none.
inline constexpr int32_t kDiffering = INT32_MIN;

struct KeygroupRange {
  int first;
  int end;
  bool selectedOnly;  // skip keygroups whose extension isn't selected
  bool IsEmpty() const { return first >= end; }
};

// `index` 0 or more addresses that keygroup, -1 all, a lower value the selected ones.
inline KeygroupRange Addressed(const akaiProgram& record, int32_t index) {
  if (index >= 0) return {index, index + 1, false};
  return {0, record.KeyGroupCount(), index < -1};
}

template <class Visit>
void ForEachAddressed(const akaiProgram& record, int32_t index, Visit visit) {
  const KeygroupRange range = Addressed(record, index);
  for (int k = range.first; k < range.end; ++k) {
    if (range.selectedOnly && record.keyGroupExtensions[k].selected == 0) continue;
    visit(k);
  }
}

// The part of storing a keygroup's value that the program library does.
inline void StoreBesideField(akaiProgram& record, Store store, int keygroup, int32_t value) {
  switch (store) {
    case Store::kByteResonance:
      record.setByteResonance(keygroup, static_cast<uint8_t>(value));
      break;
    case Store::kShortResonance:
      record.setUShortResonance(keygroup, static_cast<uint16_t>(value));
      break;
    case Store::kTolmo:
      record.keyGroupExtensions[keygroup].EnableTolmoChunk();
      break;
    default:
      break;
  }
}
