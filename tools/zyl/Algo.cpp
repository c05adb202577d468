#include "Algo.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "Errors.h"
#include "Objects.h"
#include "ScriptHost.h"
#include "Values.h"

namespace zyl {

namespace {

// Keys in the registry, by address.
const char kAlgoMetatable = 0;
const char kPadMetatable = 0;
const char kDataPadMetatable = 0;
const char kNearMisses = 0;  // set of the handler names that were already diagnosed

constexpr int kCallbackFailed = 1;

// One call from the host into a Lua function.
struct Callback {
  const RIOObject* owner;  // the algorithm whose fields or pads contain the function
  const char* name;
  ROCParams* arguments = nullptr;
  ROCParam** result = nullptr;
  bool found = false;
  const ROCPad* pad = nullptr;  // set for a pad's callback, null for a script method
  const ROCParam* value = nullptr;
};

// Runs protected; argument 1 points to a Callback.
int RunMethod(lua_State* L) {
  auto& call = *static_cast<Callback*>(lua_touserdata(L, 1));
  if (!PushExisting(L, call.owner)) return 0;
  lua_getiuservalue(L, -1, kFieldsSlot);
  lua_pushstring(L, call.name);
  if (lua_rawget(L, -2) != LUA_TFUNCTION) return 0;
  call.found = true;
  const int count = call.arguments == nullptr ? 0 : call.arguments->count;
  luaL_checkstack(L, count + 2, "arguments");
  for (int i = 0; i < count; ++i) PushValue(L, call.arguments->Entry(i));
  lua_call(L, count, 1);
  if (call.result != nullptr && *call.result == nullptr) {
    *call.result = ToParam(L, -1, {call.name, 0}).release();
  }
  return 0;
}

int RunPadCallback(lua_State* L) {
  auto& call = *static_cast<Callback*>(lua_touserdata(L, 1));
  if (!PushExisting(L, call.owner)) return 0;
  if (lua_getiuservalue(L, -1, kPadsSlot) != LUA_TTABLE) return 0;
  if (lua_rawgetp(L, -1, call.pad) != LUA_TTABLE) return 0;
  if (lua_getfield(L, -1, call.name) != LUA_TFUNCTION) return 0;
  PushValue(L, call.value);
  lua_call(L, 1, 0);
  return 0;
}

// Dispatches script calls on a script's algorithm to the Lua functions in its fields.
class ScriptDispatch final : public ZylDispatch {
 public:
  explicit ScriptDispatch(ScriptHost& host) : host_(host) {}

  ZylFuncInfo* GetFuncTable() override {
    static ZylFuncInfo none = {nullptr, nullptr, 0, 0xFFFF, 0xFFFF};
    return &none;
  }
  uint32_t* GetAuxTable() override {
    static uint32_t none = 0;
    return &none;
  }
  hashEntry* GetHashTable() override {
    static const std::unique_ptr<hashEntry> none(ZylCreateFuncHashTable(this));
    return none.get();
  }
  hashEntry* RebuildHashTable() override { return GetHashTable(); }
  const char* GetClassName() const override { return "ZylLuaModule"; }
  const char* GetBaseClassName() const override { return "ZylDisplayObject"; }
  void Destroy() override { delete this; }
  bool isScript() const override { return true; }

  int CallFunctionIndirect(const char* name, ROCParams* arguments, ROCParam** result) override {
    Callback call{owner, name, arguments, result};
    const bool done = host_.RunProtected(Guarded<RunMethod>, &call, owner);
    if (!done) return kCallbackFailed;
    return call.found ? 0 : kNoSuchMethod;
  }

 private:
  ScriptHost& host_;
};

// The listener of every pad of the script's algorithms: runs the pad's Lua callbacks.
class PadCallbacks final : public ROCPadListener {
 public:
  explicit PadCallbacks(ScriptHost& host) : host_(host) {}
  void OnSend(ROCPad& pad, const ROCParam& value) override { Run("onSend", pad, value); }
  void OnUpdate(ROCPad& pad, const ROCParam& value) override { Run("onUpdate", pad, value); }

