// The editor's graphic objects, lists and cells as values of scripts.
#pragma once

#include "Lua.h"
#include "host/base.h"

namespace zyl {

void OpenGraphics(lua_State* L);

// Pushes the metatable of a graphic object, a list or a cell; false, and nothing pushed, for
// anything else.
bool PushGraphicMetatable(lua_State* L, RIOObject* object);

}  // namespace zyl
