// A recording as floats, the input of all analysis.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace zyl::audio {

// One channel; full scale is ±1.
using Channel = std::span<const float>;

struct Sound {
  double rateHz = 0;
  std::vector<std::vector<float>> channels;  // all of one length

  size_t Frames() const { return channels.empty() ? 0 : channels.front().size(); }
};

}  // namespace zyl::audio
