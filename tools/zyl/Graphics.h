// The editor's graphic objects, lists and cells as script values.
#pragma once

#include "Lua.h"
#include "host/base.h"

namespace zyl {

void OpenGraphics(lua_State* L);

// Pushes the metatable of a graphic object, a list or a cell and returns true. For any other object
// pushes nothing and returns false.
bool PushGraphicMetatable(lua_State* L, RIOObject* object);

}  // namespace zyl
