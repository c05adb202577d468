// Treats denormal numbers as 0. A recursive filter decays into them in digital silence, where each
// operation takes about a hundred times as long.
#pragma once

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace zyl {

// While one exists, SSE arithmetic of this thread reads and writes denormal numbers as 0. Other
// processors are left as they are. The compiler does not know of it: use it around calls of
// functions that are not inlined.
class FlushDenormals {
 public:
#ifdef __SSE2__
  FlushDenormals() noexcept : before_(_mm_getcsr()) { _mm_setcsr(before_ | kFlush); }
  ~FlushDenormals() { _mm_setcsr(before_); }
#else
  FlushDenormals() noexcept {}
#endif
  FlushDenormals(const FlushDenormals&) = delete;
  FlushDenormals& operator=(const FlushDenormals&) = delete;

#ifdef __SSE2__
 private:
  static constexpr unsigned kFlush = 0x8040;  // flush to zero, denormals are zero
  unsigned before_;
#endif
};

}  // namespace zyl
