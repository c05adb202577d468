#include "AlgorithmLinks.h"

#include "Objects.h"

namespace zyl {

namespace {

// Pushes the userdata of the algorithm in `value` and returns true if the script owns it. Otherwise
// pushes nothing.
bool PushOwnAlgo(lua_State* L, const ROCParam* value) {
  const RIOObject* object = value == nullptr ? nullptr : value->Object();
  if (object == nullptr || !object->isROCAlgo() || !PushExisting(L, object)) return false;
  if (static_cast<ObjectRef*>(lua_touserdata(L, -1))->owned) return true;
  lua_pop(L, 1);
  return false;
}

}  // namespace

void AlgorithmLinks::Add() {
  luaL_checkstack(L_, 8, "algorithms");
  for (int i = 0; i < list_.count; ++i) {
    const ROCParam* value = list_.Entry(i);
    if (i < ROCParams::kInside) references_[i] = value == nullptr ? 0 : value->References();
    if (!PushOwnAlgo(L_, value)) continue;
    any_ = true;
    AddTop();
    lua_pop(L_, 1);
  }
}

// Adds the algorithm on top of the stack to the table of links. The value false marks a new link,
// which RemoveUnheld confirms (true) or removes.
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
    RemoveDeleted();
    lua_pushvalue(L_, -2);
    lua_pushboolean(L_, 0);
    lua_rawset(L_, -3);
  }
  lua_pop(L_, 1);
}

// Removes deleted algorithms from the table of links on top of the stack.
void AlgorithmLinks::RemoveDeleted() {
  for (lua_pushnil(L_); lua_next(L_, -2) != 0;) {
    lua_pop(L_, 1);
    if (static_cast<ObjectRef*>(lua_touserdata(L_, -1))->value.Object() != nullptr) continue;
    lua_pushvalue(L_, -1);
    lua_pushnil(L_);
    lua_rawset(L_, -4);
  }
}

void AlgorithmLinks::RemoveUnheld() {
  const bool linked = lua_getiuservalue(L_, 1, kLinksSlot) == LUA_TTABLE;
  for (int i = 0; linked && i < list_.count; ++i) {
    const ROCParam* value = list_.Entry(i);
    if (!PushOwnAlgo(L_, value)) continue;
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
