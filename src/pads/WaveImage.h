// Whole samples as the bytes of a WAVE file.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "host/akai.h"

namespace zyl {

struct WaveImage {
  std::unique_ptr<char[]> bytes;
  int length = 0;  // 0 when the sample cannot be a WAVE file
};

// All channels of the sample's file, with their format, loops, key and tuning.
WaveImage ImageOfSample(const genericSample& sample);

// A new sample, one of several channels as a whole; null when the bytes are no WAVE file.
SampleUse SampleOfImage(std::span<const std::byte> image);

}  // namespace zyl
