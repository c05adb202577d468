#include "EditorCalls.h"

#include <cstdint>
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
#include "Options.h"
#include "PictureCalls.h"
#include "Render.h"
#include "Values.h"
#include "host/hostapp.h"
#include "host/lists.h"

namespace zyl {

namespace {

constexpr int32_t kMaxPixel = 100'000;  // largest coordinate or length that scripts can set
constexpr int32_t kMaxColumns = 1000;

// The collector sees only the few bytes of a userdata. Advance it by this many KiB per new object
// so that unreferenced objects are collected in time.
constexpr int kCountsForKiB = 4;

ListColumn ReadColumn(lua_State* L, int index) {
  constexpr const char* kFunction = "host.editor: column";
  constexpr const char* kNumbers[] = {"parameter number", "display type", "minimum", "maximum"};
  const Options options(L, index, kFunction, {"width", "style", "title"});
  ListColumn column;
  column.width = static_cast<int32_t>(options.Integer("width", 60, -1, kMaxPixel));
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
  if (count > kMaxColumns) luaL_error(L, "host.editor: more than %d columns", kMaxColumns);
  for (lua_Integer i = 1; i <= static_cast<lua_Integer>(count); ++i) {
    lua_rawgeti(L, -1, i);
    if (!lua_istable(L, -1)) luaL_error(L, "host.editor: columns: a list of tables was expected");
    columns.push_back(ReadColumn(L, -1));
    lua_pop(L, 1);
  }
  lua_pop(L, 1);
  return columns;
}

int ReturnList(lua_State* L) {
  lua_pushvalue(L, lua_upvalueindex(1));
  return 1;
}

// ---- Rendering ----

const List* ListOf(lua_State* L, int index) {
  index = lua_absindex(L, index);
  RIOObject* object = CheckObject(L, index);
  if (const auto* list = dynamic_cast<const List*>(object)) return list;
  if (object == nullptr || !object->isROCAlgo()) return nullptr;
  // Render an editor as its list.
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
                     DescribeValue(L, index));
  }
  item.list = ListOf(L, index);
  if (item.list == nullptr) item.object = dynamic_cast<const GOObject*>(CheckObject(L, index));
  if (item.list == nullptr && item.object == nullptr) {
    luaL_error(L, "host.render: a %s cannot be drawn", CheckObject(L, index)->GetTypeName());
  }
  return item;
}

// Stops garbage collection, and so the script's finalizers, in a scope.
class CollectionPause {
 public:
  explicit CollectionPause(lua_State* L) : L_(L), wasRunning_(lua_gc(L, LUA_GCISRUNNING) != 0) {
    lua_gc(L, LUA_GCSTOP);
  }
  ~CollectionPause() {
    if (wasRunning_) lua_gc(L_, LUA_GCRESTART);
  }
  CollectionPause(const CollectionPause&) = delete;
  CollectionPause& operator=(const CollectionPause&) = delete;

 private:
  lua_State* L_;
  bool wasRunning_;
};

}  // namespace

int NewKeyboard(lua_State* L) {
  DefaultToTable(L, 1);
  const Options options(L, 1, "host.keyboard", {"x", "y", "width", "height"});
  const auto pixels = [&](const char* name, lua_Integer fallback, lua_Integer low) {
    return static_cast<int32_t>(options.Integer(name, fallback, low, kMaxPixel));
  };
  const int32_t x = pixels("x", 0, -kMaxPixel);
  const int32_t y = pixels("y", 0, -kMaxPixel);
  auto keyboard = MakeKeyboard("Keyboard", pixels("width", 378, 0), pixels("height", 24, 0));
  keyboard->MoveTo(x, y);
  PushOwned(L, std::move(keyboard));
  lua_gc(L, LUA_GCSTEP, kCountsForKiB);
  return 1;
}

int NewEditor(lua_State* L) {
  DefaultToTable(L, 1);
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
  lua_pushcclosure(L, Guarded<ReturnList>, 1);
  lua_setfield(L, -2, "GetList");
  auto algo = std::make_unique<ROCAlgo>(name);
  algo->SetGraphicRoot(root.release());
  PushScriptAlgo(L, std::move(algo), lua_gettop(L));
  lua_gc(L, LUA_GCSTEP, kCountsForKiB);
  return 1;
}

int Render(lua_State* L) {
  const PictureFile file = CheckPictureFile(L, 2, "host.render");
  DefaultToTable(L, 3);
  const Options given(L, 3, "host.render", {"dark", "octave", "scale"});
  RenderOptions options;
  options.dark = given.Flag("dark");
  options.octave = static_cast<int>(given.Integer("octave", options.octave, -100, 100));
  options.scale = given.Number("scale", options.scale, 0.25, 16);
  // A finalizer could destroy an object that is being drawn.
  const CollectionPause pause(L);
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
    written = ZylWriteFile(file.path, RenderPicture(items, options, file.kind), reason);
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  if (!written) RaiseText(L, "host.render: " + reason);
  return 0;
}

}  // namespace zyl
