#include "Calls.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "AlgorithmLinks.h"
#include "Errors.h"
#include "HostTable.h"
#include "Objects.h"
#include "ScriptHost.h"
#include "Values.h"
#include "host/hostapp.h"

namespace zyl {

namespace {

// Keys in the registry, by address.
const char kClasses = 0;  // class metatables by address of the method table; see MakeClassMetatable
const char kAdded = 0;    // tables of the methods that scripts added, by class name

[[noreturn]] void RaiseFailure(lua_State* L, const ZylFuncInfo& method, int status) {
  ZylScriptError error;
  if (!ZylTakeError(error)) {
    RaiseText(L, std::string(method.name) + " failed with status " + std::to_string(status) +
                     " without a reason");
  }
  RaiseMethodError(L, error, 2);
}

// The only upvalue of a method's closure. The class metatable owns it.
struct BoundMethod {
  const ZylFuncInfo* method;
  const void* classTag;  // the method table, which identifies the class
};

// Returns the object reference at index 1 if it is of that class, otherwise null. No other library
// creates a userdata of this size that begins with that address.
const ObjectRef* SelfOfClass(lua_State* L, const void* classTag) {
  const auto* self = static_cast<const ObjectRef*>(lua_touserdata(L, 1));
  const bool ofClass =
      self != nullptr && lua_rawlen(L, 1) == sizeof(ObjectRef) && self->classTag == classTag;
  return ofClass ? self : nullptr;
}

// Makes the call and pushes its result; returns the number of results.
[[gnu::always_inline]] inline int Call(lua_State* L, ScriptHost& host, const ZylFuncInfo& method,
                                       RIOObject* object, ROCParams* list, ArgumentList* arguments,
                                       AlgorithmLinks* links) {
  ROCParam* result = nullptr;
  int status;
  int deferredError = kNoError;
  {
    const CallFrame frame(host, L, object, deferredError);
    status = object->GetDispatch(true)->CallFunctionDirect(method, list, &result);
  }
  const ParamPtr resultOwner(result);
  if (links != nullptr) links->Settle();
  if (arguments != nullptr) arguments->CopyBack();
  if (deferredError != kNoError) RaiseDeferred(L, deferredError);
  if (status != 0) RaiseFailure(L, method, status);
  if (result == nullptr) return 0;
  if (result->Type() == kTypeInteger) {
    lua_pushinteger(L, result->Int());
  } else {
    PushValue(L, result);
  }
  return 1;
}

// Call and CallBound are inlined into the C function: a benchmark bounds the time of a plain call.
[[gnu::always_inline]] inline int CallBound(lua_State* L, const BoundMethod& bound) {
  const ZylFuncInfo& method = *bound.method;
  const ObjectRef* self = SelfOfClass(L, bound.classTag);
  if (self == nullptr) {
    return luaL_error(L, "%s: call it with its object, as in object:%s(...)", method.name,
                      method.name);
  }
  RIOObject* object = self->value.Object();
  if (object == nullptr) return luaL_error(L, "%s: the object has been deleted", method.name);

  ScriptHost& host = ScriptHost::Of(L);
  const int top = lua_gettop(L);
  if (top == 1) {
    return Call(L, host, method, object, host.NoArguments(), nullptr, nullptr);
  }
  ArgumentList arguments(L, 2, top, method.name);
  AlgorithmLinks links(L, *arguments.List());
  if (arguments.HasUserdata()) {
    links.Add();
    // Adding links may run finalizers, which may delete the object.
    object = self->value.Object();
    if (object == nullptr) return luaL_error(L, "%s: the object has been deleted", method.name);
  }
  return Call(L, host, method, object, arguments.List(), &arguments, &links);
}

int CallMethod(lua_State* L) {
  const auto& bound = *static_cast<const BoundMethod*>(lua_touserdata(L, lua_upvalueindex(1)));
  try {
    return CallBound(L, bound);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  RaiseOutOfMemory(L, bound.method->name);
}

// Pushes the table of the methods that scripts added to that class.
void PushAdded(lua_State* L, const char* className) {
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kAdded);
  if (lua_getfield(L, -1, className) != LUA_TTABLE) {
    lua_pop(L, 1);
    lua_newtable(L);
    lua_pushvalue(L, -1);
    lua_setfield(L, -3, className);
  }
  lua_remove(L, -2);
}

// Returns whether require "zyl" would add the method whose name is at stack index `name`. Returns
// false if the shipped Lua files are missing.
bool IsAddedByZyl(lua_State* L, int name) {
  const int top = lua_gettop(L);
  lua_getglobal(L, "require");
  lua_pushliteral(L, "zyl.zylapi");
  bool added = false;
  if (lua_pcall(L, 1, 1, 0) == LUA_OK && lua_istable(L, -1)) {
    for (lua_Integer i = 1; !added && lua_rawgeti(L, -1, i) == LUA_TTABLE; ++i) {
      lua_getfield(L, -1, "name");
      added = lua_rawequal(L, -1, name) != 0;
      lua_pop(L, 2);
    }
  }
  lua_settop(L, top);
  return added;
}

// __index of a class's method table (argument 1). Upvalue 1 is the table of added methods; upvalue
// 2 is true for the module's main class.
int UnknownMethod(lua_State* L) {
  if (lua_type(L, 2) == LUA_TSTRING) {
    lua_pushvalue(L, 2);
    if (lua_rawget(L, lua_upvalueindex(1)) != LUA_TNIL) return 1;
    lua_pop(L, 1);
  }
  size_t length = 0;
  const char* name = luaL_tolstring(L, 2, &length);
  std::vector<std::string> known;
  AppendKeys(L, 1, known);
  lua_pushvalue(L, lua_upvalueindex(1));
  AppendKeys(L, lua_gettop(L), known);
  std::sort(known.begin(), known.end());
  if (lua_toboolean(L, lua_upvalueindex(2)) != 0 && IsAddedByZyl(L, 2)) {
    RaiseText(L, "no method \"" + std::string(name, length) + "\"; require \"zyl\" adds it");
  }
  RaiseUnknownName(L, "no method", {name, length}, known);
}

int NoField(lua_State* L) {
  return luaL_error(L, "a script object has no fields to set ('%s')",
                    luaL_tolstring(L, 2, nullptr));
}

void MakeClassMetatable(lua_State* L, ZylDispatch& dispatch) {
  lua_newtable(L);
  const int metatable = lua_gettop(L);
  SetObjectMetamethods(L, dispatch.GetClassName());
  lua_pushcfunction(L, Guarded<NoField>);
  lua_setfield(L, metatable, "__newindex");

  const ZylFuncInfo* table = dispatch.GetFuncTable();
  size_t count = 0;
  while (table[count].name != nullptr) ++count;
  auto* bound =
      static_cast<BoundMethod*>(lua_newuserdatauv(L, (count + 1) * sizeof(BoundMethod), 0));
  lua_rawsetp(L, metatable, &kClasses);

  lua_createtable(L, 0, static_cast<int>(count));
  const hashEntry* lookup = dispatch.GetHashTable();
  for (size_t i = 0; i < count; ++i) {
    const ZylFuncInfo* method = lookup->Find(table[i].name);
    if (method == nullptr) continue;
    bound[i] = {method, table};
    lua_pushlightuserdata(L, &bound[i]);
    lua_pushcclosure(L, CallMethod, 1);
    lua_setfield(L, -2, method->name);
  }
  lua_createtable(L, 0, 1);
  PushAdded(L, dispatch.GetClassName());
  lua_pushboolean(L, std::string_view(dispatch.GetClassName()) == kMainClass);
  lua_pushcclosure(L, Guarded<UnknownMethod>, 2);
  lua_setfield(L, -2, "__index");
  lua_setmetatable(L, -2);
  lua_setfield(L, metatable, "__index");
}

}  // namespace

void AppendKeys(lua_State* L, int table, std::vector<std::string>& keys) {
  lua_pushnil(L);
  while (lua_next(L, table) != 0) {
    if (lua_type(L, -2) == LUA_TSTRING) keys.emplace_back(lua_tostring(L, -2));
    lua_pop(L, 1);
  }
}

void OpenCalls(lua_State* L) {
  lua_newtable(L);
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kClasses);
  lua_newtable(L);
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kAdded);
}

