#include "Completion.h"

#include <algorithm>
#include <cctype>

#include "Calls.h"
#include "Errors.h"
#include "Objects.h"
#include "Values.h"

namespace zyl {

namespace {

constexpr int kMaxIndexTables = 8;

bool IsNameCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

struct Request {
  std::vector<std::string_view> path;  // the names before the last one
  std::string_view start;              // the typed part of the last name
  bool methodsOnly = false;            // the last name follows a colon
  std::vector<std::string> names;
};

// Replaces the value on top of the stack by its field `name`, or nil. Follows __index tables but
// calls no __index function. For an algorithm, reads the fields that the script set.
void GetField(lua_State* L, std::string_view name) {
  if (KindOf(L, -1) == Kind::kObject && lua_getiuservalue(L, -1, kFieldsSlot) == LUA_TTABLE) {
    lua_replace(L, -2);
  }
  for (int i = 0; i < kMaxIndexTables && lua_istable(L, -1); ++i) {
    lua_pushlstring(L, name.data(), name.size());
    if (lua_rawget(L, -2) != LUA_TNIL) {
      lua_replace(L, -2);
      return;
    }
    lua_pop(L, 1);
    if (luaL_getmetafield(L, -1, "__index") == LUA_TNIL) break;
    lua_replace(L, -2);
  }
  lua_pop(L, 1);
  lua_pushnil(L);
}

// Appends the keys of the table on top of the stack that are valid names.
void AppendKeys(lua_State* L, Request& request) {
  for (lua_pushnil(L); lua_next(L, -2) != 0; lua_pop(L, 1)) {
    if (lua_type(L, -2) != LUA_TSTRING || (request.methodsOnly && !lua_isfunction(L, -1))) continue;
    const std::string_view key = lua_tostring(L, -2);
    if (!key.empty() && std::isdigit(static_cast<unsigned char>(key[0])) == 0 &&
        std::all_of(key.begin(), key.end(), IsNameCharacter)) {
      request.names.emplace_back(key);
    }
  }
}

// Appends the fields and methods of the object on top of the stack.
void AppendMembers(lua_State* L, Request& request) {
  const auto* ref = static_cast<const ObjectRef*>(lua_touserdata(L, -1));
  RIOObject* object = ref->value.Object();
  if (object == nullptr) return;
  ZylDispatch* dispatch = object->GetDispatch(true);
  if (dispatch != nullptr && !dispatch->isScript()) {
    AppendMethodNames(L, *dispatch, request.names);
  } else if (object->isROCAlgo()) {
    request.names.emplace_back("addPad");
    if (!request.methodsOnly) request.names.emplace_back("name");
    if (lua_getiuservalue(L, -1, kFieldsSlot) == LUA_TTABLE) AppendKeys(L, request);
  } else if (luaL_getmetafield(L, -1, "__index") == LUA_TTABLE) {
    AppendKeys(L, request);
  }
}

// Runs protected; argument 1 points to a Request.
int Collect(lua_State* L) {
  auto& request = *static_cast<Request*>(lua_touserdata(L, 1));
  lua_pushglobaltable(L);
  for (const std::string_view name : request.path) GetField(L, name);
  if (KindOf(L, -1) == Kind::kObject) {
    AppendMembers(L, request);
    return 0;
  }
  for (int i = 0; i < kMaxIndexTables && lua_istable(L, -1); ++i) {
    AppendKeys(L, request);
    if (luaL_getmetafield(L, -1, "__index") == LUA_TNIL) break;
  }
  return 0;
}

}  // namespace

Completion CompleteName(lua_State* L, std::string_view line) {
  size_t begin = line.size();
  const auto belongs = [](char c) { return IsNameCharacter(c) || c == '.' || c == ':'; };
  while (begin > 0 && belongs(line[begin - 1])) --begin;
  Request request;
  std::string_view chain = line.substr(begin);
  // ".." is the concatenation operator: a new value starts after it.
  if (const size_t dots = chain.rfind(".."); dots != std::string_view::npos) {
    chain.remove_prefix(dots + 2);
  }
  for (size_t end; (end = chain.find_first_of(".:")) != std::string_view::npos;) {
    request.path.push_back(chain.substr(0, end));
    request.methodsOnly = chain[end] == ':';
    chain.remove_prefix(end + 1);
  }
  request.start = chain;

  lua_pushcfunction(L, Guarded<Collect>);
  lua_pushlightuserdata(L, &request);
  if (lua_pcall(L, 1, 0, 0) != LUA_OK) lua_pop(L, 1);
  if (request.path.empty()) {
    for (const char* word : {"and",      "break",  "do",   "else", "elseif", "end",  "false", "for",
                             "function", "goto",   "if",   "in",   "local",  "nil",  "not",   "or",
                             "repeat",   "return", "then", "true", "until",  "while"}) {
      request.names.emplace_back(word);
    }
  }
  Completion completion{request.start.size(), std::move(request.names)};
  std::erase_if(completion.names, [&](const std::string& name) {
    return std::string_view(name).substr(0, request.start.size()) != request.start;
  });
  std::sort(completion.names.begin(), completion.names.end());
  completion.names.erase(std::unique(completion.names.begin(), completion.names.end()),
                         completion.names.end());
  return completion;
}

}  // namespace zyl
