// Reads chunks of Lua line by line, runs each and prints its results, until the input ends.
#pragma once

#include <string>

#include "ScriptHost.h"

namespace zyl {

// On a terminal with prompt, history and completion, where Ctrl-C leads back to the prompt; else
// plain lines from standard input. Answers the exit status: 0, or what a chunk gave to os.exit;
// without a terminal also 1 when a chunk failed, and 130 after Ctrl-C.
int RunRepl(ScriptHost& script);

}  // namespace zyl
