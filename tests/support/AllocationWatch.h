// Watches every allocation of a test program and its libraries: replaces `operator new` by one that
// counts and that fails on request. Link AllocationWatch.cpp to install it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyl::test {

class AllocationWatch {
 public:
  // Live bytes, and their maximum since ResetPeak.
  static size_t LiveBytes();
  static size_t PeakBytes();
  static void ResetPeak();
  // Allocations of more than `bytes` fail with std::bad_alloc.
  static void SetLargest(size_t bytes);
  // Makes the n-th following allocation of this thread fail (1 is the next); 0 disables this. With
  // kThisAndAllLater all later ones fail, too. A failed allocation calls the new handler and is
  // repeated if that returns; only this repetition can use the memory that the handler freed.
  enum Failing { kThisAlone, kThisAndAllLater };
  static void FailAt(uint64_t n, Failing failing = kThisAlone);
  // The same for the allocations of all other threads, counted together.
  static void FailOthersAt(uint64_t n, Failing failing = kThisAlone);
  // Whether an allocation has failed since FailAt or FailOthersAt.
  static bool HasFailed();
};

}  // namespace zyl::test
