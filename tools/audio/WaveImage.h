// A sound as the bytes of a WAVE file.
#pragma once

#include <cstddef>
#include <string>

#include "audio/Sound.h"

namespace zyl::audio {

struct WaveImage {
  std::string bytes;
  size_t clipped = 0;  // values beyond full scale (±1); they are clamped
};

// PCM of 1 to 32 bits, in the upper bits of whole bytes. With `dither`, values between two steps
// get triangular noise of ±1 step before they are rounded; values that the width holds exactly stay
// as they are, so that silence and sound of a smaller width do not change. The noise is always the
// same. Throws std::length_error if the image exceeds 4 GiB. The rate is a whole number, up to 2^32
// - 1.
WaveImage WaveOf(const Sound& sound, int bits, bool dither);

}  // namespace zyl::audio
