// Completes the name being typed: globals and keywords, fields of tables, methods of objects. Never
// runs script code.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Lua.h"

namespace zyl {

struct Completion {
  size_t typed = 0;                // length of the typed part of the name, in bytes
  std::vector<std::string> names;  // the full names that begin with it, sorted
};

// Completes the name at the end of `line`.
Completion CompleteName(lua_State* L, std::string_view line);

}  // namespace zyl
