// The percentile of sorted values, interpolated between neighbours.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

namespace zyl::audio {

// `part` is 0 to 1; `sorted` has at least one value.
inline double Percentile(std::span<const double> sorted, double part) {
  const double place = part * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<size_t>(place);
  const double low = sorted[below];
  const double high = sorted[std::min(below + 1, sorted.size() - 1)];
  return low + (high - low) * (place - static_cast<double>(below));
}

}  // namespace zyl::audio
