// Vector code that runs with AVX2 where the processor has it.
//
// Write the algorithm once, in functions marked ZYL_INLINE, and call it from two entry points: one
// plain, one marked ZYL_AVX2 that runs only if HasAvx2(). The compiler inlines the algorithm into
// both and vectorises each for its instruction set.
#pragma once

#if defined(__GNUC__) || defined(__clang__)
#define ZYL_INLINE [[gnu::always_inline]] inline
#else
#define ZYL_INLINE inline
#endif

// Not on Windows, where GCC does not align the stack for wide vectors.
#if defined(__x86_64__) && !defined(_WIN32) && (defined(__GNUC__) || defined(__clang__))
#define ZYL_HAS_AVX2_CODE 1
#define ZYL_AVX2 __attribute__((target("avx2")))
#else
#define ZYL_HAS_AVX2_CODE 0
#define ZYL_AVX2
#endif

namespace zyl {

inline bool HasAvx2() noexcept {
#if ZYL_HAS_AVX2_CODE
  return __builtin_cpu_supports("avx2") != 0;
#else
  return false;
#endif
}

// Prefetches memory into the first-level cache. Any address is allowed. Helps most in loops that do
// much work per value, where hardware prefetching is too slow.
inline void Prefetch(const void* address) noexcept {
#if defined(__GNUC__) || defined(__clang__)
  __builtin_prefetch(address);
#else
  static_cast<void>(address);
#endif
}

}  // namespace zyl
