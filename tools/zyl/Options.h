// The table of options that a function of `host` takes.
#pragma once

#include <string>
#include <vector>

#include "Lua.h"

namespace zyl {

// Reads the options table at stack index `index`. Unknown option names, values of a wrong type and
// values out of range raise Lua errors that name the function and the option.
class Options {
 public:
  Options(lua_State* L, int index, const char* function, const std::vector<std::string>& names);

  // Return the option's value, or `fallback` (Flag: false) if it is absent.
  lua_Integer Integer(const char* name, lua_Integer fallback, lua_Integer low,
                      lua_Integer high) const;
  double Number(const char* name, double fallback, double low, double high) const;
  bool Flag(const char* name) const;
  std::string Text(const char* name, const std::string& fallback) const;
  // Returns list element `place` (from 1), a 32-bit integer; 0 if it is absent.
  lua_Integer Element(lua_Integer place, const char* name) const;

 private:
  std::string Of(const char* name) const { return std::string(function_) + ": " + name + ": "; }
  lua_Integer Take(const char* name, lua_Integer fallback, lua_Integer low, lua_Integer high) const;

  lua_State* L_;
  int index_;
  const char* function_;
};

// Replaces a missing or nil last argument by an empty table.
void DefaultToTable(lua_State* L, int index);

}  // namespace zyl
