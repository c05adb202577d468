// Method calls on objects of registered classes. Each class has one metatable whose methods are
// closures over the entries of its method table, so that a call does no look-up by name.
#pragma once

#include "Lua.h"
#include "host/base.h"

namespace zyl {

void OpenCalls(lua_State* L);

// Pushes the metatable of the dispatch's class; made on first use from its method table.
void PushClassMetatable(lua_State* L, ZylDispatch& dispatch);

}  // namespace zyl
