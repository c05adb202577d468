#include "params/FieldMethods.h"

#include "frame/ChangeNotice.h"
#include "params/Keygroups.h"

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
  const KeygroupRange range = AddressedKeygroups(*program.record, *index);
  const int32_t before = CommonValue(row, range);
  if (!newValue) return before;
  if (!StoredByLibrary(row.store)) object.dirty = true;
  StoreInKeygroups(row, range, *newValue);
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
