// Memory for graphic objects and cells, which come and go by the thousand when a list is filled
// anew. Freed blocks are kept for the next objects, up to a few megabytes. Script thread only; a
// block that another thread frees goes into that thread's own store.
#pragma once

#include <cstddef>

namespace zyl {

void* TakeBlock(size_t bytes);
void GiveBlock(void* block, size_t bytes) noexcept;

}  // namespace zyl
