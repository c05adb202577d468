// The command line of zyl: options, verbs, exit status.
#pragma once

namespace zyl {

// Exit statuses of zyl itself; any other status comes from the script.
inline constexpr int kExitUsage = 2;
inline constexpr int kExitNoModule = 3;

int RunCommandLine(int argc, char** argv);

}  // namespace zyl
