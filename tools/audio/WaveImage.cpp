#include "audio/WaveImage.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

namespace zyl::audio {

namespace {

constexpr size_t kHeaderBytes = 44;

// Noise with a triangular distribution from -1 to 1: the difference of two uniform values, each
// from the upper bits of a linear congruential generator.
class TriangularNoise {
 public:
  explicit TriangularNoise(uint64_t seed) : state_(seed) {}
  double operator()() { return Uniform() - Uniform(); }

 private:
  double Uniform() {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<double>(state_ >> 32U) * 0x1p-32;
  }
  uint64_t state_;
};

void Append(std::string& bytes, uint32_t value, int width) {
  for (int k = 0; k < width; ++k) bytes.push_back(static_cast<char>(value >> (8 * k)));
}

std::string Header(const Sound& sound, int bits, int width, size_t dataBytes) {
  const auto channels = static_cast<uint32_t>(sound.channels.size());
  const auto rate = static_cast<uint32_t>(sound.rateHz);
  const uint32_t frameBytes = channels * static_cast<uint32_t>(width);
  std::string bytes;
  bytes.reserve(kHeaderBytes + dataBytes);
  bytes += "RIFF";
  Append(bytes, static_cast<uint32_t>(kHeaderBytes - 8 + dataBytes), 4);
  bytes += "WAVEfmt ";
  Append(bytes, 16, 4);
  Append(bytes, 1, 2);  // PCM
  Append(bytes, channels, 2);
  Append(bytes, rate, 4);
  Append(bytes, rate * frameBytes, 4);
  Append(bytes, frameBytes, 2);
  Append(bytes, static_cast<uint32_t>(bits), 2);
  bytes += "data";
  Append(bytes, static_cast<uint32_t>(dataBytes), 4);
  return bytes;
}

}  // namespace

WaveImage WaveOf(const Sound& sound, int bits, bool dither) {
  const int width = (bits + 7) / 8;
  const size_t channels = sound.channels.size();
  const size_t dataBytes = sound.Frames() * channels * static_cast<size_t>(width);
  if (dataBytes > std::numeric_limits<uint32_t>::max() - kHeaderBytes) {
    throw std::length_error("a WAVE image has at most 4 GiB");
  }
  WaveImage image{Header(sound, bits, width, dataBytes)};
  image.bytes.resize(kHeaderBytes + dataBytes);

  const double scale = std::ldexp(1, bits - 1);
  const int unusedBits = 8 * width - bits;
  const uint32_t offset = width == 1 ? 128 : 0;  // values of one byte are unsigned
  for (size_t c = 0; c < channels; ++c) {
    TriangularNoise noise(c + 1);
    char* byte = image.bytes.data() + kHeaderBytes + c * static_cast<size_t>(width);
    for (const float x : sound.channels[c]) {
      const double exact = static_cast<double>(x) * scale;
      double value = std::floor(exact + 0.5);
      if (!(std::fabs(x) <= 1)) ++image.clipped;
      if (dither && value != exact) value = std::floor(exact + noise() + 0.5);
      // In this order NaN becomes full scale.
      const auto step = static_cast<int64_t>(std::max(-scale, std::min(scale - 1, value)));
      const uint32_t stored = (static_cast<uint32_t>(step) << unusedBits) + offset;
      for (int k = 0; k < width; ++k) byte[k] = static_cast<char>(stored >> (8 * k));
      byte += channels * static_cast<size_t>(width);
    }
  }
  return image;
}

}  // namespace zyl::audio
