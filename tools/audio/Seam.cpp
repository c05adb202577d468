#include "audio/Seam.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "audio/Levels.h"

namespace zyl::audio {

namespace {

constexpr double kFitSeconds = 0.1;
constexpr double kRoughSeconds = 0.15;  // on each side of the jump
// The residual of a sound counts as at least this, relative to the sound's level.
constexpr double kFloor = 1e-5;
constexpr double kStepSeconds = 0.1;
constexpr size_t kOctaves = 7;

Channel Section(Channel channel, size_t first, size_t end) {
  const size_t last = std::min(end, channel.size());
  return channel.subspan(first, last - first);
}

// The energies of the octaves below half the rate, by differences and means of neighbours.
std::array<double, kOctaves> OctaveEnergies(Channel section) {
  std::array<double, kOctaves> energies{};
  std::vector<float> x(section.begin(), section.end());
  for (double& energy : energies) {
    const size_t half = x.size() / 2;
    for (size_t i = 0; i < half; ++i) {
      const float a = x[2 * i];
      const float b = x[2 * i + 1];
      energy += static_cast<double>((a - b) * (a - b));
      x[i] = 0.5F * (a + b);
    }
    x.resize(half);
  }
  return energies;
}

// The sound's own residual is measured in the first and the last `sideFrames` of the loop.
double Seam(Channel channel, double rateHz, const Loop& loop, size_t sideFrames) {
  const auto fit = std::max(static_cast<size_t>(kFitSeconds * rateHz), 4 * kPredictionOrder);
  const size_t end = loop.last + 1;
  const Channel before = Section(channel, end > fit ? end - fit : 0, end);
  const Channel after = Section(channel, loop.first, loop.first + fit);
  const std::array sections = {before, after};
  const Predictor predictor(sections);

  std::array<float, kPredictionOrder + kSeamFrames> joined;
  std::copy_n(&channel[end - kPredictionOrder], kPredictionOrder, joined.begin());
  std::copy_n(&channel[loop.first], kSeamFrames, &joined[kPredictionOrder]);
  const std::vector<float> jump = predictor.Residual(joined);
  const float most = *std::max_element(
      jump.begin(), jump.end(), [](float a, float b) { return std::fabs(a) < std::fabs(b); });
  if (most == 0) return -std::numeric_limits<double>::infinity();
  const double level = std::sqrt(0.5 * (MeanSquare(before) + MeanSquare(after)));
  std::vector<float> residual;
  if (loop.Length() <= 2 * sideFrames) {
    residual = predictor.Residual(Section(channel, loop.first, end));
  } else {
    residual = predictor.Residual(Section(channel, loop.first, loop.first + sideFrames));
    const std::vector<float> rest = predictor.Residual(Section(channel, end - sideFrames, end));
    residual.insert(residual.end(), rest.begin(), rest.end());
  }
  const double tone = ResidualLevel(std::move(residual),
                                    std::max(kFloor * level, std::numeric_limits<double>::min()));
  return 20 * std::log10(static_cast<double>(std::fabs(most)) / tone);
}

double WorstSeam(const Sound& sound, const Loop& loop, size_t sideFrames) {
  double worst = -std::numeric_limits<double>::infinity();
  for (const auto& channel : sound.channels) {
    worst = std::max(worst, Seam(channel, sound.rateHz, loop, sideFrames));
  }
  return worst;
}

}  // namespace

double SeamDecibels(Channel channel, double rateHz, const Loop& loop) {
  return Seam(channel, rateHz, loop, loop.Length());
}

double SeamDecibels(const Sound& sound, const Loop& loop) {
  return WorstSeam(sound, loop, loop.Length());
}

double RoughSeamDecibels(const Sound& sound, const Loop& loop) {
  return WorstSeam(sound, loop, static_cast<size_t>(kRoughSeconds * sound.rateHz));
}

Steps StepsOf(const Sound& sound, const Loop& loop) {
  const auto frames = std::clamp(static_cast<size_t>(kStepSeconds * sound.rateHz),
                                 size_t{1} << kOctaves, std::max(loop.Length(), size_t{128}));
  Steps steps{0, 0};
  for (const auto& channel : sound.channels) {
    const size_t end = loop.last + 1;
    const Channel after = Section(channel, loop.first, loop.first + frames);
    const Channel before = Section(channel, end > frames ? end - frames : 0, end);
    const auto start = OctaveEnergies(after);
    const auto close = OctaveEnergies(before);
    double most = 0;
    for (size_t i = 0; i < kOctaves; ++i) most = std::max({most, start[i], close[i]});
    if (most == 0) continue;
    const double floor = 1e-6 * most;  // 60 dB below the strongest octave
    const double level =
        10 * std::log10((MeanSquare(after) + floor * 1e-6) / (MeanSquare(before) + floor * 1e-6));
    double spectrum = 0;
    for (size_t i = 0; i < kOctaves; ++i) {
      spectrum += std::fabs(10 * std::log10((start[i] + floor) / (close[i] + floor)) - level);
    }
    if (std::fabs(level) > std::fabs(steps.levelDb)) steps.levelDb = level;
    steps.spectrumDb = std::max(steps.spectrumDb, spectrum / kOctaves);
  }
  return steps;
}

}  // namespace zyl::audio
