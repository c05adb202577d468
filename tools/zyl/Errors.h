// Errors as scripts see them: the table that a failed method raises, errors of callbacks raised
// after the call, tracebacks.
#pragma once

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Lua.h"
#include "host/hostapp.h"

namespace zyl {

void OpenErrors(lua_State* L);

// Raises the error table of a failure that a method reported. The method's arguments stand on the
// stack from index `firstArgument` on.
[[noreturn]] void RaiseMethodError(lua_State* L, const ZylScriptError& error, int firstArgument);
// Raises the error of memory that could not be had: a table as for a method that reports an
// Exception. It has `method` (null for none) and the script's position in its line, unless there is
// no memory for them: then it is one that was made in advance.
[[noreturn]] void RaiseNoMemory(lua_State* L, const char* method);
// The C function `function` for Lua. Lua takes any other exception than its own for an error whose
// value is on top of the stack, such as the argument that there was no memory to copy.
template <lua_CFunction function>
int Guarded(lua_State* L) {
  try {
    return function(L);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  RaiseNoMemory(L, nullptr);
}

// Raises the error that a CallFrame kept, if there is one.
void RaiseKept(lua_State* L, int keptError);
// Raises `what` and the name in quotes, with the nearest of `known` as a suggestion.
[[noreturn]] void RaiseUnknownName(lua_State* L, const std::string& what, std::string_view name,
                                   const std::vector<std::string>& known);
// "; did you mean "NEAREST"?", or nothing when no name comes near.
std::string Suggestion(std::string_view name, const std::vector<std::string>& known);
// Raises `text`, preceded by the script's position.
[[noreturn]] void RaiseText(lua_State* L, const std::string& text);

// Message handlers. The first turns an uncaught error into its text with a traceback; the second
// keeps the error as it is and remembers the traceback, which the first adds if the same error
// arrives there later.
int AddTraceback(lua_State* L);
int RememberTraceback(lua_State* L);

}  // namespace zyl
