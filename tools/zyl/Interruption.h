// What ends a script before its end: Ctrl-C and os.exit. Both stop it with an error that it cannot
// go on from: the next instruction after a pcall raises it again, in every coroutine, until the
// script is left and the host shuts down in order. A second Ctrl-C ends the program at once.
#pragma once

#include "Lua.h"

namespace zyl {

// Puts os.exit and the coroutine functions that keep track of the running coroutine in place.
void OpenInterruption(lua_State* L);
// From now on no signal touches the Lua state.
void CloseInterruption();

// Ctrl-C stops the script of the state that was opened last; the calling thread is the one that
// runs it. A write to a closed pipe is an error of that write from now on.
void CatchSignals();

// The script may go on after Ctrl-C, whose next press stops it again. `L` is the main state, with
// nothing running on it.
void ForgetInterrupt(lua_State* L);

bool WasInterrupted();
bool ExitWasRequested();
int RequestedExitStatus();

}  // namespace zyl
