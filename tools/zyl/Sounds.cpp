#include "Sounds.h"

#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <utility>

#include "Errors.h"
#include "audio/Edits.h"
#include "audio/Resample.h"
#include "audio/WaveImage.h"

namespace zyl {

using audio::Sound;

Sound& CheckTimedSound(lua_State* L) {
  Sound& sound = CheckSound(L);
  luaL_argcheck(L, sound.rateHz > 0, 1, "the sound has no sample rate");
  return sound;
}

size_t CheckFrame(lua_State* L, int index, const Sound& sound) {
  const lua_Integer frame = luaL_checkinteger(L, index);
  luaL_argcheck(L, frame >= 0 && static_cast<lua_Unsigned>(frame) < sound.Frames(), index,
                "not a frame of the sound");
  return static_cast<size_t>(frame);
}

Sound& PushSound(lua_State* L) {
  auto* sound = new (lua_newuserdatauv(L, sizeof(Sound), 0)) Sound;
  luaL_setmetatable(L, kSoundMetatable);
  return *sound;
}

namespace {

// resample(rateHz, [first, last]): a sound of that rate; the frames are those of a loop.
int Resample(lua_State* L) {
  const Sound& sound = CheckTimedSound(L);
  const lua_Integer rateHz = luaL_checkinteger(L, 2);
  luaL_argcheck(L, audio::CanResample(sound.rateHz, static_cast<double>(rateHz)), 2,
                "the rates differ by more than 256 times");
  const double frames =
      static_cast<double>(sound.Frames()) * static_cast<double>(rateHz) / sound.rateHz;
  luaL_argcheck(L, frames < std::numeric_limits<int32_t>::max(), 2,
                "the sound would have more than 2147483647 frames");
  std::optional<audio::Loop> loop;
  if (!lua_isnoneornil(L, 3)) {
    loop = audio::Loop{CheckFrame(L, 3, sound), CheckFrame(L, 4, sound)};
    luaL_argcheck(L, loop->first <= loop->last, 4, "the loop ends before it starts");
  }
  Sound& result = PushSound(L);
  result = audio::Resampled(sound, static_cast<double>(rateHz), loop);
  return 1;
}

// mono([channel]): a sound of one channel, that one or the mean of all.
int Mono(lua_State* L) {
  const Sound& sound = CheckSound(L);
  const lua_Integer channel = luaL_optinteger(L, 2, 0);
  luaL_argcheck(L, channel >= 0 && static_cast<lua_Unsigned>(channel) < sound.channels.size(), 2,
                "not a channel of the sound");
  const bool mixes = lua_isnoneornil(L, 2);
  Sound& result = PushSound(L);
  result = mixes ? audio::Mixed(sound) : audio::OnlyChannel(sound, static_cast<size_t>(channel));
  return 1;
}

int Scale(lua_State* L) {
  Sound& sound = CheckSound(L);
  const double decibels = luaL_checknumber(L, 2);
  luaL_argcheck(L, std::fabs(decibels) <= 1000, 2, "a gain is at most 1000 dB");
  audio::Scale(sound, std::pow(10, decibels / 20));
  return 0;
}

// Arguments 2 and 3: the first and last frame of a fade.
template <void (*fade)(Sound&, size_t, size_t), bool fromFirst>
int Fade(lua_State* L) {
  Sound& sound = CheckSound(L);
  const size_t first = CheckFrame(L, 2, sound);
  const size_t last = CheckFrame(L, 3, sound);
  luaL_argcheck(L, first <= last, 3, "the fade ends before it starts");
  fade(sound, fromFirst ? first : last, last - first + 1);
  return 0;
}

// wave(bits, [dither]): the bytes of a WAVE file, and the number of clipped values.
int Wave(lua_State* L) {
  const Sound& sound = CheckSound(L);
  const lua_Integer bits = luaL_checkinteger(L, 2);
  luaL_argcheck(L, bits >= 1 && bits <= 32, 2, "values have 1 to 32 bits");
  const bool dither = lua_isnoneornil(L, 3) || lua_toboolean(L, 3) != 0;
  const auto image = audio::WaveOf(sound, static_cast<int>(bits), dither);
  lua_pushlstring(L, image.bytes.data(), image.bytes.size());
  lua_pushinteger(L, static_cast<lua_Integer>(image.clipped));
  return 2;
}

}  // namespace

const luaL_Reg kSoundEdits[] = {{"resample", Guarded<Resample>},
                                {"mono", Guarded<Mono>},
                                {"scale", Guarded<Scale>},
                                {"fadeIn", Guarded<Fade<audio::FadeIn, true>>},
                                {"fadeOut", Guarded<Fade<audio::FadeOut, false>>},
                                {"wave", Guarded<Wave>},
                                {nullptr, nullptr}};

}  // namespace zyl
