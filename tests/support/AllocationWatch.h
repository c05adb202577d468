// Sees every allocation of a test program: `operator new` is replaced by one that counts, and that
// can be told to fail. Link AllocationWatch.cpp to have it.
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
  // The n-th allocation of this thread from now on (1 is the next) fails; 0 turns that off.
  static void FailAt(uint64_t n);
  // Whether an allocation was made to fail since FailAt.
  static bool HasFailed();
};

}  // namespace zyl::test
