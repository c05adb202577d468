#include "Pool.h"

#include <atomic>
#include <new>
#include <utility>

#include "../hostapp.h"

namespace zyl {

namespace {

constexpr size_t kStep = 32;  // block sizes are its multiples
constexpr size_t kSizes = 32;
#if defined(__SANITIZE_ADDRESS__)
constexpr size_t kMostBytes = 0;  // so that a use after the end is seen
#else
constexpr size_t kMostBytes = 8u << 20;
#endif
std::atomic<size_t> mostBytes{kMostBytes};

// Free blocks are linked through their own memory.
struct Free {
  Free* next;
};
struct Store {
  Free* first[kSizes];
  size_t bytes;
};
// Without a destructor the access costs no check; what a thread keeps at its end is bounded.
#if defined(__GNUC__) && !defined(_WIN32)
__attribute__((tls_model("initial-exec")))
#endif
constinit thread_local Store store{};

size_t SizeClass(size_t bytes) { return (bytes + kStep - 1) / kStep; }

}  // namespace

void* TakeBlock(size_t bytes) {
  const size_t size = SizeClass(bytes);
  if (size >= kSizes) return ::operator new(bytes);
  Store& mine = store;
  Free* taken = mine.first[size];
  if (taken == nullptr) return ::operator new(size* kStep);
  mine.first[size] = taken->next;
  mine.bytes -= size * kStep;
  return taken;
}

void GiveBlock(void* block, size_t bytes) noexcept {
  const size_t size = SizeClass(bytes);
  Store& mine = store;
  if (block == nullptr || size >= kSizes ||
      mine.bytes + size * kStep > mostBytes.load(std::memory_order_relaxed)) {
    ::operator delete(block);
    return;
  }
  mine.first[size] = new (block) Free{mine.first[size]};
  mine.bytes += size * kStep;
}

void LimitFreeBlocks(size_t bytes) noexcept {
  mostBytes = bytes;
  for (Free*& first : store.first) {
    while (first != nullptr) ::operator delete(std::exchange(first, first->next));
  }
  store.bytes = 0;
}

}  // namespace zyl

void ZylLimitFreeBlocks(size_t bytes) { zyl::LimitFreeBlocks(bytes); }
