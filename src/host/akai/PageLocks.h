// Memory ranges that are kept resident, counted by range. The system locks whole pages and does
// not count; so when a range is let go, ranges that share its first or last page are locked again.
#pragma once

#include <cstddef>

namespace zyl {

// Without memory for its account, a range stays pageable.
void HoldResident(const void* address, size_t bytes) noexcept;
void LetGo(const void* address) noexcept;

}  // namespace zyl
