// Free lists for objects that are created and freed in large numbers: script values, and graphic
// objects and cells when a list is refilled. Each thread keeps up to a few megabytes of blocks, by
// size. A block joins the free list of the thread that frees it.
#pragma once

#include <atomic>
#include <cstddef>
#include <new>

namespace zyl {

namespace pool {

constexpr size_t kStep = 32;  // block sizes are multiples of this
constexpr size_t kSizes = 32;

// Free blocks are linked through their own memory.
struct Free {
  Free* next;
};
struct Store {
  Free* first[kSizes];
  size_t bytes;
};
extern std::atomic<size_t> maxBytes;
// No destructor, so that access needs no guard check. A thread that ends leaks at most maxBytes.
#if defined(__GNUC__) && !defined(_WIN32)
__attribute__((tls_model("initial-exec")))
#endif
extern constinit thread_local Store store;

constexpr size_t SizeClass(size_t bytes) { return (bytes + kStep - 1) / kStep; }

}  // namespace pool

// Both are inlined: every script call allocates and frees a value or two.
inline void* AllocateBlock(size_t bytes) {
  using namespace pool;
  const size_t size = SizeClass(bytes);
  if (size >= kSizes) return ::operator new(bytes);
  Store& own = store;
  Free* taken = own.first[size];
  if (taken == nullptr) return ::operator new(size* kStep);
  own.first[size] = taken->next;
  own.bytes -= size * kStep;
  return taken;
}

inline void FreeBlock(void* block, size_t bytes) noexcept {
  using namespace pool;
  const size_t size = SizeClass(bytes);
  Store& own = store;
  if (block == nullptr || size >= kSizes ||
      own.bytes + size * kStep > maxBytes.load(std::memory_order_relaxed)) {
    ::operator delete(block);
    return;
  }
  own.first[size] = new (block) Free{own.first[size]};
  own.bytes += size * kStep;
}

// Sets the maximum number of free bytes per thread, and frees all blocks that this thread keeps.
void LimitFreeBlocks(size_t bytes) noexcept;

}  // namespace zyl
