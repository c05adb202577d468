// Memory advice for large blocks.
#pragma once

#include <cstddef>

namespace zyl {

// Advises the system to map a new block in huge pages, so that writing all of it costs far fewer
// page faults. No effect on small blocks and on systems without such advice.
void AdviseLargeBlock(void* block, size_t bytes);

}  // namespace zyl
