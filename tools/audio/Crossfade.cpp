#include "audio/Crossfade.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace zyl::audio {

namespace {

double Correlation(Channel a, Channel b) {
  double aa = 0;
  double ab = 0;
  double bb = 0;
  for (size_t i = 0; i < a.size(); ++i) {
    const auto x = static_cast<double>(a[i]);
    const auto y = static_cast<double>(b[i]);
    aa += x * x;
    ab += x * y;
    bb += y * y;
  }
  return aa > 0 && bb > 0 ? ab / std::sqrt(aa * bb) : 1;
}

// Fades from `from` to `to`. For sections of equal power and correlation r, the weights 1 - f and f
// scale the power by (1 - f)^2 + f^2 + 2 r f (1 - f); dividing by its square root keeps it
// constant.
void Fade(Channel from, Channel to, float* out) {
  const size_t count = from.size();
  const double correlation = std::max(Correlation(from, to), 0.0);
  for (size_t i = 0; i < count; ++i) {
    const double part = static_cast<double>(i + 1) / static_cast<double>(count + 1);
    const double f = 0.5 - 0.5 * std::cos(std::numbers::pi * part);
    const double power = (1 - f) * (1 - f) + f * f + 2 * correlation * f * (1 - f);
    const double mixed = (1 - f) * static_cast<double>(from[i]) + f * static_cast<double>(to[i]);
    out[i] = static_cast<float>(mixed / std::sqrt(power));
  }
}

}  // namespace

size_t LongestCrossfade(const Loop& loop) { return std::min(loop.first, loop.Length() / 2); }

size_t CrossfadeLoop(Sound& sound, const Loop& loop, size_t frames) {
  const size_t end = loop.last + 1;
  const size_t after = std::min(frames, sound.Frames() - end);
  std::vector<float> faded(frames + after);
  for (auto& values : sound.channels) {
    const Channel channel(values);
    Fade(channel.subspan(end - frames, frames), channel.subspan(loop.first - frames, frames),
         faded.data());
    Fade(channel.subspan(loop.first, after), channel.subspan(end, after), &faded[frames]);
    std::copy(faded.begin(), faded.end(),
              values.begin() + static_cast<std::ptrdiff_t>(end - frames));
  }
  return frames + after;
}

}  // namespace zyl::audio
