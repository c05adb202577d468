// The command line of zyl: options, verbs, exit status.
#pragma once

namespace zyl {

// Exit statuses in addition to those of a script run (see ScriptHost).
inline constexpr int kExitUsage = 2;
inline constexpr int kExitNoModule = 3;

int RunCommandLine(int argc, char** argv);

}  // namespace zyl
