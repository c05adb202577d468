// Keeps the script's algorithms alive while an object of a registered class holds them.
//
// A method holds an argument by adding a reference to its value. The userdata of the object then
// refers to that of the algorithm through a user value, so that Lua collects both together, also
// when a callback of the algorithm refers to the object.
#pragma once

#include "Lua.h"
#include "host/base.h"

namespace zyl {

// The links of one call, whose object is at stack index 1.
class AlgorithmLinks {
 public:
  AlgorithmLinks(lua_State* L, const ROCParams& list) : L_(L), list_(list) {}
  // Links the object to every algorithm among the arguments. This comes before the call, because a
  // failed allocation must not leave an algorithm that is held and not linked.
  void Add();
  // After the call: removes the links of the algorithms that the method does not hold. Does not
  // allocate.
  void Settle() {
    if (any_) RemoveUnheld();
  }

 private:
  void AddTop();
  void RemoveUnheld();
  void RemoveDeleted();

  lua_State* L_;
  const ROCParams& list_;
  bool any_ = false;
  int references_[ROCParams::kInside];  // of the algorithms' values, before the call
};

}  // namespace zyl
