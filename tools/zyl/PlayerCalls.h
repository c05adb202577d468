// The Lua module zyl.player.core: renders notes of a SoundFont bank with libfluidsynth, which is
// loaded when the first player is made.
#pragma once

#include "Lua.h"

namespace zyl {

// Adds the module to package.preload.
void OpenPlayer(lua_State* L);

}  // namespace zyl
