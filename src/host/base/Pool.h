// Memory for what comes and goes by the thousand: script values, and the graphic objects and cells
// of a list that is filled anew. Freed blocks are kept for the next objects of their size, up to a
// few megabytes for each thread; a block goes into the store of the thread that frees it.
#pragma once

#include <cstddef>

namespace zyl {

void* TakeBlock(size_t bytes);
void GiveBlock(void* block, size_t bytes) noexcept;
// How many bytes of freed blocks each thread keeps from now on; frees those that this thread keeps.
void LimitFreeBlocks(size_t bytes) noexcept;

}  // namespace zyl
