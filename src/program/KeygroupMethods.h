// The keygroup list: select, move, sort, find by key, create, delete. None of these sets the dirty
// flag or notifies.
#pragma once

#include <optional>

#include "frame/Arguments.h"

// Returns the previous flag of one keygroup; a negative index sets the flag of all.
bool KGSelect(ZylSProgram& object, LoadedProgram program, KeyGroupOrAll keygroup,
              Opt<bool, "SelectFlag"> flag);
void KGMove(ZylSProgram& object, LoadedProgram program, Arg<int32_t, "From"> from,
            Arg<int32_t, "To"> to);
// Sorts by low key (100) or high key (101), ascending (0) or descending.
void KGSort(ZylSProgram& object, LoadedProgram program, Arg<int32_t, "SortByData"> by,
            Arg<int32_t, "Direction"> direction);
// Returns the first keygroup at or after `startAt` whose key range contains the key, or -1.
int32_t KGFindByKey(ZylSProgram& object, LoadedProgram program, Arg<int32_t, "KeyToFind"> key,
                    Opt<int32_t, "StartAt"> startAt);
// Inserts a default keygroup, or a copy from another program. Returns the new count - 1.
std::optional<int32_t> KGCreate(
    Call& call, LoadedProgram program, Arg<int32_t, "NewIndex"> newIndex,
    AlgoArg<"ProgramToCopy", Presence::kOptional, NullObject::kAllowed> source,
    Deferred<Opt<int32_t, "KGToCopy">> sourceIndex);
void KGDelete(ZylSProgram& object, LoadedProgram program, KeyGroupOrNone keygroup);
