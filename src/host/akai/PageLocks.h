// Reference-counted memory locks by address range. The system locks whole pages without counting,
// so unlocking a range locks other ranges that share its first or last page again.
#pragma once

#include <cstddef>

namespace zyl {

// Without memory to count the lock, the range stays pageable.
void LockRange(const void* address, size_t bytes) noexcept;
void UnlockRange(const void* address) noexcept;

}  // namespace zyl
