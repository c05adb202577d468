// host.keyboard, host.editor and host.render.
#pragma once

#include "Lua.h"

namespace zyl {

int NewKeyboard(lua_State* L);
int NewEditor(lua_State* L);
int Render(lua_State* L);

}  // namespace zyl
