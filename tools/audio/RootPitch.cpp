#include "audio/RootPitch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "audio/Levels.h"
#include "audio/Percentile.h"

namespace zyl::audio {

namespace {

constexpr size_t kTail = 32;  // repeated values at the end of a track
constexpr std::array kFactors = {1. / 8, 1. / 6, 1. / 5, 1. / 4, 1. / 3, 1. / 2, 1., 2., 3., 4.};
constexpr std::array kPlaces = {0.15, 0.35, 0.55};
constexpr std::array kHighPlaces = {0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8};
constexpr float kFaded = 0.05F;        // minimum level of a place relative to the loudest
constexpr double kShortPeriod = 200;   // frames; longer periods are at most four true ones
constexpr double kPeriodValues = 100;  // values that a period is reduced to by averaging
constexpr double kLowestHz = 16;
constexpr double kHighestHz = 4700;
constexpr double kSureLikeness = 0.6;
constexpr double kCertainLikeness = 0.95;
constexpr double kSureShare = 0.3;
constexpr double kSureSpreadCents = 620;  // more than a track between two octaves
constexpr double kSteadyCents = 8;
constexpr double kRefinedFrames = 300;
constexpr int kSmoothings = 3;          // passes of (1, 2, 1) / 4
constexpr double kTrackedHz = 2000;     // highest pitch in the track
constexpr double kLowestHighHz = 1000;  // lowest high note
constexpr int kHighPeriods = 24;        // length of an excerpt in periods of the lowest high note
constexpr double kHighLikeness = 0.9;

const double kSemitone = std::exp2(1.0 / 12);

double Cents(double ratio) { return 1200 * std::log2(ratio); }

// `count` values from frame `first` on, each the mean of `step` frames, without their mean. With a
// step of 1 the values are smoothed instead, so that lags between two frames are found.
std::vector<double> Excerpt(Channel channel, size_t first, size_t count, size_t step) {
  std::vector<double> values(count);
  for (size_t i = 0; i < count; ++i) {
    for (size_t k = 0; k < step; ++k) {
      values[i] += static_cast<double>(channel[first + i * step + k]);
    }
    values[i] /= static_cast<double>(step);
  }
  for (int pass = 0; step == 1 && pass < kSmoothings; ++pass) {
    double before = values.front();
    for (size_t i = 1; i + 1 < count; ++i) {
      const double value = values[i];
      values[i] = 0.25 * (before + values[i + 1]) + 0.5 * value;
      before = value;
    }
  }
  double mean = 0;
  for (const double value : values) mean += value;
  mean /= static_cast<double>(std::max<size_t>(count, 1));
  for (double& value : values) value -= mean;
  return values;
}

// An excerpt; s(L) is computed over its first `length` values.
class Look {
 public:
  Look(Channel channel, size_t first, size_t count, size_t step, int length)
      : x_(Excerpt(channel, first, count, step)), step_(step), length_(length) {
    energies_.reserve(x_.size() + 1);
    energies_.push_back(0);
    for (const double value : x_) energies_.push_back(energies_.back() + value * value);
  }

  double Likeness(int lag) const {
    double cross = 0;
    for (int j = 0; j < length_; ++j) cross += x_[Index(j)] * x_[Index(j + lag)];
    const double energy =
        energies_[Index(length_)] + energies_[Index(length_ + lag)] - energies_[Index(lag)];
    return energy > 0 ? 2 * cross / energy : 0;
  }

  struct Lag {
    double values;
    double likeness;
  };

  // The lag with the highest likeness within `reach` of `lag`; nothing if the excerpt is too short.
  std::optional<Lag> Near(double lag, double reach) const {
    const int from = std::max(static_cast<int>(std::floor(lag - reach)), 2);
    const int to = static_cast<int>(std::ceil(lag + reach));
    if (to + 1 + length_ > static_cast<int>(x_.size())) return std::nullopt;
    int at = from;
    double best = -1;
    for (int l = from; l <= to; ++l) {
      const double likeness = Likeness(l);
      if (likeness > best) {
        at = l;
        best = likeness;
      }
    }
    const double below = Likeness(at - 1);
    const double above = Likeness(at + 1);
    const double bend = 2 * best - below - above;
    const double shift = bend > 0 ? std::clamp((above - below) / (2 * bend), -1.0, 1.0) : 0;
    return Lag{at + shift, best + (above - below) * shift / 4};
  }

  // The period in frames for the lag of one period, refined over several periods and at least
  // kRefinedFrames.
  double Refined(double lag) const {
    double refined = lag;
    for (int times = 2; times <= 8 || times * lag <= kRefinedFrames; times *= 2) {
      const auto further = Near(times * refined, 1.5);
      if (!further || std::fabs(further->values / (times * lag) - 1) > 0.02) break;
      refined = further->values / times;
    }
    return refined * static_cast<double>(step_);
  }

  std::array<std::optional<Lag>, kFactors.size()> lags;  // of each factor

 private:
  static size_t Index(int i) { return static_cast<size_t>(i); }

