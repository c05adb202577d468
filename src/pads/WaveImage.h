// Converts samples to and from the bytes of a WAVE file.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "host/akai.h"

namespace zyl {

struct WaveImage {
  std::unique_ptr<char[]> bytes;
  int length = 0;  // bytes; 0 if the sample can't be written as a WAVE file
};

// Writes all channels of the sample's file with their format, loops, key and tuning.
WaveImage ImageOfSample(const genericSample& sample);

// Creates a sample; a multichannel file becomes one sample. Null if the bytes aren't a WAVE file.
SampleUse SampleOfImage(std::span<const std::byte> image);

}  // namespace zyl
