// Lua values as host values and back, and the argument list of one call.
#pragma once

#include <memory>
#include <string>

#include "Lua.h"
#include "host/base.h"

namespace zyl {

// What a userdata of ours is; kept in its metatable.
enum class Kind { kForeign, kObject, kVariable, kNull };
Kind KindOf(lua_State* L, int index);
// Gives the metatable on top of the stack its kind and its name.
void SetKind(lua_State* L, Kind kind, const char* name);

// Metatables of host.var's values and of host.null; leaves nothing on the stack.
void OpenValues(lua_State* L);
// host.var and host.null.
int NewVariable(lua_State* L);
void PushNull(lua_State* L);

struct ParamRelease {
  void operator()(ROCParam* value) const { deleteROCParam(value); }
};
using ParamPtr = std::unique_ptr<ROCParam, ParamRelease>;

// Where a value is used, for messages: "KGtune: argument 2: ..."; position 0 names no argument.
struct ValueUse {
  const char* name;
  int position;
};

// The host value of the Lua value at `index`: null for nil, a Lua error for what has no host value.
ParamPtr ToParam(lua_State* L, int index, const ValueUse& use);
// The other way. A null entry and a null object are nil.
void PushValue(lua_State* L, const ROCParam* value);

// For messages: the type of a Lua value, "an integer" or "an object of class CSample"; the Lua type
// for a type code; and a value, 5 or "abc" or "a null object".
std::string TypeInWords(lua_State* L, int index);
std::string TypeInWords(int typeCode);
std::string ValueInWords(lua_State* L, int index);

// The argument list of one call: the Lua values from stack index `first` up to the top.
class ArgumentList {
 public:
  ArgumentList(lua_State* L, int first, const char* method);
  ArgumentList(const ArgumentList&) = delete;
  ArgumentList& operator=(const ArgumentList&) = delete;

  ROCParams* List() { return &list_; }
  // Copies the arrays back into the tables that they came from.
  void CopyBack() {
    if (hasTables_) CopyTablesBack();
  }
  bool HasUserdata() const { return hasUserdata_; }

 private:
  ROCParam* Make(int index, const ValueUse& use);
  void CopyTablesBack();

  lua_State* L_;
  int first_;
  bool hasTables_ = false;
  bool hasUserdata_ = false;
  ROCParams list_;  // releases its entries, also when a Lua error unwinds the constructor
};

}  // namespace zyl
