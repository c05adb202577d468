// The Lua state of one script run and what the calls between script and host objects share: the
// stack of running calls, and the objects whose destruction waits for a call to return. It owns the
// Lua state; every Lua error that a callback raises below a call of a host object ends in that
// call's frame, never in the module.
#pragma once

#include <string>
#include <vector>

#include "Lua.h"
#include "host/base.h"

namespace zyl {

class ScriptHost;

// What a CallFrame keeps of errors: nothing, an error that found no room, or the index of the error
// value on the Lua stack of the C function that made the frame.
inline constexpr int kNoError = 0;
inline constexpr int kLostError = -1;

// One call from the script into the host, on the C++ stack: a method call, a pump, a destruction.
// `object` cannot be destroyed before the outermost frame has ended. The first error of a callback
// below the call is kept in `keptError`, to be raised with RaiseKept once the frame has ended.
class CallFrame {
 public:
  CallFrame(ScriptHost& host, lua_State* state, const RIOObject* object, int& keptError);
  ~CallFrame();
  CallFrame(const CallFrame&) = delete;
  CallFrame& operator=(const CallFrame&) = delete;

 private:
  friend class ScriptHost;
  ScriptHost& host_;
  CallFrame* outer_;
  lua_State* state_;
  const RIOObject* object_;
  int& keptError_;
};

class ScriptHost {
 public:
  // `module` is the path of the module's library, as scripts see it.
  explicit ScriptHost(std::string module = {});
  ~ScriptHost();
  ScriptHost(const ScriptHost&) = delete;
  ScriptHost& operator=(const ScriptHost&) = delete;

  static ScriptHost& Of(lua_State* state) {
    return **static_cast<ScriptHost**>(lua_getextraspace(state));
  }

  // They answer the exit status: 0, 1 after an error (message and traceback on standard error),
  // 130 after Ctrl-C, or what the script gave to os.exit. `arguments[0]` is the script's name.
  int RunFile(const std::string& path, const std::vector<std::string>& arguments);
  int RunText(const std::string& text, const std::vector<std::string>& arguments);
  // As RunFile, for the script of a verb: it finds the verbs' own Lua files before all others.
  int RunVerb(const std::string& path, const std::vector<std::string>& arguments);

  const std::string& Module() const { return module_; }
  lua_State* State() const { return state_; }
  // No callback reaches the script any more.
  bool Closing() const { return closing_; }
  bool InCall() const { return innermost_ != nullptr; }

  // Makes room for the destruction of one more object of the script, which then needs no memory.
  void ExpectDestruction();
  // Destroys an object of the script; waits for the outermost frame when `object` is in a call, or
  // (with `whenIdle`) while any call runs. A waiting object counts as destroyed for scripts.
  // Answers what was kept of the errors of callbacks meanwhile.
  int Destroy(lua_State* state, RIOObject* object, bool whenIdle);
  bool IsDoomed(const RIOObject* object) const;

  // Runs `body` protected, with `data` as a light userdata, on the Lua state of the innermost call.
  // False after an error, which that call's frame keeps when it is the first one.
  bool RunProtected(lua_CFunction body, void* data, const RIOObject* object);

  // The list of a call without arguments.
  ROCParams* NoArguments() { return &noArguments_; }

 private:
  friend class CallFrame;
  int RunChunk(int loadStatus, const std::vector<std::string>& arguments);
  void DestroyDoomed();

  std::string module_;
  lua_State* state_;
  CallFrame* innermost_ = nullptr;
  bool closing_ = false;
  std::vector<RIOObject*> doomed_;
  size_t expected_ = 0;  // objects that the script owns, those in doomed_ among them
  ROCParams noArguments_;
};

inline CallFrame::CallFrame(ScriptHost& host, lua_State* state, const RIOObject* object,
                            int& keptError)
    : host_(host), outer_(host.innermost_), state_(state), object_(object), keptError_(keptError) {
  host.innermost_ = this;
}

inline CallFrame::~CallFrame() {
  if (outer_ == nullptr && !host_.doomed_.empty()) {
    object_ = nullptr;
    host_.DestroyDoomed();
  }
  host_.innermost_ = outer_;
}

}  // namespace zyl
