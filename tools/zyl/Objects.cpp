#include "Objects.h"

#include <cstdio>
#include <new>
#include <string>
#include <utility>

#include "Algo.h"
#include "Calls.h"
#include "Errors.h"
#include "Graphics.h"
#include "ScriptHost.h"
#include "Values.h"

namespace zyl {

namespace {

// Keys in the registry, by address.
const char kUserdataByObject = 0;  // table with weak values, keyed by the object's address
const char kPlainMetatable = 0;

ObjectRef* RefAt(lua_State* L, int index) {
  return KindOf(L, index) == Kind::kObject ? static_cast<ObjectRef*>(lua_touserdata(L, index))
                                           : nullptr;
}

int ObjectEqual(lua_State* L) {
  const ObjectRef* left = RefAt(L, 1);
  const ObjectRef* right = RefAt(L, 2);
  const bool equal = left != nullptr && right != nullptr && left->value.Object() != nullptr &&
                     left->value.Object() == right->value.Object();
  lua_pushboolean(L, equal ? 1 : 0);
  return 1;
}

int ObjectToString(lua_State* L) {
  const ObjectRef* ref = RefAt(L, 1);
  RIOObject* object = ref == nullptr ? nullptr : ref->value.Object();
  if (object == nullptr) {
    lua_pushliteral(L, "deleted object");
  } else if (object->isROCAlgo()) {
    lua_pushfstring(L, "ROCAlgo: %s", static_cast<ROCAlgo*>(object)->Name().c_str());
  } else if (const auto* pad = dynamic_cast<const ROCPad*>(object)) {
    lua_pushfstring(L, "ROCPad: %s", pad->Name().c_str());
  } else {
    lua_pushfstring(L, "%s: %p", object->GetTypeName(), static_cast<void*>(object));
  }
  return 1;
}

// Destroys a collected object once no call runs: the collector can run during a call.
int ObjectGc(lua_State* L) {
  ObjectRef* ref = RefAt(L, 1);
  if (ref == nullptr) return 0;
  RIOObject* object = ref->value.Object();
  const bool destroy = std::exchange(ref->owned, false) && object != nullptr;
  ref->value = ROCParam();
  if (!destroy) return 0;
  const int deferredError = ScriptHost::Of(L).Destroy(L, object, true);
  if (deferredError > 0) {
    // The collector runs at any time, so there is no call that could raise the error.
    std::fprintf(stderr, "zyl: in a callback of a collected object: %s\n",
                 luaL_tolstring(L, deferredError, nullptr));
  }
  return 0;
}

int PlainIndex(lua_State* L) {
  const RIOObject* object = CheckObject(L, 1);
  RaiseText(L, std::string(object->GetTypeName()) + " has no method \"" +
                   luaL_tolstring(L, 2, nullptr) + '"');
}

// Pushes the metatable for the object's userdata.
void PushMetatable(lua_State* L, RIOObject* object, ZylDispatch* dispatch) {
  if (dispatch != nullptr) {
    PushClassMetatable(L, *dispatch);
  } else if (object->isROCAlgo()) {
    PushAlgoMetatable(L);
  } else if (dynamic_cast<ROCPad*>(object) != nullptr) {
    PushPadMetatable(L);
  } else if (object->isRODPad()) {
    PushDataPadMetatable(L);
  } else if (!PushGraphicMetatable(L, object)) {
    lua_rawgetp(L, LUA_REGISTRYINDEX, &kPlainMetatable);
  }
}

// Pushes a new userdata for the object and returns its reference. Every allocation may run
// finalizers, which may destroy the object: in that case pushes nil and returns null.
ObjectRef* PushNew(lua_State* L, RIOObject* object) {
  const ROCParam held(object);
  const auto destroyed = [&] {
    if (held.Object() != nullptr) return false;
    lua_pop(L, 1);
    lua_pushnil(L);
    return true;
  };
  auto* ref = new (lua_newuserdatauv(L, sizeof(ObjectRef), kObjectSlots)) ObjectRef;
  if (destroyed()) return nullptr;
  ref->value.SetRIOPtr(object);
  ZylDispatch* dispatch = object->GetDispatch(true);
  if (dispatch != nullptr && dispatch->isScript()) dispatch = nullptr;
  PushMetatable(L, object, dispatch);
  lua_setmetatable(L, -2);
  if (destroyed()) return nullptr;
  if (dispatch != nullptr) ref->classTag = dispatch->GetFuncTable();
  if (const auto* pad = dynamic_cast<const ROCPad*>(object)) {
    // The algorithm owns the pad, so the pad's userdata keeps the algorithm alive.
    PushObject(L, pad->Owner());
    lua_setiuservalue(L, -2, kOwnerSlot);
    if (destroyed()) return nullptr;
  }
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kUserdataByObject);
  lua_pushvalue(L, -2);
  lua_rawsetp(L, -2, object);
  lua_pop(L, 1);
  return ref;
}

}  // namespace

