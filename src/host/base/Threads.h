// The threads of loaded modules.
#pragma once

namespace zyl {

// Before a module is unloaded: stops its threads and waits until they have ended.
void EndThreadsOf(const void* module);

}  // namespace zyl
