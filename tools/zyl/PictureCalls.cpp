#include "PictureCalls.h"

#include <cmath>
#include <cstdint>
#include <exception>
#include <optional>
#include <string_view>
#include <vector>

#include "Errors.h"
#include "Options.h"
#include "host/hostapp.h"

namespace zyl {

namespace {

constexpr const char* kMetatable = "host.Picture";
constexpr double kFarthest = 1e6;  // coordinates and lengths are clamped to ±kFarthest
constexpr double kMaxPoints = 1e6;

struct ScriptPicture {
  PictureFile file;
  std::optional<Picture> picture;  // empty after write()
};

Picture& CheckPicture(lua_State* L) {
  auto* held = static_cast<ScriptPicture*>(luaL_checkudata(L, 1, kMetatable));
  luaL_argcheck(L, held->picture.has_value(), 1, "the picture has been written");
  return *held->picture;
}

double Length(lua_State* L, int index) {
  const double value = luaL_checknumber(L, index);
  luaL_argcheck(L, !std::isnan(value), index, "not a number");
  return std::fmin(std::fmax(value, -kFarthest), kFarthest);
}

uint32_t Colour(lua_State* L, int index) {
  const lua_Integer rgb = luaL_checkinteger(L, index);
  luaL_argcheck(L, rgb >= 0 && rgb <= 0xFFFFFF, index, "a colour is 0xRRGGBB");
  return static_cast<uint32_t>(rgb);
}

// Reads a list of { x, y } pairs.
std::vector<PicturePoint> Points(lua_State* L, int index) {
  luaL_checktype(L, index, LUA_TTABLE);
  const lua_Unsigned count = lua_rawlen(L, index);
  luaL_argcheck(L, static_cast<double>(count) <= kMaxPoints, index, "too many points");
  std::vector<PicturePoint> points(count);
  for (size_t i = 0; i < points.size(); ++i) {
    luaL_argcheck(L, lua_rawgeti(L, index, static_cast<lua_Integer>(i + 1)) == LUA_TTABLE, index,
                  "a point is a table { x, y }");
    lua_rawgeti(L, -1, 1);
    lua_rawgeti(L, -2, 2);
    luaL_argcheck(L, lua_isnumber(L, -1) && lua_isnumber(L, -2), index,
                  "a point is a table { x, y }");
    points[i] = {Length(L, -2), Length(L, -1)};
    lua_pop(L, 3);
  }
  return points;
}

int DrawRectangle(lua_State* L) {
  CheckPicture(L).Rectangle(Length(L, 2), Length(L, 3), Length(L, 4), Length(L, 5), Colour(L, 6));
  return 0;
}

int DrawLine(lua_State* L) {
  Picture& picture = CheckPicture(L);
  const double width = Length(L, 3);
  luaL_argcheck(L, width > 0, 3, "a width above 0 was expected");
  picture.Line(Points(L, 2), width, Colour(L, 4));
  return 0;
}

int DrawPolygon(lua_State* L) {
  Picture& picture = CheckPicture(L);
  picture.Polygon(Points(L, 2), Colour(L, 3));
  return 0;
}

// text(x, baseline, text, size, colour, anchor)
int DrawText(lua_State* L) {
  // The font's grid unit is a tenth of the text's size; capitals are 6 units high.
  constexpr double kUnitOfSize = 0.1;
  constexpr double kCapitals = 6;
  static constexpr const char* kAnchors[] = {"start", "middle", "end", nullptr};
  Picture& picture = CheckPicture(L);
  size_t length = 0;
  const char* text = luaL_checklstring(L, 4, &length);
  const double unit = Length(L, 5) * kUnitOfSize;
  luaL_argcheck(L, unit > 0, 5, "a size above 0 was expected");
  const uint32_t rgb = Colour(L, 6);
  const double moved = 0.5 * luaL_checkoption(L, 7, "start", kAnchors);
  const std::string_view shown(text, length);
  picture.Text(Length(L, 2) - moved * Picture::TextWidth(shown, unit),
               Length(L, 3) - kCapitals * unit, shown, unit, rgb);
  return 0;
}

int WritePicture(lua_State* L) {
  CheckPicture(L);
  auto* held = static_cast<ScriptPicture*>(lua_touserdata(L, 1));
  std::string reason;
  bool written = false;
  try {
    const std::string bytes = held->picture->Encode();
    held->picture.reset();
    written = ZylWriteFile(held->file.path, bytes, reason);
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  if (!written) RaiseText(L, "host.picture: " + reason);
  return 0;
}

int CollectPicture(lua_State* L) {
  static_cast<ScriptPicture*>(luaL_checkudata(L, 1, kMetatable))->~ScriptPicture();
  return 0;
}

}  // namespace

PictureFile CheckPictureFile(lua_State* L, int index, const char* function) {
  size_t length = 0;
  std::string path = luaL_checklstring(L, index, &length);
  if (path.size() != length) luaL_error(L, "%s: the file name contains a NUL", function);
  const std::optional<PictureKind> kind = PictureKindOf(path);
  if (!kind) luaL_error(L, "%s: the file name must end in .png or .svg", function);
  return {std::move(path), *kind};
}

int NewPicture(lua_State* L) {
  PictureFile file = CheckPictureFile(L, 1, "host.picture");
  DefaultToTable(L, 2);
  const Options options(L, 2, "host.picture", {"width", "height", "scale"});
  const double width = options.Number("width", 640, 1, Picture::kLargestSide);
  const double height = options.Number("height", 480, 1, Picture::kLargestSide);
  const double scale = options.Number("scale", 1, 0.25, 16);
  auto* held = new (lua_newuserdatauv(L, sizeof(ScriptPicture), 0)) ScriptPicture{file, {}};
  luaL_setmetatable(L, kMetatable);
  std::string reason;
  try {
    held->picture.emplace(file.kind, width, height, scale);
    held->picture->Rectangle(0, 0, width, height, 0xFFFFFF);
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  if (!reason.empty()) RaiseText(L, "host.picture: " + reason);
  return 1;
}

void OpenPictures(lua_State* L) {
  const luaL_Reg methods[] = {{"rect", Guarded<DrawRectangle>},  {"line", Guarded<DrawLine>},
                              {"polygon", Guarded<DrawPolygon>}, {"text", Guarded<DrawText>},
                              {"write", Guarded<WritePicture>},  {nullptr, nullptr}};
  luaL_newmetatable(L, kMetatable);
  lua_pushcfunction(L, Guarded<CollectPicture>);
  lua_setfield(L, -2, "__gc");
  luaL_newlib(L, methods);
  lua_setfield(L, -2, "__index");
  lua_pop(L, 1);
}

}  // namespace zyl
