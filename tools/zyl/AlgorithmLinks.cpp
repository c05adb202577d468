#include "AlgorithmLinks.h"

#include "Objects.h"
#include "Values.h"

namespace zyl {

namespace {

// Whether a link to the userdata on top of the stack keeps nothing alive: a deleted algorithm, or a
// host.var whose value nothing else holds.
bool IsStale(lua_State* L) {
  if (KindOf(L, -1) == Kind::kVariable) {
    return VariableValue(L, -1)->References() == 1;
  }
  return static_cast<ObjectRef*>(lua_touserdata(L, -1))->value.Object() == nullptr;
}

}  // namespace

// Pushes what keeps the algorithm of an argument alive, its userdata or the host.var, and returns
// true if the script owns the algorithm. Otherwise pushes nothing.
bool AlgorithmLinks::PushKept(int argument) {
  const ROCParam* value = list_.Entry(argument);
  const RIOObject* object = value == nullptr ? nullptr : value->Object();
  if (object == nullptr || !object->isROCAlgo() || !PushExisting(L_, object)) return false;
  const bool owned = static_cast<ObjectRef*>(lua_touserdata(L_, -1))->owned;
  const int index = argument + 2;
  const bool variable = KindOf(L_, index) == Kind::kVariable;
  if (!owned || variable) lua_pop(L_, 1);
  if (owned && variable) lua_pushvalue(L_, index);
  return owned;
}

void AlgorithmLinks::Add() {
  luaL_checkstack(L_, 8, "algorithms");
  for (int i = 0; i < list_.count; ++i) {
    const ROCParam* value = list_.Entry(i);
    if (i < ROCParams::kInside) references_[i] = value == nullptr ? 0 : value->References();
    if (!PushKept(i)) continue;
    any_ = true;
    AddTop();
    lua_pop(L_, 1);
  }
}

// Adds the algorithm or host.var on top of the stack to the table of links. The value false marks a
// new link, which RemoveUnheld confirms (true) or removes.
void AlgorithmLinks::AddTop() {
  if (lua_getiuservalue(L_, 1, kLinksSlot) != LUA_TTABLE) {
    lua_pop(L_, 1);
    lua_newtable(L_);
    lua_pushvalue(L_, -1);
    lua_setiuservalue(L_, 1, kLinksSlot);
  }
  lua_pushvalue(L_, -2);
  const bool known = lua_rawget(L_, -2) != LUA_TNIL;
  lua_pop(L_, 1);
  if (!known) {
    RemoveStale();
    lua_pushvalue(L_, -2);
    lua_pushboolean(L_, 0);
    lua_rawset(L_, -3);
  }
  lua_pop(L_, 1);
}

void AlgorithmLinks::RemoveStale() {
  for (lua_pushnil(L_); lua_next(L_, -2) != 0;) {
    lua_pop(L_, 1);
    if (!IsStale(L_)) continue;
    lua_pushvalue(L_, -1);
    lua_pushnil(L_);
    lua_rawset(L_, -4);
  }
}

void AlgorithmLinks::RemoveUnheld() {
  const bool linked = lua_getiuservalue(L_, 1, kLinksSlot) == LUA_TTABLE;
  for (int i = 0; linked && i < list_.count; ++i) {
    const ROCParam* value = list_.Entry(i);
    if (!PushKept(i)) continue;
    const int before = i < ROCParams::kInside ? references_[i] : 1;
    const bool held = value->References() > before;
    lua_pushvalue(L_, -1);
    const bool pending = lua_rawget(L_, -3) == LUA_TBOOLEAN && lua_toboolean(L_, -1) == 0;
    lua_pop(L_, 1);
    if (!pending) {
      lua_pop(L_, 1);
      continue;
    }
    if (held) {
      lua_pushboolean(L_, 1);
    } else {
      lua_pushnil(L_);
    }
    lua_rawset(L_, -3);
  }
  lua_pop(L_, 1);
}

}  // namespace zyl
