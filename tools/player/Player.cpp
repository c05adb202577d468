// The Lua module zyl.player: plays SoundFont banks with libfluidsynth. zyl loads it on demand, so
// that it starts without the synthesiser and its audio libraries.
//
//   local player = require "zyl.player"
//   local synth = player.new { rate = 44100 }
//   synth:load("piano.sf2")
//   synth:note { at = 0, key = 60, velocity = 100, seconds = 2 }
//   local sound = synth:render()               -- a sound as of zyl.audio
//
// Notes and songs are rendered in blocks of 64 frames, at whose starts events take effect.
#include <fcntl.h>
#include <fluidsynth.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "zyl/Sounds.h"

namespace zyl {

namespace {

constexpr const char* kMetatable = "zyl.player.Synth";
constexpr const char* kPlaybackMetatable = "zyl.player.Playback";
constexpr int kBlock = 64;
constexpr double kMaxSeconds = 3600;
constexpr double kSilentSeconds = 0.1;  // a tail ends after this much silence
constexpr float kSilence = 1e-5F;       // -100 dB

template <auto Delete>
struct Deleter {
  template <class T>
  void operator()(T* object) const {
    Delete(object);
  }
};
template <class T, auto Delete>
using Owned = std::unique_ptr<T, Deleter<Delete>>;

struct Event {
  size_t frame;
  int key;
  int velocity;  // 0: the key is released
};

struct Synth {
  double rateHz = 44100;
  Owned<fluid_settings_t, delete_fluid_settings> settings;
  Owned<fluid_synth_t, delete_fluid_synth> synth;  // uses the settings
  std::vector<Event> events;
  std::string song;
};

Synth& CheckSynth(lua_State* L) { return *static_cast<Synth*>(luaL_checkudata(L, 1, kMetatable)); }

int CollectSynth(lua_State* L) {
  CheckSynth(L).~Synth();
  return 0;
}

double Field(lua_State* L, int index, const char* name, double fallback, double low, double high) {
  double value = fallback;
  if (lua_getfield(L, index, name) != LUA_TNIL) {
    int isNumber = 0;
    value = lua_tonumberx(L, -1, &isNumber);
    if (isNumber == 0 || !(value >= low && value <= high)) {
      luaL_error(L, "%s: a number from %f to %f was expected", name, low, high);
    }
  }
  lua_pop(L, 1);
  return value;
}

// new([options]): rate in Hz (8000 to 96000, default 44100) and gain (0 to 10, default 0.5).
int New(lua_State* L) {
  lua_settop(L, 1);
  if (lua_isnil(L, 1)) {
    lua_newtable(L);
    lua_replace(L, 1);
  }
  luaL_checktype(L, 1, LUA_TTABLE);
  const double rateHz = Field(L, 1, "rate", 44100, 8000, 96000);
  const double gain = Field(L, 1, "gain", 0.5, 0, 10);
  auto& synth = *new (lua_newuserdatauv(L, sizeof(Synth), 0)) Synth;
  luaL_setmetatable(L, kMetatable);
  synth.rateHz = rateHz;
  synth.settings.reset(new_fluid_settings());
  auto* settings = synth.settings.get();
  fluid_settings_setnum(settings, "synth.sample-rate", rateHz);
  fluid_settings_setnum(settings, "synth.gain", gain);
  fluid_settings_setint(settings, "synth.reverb.active", 0);
  fluid_settings_setint(settings, "synth.chorus.active", 0);
  fluid_settings_setint(settings, "synth.polyphony", 1024);
  fluid_settings_setstr(settings, "player.timing-source", "sample");
  synth.synth.reset(new_fluid_synth(settings));
  if (synth.synth == nullptr) luaL_error(L, "the synthesiser could not be made");
  return 1;
}

// load(path, [bank], [program]): loads a SoundFont bank and selects a preset (default 0, 0); the
// file is not needed afterwards. Returns true, or nil and the reason.
int Load(lua_State* L) {
  fluid_synth_t* engine = CheckSynth(L).synth.get();
  const char* path = luaL_checkstring(L, 2);
  const auto bank = static_cast<int>(luaL_optinteger(L, 3, 0));
  const auto program = static_cast<int>(luaL_optinteger(L, 4, 0));
  const int font = fluid_synth_sfload(engine, path, 1);
  const char* reason = nullptr;
  if (font == FLUID_FAILED) {
    reason = "the synthesiser does not accept the bank";
  } else if (fluid_synth_program_select(engine, 0, font, bank, program) == FLUID_FAILED) {
    reason = "the bank has no such preset";
  }
  if (reason == nullptr) {
    lua_pushboolean(L, 1);
    return 1;
  }
  lua_pushnil(L);
  lua_pushstring(L, reason);
  return 2;
}

// note { at, key, velocity, seconds }: a note of the selected preset, in seconds from the
// start.
int AddNote(lua_State* L) {
  Synth& synth = CheckSynth(L);
  luaL_checktype(L, 2, LUA_TTABLE);
  const double at = Field(L, 2, "at", 0, 0, kMaxSeconds);
  const auto key = static_cast<int>(Field(L, 2, "key", 60, 0, 127));
  const auto velocity = static_cast<int>(Field(L, 2, "velocity", 100, 1, 127));
  const double seconds = Field(L, 2, "seconds", 1, 0, kMaxSeconds);
  const auto frame = [&synth](double time) { return static_cast<size_t>(time * synth.rateHz); };
  synth.events.push_back({frame(at), key, velocity});
  synth.events.push_back({frame(at + seconds), key, 0});
  return 0;
}

// song(bytes): a standard MIDI file to play.
int SetSong(lua_State* L) {
  Synth& synth = CheckSynth(L);
  size_t length = 0;
  const char* bytes = luaL_checklstring(L, 2, &length);
  synth.song.assign(bytes, length);
  return 0;
}

// Renders to the sound until all events are past and the sound has faded.
void Render(Synth& synth, audio::Sound& sound) {
  fluid_synth_t* engine = synth.synth.get();
  Owned<fluid_player_t, delete_fluid_player> player;
  if (!synth.song.empty()) {
    player.reset(new_fluid_player(engine));
    fluid_player_add_mem(player.get(), synth.song.data(), synth.song.size());
    fluid_player_play(player.get());
  }
  std::stable_sort(synth.events.begin(), synth.events.end(), [](const Event& a, const Event& b) {
    return std::pair(a.frame, a.velocity) < std::pair(b.frame, b.velocity);
  });
  size_t next = 0;
  const auto most = static_cast<size_t>(kMaxSeconds * synth.rateHz);
  const auto quiet = static_cast<size_t>(kSilentSeconds * synth.rateHz);
  size_t silent = 0;
  float left[kBlock];
  float right[kBlock];
  for (size_t frame = 0; frame < most; frame += kBlock) {
    for (; next < synth.events.size() && synth.events[next].frame <= frame; ++next) {
      const Event& event = synth.events[next];
      if (event.velocity > 0) {
        fluid_synth_noteon(engine, 0, event.key, event.velocity);
      } else {
        fluid_synth_noteoff(engine, 0, event.key);
      }
    }
    fluid_synth_write_float(engine, kBlock, left, 0, 1, right, 0, 1);
    sound.channels[0].insert(sound.channels[0].end(), left, left + kBlock);
    sound.channels[1].insert(sound.channels[1].end(), right, right + kBlock);
    const auto sounds = [](float x) { return std::fabs(x) > kSilence; };
    const bool heard =
        std::any_of(left, left + kBlock, sounds) || std::any_of(right, right + kBlock, sounds);
    silent = heard ? 0 : silent + kBlock;
    const bool playing =
        player != nullptr && fluid_player_get_status(player.get()) == FLUID_PLAYER_PLAYING;
    if (next == synth.events.size() && !playing && silent >= quiet) break;
  }
}

// render(): a stereo sound of the notes and the song.
int RenderSound(lua_State* L) {
  Synth& synth = CheckSynth(L);
  auto& sound = *new (lua_newuserdatauv(L, sizeof(audio::Sound), 0))
                    audio::Sound{synth.rateHz, std::vector<std::vector<float>>(2)};
  luaL_setmetatable(L, kSoundMetatable);
  Render(synth, sound);
  synth.events.clear();
  return 1;
}

// A sound that plays on the machine's audio output.
struct Playback {
  std::vector<std::vector<float>> channels;
  std::atomic<size_t> place = 0;
  Owned<fluid_settings_t, delete_fluid_settings> settings;
  Owned<fluid_audio_driver_t, delete_fluid_audio_driver> driver;  // uses the members above

