// What the benchmarks share: timing and medians.
#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace bench {

template <class Work>
double Seconds(Work work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace bench
