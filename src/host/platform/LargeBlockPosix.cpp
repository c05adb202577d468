#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#include "LargeBlock.h"

namespace zyl {

void AdviseLargeBlock(void* block, size_t bytes) {
#if defined(MADV_HUGEPAGE)
  constexpr size_t kWorthIt = size_t{8} << 20;
  if (bytes < kWorthIt) return;
  const auto page = static_cast<uintptr_t>(::sysconf(_SC_PAGESIZE));
  const uintptr_t first = (reinterpret_cast<uintptr_t>(block) + page - 1) / page * page;
  const uintptr_t last = (reinterpret_cast<uintptr_t>(block) + bytes) / page * page;
  [[maybe_unused]] const int ignored =
      ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
  (void)block;
  (void)bytes;
#endif
}

}  // namespace zyl