 private:
  void Run(const char* name, const ROCPad& pad, const ROCParam& value) {
    Callback call{pad.Owner(), name};
    call.pad = &pad;
    call.value = &value;
    host_.RunProtected(Guarded<RunPadCallback>, &call, pad.Owner());
  }
  ScriptHost& host_;
};

ROCAlgo* CheckAlgo(lua_State* L) {
  RIOObject* object = CheckObject(L, 1);
  if (!object->isROCAlgo()) luaL_argerror(L, 1, "an algorithm was expected");
  return static_cast<ROCAlgo*>(object);
}

ROCPad* CheckPad(lua_State* L) {
  auto* pad = dynamic_cast<ROCPad*>(CheckObject(L, 1));
  if (pad == nullptr) luaL_argerror(L, 1, "a pad was expected");
  return pad;
}

RODPad* CheckDataPad(lua_State* L) {
  RIOObject* object = CheckObject(L, 1);
  if (!object->isRODPad()) luaL_argerror(L, 1, "a data pad was expected");
  return static_cast<RODPad*>(object);
}

std::string_view Key(lua_State* L) {
  size_t length = 0;
  const char* text = luaL_checklstring(L, 2, &length);
  return {text, length};
}

// m:addPad(name, initial). Upvalue 1 is the PadCallbacks.
int AddPad(lua_State* L) {
  ROCAlgo* algo = CheckAlgo(L);
  const std::string name = luaL_checkstring(L, 2);
  if (algo->FindPad(name) != nullptr) {
    return luaL_error(L, "addPad: the pad '%s' exists already", name.c_str());
  }
  ParamPtr value = ToParam(L, 3, {"addPad", 2});
  if (value == nullptr) return luaL_argerror(L, 3, "a pad needs an initial value");
  ROCPad* pad = algo->AddPad(name, value.release());
  pad->SetListener(static_cast<ROCPadListener*>(lua_touserdata(L, lua_upvalueindex(1))));
  PushObject(L, pad);
  return 1;
}

// Upvalue 1 is the function addPad.
int AlgoIndex(lua_State* L) {
  const ROCAlgo* algo = CheckAlgo(L);
  const std::string_view key = lua_type(L, 2) == LUA_TSTRING ? Key(L) : std::string_view();
  if (key == "name") {
    lua_pushstring(L, algo->Name().c_str());
  } else if (key == "addPad") {
    lua_pushvalue(L, lua_upvalueindex(1));
  } else if (lua_getiuservalue(L, 1, kFieldsSlot) == LUA_TTABLE) {
    lua_pushvalue(L, 2);
    lua_rawget(L, -2);
  }
  return 1;
}

// Prints a diagnostic, once per name, when the function at `value` has a name that is a likely typo
// of a notification's: the module would silently never call it.
void DiagnoseNearMiss(lua_State* L, int name, int value) {
  if (lua_type(L, name) != LUA_TSTRING || !lua_isfunction(L, value)) return;
  const std::string given = lua_tostring(L, name);
  if (std::ranges::find(kNotifications, given) != std::end(kNotifications)) return;
  const std::string suggestion =
      Suggestion(given, {std::begin(kNotifications), std::end(kNotifications)});
  if (suggestion.empty()) return;
  lua_pushvalue(L, name);
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kNearMisses);
  lua_pushvalue(L, -2);
  if (lua_rawget(L, -2) == LUA_TNIL) {
    lua_pushvalue(L, -3);
    lua_pushboolean(L, 1);
    lua_rawset(L, -4);
    ZylDiagnostic("host.algo: \"" + given + "\" is not the name of a notification" + suggestion);
  }
  lua_pop(L, 3);
}

int AlgoNewIndex(lua_State* L) {
  CheckAlgo(L);
  const std::string_view key = lua_type(L, 2) == LUA_TSTRING ? Key(L) : std::string_view();
  if (key == "name" || key == "addPad") {
    return luaL_error(L, "the field '%s' of an algorithm cannot be set", lua_tostring(L, 2));
  }
  if (lua_getiuservalue(L, 1, kFieldsSlot) != LUA_TTABLE) {
    return luaL_error(L, "this algorithm has no fields");
  }
  DiagnoseNearMiss(L, 2, 3);
  lua_insert(L, 2);
  lua_rawset(L, 2);
  return 0;
}

// Pushes the table of a pad's callbacks and returns true. Creates a missing table if `make` is set.
// On false the stack above its former top is undefined.
bool PushPadTable(lua_State* L, const ROCPad* pad, bool make) {
  if (!PushExisting(L, pad->Owner())) return false;
  if (lua_getiuservalue(L, -1, kPadsSlot) != LUA_TTABLE) return false;
  if (lua_rawgetp(L, -1, pad) != LUA_TTABLE) {
    if (!make) return false;
    lua_pop(L, 1);
    lua_newtable(L);
    lua_pushvalue(L, -1);
    lua_rawsetp(L, -3, pad);
  }
  return true;
}

int PadIndex(lua_State* L) {
  const ROCPad* pad = CheckPad(L);
  const std::string_view key = Key(L);
  if (key == "value") {
    PushValue(L, pad->Value());
  } else if (key == "name") {
    lua_pushstring(L, pad->Name().c_str());
  } else if (key != "onSend" && key != "onUpdate") {
    RaiseUnknownName(L, "a pad has no field", key, {"value", "name", "onSend", "onUpdate"});
  } else if (PushPadTable(L, pad, false)) {
    lua_getfield(L, -1, lua_tostring(L, 2));
  } else {
    lua_pushnil(L);
  }
  return 1;
}

// A pad keeps the type it was created with. An integer is converted for a double.
void SetPadValue(lua_State* L, const ROCPad& pad) {
  const ParamPtr value = ToParam(L, 3, {"pad.value", 0});
  ROCParam& held = *pad.Value();
  if (value != nullptr && value->Type() == held.Type()) {
    held = *value;
  } else if (value != nullptr && value->Type() == kTypeInteger && held.Type() == kTypeDouble) {
    held.SetDouble(value->Int());
  } else {
    RaiseText(L, "pad \"" + pad.Name() + "\": the value is " + DescribeType(L, 3) + ", expected " +
                     DescribeType(held.Type()));
  }
}

int PadNewIndex(lua_State* L) {
  const ROCPad* pad = CheckPad(L);
  const std::string_view key = Key(L);
  if (key == "value") {
    SetPadValue(L, *pad);
    return 0;
  }
  if (key != "onSend" && key != "onUpdate") {
    RaiseUnknownName(L, "a pad has no field to set", key, {"value", "onSend", "onUpdate"});
  }
  if (!lua_isnil(L, 3)) luaL_checktype(L, 3, LUA_TFUNCTION);
  if (!PushPadTable(L, pad, true))
    return luaL_error(L, "the algorithm of the pad has been deleted");
  lua_pushvalue(L, 3);
  lua_setfield(L, -2, lua_tostring(L, 2));
  return 0;
}

int DataPadIndex(lua_State* L) {
  const RODPad* pad = CheckDataPad(L);
  if (Key(L) != "bytes") RaiseUnknownName(L, "a data pad has no field", Key(L), {"bytes"});
  PushValue(L, pad->DataValue());
  return 1;
}

int DataPadNewIndex(lua_State* L) {
  const RODPad* pad = CheckDataPad(L);
  if (Key(L) != "bytes") RaiseUnknownName(L, "a data pad has no field", Key(L), {"bytes"});
  size_t length = 0;
  const char* bytes = luaL_checklstring(L, 3, &length);
  luaL_argcheck(L, length <= INT32_MAX, 3, "too many bytes");
  pad->DataValue()->SetData(bytes, static_cast<int>(length));
  return 0;
}

void SaveMetatable(lua_State* L, const char* name, lua_CFunction index, lua_CFunction newIndex,
                   const void* key) {
  lua_newtable(L);
  SetObjectMetamethods(L, name);
  if (index != nullptr) {
    lua_pushcfunction(L, index);
    lua_setfield(L, -2, "__index");
  }
  lua_pushcfunction(L, newIndex);
  lua_setfield(L, -2, "__newindex");
  lua_rawsetp(L, LUA_REGISTRYINDEX, key);
}

int FreeListener(lua_State* L) {
  static_cast<PadCallbacks*>(lua_touserdata(L, 1))->~PadCallbacks();
  return 0;
}

// Pushes a userdata that owns the algorithm and refers to the table at stack index `fields`.
void PushWithFields(lua_State* L, std::unique_ptr<ROCAlgo> algo, int fields) {
  PushOwned(L, std::move(algo));
  lua_pushvalue(L, fields);
  lua_setiuservalue(L, -2, kFieldsSlot);
  lua_newtable(L);
  lua_setiuservalue(L, -2, kPadsSlot);
}

}  // namespace

