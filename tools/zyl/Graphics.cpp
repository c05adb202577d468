#include "Graphics.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Algo.h"
#include "Editor.h"
#include "Errors.h"
#include "Objects.h"
#include "Render.h"
#include "Values.h"
#include "host/hostapp.h"
#include "host/lists.h"

namespace zyl {

namespace {

// Keys in the registry, by address.
const char kObjectMetatable = 0;
const char kListMetatable = 0;
const char kCellMetatable = 0;

constexpr int32_t kFarthestPixel = 100'000;  // of what scripts make
constexpr int32_t kMostColumns = 1000;

// Lua sees the few bytes of a userdata only: each new object counts for this many KiB.
constexpr int kCountsForKiB = 4;

template <class T>
T& Check(lua_State* L, int index, const char* what) {
  auto* object = dynamic_cast<T*>(CheckObject(L, index));
  if (object == nullptr)
    RaiseText(L, std::string(what) + " was expected, got " + ValueInWords(L, index));
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

// Pushes an object that goes with the one at `owner`, which it keeps alive.
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

// The fill alone can be set: to a colour, or to nil for none.
int GraphicNewIndex(lua_State* L) {
  GOObject& object = CheckGraphic(L);
  if (Key(L) != "fill") {
    RaiseUnknownName(L, "a graphic object has no field to set", Key(L), {"fill"});
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

int ClearList(lua_State* L) {
  CheckList(L).Clear();
  return 0;
}

// list:cell(row, column): nil where there is none.
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

void SaveMetatable(lua_State* L, const char* name, lua_CFunction newIndex, const void* key) {
  // The function or table for __index stands on top.
  lua_newtable(L);
  SetObjectMetamethods(L, name);
  lua_insert(L, -2);
  lua_setfield(L, -2, "__index");
  lua_pushcfunction(L, newIndex);
  lua_setfield(L, -2, "__newindex");
  lua_rawsetp(L, LUA_REGISTRYINDEX, key);
}

// ---- Options ----

// The table of options at `index`; no field of it goes unread.
class Options {
 public:
  Options(lua_State* L, int index, const char* function, const std::vector<std::string>& names)
      : L_(L), index_(lua_absindex(L, index)), function_(function) {
    luaL_checktype(L, index_, LUA_TTABLE);
    lua_pushnil(L);
    while (lua_next(L, index_) != 0) {
      lua_pop(L, 1);
      if (lua_type(L, -1) != LUA_TSTRING) continue;  // the elements of a list
      const std::string name = lua_tostring(L, -1);
      bool known = false;
      for (const std::string& option : names) known = known || option == name;
      if (!known) RaiseUnknownName(L, std::string(function) + " has no option", name, names);
    }
  }

  lua_Integer Integer(const char* name, lua_Integer otherwise, lua_Integer low,
                      lua_Integer high) const {
    lua_getfield(L_, index_, name);
    const lua_Integer value = Take(name, otherwise, low, high);
    return value;
  }
  // Element `place` of the list, from 1.
  lua_Integer Element(lua_Integer place, const char* name) const {
    lua_geti(L_, index_, place);
    return Take(name, 0, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max());
  }
  double Number(const char* name, double otherwise, double low, double high) const {
    lua_getfield(L_, index_, name);
    double value = otherwise;
    if (!lua_isnil(L_, -1)) {
      int isNumber = 0;
      value = lua_tonumberx(L_, -1, &isNumber);
      if (isNumber == 0 || !(value >= low && value <= high)) {
        RaiseText(L_, Of(name) + "a number from " + Short(low) + " to " + Short(high) +
                          " was expected, got " + ValueInWords(L_, -1));
      }
    }
    lua_pop(L_, 1);
    return value;
  }
  bool Flag(const char* name) const {
    lua_getfield(L_, index_, name);
    const bool value = lua_toboolean(L_, -1) != 0;
    lua_pop(L_, 1);
    return value;
  }
  std::string Text(const char* name, const std::string& otherwise) const {
    lua_getfield(L_, index_, name);
    if (!lua_isnil(L_, -1) && lua_type(L_, -1) != LUA_TSTRING) {
      RaiseText(L_, Of(name) + "a string was expected, got " + ValueInWords(L_, -1));
    }
    std::string value = lua_isnil(L_, -1) ? otherwise : lua_tostring(L_, -1);
    lua_pop(L_, 1);
    return value;
  }

 private:
  std::string Of(const char* name) const { return std::string(function_) + ": " + name + ": "; }
  static std::string Short(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", number);
    return text;
  }
  lua_Integer Take(const char* name, lua_Integer otherwise, lua_Integer low,
                   lua_Integer high) const {
    lua_Integer value = otherwise;
    if (!lua_isnil(L_, -1)) {
      int isInteger = 0;
      value = lua_tointegerx(L_, -1, &isInteger);
      if (isInteger == 0 || value < low || value > high) {
        RaiseText(L_, Of(name) + "an integer from " + std::to_string(low) + " to " +
                          std::to_string(high) + " was expected, got " + ValueInWords(L_, -1));
      }
    }
    lua_pop(L_, 1);
    return value;
  }

  lua_State* L_;
  int index_;
  const char* function_;
};

// Replaces a missing argument by an empty table.
void NeedTable(lua_State* L, int index) {
  if (!lua_isnoneornil(L, index)) return;
  lua_settop(L, index - 1);
  lua_newtable(L);
}

ListColumn ReadColumn(lua_State* L, int index) {
  constexpr const char* kFunction = "host.editor: column";
  constexpr const char* kNumbers[] = {"parameter number", "display type", "minimum", "maximum"};
  const Options options(L, index, kFunction, {"width", "style", "title"});
  ListColumn column;
  column.width = static_cast<int32_t>(options.Integer("width", 60, -1, kFarthestPixel));
  column.style =
      static_cast<uint32_t>(options.Integer("style", 0, 0, std::numeric_limits<uint32_t>::max()));
  for (lua_Integer place = 1; place <= 4; ++place) {
    column.scriptValues.push_back(
        static_cast<int32_t>(options.Element(place, kNumbers[place - 1])));
  }
  column.title = options.Text("title", std::to_string(column.ScriptValue(0)));
  return column;
}

std::vector<ListColumn> ReadColumns(lua_State* L) {
  std::vector<ListColumn> columns;
  lua_getfield(L, 1, "columns");
  if (lua_isnil(L, -1)) luaL_error(L, "host.editor: the columns are missing");
  if (!lua_istable(L, -1)) luaL_error(L, "host.editor: columns: a list of tables was expected");
  const lua_Unsigned count = lua_rawlen(L, -1);
  if (count > kMostColumns) luaL_error(L, "host.editor: more than %d columns", kMostColumns);
  for (lua_Integer i = 1; i <= static_cast<lua_Integer>(count); ++i) {
    lua_rawgeti(L, -1, i);
    if (!lua_istable(L, -1)) luaL_error(L, "host.editor: columns: a list of tables was expected");
    columns.push_back(ReadColumn(L, -1));
    lua_pop(L, 1);
  }
  lua_pop(L, 1);
  return columns;
}

int GiveList(lua_State* L) {
  lua_pushvalue(L, lua_upvalueindex(1));
  return 1;
}

// ---- Rendering ----

const List* ListOf(lua_State* L, int index) {
  index = lua_absindex(L, index);
  RIOObject* object = CheckObject(L, index);
  if (const auto* list = dynamic_cast<const List*>(object)) return list;
  if (object == nullptr || !object->isROCAlgo()) return nullptr;
  // An editor stands for its list.
  const List* list = nullptr;
  const int top = lua_gettop(L);
  if (lua_getiuservalue(L, index, kFieldsSlot) == LUA_TTABLE) {
    lua_pushliteral(L, "list");
    lua_rawget(L, -2);
    if (KindOf(L, -1) == Kind::kObject) {
      list = dynamic_cast<const List*>(CheckObject(L, lua_gettop(L)));
    }
  }
  lua_settop(L, top);
  return list;
}

RenderItem ReadItem(lua_State* L, int index) {
  RenderItem item;
  if (lua_type(L, index) == LUA_TSTRING) {
    item.heading = lua_tostring(L, index);
    return item;
  }
  if (KindOf(L, index) != Kind::kObject) {
    RaiseText(L, "host.render: a graphic object, a list or a text was expected, got " +
                     ValueInWords(L, index));
  }
  item.list = ListOf(L, index);
  if (item.list == nullptr) item.object = dynamic_cast<const GOObject*>(CheckObject(L, index));
  if (item.list == nullptr && item.object == nullptr) {
    luaL_error(L, "host.render: a %s cannot be drawn", CheckObject(L, index)->GetTypeName());
  }
  return item;
}

// No finalizer of the script runs while it lives.
class WithoutCollection {
 public:
  explicit WithoutCollection(lua_State* L) : L_(L), wasRunning_(lua_gc(L, LUA_GCISRUNNING) != 0) {
    lua_gc(L, LUA_GCSTOP);
  }
  ~WithoutCollection() {
    if (wasRunning_) lua_gc(L_, LUA_GCRESTART);
  }
  WithoutCollection(const WithoutCollection&) = delete;
  WithoutCollection& operator=(const WithoutCollection&) = delete;

 private:
  lua_State* L_;
  bool wasRunning_;
};

bool EndsIn(const std::string& path, std::string_view end) {
  if (path.size() < end.size()) return false;
  for (size_t i = 0; i < end.size(); ++i) {
    const char c = path[path.size() - end.size() + i];
    if ((c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c) != end[i]) return false;
  }
  return true;
}

}  // namespace

void OpenGraphics(lua_State* L) {
  lua_newtable(L);
  const luaL_Reg objectMethods[] = {
      {"child", Child}, {"bounds", Bounds}, {"origin", Origin}, {nullptr, nullptr}};
  luaL_setfuncs(L, objectMethods, 0);
  lua_pushcclosure(L, GraphicIndex, 1);
  SaveMetatable(L, "graphic object", GraphicNewIndex, &kObjectMetatable);

  lua_newtable(L);
  const luaL_Reg listMethods[] = {
      {"rowCount", RowCount}, {"cell", Cell}, {"clear", ClearList}, {nullptr, nullptr}};
  luaL_setfuncs(L, listMethods, 0);
  SaveMetatable(L, "list", ReadOnly, &kListMetatable);

  lua_pushcfunction(L, CellIndex);
  SaveMetatable(L, "list cell", CellNewIndex, &kCellMetatable);
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

int NewKeyboard(lua_State* L) {
  NeedTable(L, 1);
  const Options options(L, 1, "host.keyboard", {"x", "y", "width", "height"});
  const auto pixels = [&](const char* name, lua_Integer otherwise, lua_Integer low) {
    return static_cast<int32_t>(options.Integer(name, otherwise, low, kFarthestPixel));
  };
  const int32_t x = pixels("x", 0, -kFarthestPixel);
  const int32_t y = pixels("y", 0, -kFarthestPixel);
  auto keyboard = MakeKeyboard("Keyboard", pixels("width", 378, 0), pixels("height", 24, 0));
  keyboard->MoveTo(x, y);
  PushOwned(L, std::move(keyboard));
  lua_gc(L, LUA_GCSTEP, kCountsForKiB);
  return 1;
}

int NewEditor(lua_State* L) {
  NeedTable(L, 1);
  lua_settop(L, 1);
  const Options options(L, 1, "host.editor", {"name", "rowHeight", "columns"});
  const std::string name = options.Text("name", "editor");
  const auto rowHeight = static_cast<int32_t>(options.Integer("rowHeight", 16, 1, 1000));
  std::vector<ListColumn> columns = ReadColumns(L);
  std::unique_ptr<GOContainer> root = MakeListRoot(rowHeight);
  auto list = std::make_unique<List>(static_cast<int>(columns.size()), rowHeight, root.get(),
                                     std::move(columns));
  PushOwned(L, std::move(list));
  const int listIndex = lua_gettop(L);
  lua_newtable(L);
  lua_pushvalue(L, listIndex);
  lua_setfield(L, -2, "list");
  lua_pushvalue(L, listIndex);
  lua_pushcclosure(L, GiveList, 1);
  lua_setfield(L, -2, "GetList");
  auto algo = std::make_unique<ROCAlgo>(name);
  algo->SetGraphicRoot(root.release());
  PushScriptAlgo(L, std::move(algo), lua_gettop(L));
  lua_gc(L, LUA_GCSTEP, kCountsForKiB);
  return 1;
}

int Render(lua_State* L) {
  size_t pathLength = 0;
  const std::string path = luaL_checklstring(L, 2, &pathLength);
  if (path.size() != pathLength) luaL_error(L, "host.render: the file's name has a NUL in it");
  NeedTable(L, 3);
  const Options given(L, 3, "host.render", {"dark", "scale"});
  RenderOptions options;
  options.dark = given.Flag("dark");
  options.scale = given.Number("scale", options.scale, 0.25, 16);
  const bool svg = EndsIn(path, ".svg");
  if (!svg && !EndsIn(path, ".png")) {
    return luaL_error(L, "host.render: the file's name must end in .png or .svg");
  }
  // What is drawn is looked at as it stands, and must not go meanwhile.
  const WithoutCollection still(L);
  std::vector<RenderItem> items;
  options.page = lua_istable(L, 1);
  if (options.page) {
    const auto count = static_cast<lua_Integer>(lua_rawlen(L, 1));
    for (lua_Integer i = 1; i <= count; ++i) {
      lua_rawgeti(L, 1, i);
      items.push_back(ReadItem(L, -1));
      lua_pop(L, 1);
    }
  } else {
    items.push_back(ReadItem(L, 1));
  }
  std::string reason;
  bool written = false;
  try {
    const std::string bytes =
        RenderPicture(items, options, svg ? PictureKind::kSvg : PictureKind::kPng);
    written = ZylWriteFile(path, bytes, reason);
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  if (!written) RaiseText(L, "host.render: " + reason);
  return 0;
}

}  // namespace zyl
