// Free lists for objects that are created and freed in large numbers: script values, and graphic
// objects and cells when a list is refilled. Each thread keeps up to a few megabytes of blocks, by
// size. A block joins the free list of the thread that frees it.
#pragma once

#include <cstddef>

namespace zyl {

void* AllocateBlock(size_t bytes);
void FreeBlock(void* block, size_t bytes) noexcept;
// Sets the maximum number of free bytes per thread, and frees all blocks that this thread keeps.
void LimitFreeBlocks(size_t bytes) noexcept;

}  // namespace zyl
