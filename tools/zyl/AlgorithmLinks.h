// Keeps the script's algorithms alive while an object of a registered class holds them.
//
// A method keeps an argument by adding a reference to its value. The object's userdata then refers
// to the algorithm's userdata through a user value, so Lua collects both together even if a
// callback of the algorithm refers to the object.
#pragma once

#include "Lua.h"
#include "host/base.h"

namespace zyl {

// The links of one call. The object is at stack index 1.
class AlgorithmLinks {
 public:
  AlgorithmLinks(lua_State* L, const ROCParams& list) : L_(L), list_(list) {}
  // Links the object to every algorithm among the arguments. Runs before the call, which allocates
  // nothing for links: a failed allocation must not leave an algorithm held without a link.
  void Add();
  // Call after the method: removes the links of algorithms that it did not keep. Does not allocate.
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
  int references_[ROCParams::kInside];  // reference counts of the arguments before the call
};

}  // namespace zyl