void AppendMethodNames(lua_State* L, ZylDispatch& dispatch, std::vector<std::string>& names) {
  for (const ZylFuncInfo* method = dispatch.GetFuncTable(); method->name != nullptr; ++method) {
    names.emplace_back(method->name);
  }
  PushAdded(L, dispatch.GetClassName());
  AppendKeys(L, lua_gettop(L), names);
  lua_pop(L, 1);
}

int ExtendClass(lua_State* L) {
  const char* className = luaL_checkstring(L, 1);
  luaL_checktype(L, 2, LUA_TTABLE);
  const ZylFuncInfo* methods = ZylClassMethods(className);
  if (methods == nullptr) return luaL_error(L, "host.extend: there is no class '%s'", className);
  lua_settop(L, 2);
  for (lua_pushnil(L); lua_next(L, 2) != 0; lua_pop(L, 1)) {
    const bool named = lua_type(L, 3) == LUA_TSTRING && lua_isfunction(L, 4);
    luaL_argcheck(L, named, 2, "expected functions by name");
    for (const ZylFuncInfo* own = methods; own->name != nullptr; ++own) {
      if (std::string_view(own->name) != lua_tostring(L, 3)) continue;
      return luaL_error(L, "host.extend: %s already has a method '%s'", className, own->name);
    }
  }
  PushAdded(L, className);
  for (lua_pushnil(L); lua_next(L, 2) != 0;) {
    lua_pushvalue(L, 4);
    lua_insert(L, 4);
    lua_rawset(L, 3);
  }
  return 0;
}

void PushClassMetatable(lua_State* L, ZylDispatch& dispatch) {
  const ZylFuncInfo* table = dispatch.GetFuncTable();
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kClasses);
  if (lua_rawgetp(L, -1, table) == LUA_TNIL) {
    lua_pop(L, 1);
    MakeClassMetatable(L, dispatch);
    lua_pushvalue(L, -1);
    lua_rawsetp(L, -3, table);
  }
  lua_remove(L, -2);
}

}  // namespace zyl
