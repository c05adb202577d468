#include "audio/Edits.h"

#include <cmath>
#include <numbers>

namespace zyl::audio {

namespace {

// Frame i of a fade from silence.
float FadeWeight(size_t i, size_t frames) {
  const double part = (static_cast<double>(i) + 0.5) / static_cast<double>(frames);
  const double root = std::sin(std::numbers::pi / 2 * part);
  return static_cast<float>(root * root);
}

}  // namespace

Sound OnlyChannel(const Sound& sound, size_t channel) {
  return {sound.rateHz, {sound.channels[channel]}};
}

Sound Mixed(const Sound& sound) {
  Sound mix{sound.rateHz, {std::vector<float>(sound.Frames())}};
  const double weight = 1 / static_cast<double>(sound.channels.size());
  for (size_t i = 0; i < sound.Frames(); ++i) {
    double sum = 0;
    for (const auto& channel : sound.channels) sum += static_cast<double>(channel[i]);
    mix.channels[0][i] = static_cast<float>(sum * weight);
  }
  return mix;
}

void Scale(Sound& sound, double factor) {
  for (auto& channel : sound.channels) {
    for (float& x : channel) x = static_cast<float>(static_cast<double>(x) * factor);
  }
}

void FadeIn(Sound& sound, size_t first, size_t frames) {
  for (auto& channel : sound.channels) {
    for (size_t i = 0; i < frames; ++i) channel[first + i] *= FadeWeight(i, frames);
  }
}

void FadeOut(Sound& sound, size_t last, size_t frames) {
  for (auto& channel : sound.channels) {
    for (size_t i = 0; i < frames; ++i) channel[last - i] *= FadeWeight(i, frames);
  }
}

}  // namespace zyl::audio
