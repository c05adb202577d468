// Lua 5.4, built as C++: a Lua error is an exception, and unwinds what lies on the stack.
#pragma once

#include <lauxlib.h>
#include <lua.h>
#include <lualib.h>
