// Host objects as Lua userdata. There is one userdata for each living object while the script holds
// it, so that == compares objects. A userdata that was made for the script owns its object and
// destroys it when it is collected; one that came out of a call refers to it only.
#pragma once

#include <memory>

#include "Lua.h"
#include "host/base.h"

namespace zyl {

struct ObjectRef {
  const void* classTag = nullptr;  // the method table of a registered class's object
  ROCParam value;                  // holds the object; null once it is destroyed
  bool owned = false;
};

// User values of an object's userdata.
enum ObjectSlot : int {
  kFieldsSlot = 1,  // of an algorithm: the table of its fields, script methods among them
  kPadsSlot = 2,    // of an algorithm: its pads' callbacks, by the address of the pad
  kOwnerSlot = 1,   // of a part of another object: that one's userdata
  kHeldSlot = 1,    // of a registered class's object: the algorithms that it holds, as keys
  kObjectSlots = 2,
};

void OpenObjects(lua_State* L);

// Nil for null, and for an object whose destruction only waits for a call to return.
void PushObject(lua_State* L, RIOObject* object);
// Pushes a userdata that owns the object.
void PushOwned(lua_State* L, std::unique_ptr<RIOObject> object);
// Pushes the userdata that the script has of the object; false, and nothing pushed, without one.
bool PushKnown(lua_State* L, const RIOObject* object);

// The object at `index`; a Lua error for anything else and for a destroyed object.
RIOObject* CheckObject(lua_State* L, int index);
// host.delete.
int DeleteObject(lua_State* L);

// Adds the metamethods that all objects share to the metatable on top of the stack.
void SetObjectMetamethods(lua_State* L, const char* name);

}  // namespace zyl
