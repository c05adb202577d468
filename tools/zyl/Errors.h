// Errors as scripts see them: the table that a failed method raises, errors of callbacks raised
// after the call, tracebacks.
#pragma once

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
