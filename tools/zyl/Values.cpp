#include "Values.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <string_view>
#include <utility>

#include "Errors.h"
#include "Objects.h"

namespace zyl {

namespace {

constexpr int kMaxDepth = 16;
constexpr lua_Unsigned kMaxElements = 1u << 28;

// Keys in the registry and in metatables, by address.
const char kKindKey = 0;
const char kVariableMetatable = 0;
const char kNullValue = 0;

// The userdata of host.var. Owns one reference to the value. Its user value is a table with the
// userdata of the objects in the value, or nil.
struct Variable {
  ROCParam* value;
};

[[noreturn]] void RaiseBadValue(lua_State* L, const ValueUse& use, const std::string& what) {
  std::string text = use.name;
  if (use.position > 0) text += ": argument " + std::to_string(use.position);
  RaiseText(L, text + ": " + what);
}

[[noreturn, gnu::cold]] void RaiseTooLong(lua_State* L, const ValueUse& use, lua_Integer value) {
  RaiseBadValue(L, use, "the integer " + std::to_string(value) + " does not fit 32 bits");
}

inline int32_t ToInt32(lua_State* L, int index, const ValueUse& use) {
  const lua_Integer value = lua_tointeger(L, index);
  if (value != static_cast<int32_t>(value)) RaiseTooLong(L, use, value);
  return static_cast<int32_t>(value);
}

std::string_view ToText(lua_State* L, int index) {
  size_t length = 0;
  const char* text = lua_tolstring(L, index, &length);
  return {text, length};
}

// The enclosing tables of a nested conversion, outermost first.
struct TablePath {
  std::array<const void*, kMaxDepth> tables;
  int depth = 0;
};

ParamPtr ToParamBelow(lua_State* L, int index, const ValueUse& use, TablePath& path);

ParamPtr ToArray(lua_State* L, int index, const ValueUse& use, TablePath& path) {
  const void* table = lua_topointer(L, index);
  if (std::find(path.tables.begin(), path.tables.begin() + path.depth, table) !=
      path.tables.begin() + path.depth) {
    RaiseBadValue(L, use, "the table contains itself");
  }
  if (path.depth == kMaxDepth) {
    RaiseBadValue(L, use, "tables are nested deeper than " + std::to_string(kMaxDepth));
  }
  luaL_checkstack(L, 4, "nested tables");
  const lua_Unsigned count = lua_rawlen(L, index);
  if (count > kMaxElements) RaiseBadValue(L, use, "the list is too long");
  path.tables[static_cast<size_t>(path.depth++)] = table;
  ParamPtr array(ROCParam::NewArray(static_cast<int>(count)));
  for (int i = 0; i < static_cast<int>(count); ++i) {
    lua_rawgeti(L, index, i + 1);
    ROCParam& element = array->Element(i);
    if (lua_isinteger(L, -1) != 0) {
      element.SetInt(ToInt32(L, -1, use));
    } else {
      const ParamPtr value = ToParamBelow(L, lua_gettop(L), use, path);
      element = value == nullptr ? ROCParam() : *value;
    }
    lua_pop(L, 1);
  }
  --path.depth;
  return array;
}

ParamPtr ToParamBelow(lua_State* L, int index, const ValueUse& use, TablePath& path) {
  switch (lua_type(L, index)) {
    case LUA_TNONE:
    case LUA_TNIL:
      return nullptr;
    case LUA_TBOOLEAN:
      return ParamPtr(newROCParam(lua_toboolean(L, index) != 0));
    case LUA_TNUMBER:
      if (lua_isinteger(L, index) == 0) return ParamPtr(newROCParam(lua_tonumber(L, index)));
      return ParamPtr(newROCParam(ToInt32(L, index, use)));
    case LUA_TSTRING:
      return ParamPtr(newROCParam(ToText(L, index)));
    case LUA_TTABLE:
      return ToArray(L, index, use, path);
    case LUA_TUSERDATA:
      switch (KindOf(L, index)) {
        case Kind::kObject:
          return ParamPtr(new ROCParam(static_cast<ObjectRef*>(lua_touserdata(L, index))->value));
        case Kind::kVariable:
          // A copy: ArgumentList passes the variable's own value for arguments only.
          return ParamPtr(new ROCParam(*static_cast<Variable*>(lua_touserdata(L, index))->value));
        case Kind::kNull:
          return ParamPtr(new ROCParam);
        case Kind::kForeign:
          break;
      }
      break;
    default:
      break;
  }
  RaiseBadValue(L, use, std::string("a ") + luaL_typename(L, index) + " has no host value");
}

void PushElement(lua_State* L, const ROCParam& value) {
  // nil would end the list.
  if (value.Type() == kTypeObject && value.Object() == nullptr) {
    PushNull(L);
  } else {
    PushValue(L, &value);
  }
}

// Copies `array` into the table at `index` and fills nested tables in place.
void FillTable(lua_State* L, int index, ROCParam& array) {
  luaL_checkstack(L, 4, "nested arrays");
  const int count = array.ElementCount();
  for (int i = 0; i < count; ++i) {
    ROCParam& element = array.Element(i);
    if (element.Type() == kTypeArray) {
      if (lua_rawgeti(L, index, i + 1) == LUA_TTABLE) {
        FillTable(L, lua_gettop(L), element);
        lua_pop(L, 1);
        continue;
      }
      lua_pop(L, 1);
    }
    PushElement(L, element);
    lua_rawseti(L, index, i + 1);
  }
  for (auto i = static_cast<lua_Integer>(lua_rawlen(L, index)); i > count; --i) {
    lua_pushnil(L);
    lua_rawseti(L, index, i);
  }
}

// Works on a copy because finalizers can run and change the array.
void FillTableFrom(lua_State* L, int index, const ROCParam& array) {
  ROCParam copy(array);
  FillTable(L, index, copy);
}

std::string DescribeObject(const RIOObject* object, const char* none) {
  return object == nullptr ? none : std::string("an object of class ") + object->GetTypeName();
}

Variable& CheckVariable(lua_State* L) {
  if (KindOf(L, 1) != Kind::kVariable) luaL_argerror(L, 1, "a host.var was expected");
  return *static_cast<Variable*>(lua_touserdata(L, 1));
}

int VariableIndex(lua_State* L) {
  const Variable& variable = CheckVariable(L);
  if (lua_type(L, 2) != LUA_TSTRING || ToText(L, 2) != "value") {
    return luaL_error(L, "a host.var has only the field 'value'");
  }
  PushValue(L, variable.value);
  return 1;
}

// Appends the userdata of the objects in `value` to the table on top of the stack.
void AppendObjects(lua_State* L, ROCParam& value) {
  if (value.Type() == kTypeArray) {
    for (int i = 0; i < value.ElementCount(); ++i) AppendObjects(L, value.Element(i));
  } else if (value.Type() == kTypeObject && PushExisting(L, value.Object())) {
    lua_rawseti(L, -2, static_cast<lua_Integer>(lua_rawlen(L, -2)) + 1);
  }
}

// Pushes what the user value of a host.var with this value must be.
void PushObjectsOf(lua_State* L, ROCParam& value) {
  luaL_checkstack(L, 4, "objects");
  if (value.Type() != kTypeArray && value.Type() != kTypeObject) {
    lua_pushnil(L);
    return;
  }
  lua_newtable(L);
  AppendObjects(L, value);
}

int VariableNewIndex(lua_State* L) {
  Variable& variable = CheckVariable(L);
  if (lua_type(L, 2) != LUA_TSTRING || ToText(L, 2) != "value") {
    return luaL_error(L, "a host.var has only the field 'value'");
  }
  const ParamPtr given = ToParam(L, 3, {"host.var", 0});
  ROCParam value;
  if (given != nullptr) value = std::move(*given);
  PushObjectsOf(L, value);
  lua_setiuservalue(L, 1, 1);
  *variable.value = std::move(value);
  return 0;
}

int VariableToString(lua_State* L) {
  PushValue(L, CheckVariable(L).value);
  lua_pushfstring(L, "host.var: %s", luaL_tolstring(L, -1, nullptr));
  return 1;
}

int VariableGc(lua_State* L) {
  // A finalizer that runs later can still use the variable; it reads a null object then.
  static ROCParam finalized;
  Variable& variable = CheckVariable(L);
  if (variable.value != &finalized) deleteROCParam(variable.value);
  variable.value = &finalized;
  return 0;
}

int NullIndex(lua_State* L) {
  RaiseText(L, std::string("host.null has no method \"") + luaL_tolstring(L, 2, nullptr) + '"');
}

int NullToString(lua_State* L) {
  lua_pushliteral(L, "host.null");
  return 1;
}

}  // namespace

Kind KindOf(lua_State* L, int index) {
  if (lua_type(L, index) != LUA_TUSERDATA || lua_getmetatable(L, index) == 0) return Kind::kForeign;
  lua_rawgetp(L, -1, &kKindKey);
  const auto kind = static_cast<Kind>(lua_tointeger(L, -1));
  lua_pop(L, 2);
  return kind;
}

void SetKind(lua_State* L, Kind kind, const char* name) {
  lua_pushinteger(L, static_cast<lua_Integer>(kind));
  lua_rawsetp(L, -2, &kKindKey);
  lua_pushstring(L, name);
  lua_setfield(L, -2, "__name");
  lua_pushliteral(L, "of the host");
  lua_setfield(L, -2, "__metatable");
}

void OpenValues(lua_State* L) {
  const luaL_Reg variable[] = {{"__index", Guarded<VariableIndex>},
                               {"__newindex", Guarded<VariableNewIndex>},
                               {"__tostring", Guarded<VariableToString>},
                               {"__gc", Guarded<VariableGc>},
                               {nullptr, nullptr}};
  lua_newtable(L);
  luaL_setfuncs(L, variable, 0);
  SetKind(L, Kind::kVariable, "host.var");
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kVariableMetatable);

