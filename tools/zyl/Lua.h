// Lua 5.4 built as C++: a Lua error is a C++ exception and runs the destructors of local objects.
#pragma once

#include <lauxlib.h>
#include <lua.h>
#include <lualib.h>