  std::vector<double> x_;
  std::vector<double> energies_;  // element i is the energy before value i
  size_t step_;
  int length_;
};

std::optional<Look> LookAt(Channel channel, double rateHz, size_t frame, double period) {
  const double step = std::ceil(period / kPeriodValues);
  const double lag = period / step;
  double length = std::max(std::ceil(2.2 * lag), 200.0);
  const double left = std::floor(static_cast<double>(channel.size() - frame) / step);
  const double count = std::min(length + std::ceil(4.3 * lag) + 8, left);
  length = std::min(length, count - std::ceil(1.3 * lag) - 8);
  if (length < lag) return std::nullopt;
  Look look(channel, frame, static_cast<size_t>(count), static_cast<size_t>(step),
            static_cast<int>(length));
  for (size_t i = 0; i < kFactors.size(); ++i) {
    const double wanted = lag * kFactors[i];
    const double hertz = rateHz / (wanted * step);
    const bool likely = kFactors[i] >= 0.25 || period < kShortPeriod;
    if (likely && wanted >= 2.5 && hertz >= kLowestHz && hertz <= kHighestHz) {
      look.lags[i] = look.Near(wanted, std::max(1.5, 0.012 * wanted));
    }
  }
  return look;
}

double Median(std::vector<double>& values) {
  std::sort(values.begin(), values.end());
  return Percentile(std::span<const double>(values), 0.5);
}

// Whether a likeness is nearly as high as the highest one.
bool IsNearlyAsHigh(double likeness, double best) {
  return 1 - likeness <= 0.02 + 1.3 * (1 - best);
}

struct Repetition {
  double factor;
  double likeness;
  double period;  // frames
};

// The shortest period that the places agree on.
std::optional<Repetition> Choose(const std::vector<Look>& looks) {
  std::array<double, kFactors.size()> means{};
  double best = 0;
  for (size_t i = 0; i < kFactors.size(); ++i) {
    for (const Look& look : looks) means[i] += look.lags[i] ? look.lags[i]->likeness : -1;
    means[i] /= static_cast<double>(looks.size());
    best = std::max(best, means[i]);
  }
  for (size_t i = 0; i < kFactors.size(); ++i) {
    if (means[i] <= 0 || !IsNearlyAsHigh(means[i], best)) continue;
    std::vector<double> periods;
    for (const Look& look : looks) {
      if (look.lags[i]) periods.push_back(look.Refined(look.lags[i]->values));
    }
    return Repetition{kFactors[i], means[i], Median(periods)};
  }
  return std::nullopt;
}

// Blocks in which to search for a high note: those where it has not faded and `frames` frames
// follow.
std::vector<size_t> LoudPlaces(const Sound& sound, size_t frames) {
  const std::vector<float> levels = BlockLevels(sound, kTrackBlock);
  const float loudest = *std::max_element(levels.begin(), levels.end());
  std::vector<size_t> loud;
  for (size_t i = 0; i * kTrackBlock + frames <= sound.Frames(); ++i) {
    if (levels[i] >= loudest * kFaded) loud.push_back(i);
  }
  std::vector<size_t> places;
  for (const double part : kHighPlaces) {
    if (loud.empty()) break;
    places.push_back(loud[static_cast<size_t>(part * static_cast<double>(loud.size() - 1))]);
  }
  return places;
}

// The lags from `shortest` at which the likeness has a peak. It must have been negative before the
// peak, because the likeness of a low note falls slowly from 1.
std::vector<int> Peaks(const std::vector<double>& likeness, int shortest) {
  const auto at = [&](int lag) { return likeness[static_cast<size_t>(lag)]; };
  double lowest = 1;
  std::vector<int> peaks;
  for (int lag = 2; lag + 1 < static_cast<int>(likeness.size()); ++lag) {
    lowest = std::min(lowest, at(lag));
    const bool isPeak = at(lag) >= at(lag - 1) && at(lag) >= at(lag + 1);
    if (lag >= shortest && lowest < 0 && isPeak) peaks.push_back(lag);
  }
  return peaks;
}

// The period near a lag and its likeness, interpolated between frames.
Repetition Repeat(const std::vector<Look>& looks, int lag) {
  Repetition found{1, 0, 0};
  std::vector<double> periods;
  for (const Look& look : looks) {
    if (const auto near = look.Near(lag, 1.5)) {
      found.likeness += near->likeness / static_cast<double>(looks.size());
      periods.push_back(look.Refined(near->values));
    }
  }
  if (!periods.empty()) found.period = Median(periods);
  return found;
}

// Of the first two channels those that are not nearly silent beside the other.
std::vector<Channel> Audible(const Sound& sound) {
  constexpr double kSilentPart = 1e-4;  // -40 dB
  std::vector<double> powers;
  for (size_t c = 0; c < std::min<size_t>(sound.channels.size(), 2); ++c) {
    powers.push_back(MeanSquare(sound.channels[c]));
  }
  const double limit = kSilentPart * *std::max_element(powers.begin(), powers.end());
  std::vector<Channel> audible;
  for (size_t c = 0; c < powers.size(); ++c) {
    if (powers[c] >= limit) audible.emplace_back(sound.channels[c]);
  }
  return audible;
}

// The period of a note above kLowestHighHz.
std::optional<Repetition> HighNote(const Sound& sound, const std::vector<Channel>& audible) {
  const int longest = static_cast<int>(sound.rateHz / kLowestHighHz);
  if (longest < 4) return std::nullopt;
  const int length = longest * kHighPeriods / 2;
  const auto count = static_cast<size_t>(longest) * kHighPeriods;
  const std::vector<size_t> places = LoudPlaces(sound, count);
  std::vector<Look> looks;
  std::vector<double> likeness(static_cast<size_t>(longest) + 2);
  for (const Channel channel : audible) {
    for (const size_t block : places) {
      Look look(channel, block * kTrackBlock, count, 1, length);
      if (look.Likeness(0) == 0) continue;  // silence
      for (int lag = 1; lag < longest + 2; ++lag) {
        likeness[static_cast<size_t>(lag)] += look.Likeness(lag);
      }
      looks.push_back(std::move(look));
    }
  }
  const int shortest = std::max(static_cast<int>(sound.rateHz / kHighestHz), 4);
  std::vector<Repetition> repetitions;
  double best = 0;
  for (const int lag : Peaks(likeness, shortest)) {
    repetitions.push_back(Repeat(looks, lag));
    best = std::max(best, repetitions.back().likeness);
  }
  for (const Repetition& it : repetitions) {
    if (it.likeness >= kHighLikeness && IsNearlyAsHigh(it.likeness, best)) return it;
  }
  return std::nullopt;
}

}  // namespace

std::optional<RootPitch> FindRootPitch(const Sound& sound, std::span<const float> track,
                                       std::string& reason) {
  const size_t frames = sound.Frames();
  if (!(sound.rateHz > 0)) {
    reason = "the file has no sample rate";
    return std::nullopt;
  }
  if (frames < kFewestPitchFrames) {
    reason = std::to_string(frames) + " frames are too few for a pitch";
    return std::nullopt;
  }
  const size_t blocks = std::min(track.size(), frames / kTrackBlock);
  const size_t end = blocks > 2 * kTail ? blocks - kTail : std::max<size_t>(blocks, 2) - 1;
  std::vector<double> periods;
  for (size_t i = std::min<size_t>(1, end - 1); i < std::min(end, blocks); ++i) {
    if (track[i] > 0) periods.push_back(static_cast<double>(track[i]));
  }

  double period = 0;
  double spread = 0;
  std::vector<size_t> places;  // blocks
  size_t agreeing = 0;
  if (!periods.empty()) {
    const size_t count = periods.size();
    period = Median(periods);
    const std::span<const double> sorted(periods.data(), count);
    spread = 0.5 * Cents(Percentile(sorted, 0.84) / Percentile(sorted, 0.16));
    std::vector<size_t> near;
    for (size_t i = 1; i < std::min(end, blocks); ++i) {
      const auto value = static_cast<double>(track[i]);
      if (value < period * kSemitone && value > period / kSemitone) near.push_back(i);
    }
    for (const double part : kPlaces) {
      if (near.empty()) break;
      const auto at = near[static_cast<size_t>(part * static_cast<double>(near.size() - 1))];
      if (places.empty() || places.back() != at) places.push_back(at);
    }
    agreeing = near.size();
  }

  const std::vector<Channel> audible = Audible(sound);
  std::vector<Look> looks;
  for (const Channel channel : audible) {
    for (const size_t block : places) {
      if (auto look = LookAt(channel, sound.rateHz, block * kTrackBlock, period)) {
        looks.push_back(std::move(*look));
      }
    }
  }
  std::optional<Repetition> repetition;
  if (!looks.empty()) repetition = Choose(looks);
  double likeness = repetition ? repetition->likeness : 0;
  double chosen = period * (repetition ? repetition->factor : 1);
  if (repetition && (spread < kSteadyCents || std::fabs(Cents(repetition->period / chosen)) > 40)) {
    chosen = repetition->period;
  }
  // Above the tracker's range the track has multiples of the period, if any.
  const bool isTracked = !periods.empty() && 2 * agreeing >= periods.size();
  auto high = HighNote(sound, audible);
  if (high && isTracked && chosen * kTrackedHz >= sound.rateHz &&
      (high->period > 0.97 * chosen || !IsNearlyAsHigh(high->likeness, likeness))) {
    high.reset();
  }
  if (high) {
    likeness = high->likeness;
    chosen = high->period;
  } else if (periods.empty()) {
    reason = "no pitch";
    return std::nullopt;
  }
  const auto tracked = static_cast<double>(periods.size());
  const bool often = tracked >= 0.1 * static_cast<double>(end);
  return RootPitch{
      .hertz = sound.rateHz / chosen,
      .voiced = tracked / static_cast<double>(end),
      .spreadCents = spread,
      .likeness = likeness,
      .sure = high || (spread <= kSureSpreadCents && likeness >= kCertainLikeness) ||
              (likeness >= kSureLikeness && often &&
               static_cast<double>(agreeing) >= kSureShare * tracked),
  };
}

}  // namespace zyl::audio