void PushScriptAlgo(lua_State* L, std::unique_ptr<ROCAlgo> algo, int fields) {
  algo->SetDispatch(new ScriptDispatch(ScriptHost::Of(L)));
  PushWithFields(L, std::move(algo), fields);
}

void OpenAlgo(lua_State* L) {
  lua_newtable(L);
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kNearMisses);
  SaveMetatable(L, "ROCAlgo", nullptr, Guarded<AlgoNewIndex>, &kAlgoMetatable);
  SaveMetatable(L, "ROCPad", Guarded<PadIndex>, Guarded<PadNewIndex>, &kPadMetatable);
  SaveMetatable(L, "RODPad", Guarded<DataPadIndex>, Guarded<DataPadNewIndex>, &kDataPadMetatable);

  lua_rawgetp(L, LUA_REGISTRYINDEX, &kAlgoMetatable);
  // addPad owns the listener as its upvalue, so the listener outlives every pad.
  new (lua_newuserdatauv(L, sizeof(PadCallbacks), 0)) PadCallbacks(ScriptHost::Of(L));
  lua_createtable(L, 0, 1);
  lua_pushcfunction(L, FreeListener);
  lua_setfield(L, -2, "__gc");
  lua_setmetatable(L, -2);
  lua_pushcclosure(L, Guarded<AddPad>, 1);
  lua_pushcclosure(L, Guarded<AlgoIndex>, 1);
  lua_setfield(L, -2, "__index");
  lua_pop(L, 1);
}

