#include "Options.h"

#include <cstdint>
#include <cstdio>
#include <limits>

#include "Errors.h"
#include "Values.h"

namespace zyl {

namespace {

std::string FormatNumber(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", number);
  return text;
}

}  // namespace

Options::Options(lua_State* L, int index, const char* function,
                 const std::vector<std::string>& names)
    : L_(L), index_(lua_absindex(L, index)), function_(function) {
  luaL_checktype(L, index_, LUA_TTABLE);
  lua_pushnil(L);
  while (lua_next(L, index_) != 0) {
    lua_pop(L, 1);
    if (lua_type(L, -1) != LUA_TSTRING) continue;  // a list element
    const std::string name = lua_tostring(L, -1);
    bool known = false;
    for (const std::string& option : names) known = known || option == name;
    if (!known) RaiseUnknownName(L, std::string(function) + " has no option", name, names);
  }
}

lua_Integer Options::Integer(const char* name, lua_Integer fallback, lua_Integer low,
                             lua_Integer high) const {
  lua_getfield(L_, index_, name);
  const lua_Integer value = Take(name, fallback, low, high);
  return value;
}

lua_Integer Options::Element(lua_Integer place, const char* name) const {
  lua_geti(L_, index_, place);
  return Take(name, 0, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max());
}

double Options::Number(const char* name, double fallback, double low, double high) const {
  lua_getfield(L_, index_, name);
  double value = fallback;
  if (!lua_isnil(L_, -1)) {
    int isNumber = 0;
    value = lua_tonumberx(L_, -1, &isNumber);
    if (isNumber == 0 || !(value >= low && value <= high)) {
      RaiseText(L_, Of(name) + "a number from " + FormatNumber(low) + " to " + FormatNumber(high) +
                        " was expected, got " + DescribeValue(L_, -1));
    }
  }
  lua_pop(L_, 1);
  return value;
}

bool Options::Flag(const char* name) const {
  lua_getfield(L_, index_, name);
  const bool value = lua_toboolean(L_, -1) != 0;
  lua_pop(L_, 1);
  return value;
}

std::string Options::Text(const char* name, const std::string& fallback) const {
  lua_getfield(L_, index_, name);
  if (!lua_isnil(L_, -1) && lua_type(L_, -1) != LUA_TSTRING) {
    RaiseText(L_, Of(name) + "a string was expected, got " + DescribeValue(L_, -1));
  }
  std::string value = lua_isnil(L_, -1) ? fallback : lua_tostring(L_, -1);
  lua_pop(L_, 1);
  return value;
}

lua_Integer Options::Take(const char* name, lua_Integer fallback, lua_Integer low,
                          lua_Integer high) const {
  lua_Integer value = fallback;
  if (!lua_isnil(L_, -1)) {
    int isInteger = 0;
    value = lua_tointegerx(L_, -1, &isInteger);
    if (isInteger == 0 || value < low || value > high) {
      RaiseText(L_, Of(name) + "an integer from " + std::to_string(low) + " to " +
                        std::to_string(high) + " was expected, got " + DescribeValue(L_, -1));
    }
  }
  lua_pop(L_, 1);
  return value;
}

void DefaultToTable(lua_State* L, int index) {
  if (!lua_isnoneornil(L, index)) return;
  lua_settop(L, index - 1);
  lua_newtable(L);
}

}  // namespace zyl
