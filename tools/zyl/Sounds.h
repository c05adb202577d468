// Sounds as Lua userdata: arguments and results of the functions of zyl.audio.core.
#pragma once

#include "Lua.h"
#include "audio/Seam.h"
#include "audio/Sound.h"

namespace zyl {

inline constexpr const char* kSoundMetatable = "zyl.audio.Sound";

// Argument 1.
inline audio::Sound& CheckSound(lua_State* L) {
  return *static_cast<audio::Sound*>(luaL_checkudata(L, 1, kSoundMetatable));
}

// Argument 1, for methods whose results depend on time.
audio::Sound& CheckTimedSound(lua_State* L);

// A frame of the sound.
size_t CheckFrame(lua_State* L, int index, const audio::Sound& sound);

// Pushes a new empty sound.
audio::Sound& PushSound(lua_State* L);

// Methods that make or change sounds, ending with a null entry.
extern const luaL_Reg kSoundEdits[];

}  // namespace zyl
