#include "params/Keygroups.h"

namespace {

// The fields of a row in the keygroups of a record, which must have at least one.
class KeygroupFields {
 public:
  KeygroupFields(akaiProgram& record, const Parameter& row)
      : first_(KeygroupField(record, row, 0)),
        strideBytes_(row.record == Record::kExtension ? sizeof(vendlKeyGroup)
                                                      : sizeof(akaiKeyGroup)) {}
  std::byte* At(int keygroup) const {
    return first_ + strideBytes_ * static_cast<size_t>(keygroup);
  }

 private:
  std::byte* first_;
  size_t strideBytes_;
};

template <class T>
int32_t CommonValueOf(const KeygroupFields& fields, const KeygroupRange& range) {
  bool found = false;
  bool differing = false;
  T value{};
  range.ForEach([&](int k) {
    T next;
    std::memcpy(&next, fields.At(k), sizeof(T));
    differing = found && next != value;
    found = true;
    value = next;
    return !differing;
  });
  return found && !differing ? static_cast<int32_t>(value) : kDiffering;
}

// The part of storing a keygroup's value that isn't its field.
void StoreBeyondField(akaiProgram& record, Store store, int keygroup, int32_t value) {
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

}  // namespace

int32_t CommonValue(const Parameter& row, const KeygroupRange& range) {
  if (range.IsEmpty()) return kDiffering;
  const KeygroupFields fields(range.record, row);
  return VisitFieldType(row.type,
                        [&](auto value) { return CommonValueOf<decltype(value)>(fields, range); });
}

void StoreInKeygroups(const Parameter& row, const KeygroupRange& range, int32_t value) {
  if (range.IsEmpty()) return;
  if (!StoredByLibrary(row.store)) {
    const KeygroupFields fields(range.record, row);
    VisitFieldType(row.type, [&](auto stored) {
      stored = static_cast<decltype(stored)>(value);
      range.ForEach([=](int k) {
        std::memcpy(fields.At(k), &stored, sizeof(stored));
        return true;
      });
    });
  }
  if (row.store == Store::kField) return;
  range.ForEach([&](int k) {
    StoreBeyondField(range.record, row.store, k, value);
    return true;
  });
}