  const luaL_Reg null[] = {{"__index", Guarded<NullIndex>},
                           {"__newindex", Guarded<NullIndex>},
                           {"__tostring", Guarded<NullToString>},
                           {nullptr, nullptr}};
  lua_newuserdatauv(L, 0, 0);
  lua_newtable(L);
  luaL_setfuncs(L, null, 0);
  SetKind(L, Kind::kNull, "host.null");
  lua_setmetatable(L, -2);
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kNullValue);
}

int NewVariable(lua_State* L) {
  luaL_checkany(L, 1);
  ParamPtr value = ToParam(L, 1, {"host.var", 0});
  if (value == nullptr) return luaL_argerror(L, 1, "nil has no type; for an object use host.null");
  auto* variable = static_cast<Variable*>(lua_newuserdatauv(L, sizeof(Variable), 1));
  PushObjectsOf(L, *value);
  lua_setiuservalue(L, -2, 1);
  variable->value = value.release();
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kVariableMetatable);
  lua_setmetatable(L, -2);
  return 1;
}

const ROCParam* VariableValue(lua_State* L, int index) {
  return static_cast<const Variable*>(lua_touserdata(L, index))->value;
}

void PushNull(lua_State* L) { lua_rawgetp(L, LUA_REGISTRYINDEX, &kNullValue); }

