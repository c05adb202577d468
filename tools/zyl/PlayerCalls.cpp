#include "PlayerCalls.h"

#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "Errors.h"
#include "FileCalls.h"

namespace zyl {

namespace {

constexpr const char* kMetatable = "zyl.player.Player";
constexpr const char* kLibrary = "libfluidsynth.so.3";
constexpr int kLogLevels = 5;
constexpr int kFailed = -1;

struct FluidSettings;
struct FluidSynth;

// The functions of libfluidsynth 3 that a player uses. The library is not linked, so that zyl
// starts without it.
struct FluidLibrary {
  void* (*set_log_function)(int level, void* function, void* data) = nullptr;
  FluidSettings* (*new_settings)() = nullptr;
  void (*delete_settings)(FluidSettings*) = nullptr;
  int (*setnum)(FluidSettings*, const char* name, double value) = nullptr;
  int (*setint)(FluidSettings*, const char* name, int value) = nullptr;
  FluidSynth* (*new_synth)(FluidSettings*) = nullptr;
  void (*delete_synth)(FluidSynth*) = nullptr;
  int (*sfload)(FluidSynth*, const char* path, int resetPresets) = nullptr;
  int (*program_select)(FluidSynth*, int channel, int bankId, int bank, int preset) = nullptr;
  int (*noteon)(FluidSynth*, int channel, int key, int velocity) = nullptr;
  int (*noteoff)(FluidSynth*, int channel, int key) = nullptr;
  int (*get_active_voice_count)(FluidSynth*) = nullptr;
  int (*write_float)(FluidSynth*, int frames, void* left, int leftFirst, int leftStep, void* right,
                     int rightFirst, int rightStep) = nullptr;

  bool Load(std::string& reason);
};

template <class Function>
bool Find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
  return function != nullptr;
}

// The library stays loaded.
bool FluidLibrary::Load(std::string& reason) {
  if (write_float != nullptr) return true;
  void* library = ::dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    reason = std::string(kLibrary) + " is not installed (Debian package libfluidsynth3)";
    return false;
  }
  const bool complete =
      Find(library, "fluid_set_log_function", set_log_function) &&
      Find(library, "new_fluid_settings", new_settings) &&
      Find(library, "delete_fluid_settings", delete_settings) &&
      Find(library, "fluid_settings_setnum", setnum) &&
      Find(library, "fluid_settings_setint", setint) &&
      Find(library, "new_fluid_synth", new_synth) &&
      Find(library, "delete_fluid_synth", delete_synth) &&
      Find(library, "fluid_synth_sfload", sfload) &&
      Find(library, "fluid_synth_program_select", program_select) &&
      Find(library, "fluid_synth_noteon", noteon) &&
      Find(library, "fluid_synth_noteoff", noteoff) &&
      Find(library, "fluid_synth_get_active_voice_count", get_active_voice_count) &&
      Find(library, "fluid_synth_write_float", write_float);
  if (!complete) {
    write_float = nullptr;
    reason = std::string(kLibrary) + " lacks a function";
    return false;
  }
  // Failures are reported by the calls.
  for (int level = 0; level < kLogLevels; ++level) set_log_function(level, nullptr, nullptr);
  return true;
}

FluidLibrary fluid;

class Player {
 public:
  Player(double rateHz, int voices) {
    settings_ = fluid.new_settings();
    if (settings_ == nullptr) return;
    fluid.setnum(settings_, "synth.sample-rate", rateHz);
    fluid.setnum(settings_, "synth.gain", 1.0);
    fluid.setint(settings_, "synth.polyphony", voices);
    fluid.setint(settings_, "synth.reverb.active", 0);
    fluid.setint(settings_, "synth.chorus.active", 0);
    synth_ = fluid.new_synth(settings_);
  }
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;
  ~Player() {
    if (synth_ != nullptr) fluid.delete_synth(synth_);
    if (settings_ != nullptr) fluid.delete_settings(settings_);
  }
  // Loads the bank completely and selects a preset.
  bool Load(const char* path, int bank, int preset) {
    if (synth_ == nullptr) return false;
    const int id = fluid.sfload(synth_, path, 1);
    return id != kFailed && fluid.program_select(synth_, 0, id, bank, preset) != kFailed;
  }
  FluidSynth* Synth() const { return synth_; }

 private:
  FluidSettings* settings_ = nullptr;
  FluidSynth* synth_ = nullptr;
};

