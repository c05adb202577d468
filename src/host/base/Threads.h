// The end of threads that modules have let go of.
#pragma once

namespace zyl {

// After a module is unloaded: until the threads of its groups have returned from their start
// routines.
void WaitForAbandonedThreads();

}  // namespace zyl
