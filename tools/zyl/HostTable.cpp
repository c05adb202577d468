#include "HostTable.h"

#include <chrono>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "Algo.h"
#include "Calls.h"
#include "EditorCalls.h"
#include "Errors.h"
#include "FileCalls.h"
#include "Interruption.h"
#include "Objects.h"
#include "PictureCalls.h"
#include "ScriptHost.h"
#include "Values.h"
#include "host/hostapp.h"
#include "host/qx.h"

namespace zyl {

namespace {

using Seconds = std::chrono::duration<double>;
using Clock = std::chrono::steady_clock;

// Waits are split into slices of this length to check for Ctrl-C.
constexpr double kWaitSeconds = 0.05;

[[noreturn]] void RaiseUnknownClass(lua_State* L, const char* function, const char* className) {
  RaiseUnknownName(L, std::string(function) + ": there is no class", className, ZylClassNames());
}

int New(lua_State* L) {
  const char* className = luaL_checkstring(L, 1);
  std::unique_ptr<RIOObject> object(ZylNewScriptObject(className));
  if (object == nullptr) RaiseUnknownClass(L, "host.new", className);
  PushOwned(L, std::move(object));
  // The collector sees only the few bytes of a userdata. Advance it by this many KiB per new object
  // so that unreferenced objects are collected in time.
  constexpr int kCountsForKiB = 64;
  lua_gc(L, LUA_GCSTEP, kCountsForKiB);
  return 1;
}

int Methods(lua_State* L) {
  const char* className = luaL_optstring(L, 1, kMainClass);
  const ZylFuncInfo* method = ZylClassMethods(className);
  if (method == nullptr) RaiseUnknownClass(L, "host.methods", className);
  lua_newtable(L);
  for (lua_Integer i = 1; method->name != nullptr; ++method, ++i) {
    lua_pushstring(L, method->name);
    lua_rawseti(L, -2, i);
  }
  return 1;
}

int TypeOf(lua_State* L) {
  lua_pushstring(L, CheckObject(L, 1)->GetTypeName());
  return 1;
}

int SaveState(lua_State* L) {
  RIOObject* object = CheckObject(L, 1);
  ZylDispatch* dispatch = object->GetDispatch(true);
  std::unique_ptr<ZylState> state = dispatch == nullptr ? nullptr : dispatch->SaveState();
  if (state == nullptr) {
    return luaL_error(L, "host.saveState: a %s has no state to save", object->GetTypeName());
  }
  PushOwned(L, std::move(state));
  return 1;
}

int RestoreState(lua_State* L) {
  auto* state = dynamic_cast<ZylState*>(CheckObject(L, 1));
  luaL_argcheck(L, state != nullptr, 1, "expected a state from host.saveState");
  int deferredError = kNoError;
  bool restored = false;
  {
    // Callbacks may delete the program and the state.
    const CallFrame frame(ScriptHost::Of(L), L, state->Object(), deferredError);
    const CallFrame stateFrame(ScriptHost::Of(L), L, state, deferredError);
    restored = state->Restore();
  }
  RaiseDeferred(L, deferredError);
  lua_pushboolean(L, restored ? 1 : 0);
  return 1;
}

int NewPlainObject(lua_State* L) {
  PushOwned(L, std::unique_ptr<RIOObject>(ZylNewPlainObject(luaL_checkstring(L, 1))));
  return 1;
}

void PushText(lua_State* L, const std::string& text) {
  lua_pushlstring(L, text.data(), text.size());
}

// Returns the first `bytes` bytes of the buffer whose handle is argument 1.
std::string BufferBytes(lua_State* L, const char* name, lua_Unsigned bytes) {
  // A handle has 32 bits. Methods return it as a signed integer, so accept both ranges.
  const lua_Integer handle = luaL_checkinteger(L, 1);
  const bool inRange = handle >= std::numeric_limits<int32_t>::min() &&
                       handle <= lua_Integer{std::numeric_limits<uint32_t>::max()};
  std::string content;
  std::string reason = "handle 0 means no buffer";
  if (!inRange) reason = "unknown handle";
  if (!inRange || handle == 0 ||
      !qxBufferBytes(static_cast<uint32_t>(handle), static_cast<size_t>(bytes), content, reason)) {
    RaiseText(L, std::string(name) + ": " + reason);
  }
  return content;
}

int Buffer(lua_State* L) {
  const lua_Integer bytes = luaL_checkinteger(L, 2);
  luaL_argcheck(L, bytes >= 0, 2, "a length cannot be negative");
  const std::string content = BufferBytes(L, "host.buffer", static_cast<lua_Unsigned>(bytes));
  lua_pushlstring(L, content.data(), content.size());
  return 1;
}

int Floats(lua_State* L) {
  const lua_Integer count = luaL_checkinteger(L, 2);
  luaL_argcheck(L, count >= 0 && count <= std::numeric_limits<int32_t>::max(), 2,
                "not a number of floats");
  const std::string content =
      BufferBytes(L, "host.floats", static_cast<lua_Unsigned>(count) * sizeof(float));
  lua_createtable(L, static_cast<int>(count), 0);
  for (lua_Integer i = 0; i < count; ++i) {
    float value;
    std::memcpy(&value, content.data() + static_cast<size_t>(i) * sizeof value, sizeof value);
    lua_pushnumber(L, static_cast<lua_Number>(value));
    lua_rawseti(L, -2, i + 1);
  }
  return 1;
}

int Pump(lua_State* L) {
  const double seconds = luaL_optnumber(L, 1, 0);
  luaL_argcheck(L, !std::isnan(seconds), 1, "not a number of seconds");
  const Clock::time_point start = Clock::now();
  int calls = 0;
  int deferredError = kNoError;
  {
    const CallFrame frame(ScriptHost::Of(L), L, nullptr, deferredError);
    double left = seconds;
    do {
      calls = ZylPump(std::fmax(0, std::fmin(left, kWaitSeconds)));
      left = seconds - Seconds(Clock::now() - start).count();
    } while (calls == 0 && left > 0 && !WasInterrupted());
  }
  RaiseDeferred(L, deferredError);
  lua_pushinteger(L, calls);
  return 1;
}

int NearestNames(lua_State* L) {
  const std::string name = luaL_checkstring(L, 1);
  luaL_checktype(L, 2, LUA_TTABLE);
  std::vector<std::string> known;
  for (lua_Integer i = 1; lua_rawgeti(L, 2, i) != LUA_TNIL; ++i) {
    known.emplace_back(luaL_checkstring(L, -1));
    lua_pop(L, 1);
  }
  PushText(L, Suggestion(name, known));
  return 1;
}

int Presets(lua_State* L) {
  std::vector<ZylPreset> presets;
  if (!ZylReadPresets(CheckPath(L, 1), presets)) {
    lua_pushnil(L);
    lua_pushliteral(L, "not a SoundFont bank");
    return 2;
  }
  lua_createtable(L, static_cast<int>(presets.size()), 0);
  lua_Integer index = 0;
  for (const ZylPreset& preset : presets) {
    lua_createtable(L, 0, 3);
    PushText(L, preset.name);
    lua_setfield(L, -2, "name");
    lua_pushinteger(L, preset.bank);
    lua_setfield(L, -2, "bank");
    lua_pushinteger(L, preset.program);
    lua_setfield(L, -2, "program");
    lua_rawseti(L, -2, ++index);
  }
  return 1;
}

int HostIndex(lua_State* L) {
  const std::string_view key = lua_type(L, 2) == LUA_TSTRING ? lua_tostring(L, 2) : "";
  if (key == "sampleRate") {
    lua_pushnumber(L, UnitAttribute::sampleRate);
  } else if (key == "module") {
    lua_pushstring(L, ScriptHost::Of(L).Module().c_str());
  } else {
    // A name close to a known one is a typo. Any other name is nil, so that scripts can test for
    // functions.
    std::vector<std::string> known = {"sampleRate", "module"};
    AppendKeys(L, 1, known);
    if (!Suggestion(key, known).empty()) RaiseUnknownName(L, "host has no field", key, known);
    lua_pushnil(L);
  }
  return 1;
}

int HostNewIndex(lua_State* L) {
  const std::string_view key = lua_type(L, 2) == LUA_TSTRING ? lua_tostring(L, 2) : "";
  if (key != "sampleRate") {
    return luaL_error(L, "host has no field '%s' to set", luaL_tolstring(L, 2, nullptr));
  }
  const double rateHz = luaL_checknumber(L, 3);
  luaL_argcheck(L, std::isfinite(rateHz) && rateHz > 0, 3, "not a sample rate");
  UnitAttribute::sampleRate = rateHz;
  return 0;
}

}  // namespace

void OpenHostTable(lua_State* L) {
  const luaL_Reg functions[] = {{"new", Guarded<New>},
                                {"delete", Guarded<DeleteObject>},
                                {"extend", Guarded<ExtendClass>},
                                {"methods", Guarded<Methods>},
                                {"typeof", Guarded<TypeOf>},
                                {"object", Guarded<NewPlainObject>},
                                {"saveState", Guarded<SaveState>},
                                {"restoreState", Guarded<RestoreState>},
                                {"buffer", Guarded<Buffer>},
                                {"floats", Guarded<Floats>},
                                {"var", Guarded<NewVariable>},
                                {"algo", Guarded<NewAlgo>},
                                {"pad", Guarded<NewDataPad>},
                                {"keyboard", Guarded<NewKeyboard>},
                                {"editor", Guarded<NewEditor>},
                                {"render", Guarded<Render>},
                                {"picture", Guarded<NewPicture>},
                                {"pump", Guarded<Pump>},
                                {"suggestion", Guarded<NearestNames>},
                                {"presets", Guarded<Presets>},
                                {nullptr, nullptr}};
  luaL_newlib(L, functions);
  AddFileCalls(L);
  OpenPictures(L);
  PushNull(L);
  lua_setfield(L, -2, "null");
  lua_createtable(L, 0, 2);
  lua_pushcfunction(L, Guarded<HostIndex>);
  lua_setfield(L, -2, "__index");
  lua_pushcfunction(L, Guarded<HostNewIndex>);
  lua_setfield(L, -2, "__newindex");
  lua_setmetatable(L, -2);
  lua_setglobal(L, "host");
}

}  // namespace zyl