FluidSynth* CheckSynth(lua_State* L) {
  return static_cast<Player*>(luaL_checkudata(L, 1, kMetatable))->Synth();
}

int CheckRange(lua_State* L, int index, int low, int high) {
  const lua_Integer value = luaL_checkinteger(L, index);
  luaL_argcheck(L, value >= low && value <= high, index, "out of range");
  return static_cast<int>(value);
}

// new(path, bank, preset, rate, voices): a player, or nil and the reason.
int NewPlayer(lua_State* L) {
  const char* path = CheckPath(L, 1);
  const int bank = CheckRange(L, 2, 0, 16383);
  const int preset = CheckRange(L, 3, 0, 127);
  const double rateHz = luaL_checknumber(L, 4);
  luaL_argcheck(L, rateHz >= 8000 && rateHz <= 96000, 4, "not from 8000 to 96000 Hz");
  const int voices = CheckRange(L, 5, 1, 65535);
  std::string reason;
  if (fluid.Load(reason)) {
    auto* player = new (lua_newuserdatauv(L, sizeof(Player), 0)) Player(rateHz, voices);
    luaL_setmetatable(L, kMetatable);
    if (player->Load(path, bank, preset)) return 1;
    reason = "the bank could not be loaded for playing";
  }
  lua_pushnil(L);
  lua_pushlstring(L, reason.data(), reason.size());
  return 2;
}

int CollectPlayer(lua_State* L) {
  static_cast<Player*>(luaL_checkudata(L, 1, kMetatable))->~Player();
  return 0;
}

int NoteOn(lua_State* L) {
  fluid.noteon(CheckSynth(L), 0, CheckRange(L, 2, 0, 127), CheckRange(L, 3, 1, 127));
  return 0;
}

int NoteOff(lua_State* L) {
  fluid.noteoff(CheckSynth(L), 0, CheckRange(L, 2, 0, 127));
  return 0;
}

int Voices(lua_State* L) {
  lua_pushinteger(L, fluid.get_active_voice_count(CheckSynth(L)));
  return 1;
}

// render(frames, gain): the next frames, as little-endian values of 24 bits, left and right in
// turn, and the greatest magnitude before they were clamped (full scale is 1).
int RenderFrames(lua_State* L) {
  FluidSynth* synth = CheckSynth(L);
  const int frames = CheckRange(L, 2, 0, 1 << 20);
  const auto gain = static_cast<float>(luaL_checknumber(L, 3));
  std::vector<float> values(2 * static_cast<size_t>(frames));
  fluid.write_float(synth, frames, values.data(), 0, 2, values.data(), 1, 2);
  std::string bytes;
  bytes.reserve(3 * values.size());
  float peak = 0;
  constexpr float kHighest = 8388607.0F;
  for (const float value : values) {
    const float scaled = value * gain;
    peak = std::max(peak, std::abs(scaled));
    const auto stored = static_cast<uint32_t>(
        static_cast<int32_t>(std::lround(std::clamp(scaled * kHighest, -kHighest, kHighest))));
    for (const int shift : {0, 8, 16}) bytes += static_cast<char>(stored >> shift & 0xFF);
  }
  lua_pushlstring(L, bytes.data(), bytes.size());
  lua_pushnumber(L, static_cast<lua_Number>(peak));
  return 2;
}

int OpenCore(lua_State* L) {
  const luaL_Reg methods[] = {{"noteOn", Guarded<NoteOn>},
                              {"noteOff", Guarded<NoteOff>},
                              {"voices", Guarded<Voices>},
                              {"render", Guarded<RenderFrames>},
                              {nullptr, nullptr}};
  luaL_newmetatable(L, kMetatable);
  lua_pushcfunction(L, Guarded<CollectPlayer>);
  lua_setfield(L, -2, "__gc");
  luaL_newlib(L, methods);
  lua_setfield(L, -2, "__index");
  lua_pop(L, 1);
  lua_createtable(L, 0, 1);
  lua_pushcfunction(L, Guarded<NewPlayer>);
  lua_setfield(L, -2, "new");
  return 1;
}

}  // namespace

void OpenPlayer(lua_State* L) {
  luaL_getsubtable(L, LUA_REGISTRYINDEX, LUA_PRELOAD_TABLE);
  lua_pushcfunction(L, Guarded<OpenCore>);
  lua_setfield(L, -2, "zyl.player.core");
  lua_pop(L, 1);
}

}  // namespace zyl
