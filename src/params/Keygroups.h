// The keygroups that an index addresses, and how a parameter's value is read from and stored in
// them.
#pragma once

#include <cstdint>

#include "host/akai.h"
#include "params/Parameter.h"

// The result of reading several keygroups whose values differ, or none.
inline constexpr int32_t kDiffering = INT32_MIN;

// The keygroups from `first` up to `end`, or the selected ones among them. `end` is at most the
// number of allocated keygroups, which the record's count field may exceed.
struct KeygroupRange {
  akaiProgram& record;
  int first;
  int end;
  bool selectedOnly = false;  // skip keygroups whose extension isn't selected

  bool IsEmpty() const { return first >= end; }

  // Calls visit(keygroup) in order until it returns false.
  template <class Visit>
  void ForEach(Visit visit) const {
    const int last = end;
    const bool selected = selectedOnly;
    for (int k = first; k < last; ++k) {
      if (selected && record.keyGroupExtensions[k].selected == 0) continue;
      if (!visit(k)) return;
    }
  }
};

// `index` 0 or more addresses that keygroup, -1 all, a lower value the selected ones.
inline KeygroupRange AddressedKeygroups(akaiProgram& record, int32_t index) {
  const int count = record.KeyGroupCount();
  if (index >= 0) return {record, index, index < count ? index + 1 : index};
  return {record, 0, count, index < -1};
}

// The value that all keygroups of the range have, or kDiffering.
int32_t CommonValue(const Parameter& row, const KeygroupRange& range);

// Stores a value in each keygroup of the range, as the row's Store requires.
void StoreInKeygroups(const Parameter& row, const KeygroupRange& range, int32_t value);
