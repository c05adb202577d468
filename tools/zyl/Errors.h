// Errors as scripts see them: the table that a failed method raises, deferred errors of callbacks,
// tracebacks.
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

// Raises the error table of a failure that a method reported. The method's arguments are on the
// stack from index `firstArgument`.
[[noreturn]] void RaiseMethodError(lua_State* L, const ZylScriptError& error, int firstArgument);
// Raises an error table of kind Exception for exhausted memory. Its text includes `method` (unless
// null) and the script's position. If there is no memory for the table either, raises one that
// OpenErrors allocated in advance.
[[noreturn]] void RaiseOutOfMemory(lua_State* L, const char* method);
// Wraps a C function for Lua so that std::bad_alloc and std::length_error become Lua errors. Lua
// would treat a foreign exception as an error and use the top of the stack as its value.
template <lua_CFunction function>
int Guarded(lua_State* L) {
  try {
    return function(L);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  RaiseOutOfMemory(L, nullptr);
}

// Raises the error that a CallFrame deferred; does nothing for kNoError.
void RaiseDeferred(lua_State* L, int deferredError);
// Raises `what` and the quoted name, and suggests the closest of the `known` names.
[[noreturn]] void RaiseUnknownName(lua_State* L, const std::string& what, std::string_view name,
                                   const std::vector<std::string>& known);
// Returns '; did you mean "NAME"?' with up to three of the closest known names, or an empty string
// if no name is close.
std::string Suggestion(std::string_view name, const std::vector<std::string>& known);
// Raises `text` with the script's position as prefix.
[[noreturn]] void RaiseText(lua_State* L, const std::string& text);

// Message handlers. AddTraceback converts an uncaught error to text with a traceback.
// SaveTraceback returns the error unchanged and saves its traceback; AddTraceback appends it if the
// same error arrives there later.
int AddTraceback(lua_State* L);
int SaveTraceback(lua_State* L);

}  // namespace zyl
