#include "Interruption.h"

#include <pthread.h>

#include <atomic>
#include <csignal>

namespace zyl {

namespace {

enum class Stop { kNone, kInterrupt, kExit };

std::atomic<Stop> stop{Stop::kNone};
std::atomic<lua_State*> running{nullptr};  // the running coroutine or the main state
std::atomic<int> exitStatus{0};
pthread_t scriptThread;

void RaiseStop(lua_State* L, lua_Debug*) {
  // A cancelled stop left its hook on this coroutine: remove it.
  if (stop == Stop::kNone) {
    lua_sethook(L, nullptr, 0, 0);
    return;
  }
  luaL_error(L, stop == Stop::kExit ? "the script called os.exit" : "interrupted");
}

// Raises the stop error before every following instruction, so that no pcall can suppress it.
void StopState(lua_State* L) { lua_sethook(L, RaiseStop, LUA_MASKCOUNT, 1); }

void OnInterrupt(int signal) {
  if (pthread_equal(pthread_self(), scriptThread) == 0) {
    pthread_kill(scriptThread, signal);
    return;
  }
  // A second Ctrl-C ends the process.
  ::signal(SIGINT, SIG_DFL);
  Stop none = Stop::kNone;
  stop.compare_exchange_strong(none, Stop::kInterrupt);
  lua_State* state = running;
  if (state != nullptr) StopState(state);
}

// Records the running coroutine in a scope.
class Running {
 public:
  explicit Running(lua_State* state) : outer_(running.exchange(state)) {
    // A stop during the switch may have hooked only the outer coroutine.
    if (stop != Stop::kNone) StopState(state);
  }
  // Also runs when an error ends the coroutine: code that catches it must still be stopped.
  ~Running() {
    running = outer_;
    if (stop != Stop::kNone && outer_ != nullptr) StopState(outer_);
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  lua_State* outer_;
};

// Replaces coroutine.resume (upvalue 2 is nil; the coroutine is argument 1) and the functions that
// coroutine.wrap returns (upvalue 2 is the coroutine). Upvalue 1 is the original function.
int TrackedResume(lua_State* L) {
  const int place = lua_isnil(L, lua_upvalueindex(2)) ? 1 : lua_upvalueindex(2);
  lua_State* coroutine = lua_tothread(L, place);
  lua_pushvalue(L, lua_upvalueindex(1));
  lua_insert(L, 1);
  if (coroutine == nullptr) {
    lua_call(L, lua_gettop(L) - 1, LUA_MULTRET);
    return lua_gettop(L);
  }
  {
    const Running now(coroutine);
    lua_call(L, lua_gettop(L) - 1, LUA_MULTRET);
  }
  if (stop != Stop::kNone) {
    StopState(L);
    RaiseStop(L, nullptr);
  }
  return lua_gettop(L);
}

int TrackedWrap(lua_State* L) {
  luaL_checktype(L, 1, LUA_TFUNCTION);
  lua_settop(L, 1);
  lua_pushvalue(L, lua_upvalueindex(1));
  lua_insert(L, 1);
  lua_call(L, 1, 1);
  // The only upvalue of a function from coroutine.wrap is its coroutine.
  if (lua_getupvalue(L, -1, 1) == nullptr) lua_pushnil(L);
  lua_pushcclosure(L, TrackedResume, 2);
  return 1;
}

int Exit(lua_State* L) {
  int status = 0;
  if (lua_isboolean(L, 1)) {
    status = lua_toboolean(L, 1) != 0 ? 0 : 1;
  } else {
    status = static_cast<int>(luaL_optinteger(L, 1, 0) & 0xFF);
  }
  exitStatus = status;
  Stop none = Stop::kNone;
  stop.compare_exchange_strong(none, Stop::kExit);
  StopState(L);
  RaiseStop(L, nullptr);
  return 0;
}

}  // namespace

void OpenInterruption(lua_State* L) {
  stop = Stop::kNone;
  exitStatus = 0;
  running = L;
  lua_getglobal(L, "os");
  lua_pushcfunction(L, Exit);
  lua_setfield(L, -2, "exit");
  lua_getglobal(L, "coroutine");
  lua_getfield(L, -1, "resume");
  lua_pushnil(L);
  lua_pushcclosure(L, TrackedResume, 2);
  lua_setfield(L, -2, "resume");
  lua_getfield(L, -1, "wrap");
  lua_pushcclosure(L, TrackedWrap, 1);
  lua_setfield(L, -2, "wrap");
  lua_pop(L, 2);
}

void CloseInterruption() { running = nullptr; }

void InstallSignalHandlers() {
  scriptThread = pthread_self();
  // Without SA_RESTART, so that the signal interrupts a read from the terminal.
  struct sigaction action = {};
  action.sa_handler = OnInterrupt;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  // Makes writes beyond the file size limit fail with an error. An empty handler instead of
  // SIG_IGN, which child processes would inherit.
  action.sa_handler = [](int) {};
  action.sa_flags = SA_RESTART;
  sigaction(SIGXFSZ, &action, nullptr);
}

void ClearInterrupt(lua_State* L) {
  Stop interrupt = Stop::kInterrupt;
  stop.compare_exchange_strong(interrupt, Stop::kNone);
  lua_sethook(L, nullptr, 0, 0);
  InstallSignalHandlers();
}

bool WasInterrupted() { return stop == Stop::kInterrupt; }
bool ExitWasRequested() { return stop == Stop::kExit; }
int RequestedExitStatus() { return exitStatus; }

}  // namespace zyl
