// The interactive prompt: reads Lua chunks line by line, runs each and prints its results.
#pragma once

#include <string>

#include "ScriptHost.h"

namespace zyl {

// Runs until the input ends. On a terminal, offers a prompt, history and completion, and Ctrl-C
// returns to the prompt; otherwise reads plain lines from standard input. Returns the exit status:
// 0 or the argument of os.exit; without a terminal also 1 if a chunk failed and 130 after Ctrl-C.
int RunRepl(ScriptHost& script);

}  // namespace zyl
