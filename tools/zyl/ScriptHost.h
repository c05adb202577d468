// Runs one script. Owns the Lua state, the stack of running calls into the host, and the objects
// whose destruction is pending until a call returns. Lua errors raised in callbacks are caught
// before they reach the module and deferred until the script's call returns.
#pragma once

#include <string>
#include <vector>

#include "Lua.h"
#include "host/base.h"

namespace zyl {

class ScriptHost;

// Values of CallFrame's `deferredError`: no error, an error whose value was lost because the Lua
// stack is full, or (above 0) the stack index of the error value in the C function that made the
// frame.
inline constexpr int kNoError = 0;
inline constexpr int kLostError = -1;

// One call from the script into the host: a method call, a pump or a destruction. Lives on the C++
// stack. `object` is not destroyed before the outermost frame ends. The first error of a callback
// during the call is stored in `deferredError`; raise it with RaiseDeferred after the frame has
// ended.
class CallFrame {
 public:
  CallFrame(ScriptHost& host, lua_State* state, const RIOObject* object, int& deferredError);
  ~CallFrame();
  CallFrame(const CallFrame&) = delete;
  CallFrame& operator=(const CallFrame&) = delete;

 private:
  friend class ScriptHost;
  ScriptHost& host_;
  CallFrame* outer_;
  lua_State* state_;
  const RIOObject* object_;
  int& deferredError_;
};

class ScriptHost {
 public:
  // `module` is the path of the module's library, for scripts (host.module).
  explicit ScriptHost(std::string module = {});
  ~ScriptHost();
  ScriptHost(const ScriptHost&) = delete;
  ScriptHost& operator=(const ScriptHost&) = delete;

  static ScriptHost& Of(lua_State* state) {
    return **static_cast<ScriptHost**>(lua_getextraspace(state));
  }

  // Return the exit status: 0, 1 after an error (message and traceback on standard error), 130
  // after Ctrl-C, or the argument of os.exit. `arguments[0]` is the script's name.
  int RunFile(const std::string& path, const std::vector<std::string>& arguments);
  int RunText(const std::string& text, const std::vector<std::string>& arguments);
  // Like RunFile for the script of a verb: require searches the verbs' library first.
  int RunVerb(const std::string& path, const std::vector<std::string>& arguments);

  const std::string& Module() const { return module_; }
  lua_State* State() const { return state_; }
  bool InCall() const { return innermost_ != nullptr; }

  // Reserves memory for the destruction of one more object, so that Destroy allocates none.
  void ReserveDestruction();
  // Destroys an object that the script owns. Postpones this to the end of the outermost frame if a
  // method of `object` is running or, with `whenIdle`, if any call is running. Scripts see a
  // pending object as destroyed. Returns kNoError or the deferred error of the destructor's
  // callbacks.
  int Destroy(lua_State* state, RIOObject* object, bool whenIdle);
  bool IsDestructionPending(const RIOObject* object) const;

  // Runs `body` protected on the Lua state of the innermost call, with `data` as a light userdata.
  // Returns false after an error; that call's frame stores its first error.
  bool RunProtected(lua_CFunction body, void* data, const RIOObject* object);

  // The empty argument list that calls without arguments share.
  ROCParams* NoArguments() { return &noArguments_; }

 private:
  friend class CallFrame;
  int RunChunk(int loadStatus, const std::vector<std::string>& arguments);
  void DestroyPending();

  std::string module_;
  lua_State* state_;
  CallFrame* innermost_ = nullptr;
  bool closing_ = false;  // the Lua state is being closed: callbacks do not run
  std::vector<RIOObject*> pending_;
  size_t ownedCount_ = 0;  // number of objects that the script owns, including those in pending_
  ROCParams noArguments_;
};

inline CallFrame::CallFrame(ScriptHost& host, lua_State* state, const RIOObject* object,
                            int& deferredError)
    : host_(host),
      outer_(host.innermost_),
      state_(state),
      object_(object),
      deferredError_(deferredError) {
  host.innermost_ = this;
}

inline CallFrame::~CallFrame() {
  if (outer_ == nullptr && !host_.pending_.empty()) {
    object_ = nullptr;
    host_.DestroyPending();
  }
  host_.innermost_ = outer_;
}

}  // namespace zyl
