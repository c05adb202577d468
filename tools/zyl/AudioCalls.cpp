#include "AudioCalls.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "Errors.h"
#include "Options.h"
#include "Sounds.h"
#include "audio/Crossfade.h"
#include "audio/Levels.h"
#include "audio/LoopFinder.h"
#include "audio/Onsets.h"
#include "audio/RootPitch.h"
#include "host/qx.h"

namespace zyl {

namespace {

using audio::Sound;

// Arguments 2 and 3: the first and last frame of a loop.
audio::Loop CheckLoop(lua_State* L, const Sound& sound) {
  const audio::Loop loop{CheckFrame(L, 2, sound), CheckFrame(L, 3, sound)};
  luaL_argcheck(L, loop.last >= loop.first && loop.Length() >= 2 * audio::kSeamFrames, 3,
                "a loop has at least 66 frames");
  return loop;
}

void PushNumber(lua_State* L, const char* field, double value) {
  lua_pushnumber(L, value);
  lua_setfield(L, -2, field);
}

void PushInteger(lua_State* L, const char* field, size_t value) {
  lua_pushinteger(L, static_cast<lua_Integer>(value));
  lua_setfield(L, -2, field);
}

int NewSound(lua_State* L) {
  const double rateHz = luaL_checknumber(L, 1);
  luaL_argcheck(L, rateHz >= 0 && rateHz <= 1e9, 1, "not a sample rate");
  PushSound(L).rateHz = rateHz;
  return 1;
}

int CollectSound(lua_State* L) {
  CheckSound(L).~Sound();
  return 0;
}

// Arguments `first` to `first` + 2: handle, frames and width of a buffer of little-endian signed
// values of `width` bytes.
struct Buffer {
  std::string bytes;
  size_t frames = 0;
  size_t width = 0;

