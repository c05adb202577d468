// The keygroup list: select, move, sort, find by key, create, delete. None of these marks the
// program dirty or sends a notification.
#pragma once

#include "frame/Arguments.h"

// One keygroup's flag before the call; a negative index sets the flag of all.
bool KGSelect(ZylSProgram& object, LoadedProgram program, KeyGroupIndex keygroup,
              Opt<bool, "SelectFlag"> flag);
void KGMove(ZylSProgram& object, LoadedProgram program, Arg<int32_t, "From"> from,
            Arg<int32_t, "To"> to);
// By low key (100) or high key (101), ascending (0) or descending.
void KGSort(ZylSProgram& object, LoadedProgram program, Arg<int32_t, "SortByData"> by,
            Arg<int32_t, "Direction"> direction);
// The first keygroup at or after `startAt` whose key range holds the key, or -1.
int32_t KGFindByKey(ZylSProgram& object, LoadedProgram program, Arg<int32_t, "KeyToFind"> key,
                    Opt<int32_t, "StartAt"> startAt);
// A default keygroup, or a copy out of another program; the new count - 1.
bool KGCreate(Call& call);
void KGDelete(ZylSProgram& object, LoadedProgram program, KeyGroupIndex keygroup);
