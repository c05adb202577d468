#include "Errors.h"

#include <algorithm>
#include <cctype>
#include <numeric>

#include "ScriptHost.h"
#include "Shipped.h"
#include "Values.h"

namespace zyl {

namespace {

// Keys in the registry, by address.
const char kErrorMetatable = 0;
const char kOutOfMemoryError = 0;
const char kCallbackError = 0;
const char kCallbackTraceback = 0;

// Returns whether the function is in a Lua file that ships with zyl. Errors name the line of the
// user's script instead.
bool IsShipped(const lua_Debug& frame) {
  const std::string& folder = LuaFolder();
  std::string_view source = frame.source;
  if (folder.empty() || !source.starts_with('@')) return false;
  source.remove_prefix(1);
  return source.starts_with(folder) && source.substr(folder.size()).starts_with('/');
}

// Pushes "file:line: " of the script's innermost Lua function, or an empty string.
void PushWhere(lua_State* L) {
  lua_Debug frame;
  for (int level = 0; lua_getstack(L, level, &frame) != 0; ++level) {
    lua_getinfo(L, "Sl", &frame);
    if (frame.currentline > 0 && !IsShipped(frame)) {
      lua_pushfstring(L, "%s:%d: ", frame.short_src, frame.currentline);
      return;
    }
  }
  lua_pushliteral(L, "");
}

void SetText(lua_State* L, const char* field, const std::string& text) {
  lua_pushlstring(L, text.data(), text.size());
  lua_setfield(L, -2, field);
}

int ErrorToString(lua_State* L) {
  luaL_checktype(L, 1, LUA_TTABLE);
  lua_getfield(L, 1, "where");
  lua_getfield(L, 1, "readable");
  if (lua_isstring(L, -1) == 0 || lua_isstring(L, -2) == 0) {
    lua_pushliteral(L, "method error");
  } else {
    lua_concat(L, 2);
  }
  return 1;
}

int ErrorConcat(lua_State* L) {
  luaL_tolstring(L, 1, nullptr);
  luaL_tolstring(L, 2, nullptr);
  lua_concat(L, 2);
  return 1;
}

// Removes a leading "Class::".
std::string_view WithoutClass(std::string_view name) {
  const size_t end = name.find("::");
  const bool qualified =
      end != std::string_view::npos && std::all_of(name.begin(), name.begin() + end, [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
      });
  return qualified ? name.substr(end + 2) : name;
}

// Returns a hint how to write the number at `index` as the expected type, for example
// " (write 2.0)"; empty if that would not fix the error.
std::string NumberHint(lua_State* L, int index, int expected) {
  if (lua_type(L, index) != LUA_TNUMBER) return {};
  if (lua_isinteger(L, index) != 0) {
    if (expected != kTypeDouble) return {};
    return " (write " + std::to_string(lua_tointeger(L, index)) + ".0)";
  }
  int isWhole = 0;
  const lua_Integer whole = lua_tointegerx(L, index, &isWhole);
  if (expected != kTypeInteger || isWhole == 0) return {};
  return " (write " + std::to_string(whole) + ")";
}

// Returns one line that states what was given and what was expected. The method's arguments are on
// the stack from index `firstArgument`.
std::string Readable(lua_State* L, const ZylScriptError& error, int firstArgument) {
  if (error.kind == ZylScriptError::kException) {
    std::string text(WithoutClass(error.message));
    if (error.range) {
      text += " (index " + std::to_string(error.range->index) + ", count " +
              std::to_string(error.range->count) + ')';
    }
    return text;
  }
  const std::string method(WithoutClass(error.method));
  if (error.position < 1) return method + ": " + error.message;
  const int index = firstArgument + error.position - 1;
  std::string text = method + ": argument " + std::to_string(error.position);
  if (!error.argument.empty()) text += " \"" + error.argument + '"';
  text += index > lua_gettop(L) ? " is missing" : " is ";
  const auto given = [&](std::string (*describe)(lua_State*, int)) {
    return index > lua_gettop(L) ? std::string() : describe(L, index);
  };
  switch (error.kind) {
    case ZylScriptError::kArgType:
      return text + given(DescribeType) + ", expected " + DescribeType(error.expected) +
             NumberHint(L, index, error.expected);
    case ZylScriptError::kArgPType:
      return text + "an object of class " + error.given + ", expected one of class " +
             error.required;
    case ZylScriptError::kArgValue:
      return text + given(DescribeValue) + ", a value that is not allowed";
    default:
      return text + given(DescribeValue) + ": " + error.message;
  }
}

// Returns whether the first line contains a position in luaL_where's format, "file:line: ".
bool HasPosition(std::string_view text) {
  text = text.substr(0, text.find('\n'));
  for (size_t at = text.find(':'); at != std::string_view::npos; at = text.find(':', at + 1)) {
    const size_t end = text.find_first_not_of("0123456789", at + 1);
    if (end != std::string_view::npos && end > at + 1 && text.substr(end).starts_with(": ")) {
      return true;
    }
  }
  return false;
}

// Levenshtein distance, ignoring the case of letters.
size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i + 1;
    for (size_t j = 0; j < b.size(); ++j) {
      const bool same = (a[i] | 0x20) == (b[j] | 0x20);
      const size_t replaced = diagonal + (same ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, replaced});
    }
  }
  return row[b.size()];
}

