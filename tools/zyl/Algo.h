// Pads, and the algorithm objects that scripts create: their script methods are Lua functions.
#pragma once

#include <memory>

#include "Lua.h"
#include "host/base.h"

namespace zyl {

void OpenAlgo(lua_State* L);

void PushAlgoMetatable(lua_State* L);
void PushPadMetatable(lua_State* L);
void PushDataPadMetatable(lua_State* L);

// Pushes a userdata that owns the algorithm. Its dispatch calls the functions of the table at stack
// index `fields`.
void PushScriptAlgo(lua_State* L, std::unique_ptr<ROCAlgo> algo, int fields);

// host.algo and host.pad.
int NewAlgo(lua_State* L);
int NewDataPad(lua_State* L);

}  // namespace zyl
