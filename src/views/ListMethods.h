// Script methods that fill the editor's lists from the program.
#pragma once

#include "views/ListModule.h"

// Appends one row per keygroup to the module's list.
void ListFillKeygroups(Call& call, LoadedProgram program, ListModuleArg module,
                       Opt<bool, "KeyAsValue"> keyAsValue);

// Shows the zones of a keygroup in the first four rows of the module's list; appends missing rows.
// Does nothing for a negative index.
void ListFillZones(Call& call, LoadedProgram program, KeyGroupOrNone keygroup, ListModuleArg module,
                   Opt<bool, "KeyAsValue"> keyAsValue);
