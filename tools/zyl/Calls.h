// Method calls on objects of registered classes. Each class has one metatable whose methods are
// closures over the entries of its method table, so the host looks up no names during a call.
#pragma once

#include <string>
#include <vector>

#include "Lua.h"
#include "host/base.h"

namespace zyl {

void OpenCalls(lua_State* L);

// Pushes the metatable of the dispatch's class, creating it from the method table on first use.
void PushClassMetatable(lua_State* L, ZylDispatch& dispatch);

// Appends the names of the class's methods and of the methods that scripts added to it.
void AppendMethodNames(lua_State* L, ZylDispatch& dispatch, std::vector<std::string>& names);

// Appends the string keys of the table at stack index `table`.
void AppendKeys(lua_State* L, int table, std::vector<std::string>& keys);

// host.extend(class, methods): adds Lua functions to the methods of a class. Raises an error, and
// adds nothing, if the class already declares one of the names.
int ExtendClass(lua_State* L);

}  // namespace zyl
