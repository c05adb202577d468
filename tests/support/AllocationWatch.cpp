#include "support/AllocationWatch.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<size_t> liveBytes{0};
std::atomic<size_t> peakBytes{0};
std::atomic<size_t> largestBytes{SIZE_MAX};
thread_local uint64_t failIn = 0;
thread_local bool failed = false;
thread_local bool failLater = false;

constexpr int64_t kNever = INT64_MAX;
std::atomic<int64_t> othersFailIn{kNever};
std::atomic<bool> othersFailed{false};
std::atomic<bool> othersFailLater{false};
thread_local bool isOther = true;

bool MustFail() noexcept {
  if (failIn > 0 && --failIn == 0) {
    failed = true;
    if (failLater) failIn = 1;
    return true;
  }
  if (!isOther || othersFailIn == kNever) return false;
  const int64_t left = othersFailIn.fetch_sub(1);
  if (left > 1 || (left < 1 && !othersFailLater)) return false;
  othersFailed = true;
  return true;
}

void* Take(size_t size) noexcept {
  if (size > largestBytes.load(std::memory_order_relaxed)) return nullptr;
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) return nullptr;
  const size_t bytes = malloc_usable_size(memory);
  const size_t live = liveBytes.fetch_add(bytes, std::memory_order_relaxed) + bytes;
  size_t peak = peakBytes.load(std::memory_order_relaxed);
  while (live > peak && !peakBytes.compare_exchange_weak(peak, live)) {
  }
  return memory;
}

void* AllocateOrThrow(size_t size) {
  void* memory = MustFail() ? nullptr : Take(size);
  while (memory == nullptr) {
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
    memory = Take(size);
  }
  return memory;
}

void* Allocate(size_t size) noexcept {
  try {
    return AllocateOrThrow(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void Free(void* memory) noexcept {
  if (memory == nullptr) return;
  liveBytes.fetch_sub(malloc_usable_size(memory), std::memory_order_relaxed);
  std::free(memory);
}

}  // namespace

void* operator new(size_t size) { return AllocateOrThrow(size); }
void* operator new[](size_t size) { return AllocateOrThrow(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { Free(memory); }
void operator delete[](void* memory) noexcept { Free(memory); }
void operator delete(void* memory, size_t) noexcept { Free(memory); }
void operator delete[](void* memory, size_t) noexcept { Free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { Free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { Free(memory); }

namespace zyl::test {

size_t AllocationWatch::LiveBytes() { return liveBytes; }
size_t AllocationWatch::PeakBytes() { return peakBytes; }
void AllocationWatch::ResetPeak() { peakBytes = liveBytes.load(); }
void AllocationWatch::SetLargest(size_t bytes) { largestBytes = bytes; }
void AllocationWatch::FailAt(uint64_t n, Failing failing) {
  failIn = n;
  failLater = failing == kThisAndAllLater;
  failed = false;
  othersFailed = false;
}
void AllocationWatch::FailOthersAt(uint64_t n, Failing failing) {
  isOther = false;
  failed = false;
  othersFailed = false;
  othersFailLater = failing == kThisAndAllLater;
  othersFailIn = n == 0 ? kNever : static_cast<int64_t>(n);
}
bool AllocationWatch::HasFailed() { return failed || othersFailed; }

}  // namespace zyl::test