  bool Playing() const { return place < channels[0].size(); }
};

// Called by the driver's thread.
int Feed(void* data, int count, int, float*[], int outputs, float* output[]) {
  auto& playback = *static_cast<Playback*>(data);
  const size_t first = playback.place;
  const auto& channels = playback.channels;
  for (int i = 0; i < outputs; ++i) {
    const auto& values = channels[static_cast<size_t>(i) % channels.size()];
    for (int k = 0; k < count; ++k) {
      const size_t frame = first + static_cast<size_t>(k);
      output[i][k] = frame < values.size() ? values[frame] : 0;
    }
  }
  playback.place = first + static_cast<size_t>(count);
  return FLUID_OK;
}

// Sends standard error nowhere while it exists: audio libraries report each output that is missing.
class QuietErrors {
 public:
  QuietErrors() : saved_(dup(STDERR_FILENO)) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (saved_ >= 0 && nowhere >= 0) dup2(nowhere, STDERR_FILENO);
    if (nowhere >= 0) close(nowhere);
  }
  ~QuietErrors() {
    if (saved_ < 0) return;
    dup2(saved_, STDERR_FILENO);
    close(saved_);
  }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;

 private:
  int saved_;
};

// listen(sound): starts to play a sound. Returns an object whose playing() tells whether it still
// plays, or nil and the reason.
int Listen(lua_State* L) {
  const auto& sound = CheckSound(L);
  luaL_argcheck(L, sound.Frames() > 0, 1, "the sound is empty");
  auto& playback = *new (lua_newuserdatauv(L, sizeof(Playback), 0)) Playback;
  luaL_setmetatable(L, kPlaybackMetatable);
  playback.channels = sound.channels;
  playback.settings.reset(new_fluid_settings());
  fluid_settings_setnum(playback.settings.get(), "synth.sample-rate", sound.rateHz);
  const QuietErrors quiet;
  playback.driver.reset(new_fluid_audio_driver2(playback.settings.get(), Feed, &playback));
  if (playback.driver == nullptr) {
    lua_pushnil(L);
    lua_pushliteral(L, "there is no audio output");
    return 2;
  }
  return 1;
}

Playback& CheckPlayback(lua_State* L) {
  return *static_cast<Playback*>(luaL_checkudata(L, 1, kPlaybackMetatable));
}

int Playing(lua_State* L) {
  lua_pushboolean(L, CheckPlayback(L).Playing());
  return 1;
}

int CollectPlayback(lua_State* L) {
  CheckPlayback(L).~Playback();
  return 0;
}

// Lua takes foreign exceptions for errors without a value.
template <lua_CFunction function>
int Guarded(lua_State* L) {
  try {
    return function(L);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  return luaL_error(L, "out of memory");
}

void NewMetatable(lua_State* L, const char* name, const luaL_Reg* methods, lua_CFunction collect) {
  luaL_newmetatable(L, name);
  lua_pushcfunction(L, collect);
  lua_setfield(L, -2, "__gc");
  lua_newtable(L);
  luaL_setfuncs(L, methods, 0);
  lua_setfield(L, -2, "__index");
  lua_pop(L, 1);
}

}  // namespace

}  // namespace zyl

extern "C" __attribute__((visibility("default"))) int luaopen_zyl_player(lua_State* L) {
  using namespace zyl;
  const luaL_Reg methods[] = {{"load", Guarded<Load>},
                              {"note", Guarded<AddNote>},
                              {"song", Guarded<SetSong>},
                              {"render", Guarded<RenderSound>},
                              {nullptr, nullptr}};
  NewMetatable(L, kMetatable, methods, CollectSynth);
  const luaL_Reg playback[] = {{"playing", Guarded<Playing>}, {nullptr, nullptr}};
  NewMetatable(L, kPlaybackMetatable, playback, CollectPlayback);
  const luaL_Reg functions[] = {
      {"new", Guarded<New>}, {"listen", Guarded<Listen>}, {nullptr, nullptr}};
  luaL_newlib(L, functions);
  for (const int level : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG}) {
    fluid_set_log_function(level, nullptr, nullptr);
  }
  // Sounds have their methods from the core.
  lua_getglobal(L, "require");
  lua_pushliteral(L, "zyl.audio.core");
  lua_call(L, 1, 0);
  return 1;
}