void OpenObjects(lua_State* L) {
  lua_newtable(L);
  lua_createtable(L, 0, 1);
  lua_pushliteral(L, "v");
  lua_setfield(L, -2, "__mode");
  lua_setmetatable(L, -2);
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kUserdataByObject);

  lua_newtable(L);
  SetObjectMetamethods(L, "host object");
  lua_pushcfunction(L, Guarded<PlainIndex>);
  lua_setfield(L, -2, "__index");
  lua_pushcfunction(L, Guarded<PlainIndex>);
  lua_setfield(L, -2, "__newindex");
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kPlainMetatable);

  OpenValues(L);
  OpenCalls(L);
  OpenAlgo(L);
  OpenGraphics(L);
}

void SetObjectMetamethods(lua_State* L, const char* name) {
  const luaL_Reg shared[] = {{"__eq", Guarded<ObjectEqual>},
                             {"__tostring", Guarded<ObjectToString>},
                             {"__gc", Guarded<ObjectGc>},
                             {nullptr, nullptr}};
  luaL_setfuncs(L, shared, 0);
  SetKind(L, Kind::kObject, name);
}

bool PushExisting(lua_State* L, const RIOObject* object) {
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kUserdataByObject);
  lua_rawgetp(L, -1, object);
  lua_remove(L, -2);
  // A new object can have the address of a destroyed one whose userdata is still in the table.
  const auto* ref = static_cast<ObjectRef*>(lua_touserdata(L, -1));
  if (ref != nullptr && ref->value.Object() == object) return true;
  lua_pop(L, 1);
  return false;
}

void PushObject(lua_State* L, RIOObject* object) {
  luaL_checkstack(L, 8, "objects");
  if (object == nullptr || ScriptHost::Of(L).IsDestructionPending(object)) {
    lua_pushnil(L);
  } else if (!PushExisting(L, object)) {
    PushNew(L, object);
  }
}

void PushOwned(lua_State* L, std::unique_ptr<RIOObject> object) {
  ScriptHost::Of(L).ReserveDestruction();
  // Nothing else refers to the object, so nothing can have destroyed it and the result is not null.
  if (ObjectRef* ref = PushNew(L, object.get())) ref->owned = true;
  static_cast<void>(object.release());  // owned by the userdata now
}

RIOObject* CheckObject(lua_State* L, int index) {
  const ObjectRef* ref = RefAt(L, index);
  if (ref == nullptr) {
    luaL_argerror(L, index, ("expected an object, got " + DescribeType(L, index)).c_str());
    return nullptr;  // not reached: luaL_argerror does not return
  }
  RIOObject* object = ref->value.Object();
  if (object == nullptr) luaL_argerror(L, index, "the object has been deleted");
  return object;
}

int DeleteObject(lua_State* L) {
  RIOObject* object = CheckObject(L, 1);
  auto* ref = static_cast<ObjectRef*>(lua_touserdata(L, 1));
  if (!ref->owned) {
    return luaL_error(L, "host.delete: the script does not own this %s", object->GetTypeName());
  }
  ref->owned = false;
  ref->value = ROCParam();
  // Drop the user values now instead of when the userdata is collected.
  for (int slot = 1; slot <= kObjectSlots; ++slot) {
    lua_pushnil(L);
    lua_setiuservalue(L, 1, slot);
  }
  RaiseDeferred(L, ScriptHost::Of(L).Destroy(L, object, false));
  return 0;
}

}  // namespace zyl
