// The table of options that a function of `host` takes.
#pragma once

#include <string>
#include <vector>

#include "Lua.h"

namespace zyl {

// The table at `index`; no field of it goes unread. A value that is none of the wanted ones is an
// error that names the function and the option.
class Options {
 public:
  Options(lua_State* L, int index, const char* function, const std::vector<std::string>& names);

  // The option, `otherwise` when it is absent.
  lua_Integer Integer(const char* name, lua_Integer otherwise, lua_Integer low,
                      lua_Integer high) const;
  double Number(const char* name, double otherwise, double low, double high) const;
  bool Flag(const char* name) const;
  std::string Text(const char* name, const std::string& otherwise) const;
  // Element `place` of the list, from 1, an integer of 32 bits; 0 when it is absent.
  lua_Integer Element(lua_Integer place, const char* name) const;

 private:
  std::string Of(const char* name) const { return std::string(function_) + ": " + name + ": "; }
  lua_Integer Take(const char* name, lua_Integer otherwise, lua_Integer low,
                   lua_Integer high) const;

  lua_State* L_;
  int index_;
  const char* function_;
};

// Replaces a missing argument by an empty table.
void NeedTable(lua_State* L, int index);

}  // namespace zyl
