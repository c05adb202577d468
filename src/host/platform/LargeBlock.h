// Advice about large blocks of memory.
#pragma once

#include <cstddef>

namespace zyl {

// Says that all of a fresh block will be written at once. Where the system can map it in large
// pages, the first touch then costs a fraction. Small blocks and systems without such advice are
// left alone.
void AdviseLargeBlock(void* block, size_t bytes);

}  // namespace zyl
