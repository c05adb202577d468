// Checks of a sample object that a reader has returned.
#pragma once

#include <cstring>
#include <memory>

#include "Harness.h"
#include "riff.h"

namespace zyl::fuzz {

// The decoder of compressed sound works in blocks of 16384 frames of up to 16 channels.
inline constexpr size_t kDecoderBytes = size_t{4} << 20;

// `again` was read from a file that `first` was written to.
inline void RequireSameSample(const BasicSample& first, const BasicSample& again) {
  Require(first.FrameCount() == again.FrameCount() && first.ChannelCount() == again.ChannelCount(),
          "what was written is read again whole");
  Require(first.parameters.loops.size() == again.parameters.loops.size() &&
              first.parameters.key == again.parameters.key,
          "parameters survive being written");
  for (unsigned c = 0; c < first.ChannelCount(); ++c) {
    const std::byte* one = first.LinBuffer(c);
    const std::byte* other = again.LinBuffer(c);
    Require((one == nullptr) == (other == nullptr), "a channel has its sound");
    const size_t bytes = static_cast<size_t>(first.FrameCount()) * first.BytesPerValue();
    if (one != nullptr && first.BytesPerValue() == again.BytesPerValue()) {
      Require(std::memcmp(one, other, bytes) == 0, "sound survives being written");
    }
  }
}

}  // namespace zyl::fuzz
