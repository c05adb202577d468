// Host objects as Lua userdata. Each object has at most one userdata, so == compares objects. The
// userdata of an object that the script created owns the object and destroys it when collected; the
// userdata of an object that a call returned only refers to it.
#pragma once

#include <memory>

#include "Lua.h"
#include "host/base.h"

namespace zyl {

struct ObjectRef {
  const void* classTag = nullptr;  // the method table of a registered class's object
  ROCParam value;                  // the object; becomes null when it is destroyed
  bool owned = false;
};

// User values of an object's userdata.
enum ObjectSlot : int {
  kFieldsSlot = 1,  // algorithm: the table of its fields, including its script methods
  kPadsSlot = 2,    // algorithm: tables of its pads' callbacks, by the pad's address
  kOwnerSlot = 1,   // part of another object: the userdata of that object
  kLinksSlot =
      1,  // object of a registered class: table whose keys are the algorithms it keeps alive
  kObjectSlots = 2,
};

void OpenObjects(lua_State* L);

// Pushes the object's userdata; nil for null and for an object that is destroyed after the call.
void PushObject(lua_State* L, RIOObject* object);
// Pushes a userdata that owns the object.
void PushOwned(lua_State* L, std::unique_ptr<RIOObject> object);
// Pushes the object's existing userdata and returns true. Without one, pushes nothing and returns
// false.
bool PushExisting(lua_State* L, const RIOObject* object);

// Returns the object at `index`. Raises a Lua error for a destroyed object and for other values.
RIOObject* CheckObject(lua_State* L, int index);
// host.delete.
int DeleteObject(lua_State* L);

// Adds the metamethods that all objects share to the metatable on top of the stack.
void SetObjectMetamethods(lua_State* L, const char* name);

}  // namespace zyl
