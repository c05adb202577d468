#include "Graphics.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "Errors.h"
#include "Objects.h"
#include "Values.h"
#include "host/lists.h"

namespace zyl {

namespace {

// Keys in the registry, by address.
const char kObjectMetatable = 0;
const char kListMetatable = 0;
const char kCellMetatable = 0;

template <class T>
T& Check(lua_State* L, int index, const char* what) {
  auto* object = dynamic_cast<T*>(CheckObject(L, index));
  if (object == nullptr)
    RaiseText(L, std::string(what) + " was expected, got " + DescribeValue(L, index));
  return *object;
}
GOObject& CheckGraphic(lua_State* L) { return Check<GOObject>(L, 1, "a graphic object"); }
List& CheckList(lua_State* L) { return Check<List>(L, 1, "a list"); }
ListElement& CheckCell(lua_State* L) { return Check<ListElement>(L, 1, "a cell of a list"); }

std::string_view Key(lua_State* L) {
  size_t length = 0;
  const char* text = luaL_checklstring(L, 2, &length);
  return {text, length};
}

// Pushes `part`, which the object at `owner` owns. The pushed userdata keeps the owner alive.
void PushPart(lua_State* L, RIOObject* part, int owner) {
  owner = lua_absindex(L, owner);
  PushObject(L, part);
  if (lua_isnil(L, -1)) return;
  lua_pushvalue(L, owner);
  lua_setiuservalue(L, -2, kOwnerSlot);
}

// ---- Graphic objects ----

// go:child(name), or go:child(index) from 0.
int Child(lua_State* L) {
  const auto* container = dynamic_cast<GOContainer*>(&CheckGraphic(L));
  GOObject* child = nullptr;
  if (lua_type(L, 2) == LUA_TNUMBER) {
    const lua_Integer index = luaL_checkinteger(L, 2);
    if (container != nullptr && index >= 0) {
      child = container->FirstChild();
      for (lua_Integer i = 0; i < index && child != nullptr; ++i) child = child->NextSibling();
    }
  } else {
    const char* name = luaL_checkstring(L, 2);
    if (container != nullptr) child = container->GetChild(name, 1);
  }
  PushPart(L, child, 1);
  return 1;
}

int Bounds(lua_State* L) {
  GORect bounds;
  CheckGraphic(L).GetBounds(bounds);
  for (const int32_t edge : {bounds.left, bounds.top, bounds.right, bounds.bottom}) {
    lua_pushinteger(L, edge);
  }
  return 4;
}

int Origin(lua_State* L) {
  const GOPoint origin = CheckGraphic(L).GetOrigin();
  lua_pushinteger(L, origin.x);
  lua_pushinteger(L, origin.y);
  return 2;
}

void PushFill(lua_State* L, const GOObject& object) {
  const GOFill* fill = object.Fill();
  if (fill == nullptr || !fill->isSolidColor()) {
    lua_pushnil(L);
  } else {
    lua_pushinteger(L, static_cast<const GOSolidFill*>(fill)->color);
  }
}

void PushText(lua_State* L, const std::string* text) {
  if (text == nullptr) {
    lua_pushnil(L);
  } else {
    lua_pushlstring(L, text->data(), text->size());
  }
}

// Upvalue 1 is the table of methods.
int GraphicIndex(lua_State* L) {
  const GOObject& object = CheckGraphic(L);
  const std::string_view key = Key(L);
  if (key == "fill") {
    PushFill(L, object);
  } else if (key == "text") {
    PushText(L, object.Text());
  } else if (key == "refreshes") {
    lua_pushinteger(L, object.Refreshes());
  } else if (key == "fillChanges") {
    lua_pushinteger(L, object.FillChanges());
  } else if (key == "template") {
    PushText(L, object.TemplateName().empty() ? nullptr : &object.TemplateName());
  } else if (key == "name") {
    PushText(L, &object.Name());
  } else {
    lua_pushvalue(L, 2);
    if (lua_rawget(L, lua_upvalueindex(1)) == LUA_TNIL) {
      RaiseUnknownName(L, "a graphic object has no field", key,
                       {"child", "bounds", "origin", "fill", "text", "refreshes", "fillChanges",
                        "template", "name"});
    }
  }
  return 1;
}

void SetText(lua_State* L, GOObject& object) {
  if (object.Text() == nullptr) luaL_error(L, "the graphic object is not a text");
  size_t length = 0;
  const char* text = luaL_checklstring(L, 3, &length);
  object.SetText({text, length}, -1, -1);
}

// The fill can be set to a colour, or to nil for no fill; a text to another one.
int GraphicNewIndex(lua_State* L) {
  GOObject& object = CheckGraphic(L);
  if (Key(L) == "text") {
    SetText(L, object);
    return 0;
  }
  if (Key(L) != "fill") {
    RaiseUnknownName(L, "a graphic object has no field to set", Key(L), {"fill", "text"});
  }
  if (lua_isnil(L, 3)) {
    object.SetFill(nullptr);
    return 0;
  }
  const lua_Integer color = luaL_checkinteger(L, 3);
  luaL_argcheck(L,
                color >= std::numeric_limits<int32_t>::min() &&
                    color <= lua_Integer{std::numeric_limits<uint32_t>::max()},
                3, "not a colour of 32 bits");
  object.SetFill(std::make_unique<GOSolidFill>(static_cast<int32_t>(color)));
  return 0;
}

// ---- Lists ----

int RowCount(lua_State* L) {
  lua_pushinteger(L, CheckList(L).RowCount());
  return 1;
}

// list:remove(row): does nothing if there is no such row.
int RemoveRow(lua_State* L) {
  List& list = CheckList(L);
  const lua_Integer row = luaL_checkinteger(L, 2);
  if (row >= 0 && row < list.RowCount()) list.Remove(static_cast<int>(row));
  return 0;
}

int ClearList(lua_State* L) {
  CheckList(L).Clear();
  return 0;
}

// list:cell(row, column): nil if there is no such cell.
int Cell(lua_State* L) {
  const List& list = CheckList(L);
  const lua_Integer row = luaL_checkinteger(L, 2);
  const lua_Integer column = luaL_checkinteger(L, 3);
  const auto inRange = [](lua_Integer index) { return index >= 0 && index <= INT32_MAX; };
  const ListItem* item =
      inRange(row) && inRange(column) ? list.Row(static_cast<int>(row)) : nullptr;
  PushPart(L, item == nullptr ? nullptr : item->Cell(static_cast<int>(column)), 1);
  return 1;
}

int CellIndex(lua_State* L) {
  const ListElement& cell = CheckCell(L);
  const std::string_view key = Key(L);
  if (key == "value") {
    lua_pushinteger(L, cell.value);
  } else if (key == "object") {
    PushValue(L, cell.objectValue);
  } else if (key == "go") {
    PushPart(L, cell.Object(), 1);
  } else {
    RaiseUnknownName(L, "a cell has no field", key, {"value", "object", "go"});
  }
  return 1;
}

int CellNewIndex(lua_State* L) {
  ListElement& cell = CheckCell(L);
  if (Key(L) != "value") RaiseUnknownName(L, "a cell has no field to set", Key(L), {"value"});
  const lua_Integer value = luaL_checkinteger(L, 3);
  luaL_argcheck(L, value == static_cast<int32_t>(value), 3, "not an integer of 32 bits");
  cell.value = static_cast<int32_t>(value);
  return 0;
}

int ReadOnly(lua_State* L) {
  return luaL_error(L, "the field '%s' cannot be set", luaL_tolstring(L, 2, nullptr));
}

// Registers a metatable under `key`. Pops the function or table for __index from the stack.
void SaveMetatable(lua_State* L, const char* name, lua_CFunction newIndex, const void* key) {
  lua_newtable(L);
  SetObjectMetamethods(L, name);
  lua_insert(L, -2);
  lua_setfield(L, -2, "__index");
  lua_pushcfunction(L, newIndex);
  lua_setfield(L, -2, "__newindex");
  lua_rawsetp(L, LUA_REGISTRYINDEX, key);
}

}  // namespace

void OpenGraphics(lua_State* L) {
  lua_newtable(L);
  const luaL_Reg objectMethods[] = {{"child", Guarded<Child>},
                                    {"bounds", Guarded<Bounds>},
                                    {"origin", Guarded<Origin>},
                                    {nullptr, nullptr}};
  luaL_setfuncs(L, objectMethods, 0);
  lua_pushcclosure(L, Guarded<GraphicIndex>, 1);
  SaveMetatable(L, "graphic object", Guarded<GraphicNewIndex>, &kObjectMetatable);

  lua_newtable(L);
  const luaL_Reg listMethods[] = {{"rowCount", Guarded<RowCount>},
                                  {"cell", Guarded<Cell>},
                                  {"remove", Guarded<RemoveRow>},
                                  {"clear", Guarded<ClearList>},
                                  {nullptr, nullptr}};
  luaL_setfuncs(L, listMethods, 0);
  SaveMetatable(L, "list", ReadOnly, &kListMetatable);

  lua_pushcfunction(L, Guarded<CellIndex>);
  SaveMetatable(L, "list cell", Guarded<CellNewIndex>, &kCellMetatable);
}

bool PushGraphicMetatable(lua_State* L, RIOObject* object) {
  const void* key = nullptr;
  if (dynamic_cast<const GOObject*>(object) != nullptr) {
    key = &kObjectMetatable;
  } else if (dynamic_cast<const List*>(object) != nullptr) {
    key = &kListMetatable;
  } else if (dynamic_cast<const ListElement*>(object) != nullptr) {
    key = &kCellMetatable;
  } else {
    return false;
  }
  lua_rawgetp(L, LUA_REGISTRYINDEX, key);
  return true;
}

}  // namespace zyl