constexpr char kNoMemory[] = "not enough memory";

// A failure that a method reported, and its text as one line.
struct Failure {
  const ZylScriptError& error;
  const std::string& readable;
};

// Runs protected: creates the error table of the Failure that argument 1 points to.
int MakeErrorTable(lua_State* L) {
  const auto& [error, readable] = *static_cast<const Failure*>(lua_touserdata(L, 1));
  const bool ownText =
      error.kind == ZylScriptError::kArgUser || error.kind == ZylScriptError::kException;
  lua_createtable(L, 0, 10);
  SetText(L, "kind", error.KindName());
  SetText(L, "message", ownText ? error.message : readable);
  SetText(L, "readable", readable);
  if (error.kind != ZylScriptError::kException) {
    SetText(L, "method", error.method);
    lua_pushinteger(L, error.position);
    lua_setfield(L, -2, "position");
  }
  if (error.kind == ZylScriptError::kArgType || error.kind == ZylScriptError::kArgValue) {
    SetText(L, "argument", error.argument);
  }
  if (error.kind == ZylScriptError::kArgType) {
    lua_pushinteger(L, error.expected);
    lua_setfield(L, -2, "expected");
  }
  if (error.kind == ZylScriptError::kArgPType) {
    SetText(L, "given", error.given);
    SetText(L, "required", error.required);
  }
  if (error.range) {
    lua_pushinteger(L, error.range->index);
    lua_setfield(L, -2, "index");
    lua_pushinteger(L, error.range->count);
    lua_setfield(L, -2, "count");
  }
  PushWhere(L);
  lua_setfield(L, -2, "where");
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kErrorMetatable);
  lua_setmetatable(L, -2);
  return 1;
}

// Runs protected: creates the error table for exhausted memory. Argument 1 is the method's name as
// a light userdata, or null. Allocates in Lua only.
int MakeOutOfMemoryTable(lua_State* L) {
  const auto* method = static_cast<const char*>(lua_touserdata(L, 1));
  lua_createtable(L, 0, 4);
  lua_pushstring(L, ZylScriptError().KindName());
  lua_setfield(L, -2, "kind");
  if (method == nullptr) {
    lua_pushstring(L, kNoMemory);
  } else {
    lua_pushfstring(L, "%s: %s", method, kNoMemory);
  }
  lua_pushvalue(L, -1);
  lua_setfield(L, -3, "message");
  lua_setfield(L, -2, "readable");
  PushWhere(L);
  lua_setfield(L, -2, "where");
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kErrorMetatable);
  lua_setmetatable(L, -2);
  return 1;
}

}  // namespace

void OpenErrors(lua_State* L) {
  lua_createtable(L, 0, 4);
  lua_pushcfunction(L, ErrorToString);
  lua_setfield(L, -2, "__tostring");
  lua_pushcfunction(L, ErrorConcat);
  lua_setfield(L, -2, "__concat");
  lua_pushliteral(L, "method error");
  lua_setfield(L, -2, "__name");
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kErrorMetatable);

  lua_pushcfunction(L, MakeOutOfMemoryTable);
  lua_pushlightuserdata(L, nullptr);
  lua_call(L, 1, 1);
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kOutOfMemoryError);
}

