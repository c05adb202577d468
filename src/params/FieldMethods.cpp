#include "params/FieldMethods.h"

#include "frame/ChangeNotice.h"
#include "params/Keygroups.h"

namespace {

// The fields of a parameter in the addressed keygroups.
struct KeygroupCells {
  std::byte* first;
  size_t strideBytes;
  const vendlKeyGroup* extensions;
  KeygroupRange range;
};

template <class T>
T LoadAs(const std::byte* at) {
  T value;
  std::memcpy(&value, at, sizeof(T));
  return value;
}

template <class T>
int32_t CombinedValue(const KeygroupCells& cells) {
  const std::byte* at = cells.first;
  if (!cells.range.selectedOnly) {
    if (cells.range.IsEmpty()) return kDiffering;
    const T value = LoadAs<T>(at + cells.strideBytes * static_cast<size_t>(cells.range.first));
    for (int k = cells.range.first + 1; k < cells.range.end; ++k) {
      if (LoadAs<T>(at + cells.strideBytes * static_cast<size_t>(k)) != value) return kDiffering;
    }
    return value;
  }
  bool found = false;
  T value{};
  for (int k = cells.range.first; k < cells.range.end; ++k) {
    if (cells.extensions[k].selected == 0) continue;
    const T next = LoadAs<T>(at + cells.strideBytes * static_cast<size_t>(k));
    if (found && next != value) return kDiffering;
    value = next;
    found = true;
  }
  return found ? static_cast<int32_t>(value) : kDiffering;
}

template <class T>
void StoreAll(const KeygroupCells& cells, int32_t newValue) {
  const T value = static_cast<T>(newValue);
  for (int k = cells.range.first; k < cells.range.end; ++k) {
    if (cells.range.selectedOnly && cells.extensions[k].selected == 0) continue;
    std::memcpy(cells.first + cells.strideBytes * static_cast<size_t>(k), &value, sizeof(T));
  }
}

}  // namespace

int32_t ProgramFieldValue(ZylSProgram& object, const Parameter& row, const LoadedProgram& program,
                          const Opt<int32_t, "NewValue">& newValue) {
  std::byte* field = ProgramField(*program.record, row);
  const int32_t before = LoadField(field, row.type);
  if (newValue && AsStored(row.type, *newValue) != before) {
    ChangeNotice notice(object, row.number, newValue.param);
    object.dirty = true;
    StoreField(field, row.type, *newValue);
    notice.Send();
  }
  return before;
}

int32_t TolmoFieldValue(ZylSProgram& object, const Parameter& row, const LoadedProgram& program,
                        const Opt<int32_t, "NewValue">& newValue) {
  if (!program->IsTolmoChunk()) program->EnableTolmoChunk();
  std::byte* field = ProgramField(*program.record, row);
  const int32_t before = LoadField(field, row.type);
  if (newValue && AsStored(row.type, *newValue) != before) {
    object.dirty = true;
    StoreField(field, row.type, *newValue);
    program->updateLockedTolmo();
  }
  return before;
}

int32_t KeygroupFieldValue(ZylSProgram& object, const Parameter& row, const LoadedProgram& program,
                           const KeyGroupIndex& index, const Opt<int32_t, "NewValue">& newValue) {
  const bool extension = row.record == Record::kExtension;
  KeygroupCells cells{nullptr, extension ? sizeof(vendlKeyGroup) : sizeof(akaiKeyGroup),
                      program->keyGroupExtensions, Addressed(*program.record, *index)};
  // An empty program has no first keygroup.
  if (!cells.range.IsEmpty()) cells.first = KeygroupField(*program.record, row, 0);
  const int32_t before =
      VisitFieldType(row.type, [&](auto value) { return CombinedValue<decltype(value)>(cells); });
  if (!newValue) return before;
  const bool libraryStores =
      row.store == Store::kByteResonance || row.store == Store::kShortResonance;
  if (!libraryStores) {
    object.dirty = true;
    VisitFieldType(row.type, [&](auto value) { StoreAll<decltype(value)>(cells, *newValue); });
  }
  if (row.store != Store::kField) {
    ForEachAddressed(*program.record, *index,
                     [&](int k) { StoreBesideField(*program.record, row.store, k, *newValue); });
  }
  return before;
}

int32_t ZoneFieldValue(ZylSProgram& object, const Parameter& row, const LoadedProgram& program,
                       const OneKeyGroup& keygroup, const OneZone& zone,
                       const Opt<int32_t, "NewValue">& newValue) {
  std::byte* field = ZoneField(*program.record, row, *keygroup, *zone);
  const int32_t before = LoadField(field, row.type);
  if (newValue && AsStored(row.type, *newValue) != before) {
    object.dirty = true;
    StoreField(field, row.type, *newValue);
  }
  return before;
}
