#include "program/KeygroupMethods.h"

#include <algorithm>

bool KGSelect(ZylSProgram&, LoadedProgram program, KeyGroupOrAll keygroup,
              Opt<bool, "SelectFlag"> flag) {
  if (*keygroup >= 0) {
    uint8_t& selected = program->keyGroupExtensions[*keygroup].selected;
    const bool before = selected != 0;
    if (flag) selected = *flag ? 1 : 0;
    return before;
  }
  if (!flag) return false;
  for (int k = 0; k < program->KeyGroupCount(); ++k) {
    program->keyGroupExtensions[k].selected = *flag ? 1 : 0;
  }
  return *flag;
}

void KGMove(ZylSProgram&, LoadedProgram program, Arg<int32_t, "From"> from, Arg<int32_t, "To"> to) {
  program->moveKeyGroup(*from, *to);
}

void KGSort(ZylSProgram&, LoadedProgram program, Arg<int32_t, "SortByData"> by,
            Arg<int32_t, "Direction"> direction) {
  constexpr int32_t kByLowKey = 100;
  constexpr int32_t kByHighKey = 101;
  if (*by != kByLowKey && *by != kByHighKey) return;
  const auto keyOf = [&](int keygroup) -> int {
    const akaiKeyGroup& record = program->keyGroupArray[keygroup];
    return *by == kByLowKey ? record.lowKey : record.highKey;
  };
  const bool ascending = *direction == 0;
  for (int i = 0; i < program->KeyGroupCount();) {
    const int key = keyOf(i);
    int found = -1;
    for (int j = i + 1; j < program->KeyGroupCount(); ++j) {
      if (ascending ? keyOf(j) < key : keyOf(j) > key) found = j;
    }
    if (found >= 0) {
      program->moveKeyGroup(found, i);
    } else {
      ++i;
    }
  }
}

int32_t KGFindByKey(ZylSProgram&, LoadedProgram program, Arg<int32_t, "KeyToFind"> key,
                    Opt<int32_t, "StartAt"> startAt) {
  for (int k = std::max(startAt.ValueOr(0), 0); k < program->KeyGroupCount(); ++k) {
    const akaiKeyGroup& record = program->keyGroupArray[k];
    if (record.lowKey <= *key && *key <= record.highKey) return k;
  }
  return -1;
}

std::optional<int32_t> KGCreate(
    Call& call, LoadedProgram program, Arg<int32_t, "NewIndex"> newIndex,
    AlgoArg<"ProgramToCopy", Presence::kOptional, NullObject::kAllowed> source,
    Deferred<Opt<int32_t, "KGToCopy">> sourceIndex) {
  const ZylSProgram* other = ZylSProgram::FromObject(source.Object());
  akaiProgram* record = other == nullptr ? nullptr : other->program;
  // Without a source the third argument is ignored.
  if (record != nullptr && !sourceIndex.ReadNow(call)) return {};
  akaiKeyGroup* created = program->newKeyGroup(*newIndex, record, sourceIndex.value.ValueOr(0));
  if (record == nullptr && created != nullptr) created->setDefault();
  // The stored count may be any number; below the lowest one the result wraps around.
  return static_cast<int32_t>(static_cast<uint32_t>(program->keyGroups) - 1u);
}

void KGDelete(ZylSProgram&, LoadedProgram program, KeyGroupOrNone keygroup) {
  program->deleteKeyGroup(*keygroup);
}
