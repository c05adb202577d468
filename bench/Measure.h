// What the benchmarks share: timing and medians.
#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

namespace bench {

template <class Work>
double Seconds(Work work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// The processor's time of this program alone: what else runs on the machine does not count.
template <class Work>
double CpuSeconds(Work work) {
  const std::clock_t begin = std::clock();
  work();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace bench
