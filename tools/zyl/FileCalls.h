// The functions of `host` for files on disk.
#pragma once

#include "Lua.h"

namespace zyl {

// Adds the functions to the table on top of the stack.
void AddFileCalls(lua_State* L);

// Returns the path at `argument`. Raises a Lua error for a zero byte, at which the system would cut
// the path.
const char* CheckPath(lua_State* L, int argument);

}  // namespace zyl
