#include "ScriptHost.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <stdexcept>
#include <utility>

#include "AudioCalls.h"
#include "Errors.h"
#include "HostTable.h"
#include "Interruption.h"
#include "Objects.h"
#include "Shipped.h"

namespace zyl {

namespace {

// help(...): calls the function that the Lua module zyl.help returns, loaded on first use.
int Help(lua_State* L) {
  lua_getglobal(L, "require");
  lua_pushliteral(L, "zyl.help");
  lua_call(L, 1, 1);
  lua_insert(L, 1);
  lua_call(L, lua_gettop(L) - 1, 0);
  return 0;
}

// Adds the Lua files that ship with zyl to package.path: zyl's own first, those of the verbs last
// because their names are common. Adds the plug-ins to package.cpath.
void OpenLuaFolder(lua_State* L) {
  lua_pushcfunction(L, Guarded<Help>);
  lua_setglobal(L, "help");
  if (LuaFolder().empty()) return;
  lua_getglobal(L, "package");
  lua_getfield(L, -1, "path");
  lua_pushfstring(L, "%s/?.lua;%s;%s/?.lua", LuaFolder().c_str(), lua_tostring(L, -1),
                  VerbLibrary().c_str());
  lua_setfield(L, -3, "path");
  lua_pop(L, 1);
  lua_getfield(L, -1, "cpath");
  const std::string program = ProgramFolder().string();
  lua_pushfstring(L, "%s/plugins/?.so;%s/../lib/zyl/plugins/?.so;%s", program.c_str(),
                  program.c_str(), lua_tostring(L, -1));
  lua_setfield(L, -3, "cpath");
  lua_pop(L, 2);
}

int SearchVerbLibraryFirst(lua_State* L) {
  lua_getglobal(L, "package");
  lua_getfield(L, -1, "path");
  lua_pushfstring(L, "%s/?.lua;%s", VerbLibrary().c_str(), lua_tostring(L, -1));
  lua_setfield(L, -3, "path");
  return 0;
}

// Runs protected, because every step can run out of memory: opens the libraries.
int OpenState(lua_State* L) {
  luaL_openlibs(L);
  OpenInterruption(L);
  OpenErrors(L);
  OpenObjects(L);
  OpenHostTable(L);
  OpenAudio(L);
  OpenLuaFolder(L);
  return 0;
}

struct Chunk {
  const std::vector<std::string>& arguments;
};

void PushText(lua_State* L, const std::string& text) {
  lua_pushlstring(L, text.data(), text.size());
}

// Runs protected: sets the global `arg` and calls the chunk (argument 1) with the script's
// arguments (argument 2 points to a Chunk).
int CallChunk(lua_State* L) {
  const auto& arguments = static_cast<const Chunk*>(lua_touserdata(L, 2))->arguments;
  lua_settop(L, 1);
  const int count = static_cast<int>(arguments.size()) - 1;
  luaL_checkstack(L, count + 2, "too many arguments");
  lua_createtable(L, count, 1);
  for (int i = 0; i <= count; ++i) {
    PushText(L, arguments[static_cast<size_t>(i)]);
    lua_rawseti(L, -2, i);
  }
  lua_setglobal(L, "arg");
  for (int i = 1; i <= count; ++i) PushText(L, arguments[static_cast<size_t>(i)]);
  lua_call(L, count, 0);
  return 0;
}

}  // namespace

ScriptHost::ScriptHost(std::string module) : module_(std::move(module)), state_(luaL_newstate()) {
  if (state_ == nullptr) throw std::bad_alloc();
  *static_cast<ScriptHost**>(lua_getextraspace(state_)) = this;
  lua_pushcfunction(state_, Guarded<OpenState>);
  if (lua_pcall(state_, 0, 0, 0) != LUA_OK) {
    const char* text = lua_tostring(state_, -1);
    const std::string reason = text == nullptr ? "no memory" : text;
    lua_close(state_);
    throw std::runtime_error("the script libraries could not be opened: " + reason);
  }
}

ScriptHost::~ScriptHost() {
  closing_ = true;
  CloseInterruption();
  lua_close(state_);
}

int ScriptHost::RunVerb(const std::string& path, const std::vector<std::string>& arguments) {
  lua_pushcfunction(state_, SearchVerbLibraryFirst);
  const int status = lua_pcall(state_, 0, 0, 0);
  return status == LUA_OK ? RunFile(path, arguments) : RunChunk(status, arguments);
}

int ScriptHost::RunFile(const std::string& path, const std::vector<std::string>& arguments) {
  return RunChunk(luaL_loadfile(state_, path.c_str()), arguments);
}

int ScriptHost::RunText(const std::string& text, const std::vector<std::string>& arguments) {
  return RunChunk(luaL_loadbuffer(state_, text.data(), text.size(), "=eval"), arguments);
}

int ScriptHost::RunChunk(int loadStatus, const std::vector<std::string>& arguments) {
  int status = loadStatus;
  if (status == LUA_OK) {
    Chunk chunk{arguments};
    lua_pushcfunction(state_, AddTraceback);
    lua_insert(state_, -2);
    lua_pushcfunction(state_, Guarded<CallChunk>);
    lua_insert(state_, -2);
    lua_pushlightuserdata(state_, &chunk);
    status = lua_pcall(state_, 2, 0, -4);
  }
  if (ExitWasRequested()) return RequestedExitStatus();
  if (status == LUA_OK) return 0;
  const char* text = lua_tostring(state_, -1);
  std::fflush(stdout);
  if (WasInterrupted()) {
    std::fputs("zyl: interrupted\n", stderr);
    return 130;
  }
  std::fprintf(stderr, "zyl: %s\n", text == nullptr ? "an error without a message" : text);
  return 1;
}

void ScriptHost::ReserveDestruction() {
  if (pending_.capacity() <= ownedCount_) pending_.reserve(2 * ownedCount_ + 16);
  ++ownedCount_;
}

int ScriptHost::Destroy(lua_State* state, RIOObject* object, bool whenIdle) {
  bool wait = whenIdle && InCall();
  for (const CallFrame* frame = innermost_; frame != nullptr && !wait; frame = frame->outer_) {
    wait = frame->object_ == object;
  }
  if (wait) {
    pending_.push_back(object);
    return kNoError;
  }
  --ownedCount_;
  // The destructor may run callbacks, so it needs a frame for their errors.
  int deferredError = kNoError;
  {
    const CallFrame frame(*this, state, nullptr, deferredError);
    delete object;
  }
  return deferredError;
}

void ScriptHost::DestroyPending() {
  while (!pending_.empty()) {
    RIOObject* object = pending_.front();
    pending_.erase(pending_.begin());
    --ownedCount_;
    delete object;
  }
}

bool ScriptHost::IsDestructionPending(const RIOObject* object) const {
  return std::find(pending_.begin(), pending_.end(), object) != pending_.end();
}

bool ScriptHost::RunProtected(lua_CFunction body, void* data, const RIOObject* object) {
  if (closing_ || innermost_ == nullptr) return true;
  lua_State* L = innermost_->state_;
  int& deferredError = innermost_->deferredError_;
  const CallFrame frame(*this, L, object, deferredError);
  if (lua_checkstack(L, 8) == 0) {
    if (deferredError == kNoError) deferredError = kLostError;
    return false;
  }
  const int top = lua_gettop(L);
  lua_pushcfunction(L, SaveTraceback);
  lua_pushcfunction(L, body);
  lua_pushlightuserdata(L, data);
  if (lua_pcall(L, 1, 0, top + 1) == LUA_OK) {
    lua_settop(L, top);
    return true;
  }
  if (deferredError == kNoError) {
    lua_replace(L, top + 1);
    deferredError = top + 1;
  }
  lua_settop(L, deferredError > top ? deferredError : top);
  return false;
}

}  // namespace zyl
