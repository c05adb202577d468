// The Lua module zyl.audio.core: sounds for analysis. lua/zyl/audio.lua completes it to zyl.audio.
#pragma once

#include "Lua.h"

namespace zyl {

// Adds the module to package.preload.
void OpenAudio(lua_State* L);

}  // namespace zyl
