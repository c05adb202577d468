// Algorithm objects of the script, whose script methods are Lua functions, and pads.
#pragma once

#include "Lua.h"
#include "host/base.h"

namespace zyl {

void OpenAlgo(lua_State* L);

void PushAlgoMetatable(lua_State* L);
void PushPadMetatable(lua_State* L);
void PushDataPadMetatable(lua_State* L);

// host.algo and host.pad.
int NewAlgo(lua_State* L);
int NewDataPad(lua_State* L);

}  // namespace zyl
