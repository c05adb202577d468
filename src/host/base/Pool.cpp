#include "Pool.h"

#include <atomic>
#include <new>
#include <utility>

#include "../hostapp.h"

namespace zyl {

namespace {

constexpr size_t kStep = 32;  // block sizes are multiples of this
constexpr size_t kSizes = 32;
#if defined(__SANITIZE_ADDRESS__)
constexpr size_t kDefaultMaxBytes = 0;  // so that AddressSanitizer detects use after free
#else
constexpr size_t kDefaultMaxBytes = 8u << 20;
#endif
std::atomic<size_t> maxBytes{kDefaultMaxBytes};

// Free blocks are linked through their own memory.
struct Free {
  Free* next;
};
struct Store {
  Free* first[kSizes];
  size_t bytes;
};
// No destructor, so that access needs no guard check. A thread that ends leaks at most maxBytes.
#if defined(__GNUC__) && !defined(_WIN32)
__attribute__((tls_model("initial-exec")))
#endif
constinit thread_local Store store{};

size_t SizeClass(size_t bytes) { return (bytes + kStep - 1) / kStep; }

}  // namespace

void* AllocateBlock(size_t bytes) {
  const size_t size = SizeClass(bytes);
  if (size >= kSizes) return ::operator new(bytes);
  Store& own = store;
  Free* taken = own.first[size];
  if (taken == nullptr) return ::operator new(size* kStep);
  own.first[size] = taken->next;
  own.bytes -= size * kStep;
  return taken;
}

void FreeBlock(void* block, size_t bytes) noexcept {
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

void LimitFreeBlocks(size_t bytes) noexcept {
  maxBytes = bytes;
  for (Free*& first : store.first) {
    while (first != nullptr) ::operator delete(std::exchange(first, first->next));
  }
  store.bytes = 0;
}

}  // namespace zyl

void ZylLimitFreeBlocks(size_t bytes) { zyl::LimitFreeBlocks(bytes); }
