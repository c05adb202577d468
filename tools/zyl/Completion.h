// What a name that is being typed can become: globals and keywords, fields of tables, methods of
// objects. Looking does not run any of the script's own code.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Lua.h"

namespace zyl {

struct Completion {
  size_t typed = 0;                // how many of the last characters are the name's beginning
  std::vector<std::string> names;  // the whole names that begin so, in order
};

Completion CompleteName(lua_State* L, std::string_view line);

}  // namespace zyl
