// The editor's graphic objects and lists for scripts: host.keyboard, host.editor, host.render.
#pragma once

#include "Lua.h"
#include "host/base.h"

namespace zyl {

void OpenGraphics(lua_State* L);

// Pushes the metatable of a graphic object, a list or a cell; false, and nothing pushed, for
// anything else.
bool PushGraphicMetatable(lua_State* L, RIOObject* object);

// host.keyboard, host.editor and host.render.
int NewKeyboard(lua_State* L);
int NewEditor(lua_State* L);
int Render(lua_State* L);

}  // namespace zyl