ParamPtr ToParam(lua_State* L, int index, const ValueUse& use) {
  TablePath path;
  return ToParamBelow(L, lua_absindex(L, index), use, path);
}

void PushValue(lua_State* L, const ROCParam* value) {
  if (value == nullptr) {
    lua_pushnil(L);
    return;
  }
  // The accessors of elements and bytes are not const; nothing is modified here.
  auto& readable = const_cast<ROCParam&>(*value);
  switch (value->Type()) {
    case kTypeInteger:
      lua_pushinteger(L, value->Int());
      break;
    case kTypeBool:
      lua_pushboolean(L, value->Bool() ? 1 : 0);
      break;
    case kTypeDouble:
      lua_pushnumber(L, value->Double());
      break;
    case kTypeString:
      lua_pushlstring(L, value->Str().data(), value->Str().size());
      break;
    case kTypeData:
      lua_pushlstring(L, reinterpret_cast<const char*>(readable.Data()),
                      static_cast<size_t>(value->GetSize()));
      break;
    case kTypeArray:
      luaL_checkstack(L, 4, "nested arrays");
      lua_createtable(L, value->ElementCount(), 0);
      FillTableFrom(L, lua_gettop(L), *value);
      break;
    default:
      PushObject(L, value->Object());
      break;
  }
}