void PushAlgoMetatable(lua_State* L) { lua_rawgetp(L, LUA_REGISTRYINDEX, &kAlgoMetatable); }
void PushPadMetatable(lua_State* L) { lua_rawgetp(L, LUA_REGISTRYINDEX, &kPadMetatable); }
void PushDataPadMetatable(lua_State* L) { lua_rawgetp(L, LUA_REGISTRYINDEX, &kDataPadMetatable); }

int NewAlgo(lua_State* L) {
  if (lua_isnoneornil(L, 1)) {
    lua_settop(L, 0);
    lua_newtable(L);
  }
  luaL_checktype(L, 1, LUA_TTABLE);
  lua_settop(L, 1);
  lua_getfield(L, 1, "name");
  const std::string name = luaL_optstring(L, -1, "");
  lua_getfield(L, 1, "dispatch");
  const bool hasDispatch = lua_isnil(L, -1) || lua_toboolean(L, -1) != 0;

  // Copies all fields except the two options.
  lua_newtable(L);
  const int fields = lua_gettop(L);
  lua_pushnil(L);
  while (lua_next(L, 1) != 0) {
    DiagnoseNearMiss(L, lua_gettop(L) - 1, lua_gettop(L));
    lua_pushvalue(L, -2);
    lua_insert(L, -2);
    lua_rawset(L, fields);
  }
  for (const char* option : {"name", "dispatch"}) {
    lua_pushnil(L);
    lua_setfield(L, fields, option);
  }

  auto algo = std::make_unique<ROCAlgo>(name);
  if (hasDispatch) {
    PushScriptAlgo(L, std::move(algo), fields);
  } else {
    PushWithFields(L, std::move(algo), fields);
  }
  return 1;
}

int NewDataPad(lua_State* L) {
  size_t length = 0;
  const char* bytes = luaL_optlstring(L, 1, "", &length);
  luaL_argcheck(L, length <= INT32_MAX, 1, "too many bytes");
  auto pad = std::make_unique<RODPad>();
  pad->DataValue()->SetData(bytes, static_cast<int>(length));
  PushOwned(L, std::move(pad));
  return 1;
}

}  // namespace zyl
