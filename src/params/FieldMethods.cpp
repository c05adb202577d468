#include "params/FieldMethods.h"

#include "params/Keygroups.h"

namespace {

// What a keygroup parameter reads over the addressed keygroups, and where it is stored.
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

bool ProgramFieldMethod(Call& call, const Parameter& row) {
  LoadedProgram program;
  Opt<int32_t, "NewValue"> newValue;
  if (!LoadedProgram::Read(call, program) || !newValue.Read(call, newValue)) return false;
  std::byte* field = ProgramField(*program.record, row);
  const int32_t value = LoadField(field, row.type);
  call.Return(newROCParam(value));
  if (!newValue || AsStored(row.type, *newValue) == value) return true;
  call.program.dirty = true;
  StoreField(field, row.type, *newValue);
  call.program.NotifyParameterChanged(row.number, newValue.param);
  return true;
}

bool TolmoFieldMethod(Call& call, const Parameter& row) {
  LoadedProgram program;
  Opt<int32_t, "NewValue"> newValue;
  if (!LoadedProgram::Read(call, program) || !newValue.Read(call, newValue)) return false;
  if (!program->IsTolmoChunk()) program->EnableTolmoChunk();
  std::byte* field = ProgramField(*program.record, row);
  const int32_t value = LoadField(field, row.type);
  call.Return(newROCParam(value));
  if (!newValue || AsStored(row.type, *newValue) == value) return true;
  call.program.dirty = true;
  StoreField(field, row.type, *newValue);
  program->updateLockedTolmo();
  return true;
}

bool KeygroupFieldMethod(Call& call, const Parameter& row) {
  LoadedProgram program;
  KeyGroupIndex index;
  Opt<int32_t, "NewValue"> newValue;
  if (!LoadedProgram::Read(call, program) || !KeyGroupIndex::Read(call, index) ||
      !newValue.Read(call, newValue)) {
    return false;
  }
  const bool extension = row.record == Record::kExtension;
  KeygroupCells cells{nullptr, extension ? sizeof(vendlKeyGroup) : sizeof(akaiKeyGroup),
                      program->keyGroupExtensions, Addressed(*program.record, *index)};
  // Without keygroups there is no first one whose field could be named.
  if (!cells.range.IsEmpty()) cells.first = KeygroupField(*program.record, row, 0);
  call.Return(newROCParam(
      VisitFieldType(row.type, [&](auto value) { return CombinedValue<decltype(value)>(cells); })));
  if (!newValue) return true;
  const bool libraryStores =
      row.store == Store::kByteResonance || row.store == Store::kShortResonance;
  if (!libraryStores) {
    call.program.dirty = true;
    VisitFieldType(row.type, [&](auto value) { StoreAll<decltype(value)>(cells, *newValue); });
  }
  if (row.store == Store::kField) return true;
  ForEachAddressed(*program.record, *index,
                   [&](int k) { StoreBesideField(*program.record, row.store, k, *newValue); });
  return true;
}

bool ZoneFieldMethod(Call& call, const Parameter& row) {
  LoadedProgram program;
  OneKeyGroup keygroup;
  OneZone zone;
  Opt<int32_t, "NewValue"> newValue;
  if (!LoadedProgram::Read(call, program) || !OneKeyGroup::Read(call, keygroup) ||
      !OneZone::Read(call, zone) || !newValue.Read(call, newValue)) {
    return false;
  }
  std::byte* field = ZoneField(*program.record, row, *keygroup, *zone);
  const int32_t value = LoadField(field, row.type);
  call.Return(newROCParam(value));
  if (!newValue || AsStored(row.type, *newValue) == value) return true;
  call.program.dirty = true;
  StoreField(field, row.type, *newValue);
  return true;
}
