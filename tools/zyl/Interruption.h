// Stops a script early: Ctrl-C and os.exit. Both raise an error that the script cannot suppress:
// the next instruction after a pcall raises it again, in every coroutine, until the script has
// returned to the host, which shuts down in order. A second Ctrl-C ends the process at once.
#pragma once

#include "Lua.h"

namespace zyl {

// Replaces os.exit, coroutine.resume and coroutine.wrap; the coroutine functions track the running
// coroutine.
void OpenInterruption(lua_State* L);
// Call before closing the Lua state: signals no longer access it.
void CloseInterruption();

// Installs the handlers of SIGINT, which stops the script of the state that was opened last, and of
// SIGXFSZ, so that writes beyond the file size limit fail. Call on the thread that runs the script.
void InstallSignalHandlers();

// Clears an interrupt so that scripts can run again, and reinstalls the handlers. `L` is the
// main state, with nothing running on it.
void ClearInterrupt(lua_State* L);

bool WasInterrupted();
bool ExitWasRequested();
int RequestedExitStatus();

}  // namespace zyl
