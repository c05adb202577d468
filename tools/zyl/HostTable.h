// The table `host`, the script's way to everything that is not a method of an object.
#pragma once

#include "Lua.h"

namespace zyl {

void OpenHostTable(lua_State* L);

// The class whose methods host.methods lists when it is given none.
inline constexpr const char* kMainClass = "ZylSProgram";

}  // namespace zyl
