// Reference-counted memory locks by address range. The system locks whole pages without counting,
// so unlocking a range locks other ranges that share its first or last page again.
#pragma once

#include <cstddef>

namespace zyl {

// Without memory for its account, a range stays pageable.
void HoldResident(const void* address, size_t bytes) noexcept;
void LetGo(const void* address) noexcept;

}  // namespace zyl
