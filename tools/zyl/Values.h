// Converts between Lua values and host values, and builds the argument list of a call.
#pragma once

#include <memory>
#include <string>

#include "Lua.h"
#include "host/base.h"

namespace zyl {

// The kind of a userdata, stored in its metatable; kForeign for values that zyl did not create.
enum class Kind { kForeign, kObject, kVariable, kNull };
Kind KindOf(lua_State* L, int index);
// Sets the kind and the name of the metatable on top of the stack.
void SetKind(lua_State* L, Kind kind, const char* name);

// Registers the metatable of host.var and the value host.null.
void OpenValues(lua_State* L);
// Push the results of host.var and host.null. A host.var keeps the objects alive that the script
// stores in it.
int NewVariable(lua_State* L);
// The value of the host.var at `index`; a null object after its finalizer has run.
const ROCParam* VariableValue(lua_State* L, int index);
void PushNull(lua_State* L);

struct ParamRelease {
  void operator()(ROCParam* value) const { deleteROCParam(value); }
};
using ParamPtr = std::unique_ptr<ROCParam, ParamRelease>;

// Where a value is used, for messages such as "KGtune: argument 2: ...". Position 0: no argument.
struct ValueUse {
  const char* name;
  int position;
};

// Converts the Lua value at `index` to a host value. Returns null for nil; raises a Lua error for a
// value without a host equivalent.
ParamPtr ToParam(lua_State* L, int index, const ValueUse& use);
// Pushes the Lua value of a host value; nil for a null pointer and for a null object.
void PushValue(lua_State* L, const ROCParam* value);

// Texts for messages: the type of a Lua value ("an integer", "an object of class CSample"), the Lua
// type for a type code, and a value (5, "abc", a null object).
std::string DescribeType(lua_State* L, int index);
std::string DescribeType(int typeCode);
std::string DescribeValue(lua_State* L, int index);

// Converts the Lua values from stack index `first` to `top` into the argument list of a call. A
// host.var is passed by reference, tables are copied.
class ArgumentList {
 public:
  ArgumentList(lua_State* L, int first, int top, const char* method);
  ArgumentList(const ArgumentList&) = delete;
  ArgumentList& operator=(const ArgumentList&) = delete;

  ROCParams* List() { return &list_; }
  // Copies changed arrays back into the tables they were converted from.
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
  ROCParams list_;  // releases its entries even if a Lua error unwinds the constructor
};

}  // namespace zyl