  // The value in the upper bytes.
  int32_t Value(size_t frame) const {
    uint32_t bits = 0;
    const auto* byte = reinterpret_cast<const uint8_t*>(bytes.data()) + frame * width;
    for (size_t k = 0; k < width; ++k) bits = bits >> 8 | uint32_t{byte[k]} << 24;
    return static_cast<int32_t>(bits);
  }
};

Buffer CheckBuffer(lua_State* L, int first, const char* method) {
  const auto handle = static_cast<uint32_t>(luaL_checkinteger(L, first));
  const lua_Integer frames = luaL_checkinteger(L, first + 1);
  const lua_Integer width = luaL_checkinteger(L, first + 2);
  luaL_argcheck(L, frames >= 0 && frames <= std::numeric_limits<int32_t>::max(), first + 1,
                "not a number of frames");
  luaL_argcheck(L, width >= 1 && width <= 4, first + 2, "values have 1 to 4 bytes");
  Buffer buffer{{}, static_cast<size_t>(frames), static_cast<size_t>(width)};
  std::string reason;
  if (frames > 0 && !qxBufferBytes(handle, buffer.frames * buffer.width, buffer.bytes, reason)) {
    RaiseText(L, method + (": " + reason));
  }
  return buffer;
}

// addChannel(handle, frames, width): adds a channel.
int AddChannel(lua_State* L) {
  Sound& sound = CheckSound(L);
  const Buffer buffer = CheckBuffer(L, 2, "addChannel");
  luaL_argcheck(L, sound.channels.empty() || buffer.frames == sound.Frames(), 3,
                "all channels have the same length");
  std::vector<float> values(buffer.frames);
  constexpr float kScale = 1.0F / 2147483648.0F;
  for (size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<float>(buffer.Value(i)) * kScale;
  }
  sound.channels.push_back(std::move(values));
  return 0;
}

// pcm(handle, frames, width, bits): the values as bytes, with 16 bits, or 24 bits as the upper 16
// and the lower 8. Values with more bits are rounded.
int Pcm(lua_State* L) {
  const lua_Integer bits = luaL_checkinteger(L, 4);
  luaL_argcheck(L, bits == 16 || bits == 24, 4, "values have 16 or 24 bits");
  const Buffer buffer = CheckBuffer(L, 1, "pcm");
  std::string upper(2 * buffer.frames, '\0');
  std::string lower(bits == 24 ? buffer.frames : 0, '\0');
  const int shift = static_cast<int>(32 - bits);
  const int64_t highest = (int64_t{1} << (bits - 1)) - 1;
  for (size_t i = 0; i < buffer.frames; ++i) {
    const int64_t rounded = (int64_t{buffer.Value(i)} + (int64_t{1} << (shift - 1))) >> shift;
    int64_t value = std::min(rounded, highest);
    if (bits == 24) {
      lower[i] = static_cast<char>(value & 0xFF);
      value >>= 8;
    }
    upper[2 * i] = static_cast<char>(value & 0xFF);
    upper[2 * i + 1] = static_cast<char>(value >> 8 & 0xFF);
  }
  lua_pushlstring(L, upper.data(), upper.size());
  if (bits == 16) return 1;
  lua_pushlstring(L, lower.data(), lower.size());
  return 2;
}

int Frames(lua_State* L) {
  lua_pushinteger(L, static_cast<lua_Integer>(CheckSound(L).Frames()));
  return 1;
}

int Channels(lua_State* L) {
  lua_pushinteger(L, static_cast<lua_Integer>(CheckSound(L).channels.size()));
  return 1;
}

int Peak(lua_State* L) {
  lua_pushnumber(L, audio::Decibels(audio::Peak(CheckSound(L))));
  return 1;
}

int Power(lua_State* L) {
  lua_pushnumber(L, audio::Power(CheckSound(L)));
  return 1;
}

int Loudness(lua_State* L) {
  lua_pushnumber(L, audio::Loudness(CheckTimedSound(L)));
  return 1;
}

int Sounding(lua_State* L) {
  const auto range = audio::SoundingFrames(CheckSound(L), luaL_optnumber(L, 2, -60));
  if (!range) return 0;
  lua_pushinteger(L, static_cast<lua_Integer>(range->first));
  lua_pushinteger(L, static_cast<lua_Integer>(range->last));
  return 2;
}

int Root(lua_State* L) {
  const Sound& sound = CheckSound(L);
  luaL_checktype(L, 2, LUA_TTABLE);
  std::vector<float> track(lua_rawlen(L, 2));
  for (size_t i = 0; i < track.size(); ++i) {
    lua_rawgeti(L, 2, static_cast<lua_Integer>(i) + 1);
    track[i] = static_cast<float>(lua_tonumber(L, -1));
    lua_pop(L, 1);
  }
  std::string reason;
  const auto root = audio::FindRootPitch(sound, track, reason);
  if (!root) {
    lua_pushnil(L);
    lua_pushlstring(L, reason.data(), reason.size());
    return 2;
  }
  lua_createtable(L, 0, 5);
  PushNumber(L, "hertz", root->hertz);
  PushNumber(L, "voiced", root->voiced);
  PushNumber(L, "spread", root->spreadCents);
  PushNumber(L, "likeness", root->likeness);
  lua_pushboolean(L, root->sure);
  lua_setfield(L, -2, "sure");
  return 1;
}

int Loops(lua_State* L) {
  const Sound& sound = CheckTimedSound(L);
  DefaultToTable(L, 2);
  const Options options(L, 2, "loops", {"shortest", "period", "crossfade", "most"});
  constexpr lua_Integer kFrames = std::numeric_limits<int32_t>::max();
  audio::LoopWish wish;
  wish.shortestFrames = static_cast<size_t>(options.Integer("shortest", 0, 0, kFrames));
  wish.periodFrames = options.Number("period", 0, 0, static_cast<double>(kFrames));
  wish.crossfadeFrames = static_cast<size_t>(options.Integer("crossfade", 0, 0, kFrames));
  wish.most = static_cast<size_t>(options.Integer("most", 1, 1, 1000));
  const auto found = audio::FindLoops(sound, wish);
  lua_createtable(L, static_cast<int>(found.size()), 0);
  lua_Integer index = 0;
  for (const auto& it : found) {
    lua_createtable(L, 0, 6);
    PushInteger(L, "first", it.loop.first);
    PushInteger(L, "last", it.loop.last);
    PushNumber(L, "seam", it.seamDb);
    PushNumber(L, "level", it.steps.levelDb);
    PushNumber(L, "spectrum", it.steps.spectrumDb);
    PushNumber(L, "likeness", it.likeness);
    lua_rawseti(L, -2, ++index);
  }
  return 1;
}

int Seam(lua_State* L) {
  const Sound& sound = CheckTimedSound(L);
  const audio::Loop loop = CheckLoop(L, sound);
  lua_createtable(L, static_cast<int>(sound.channels.size()), 0);
  lua_Integer index = 0;
  for (const auto& channel : sound.channels) {
    lua_pushnumber(L, audio::SeamDecibels(channel, sound.rateHz, loop));
    lua_rawseti(L, -2, ++index);
  }
  return 1;
}

int Crossfade(lua_State* L) {
  Sound& sound = CheckSound(L);
  const audio::Loop loop = CheckLoop(L, sound);
  const lua_Integer wanted = luaL_checkinteger(L, 4);
  luaL_argcheck(L, wanted > 0, 4, "a crossfade has at least one frame");
  const size_t frames = std::min(static_cast<size_t>(wanted), audio::LongestCrossfade(loop));
  lua_pushinteger(L, static_cast<lua_Integer>(loop.last + 1 - frames));
  const size_t changed = frames == 0 ? 0 : audio::CrossfadeLoop(sound, loop, frames);
  lua_pushinteger(L, static_cast<lua_Integer>(changed));
  return 2;
}

// notes([options]): the notes of a recording.
int Notes(lua_State* L) {
  const Sound& sound = CheckTimedSound(L);
  DefaultToTable(L, 2);
  const Options options(L, 2, "notes", {"rise", "shortest", "count", "places", "reach"});
  constexpr lua_Integer kFrames = std::numeric_limits<int32_t>::max();
  std::vector<audio::NoteRange> notes;
  const bool atPlaces = lua_getfield(L, 2, "places") == LUA_TTABLE;
  if (atPlaces) {
    std::vector<size_t> places;
    for (lua_Integer i = 1; lua_geti(L, -1, i) != LUA_TNIL; ++i) {
      const lua_Integer place = luaL_checkinteger(L, -1);
      luaL_argcheck(L, place >= 0, 2, "places are frames");
      places.push_back(static_cast<size_t>(place));
      lua_pop(L, 1);
    }
    notes = audio::FindNotesAt(sound, places,
                               static_cast<size_t>(options.Integer("reach", 0, 0, kFrames)));
  } else {
    audio::OnsetWish wish;
    wish.scoreDb = options.Number("rise", wish.scoreDb, 0, 1000);
    wish.shortestSeconds = options.Number("shortest", wish.shortestSeconds, 0, 1e6);
    wish.count = static_cast<size_t>(options.Integer("count", 0, 0, kFrames));
    notes = audio::FindNotes(sound, wish);
  }
  lua_createtable(L, static_cast<int>(notes.size()), 0);
  lua_Integer index = 0;
  for (const auto& note : notes) {
    lua_createtable(L, 0, 5);
    PushInteger(L, "first", note.first);
    PushInteger(L, "last", note.last);
    lua_pushboolean(L, note.cut);
    lua_setfield(L, -2, "cut");
    PushInteger(L, "onset", note.onset);
    if (atPlaces) PushInteger(L, "place", note.place + 1);
    lua_rawseti(L, -2, ++index);
  }
  return 1;
}

// copy([first], [last]): a sound with the frames first to last, as far as they exist.
int Copy(lua_State* L) {
  const Sound& sound = CheckSound(L);
  const auto frames = static_cast<lua_Integer>(sound.Frames());
  const lua_Integer first = std::max(luaL_optinteger(L, 2, 0), lua_Integer{0});
  const lua_Integer last = std::min(luaL_optinteger(L, 3, frames), frames - 1);
  Sound copy{sound.rateHz, {}};
  for (const auto& values : sound.channels) {
    copy.channels.emplace_back(values.begin() + std::min(first, last + 1),
                               values.begin() + last + 1);
  }
  PushSound(L) = std::move(copy);
  return 1;
}

int Values(lua_State* L) {
  const Sound& sound = CheckSound(L);
  const lua_Integer channel = luaL_checkinteger(L, 2);
  luaL_argcheck(L, channel >= 0 && static_cast<lua_Unsigned>(channel) < sound.channels.size(), 2,
                "not a channel of the sound");
  const auto& values = sound.channels[static_cast<size_t>(channel)];
  const lua_Integer first = luaL_optinteger(L, 3, 0);
  const auto size = static_cast<lua_Integer>(values.size());
  luaL_argcheck(L, first >= 0 && first <= size, 3, "not a frame of the sound");
  const lua_Integer count = luaL_optinteger(L, 4, size - first);
  luaL_argcheck(L, count >= 0 && count <= size - first, 4, "beyond the end of the sound");
  lua_createtable(L, static_cast<int>(count), 0);
  for (lua_Integer i = 0; i < count; ++i) {
    lua_pushnumber(L, static_cast<lua_Number>(values[static_cast<size_t>(first + i)]));
    lua_rawseti(L, -2, i + 1);
  }
  return 1;
}

int OpenCore(lua_State* L) {
  const luaL_Reg methods[] = {{"addChannel", Guarded<AddChannel>},
                              {"frames", Guarded<Frames>},
                              {"channels", Guarded<Channels>},
                              {"peak", Guarded<Peak>},
                              {"power", Guarded<Power>},
                              {"loudness", Guarded<Loudness>},
                              {"sounding", Guarded<Sounding>},
                              {"root", Guarded<Root>},
                              {"loops", Guarded<Loops>},
                              {"seam", Guarded<Seam>},
                              {"crossfade", Guarded<Crossfade>},
                              {"notes", Guarded<Notes>},
                              {"copy", Guarded<Copy>},
                              {"values", Guarded<Values>},
                              {nullptr, nullptr}};
  luaL_newmetatable(L, kSoundMetatable);
  lua_pushcfunction(L, Guarded<CollectSound>);
  lua_setfield(L, -2, "__gc");
  luaL_newlib(L, methods);
  luaL_setfuncs(L, kSoundEdits, 0);
  lua_setfield(L, -2, "__index");
  lua_pop(L, 1);
  lua_createtable(L, 0, 2);
  lua_pushcfunction(L, Guarded<NewSound>);
  lua_setfield(L, -2, "new");
  lua_pushcfunction(L, Guarded<Pcm>);
  lua_setfield(L, -2, "pcm");
  return 1;
}

}  // namespace

void OpenAudio(lua_State* L) {
  luaL_getsubtable(L, LUA_REGISTRYINDEX, LUA_PRELOAD_TABLE);
  lua_pushcfunction(L, Guarded<OpenCore>);
  lua_setfield(L, -2, "zyl.audio.core");
  lua_pop(L, 1);
}

}  // namespace zyl
