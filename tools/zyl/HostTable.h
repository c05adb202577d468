// The global table `host`: all functions for scripts that are not methods of an object.
#pragma once

#include "Lua.h"

namespace zyl {

void OpenHostTable(lua_State* L);

// The module's main class, the default of host.methods.
inline constexpr const char* kMainClass = "ZylSProgram";

}  // namespace zyl
