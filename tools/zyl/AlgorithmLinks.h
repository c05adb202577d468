// Keeps the script's algorithms alive while an object of a registered class holds them.
//
// A method keeps an argument by adding a reference to its value. The object's userdata then refers
// to the algorithm's userdata through a user value, so Lua collects both together even if a
// callback of the algorithm refers to the object. If the argument is a host.var, the object refers
// to the host.var, which keeps the algorithm that it has then or gets later.
#pragma once

#include "Lua.h"
#include "host/base.h"

namespace zyl {

// The links of one call. The object is at stack index 1.
class AlgorithmLinks {
 public:
  AlgorithmLinks(lua_State* L, const ROCParams& list) : L_(L), list_(list) {}
  // Links the object to every algorithm among the arguments, which start at stack index 2. Runs
  // before the call, which allocates nothing for links: a failed allocation must not leave an
  // algorithm held without a link.
  void Add();
  // Call after the method: removes the links of algorithms that it did not keep. Does not allocate.
  void Settle() {
    if (any_) RemoveUnheld();
  }

 private:
  bool PushKept(int argument);
  void AddTop();
  void RemoveUnheld();
  // Removes the links that keep nothing alive from the table on top of the stack.
  void RemoveStale();

  lua_State* L_;
  const ROCParams& list_;
  bool any_ = false;
  int references_[ROCParams::kInside];  // reference counts of the arguments before the call
};

}  // namespace zyl