std::string DescribeType(int typeCode) {
  switch (typeCode) {
    case kTypeInteger:
      return "an integer";
    case kTypeBool:
      return "a boolean";
    case kTypeDouble:
      return "a float";
    case kTypeString:
    case kTypeData:
      return "a string";
    case kTypeArray:
      return "a table";
    default:
      return "an object";
  }
}

std::string DescribeType(lua_State* L, int index) {
  switch (lua_type(L, index)) {
    case LUA_TNONE:
    case LUA_TNIL:
      return "nil";
    case LUA_TNUMBER:
      return lua_isinteger(L, index) != 0 ? "an integer" : "a float";
    case LUA_TUSERDATA: {
      const Kind kind = KindOf(L, index);
      if (kind == Kind::kNull) return "a null object";
      if (kind == Kind::kVariable) {
        const ROCParam& value = *static_cast<Variable*>(lua_touserdata(L, index))->value;
        if (value.Type() != kTypeObject) return DescribeType(value.Type());
        return DescribeObject(value.Object(), "a null object");
      }
      if (kind == Kind::kObject) {
        const auto* ref = static_cast<ObjectRef*>(lua_touserdata(L, index));
        return DescribeObject(ref->value.Object(), "a deleted object");
      }
      break;
    }
    default:
      break;
  }
  return std::string("a ") + luaL_typename(L, index);
}

std::string DescribeValue(lua_State* L, int index) {
  switch (lua_type(L, index)) {
    case LUA_TBOOLEAN:
      return lua_toboolean(L, index) != 0 ? "true" : "false";
    case LUA_TNUMBER: {
      if (lua_isinteger(L, index) != 0) return std::to_string(lua_tointeger(L, index));
      char text[32];
      std::snprintf(text, sizeof text, "%.14g", lua_tonumber(L, index));
      return text;
    }
    case LUA_TSTRING: {
      constexpr size_t kShown = 40;
      const std::string_view whole = ToText(L, index);
      std::string text(whole.substr(0, kShown));
      // Keep the message on one line.
      for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20) c = ' ';
      }
      return '"' + text + (whole.size() > kShown ? "...\"" : "\"");
    }
    case LUA_TUSERDATA:
      if (KindOf(L, index) == Kind::kVariable) {
        PushValue(L, static_cast<Variable*>(lua_touserdata(L, index))->value);
        std::string text = DescribeValue(L, lua_gettop(L));
        lua_pop(L, 1);
        return text;
      }
      break;
    default:
      break;
  }
  return DescribeType(L, index);
}

ArgumentList::ArgumentList(lua_State* L, int first, int top, const char* method)
    : L_(L), first_(first) {
  for (int index = first; index <= top; ++index) {
    list_.AddTail(Make(index, {method, index - first + 1}));
  }
}

ROCParam* ArgumentList::Make(int index, const ValueUse& use) {
  if (lua_isinteger(L_, index) != 0) [[likely]]
    return newROCParam(ToInt32(L_, index, use));
  switch (lua_type(L_, index)) {
    case LUA_TNUMBER:
      return newROCParam(lua_tonumber(L_, index));
    case LUA_TBOOLEAN:
      return newROCParam(lua_toboolean(L_, index) != 0);
    case LUA_TSTRING:
      return newROCParam(ToText(L_, index));
    case LUA_TUSERDATA:
      hasUserdata_ = true;
      if (KindOf(L_, index) == Kind::kVariable) {
        ROCParam* value = static_cast<Variable*>(lua_touserdata(L_, index))->value;
        value->AddReference();
        return value;
      }
      break;
    case LUA_TTABLE:
      hasTables_ = true;
      break;
    default:
      break;
  }
  return ToParam(L_, index, use).release();
}

void ArgumentList::CopyTablesBack() {
  for (int i = 0; i < list_.count; ++i) {
    ROCParam* value = list_.Entry(i);
    if (value != nullptr && value->Type() == kTypeArray && lua_istable(L_, first_ + i)) {
      FillTableFrom(L_, first_ + i, *value);
    }
  }
}

}  // namespace zyl
