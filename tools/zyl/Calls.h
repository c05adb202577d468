// Method calls on objects of registered classes. Each class has one metatable whose methods are
// closures over the entries of its method table, so that a call does no look-up by name.
#pragma once

#include <string>
#include <vector>

#include "Lua.h"
#include "host/base.h"

namespace zyl {

void OpenCalls(lua_State* L);

// Pushes the metatable of the dispatch's class; made on first use from its method table.
void PushClassMetatable(lua_State* L, ZylDispatch& dispatch);

// The names of the methods of the dispatch's class and of those that scripts have added.
void AppendMethodNames(lua_State* L, ZylDispatch& dispatch, std::vector<std::string>& names);

// Appends the keys, which are strings, of the table at that stack index.
void AppendKeys(lua_State* L, int table, std::vector<std::string>& keys);

// host.extend(class, methods): adds functions of the script to the methods of a class. Names that
// the class has itself are refused, and a refused table adds nothing.
int ExtendClass(lua_State* L);

}  // namespace zyl
