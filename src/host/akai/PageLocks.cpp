#include "PageLocks.h"

#include <cstdint>
#include <map>
#include <new>

#include "../platform/Platform.h"

namespace zyl {
namespace {

struct Range {
  size_t bytes;
  int count;
};

// Never destroyed: records may be released during static destruction.
std::map<uintptr_t, Range>& Ranges() {
  static auto& ranges = *new std::map<uintptr_t, Range>;
  return ranges;
}

}  // namespace

void LockRange(const void* address, size_t bytes) noexcept {
  if (address == nullptr || bytes == 0) return;
  try {
    Range& range = Ranges()[reinterpret_cast<uintptr_t>(address)];
    range.bytes = bytes;
    if (++range.count == 1) LockPages(address, bytes);
  } catch (const std::bad_alloc&) {
    // Handled like a lock that the system refuses.
  }
}

void UnlockRange(const void* address) noexcept {
  auto& ranges = Ranges();
  const auto found = ranges.find(reinterpret_cast<uintptr_t>(address));
  if (found == ranges.end() || --found->second.count > 0) return;
  const uintptr_t page = PageSize();
  const uintptr_t first = found->first / page;
  const uintptr_t last = (found->first + found->second.bytes - 1) / page;
  UnlockPages(address, found->second.bytes);
  auto next = ranges.erase(found);
  if (next != ranges.end() && next->first / page == last) {
    LockPages(reinterpret_cast<const void*>(next->first), next->second.bytes);
  }
  // Lock preceding ranges again that end in the first page. Ranges don't overlap, so the first one
  // that ends before that page stops the loop.
  while (next != ranges.begin()) {
    --next;
    if ((next->first + next->second.bytes - 1) / page != first) break;
    LockPages(reinterpret_cast<const void*>(next->first), next->second.bytes);
  }
}

}  // namespace zyl