void RaiseOutOfMemory(lua_State* L, const char* method) {
  lua_settop(L, 0);
  lua_pushcfunction(L, MakeOutOfMemoryTable);
  lua_pushlightuserdata(L, const_cast<char*>(method));
  if (lua_pcall(L, 1, 1, 0) != LUA_OK) lua_rawgetp(L, LUA_REGISTRYINDEX, &kOutOfMemoryError);
  lua_error(L);
  throw;  // not reached: lua_error does not return
}

void RaiseMethodError(lua_State* L, const ZylScriptError& error, int firstArgument) {
  const std::string readable = Readable(L, error, firstArgument);
  Failure failure{error, readable};
  lua_pushcfunction(L, MakeErrorTable);
  lua_pushlightuserdata(L, &failure);
  if (lua_pcall(L, 1, 1, 0) != LUA_OK) RaiseOutOfMemory(L, nullptr);
  lua_error(L);
  throw;  // not reached: lua_error does not return
}

void RaiseDeferred(lua_State* L, int deferredError) {
  if (deferredError == kNoError) return;
  if (deferredError == kLostError) luaL_error(L, "a callback failed: the Lua stack is full");
  lua_pushvalue(L, deferredError);
  lua_error(L);
}

void RaiseUnknownName(lua_State* L, const std::string& what, std::string_view name,
                      const std::vector<std::string>& known) {
  RaiseText(L, what + " \"" + std::string(name) + '"' + Suggestion(name, known));
}

std::string Suggestion(std::string_view name, const std::vector<std::string>& known) {
  // Allow one edit per three letters, plus one: a more distant name is another word, not a typo.
  size_t nearest = name.size() / 3 + 2;
  std::vector<std::string_view> found;
  for (const std::string& candidate : known) {
    const size_t distance = EditDistance(name, candidate);
    if (distance > nearest || (distance == nearest && found.empty())) continue;
    if (distance < nearest) found.clear();
    nearest = distance;
    found.push_back(candidate);
  }
  if (found.empty()) return {};
  constexpr size_t kMaxNames = 3;
  found.resize(std::min(found.size(), kMaxNames));
  std::string text = "; did you mean ";
  for (size_t i = 0; i < found.size(); ++i) {
    if (i > 0) text += i + 1 == found.size() ? " or " : ", ";
    text.append("\"").append(found[i]).append("\"");
  }
  return text + "?";
}

void RaiseText(lua_State* L, const std::string& text) {
  PushWhere(L);
  lua_pushlstring(L, text.data(), text.size());
  lua_concat(L, 2);
  lua_error(L);
  throw;  // not reached: lua_error does not return
}

int SaveTraceback(lua_State* L) {
  lua_settop(L, 1);
  luaL_traceback(L, L, nullptr, 1);
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kCallbackTraceback);
  lua_pushvalue(L, 1);
  lua_rawsetp(L, LUA_REGISTRYINDEX, &kCallbackError);
  return 1;
}

int AddTraceback(lua_State* L) {
  lua_settop(L, 1);
  size_t length = 0;
  const char* text = nullptr;
  if (lua_isstring(L, 1) != 0 || luaL_getmetafield(L, 1, "__tostring") != LUA_TNIL) {
    text = luaL_tolstring(L, 1, &length);
  } else {
    text = lua_pushfstring(L, "(the error value is a %s)", luaL_typename(L, 1));
  }
  // An error without a position is a message for the user, not a bug in the script.
  if (lua_type(L, 1) == LUA_TSTRING && !HasPosition(text)) return 1;
  luaL_traceback(L, L, text, 1);
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kCallbackError);
  if (lua_isnil(L, -1) || lua_rawequal(L, -1, 1) == 0) {
    lua_pop(L, 1);
    return 1;
  }
  lua_pop(L, 1);
  lua_pushliteral(L, "\nin the callback, ");
  lua_rawgetp(L, LUA_REGISTRYINDEX, &kCallbackTraceback);
  lua_concat(L, 3);
  return 1;
}

}  // namespace zyl
