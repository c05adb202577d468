// Watches every allocation of a test program and its libraries: replaces `operator new` by one that
// counts and that fails on request. Link AllocationWatch.cpp to install it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyl::test {

class AllocationWatch {
 public:
  // Live bytes now, and the most there were since ResetPeak.
  static size_t LiveBytes();
  static size_t PeakBytes();
  static void ResetPeak();
  // No single allocation may pass `bytes`: it fails with std::bad_alloc as on a small machine.
  static void SetLargest(size_t bytes);
  // The n-th allocation of this thread from now on (1 is the next) fails; 0 turns that off. With
  // kThisAndAllLater every later one fails too. As usual, a failed allocation calls the new handler
  // and is repeated if that returns; what the handler freed is used for the repetition only.
  enum Failing { kThisAlone, kThisAndAllLater };
  static void FailAt(uint64_t n, Failing failing = kThisAlone);
  // The same for the allocations of all other threads, counted together.
  static void FailOthersAt(uint64_t n, Failing failing = kThisAlone);
  // Whether an allocation was made to fail since FailAt or FailOthersAt.
  static bool HasFailed();
};

}  // namespace zyl::test
