#include "audio/LoopFinder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "audio/Levels.h"

namespace zyl::audio {

namespace {

constexpr size_t kEnds = 12;
constexpr double kShortestSeconds = 0.3;
constexpr double kLengthRatio = 1.4;      // between the ranges of lengths
constexpr double kWindowSeconds = 0.025;  // compared around start and end
constexpr double kSlideSeconds = 0.06;    // start and end move together by up to this
constexpr double kFitSeconds = 0.1;
constexpr size_t kRated = 16;  // candidates that are rated more exactly
constexpr double kLevelSeconds = 0.01;
constexpr double kAttackLevel = 0.5;                             // of the loudest block
constexpr std::array kSustainLevels = {0.1, 0.03, 0.01, 0.003};  // of the loudest block
constexpr double kAttackSeconds = 0.05;  // left out after the attack's level is reached
constexpr double kCrossfadedSeam = 0.1;  // weight of a seam that is to be crossfaded
constexpr double kLevelWeight = 1.5;
constexpr double kDistanceDb = 20;
constexpr double kShortDb = 3;  // per octave below kLongSeconds
constexpr double kLongSeconds = 1;
constexpr double kVeryShortDb = 10;  // more, per octave below kShortestSeconds

double Square(double x) { return x * x; }

// First and last frame of the sustained part: after the attack, and the loudest part that is long
// enough. Never includes the silence after the sound.
FrameRange Sustained(const Sound& sound, size_t shortest) {
  const auto block = std::max<size_t>(1, static_cast<size_t>(kLevelSeconds * sound.rateHz));
  const std::vector<float> levels = BlockLevels(sound, block);
  const float most = *std::max_element(levels.begin(), levels.end());
  const auto reaches = [most](double part) {
    return [limit = static_cast<float>(part) * most](float level) { return level >= limit; };
  };
  const auto attack = std::find_if(levels.begin(), levels.end(), reaches(kAttackLevel));
  const size_t first = static_cast<size_t>(attack - levels.begin()) * block;
  const size_t afterAttack = first + static_cast<size_t>(kAttackSeconds * sound.rateHz);
  size_t last = 0;
  for (const double part : kSustainLevels) {
    const auto end = std::find_if(levels.rbegin(), levels.rend(), reaches(part));
    last = std::min(static_cast<size_t>(levels.rend() - end) * block, sound.Frames()) - 1;
    if (last >= afterAttack + 2 * shortest) return {afterAttack, last};
  }
  return {last >= first + 2 * shortest ? first : 0, last};
}

// Each value is the mean of `factor` frames.
std::vector<float> Decimated(Channel channel, size_t factor) {
  std::vector<float> values(channel.size() / factor);
  const float scale = 1.0F / static_cast<float>(factor);
  for (size_t i = 0; i < values.size(); ++i) {
    float sum = 0;
    for (size_t k = 0; k < factor; ++k) sum += channel[i * factor + k];
    values[i] = sum * scale;
  }
  return values;
}

// Running sums of the squares of all channels; element i is the energy before frame i.
std::vector<double> Energies(const std::vector<std::vector<float>>& channels) {
  std::vector<double> energies(channels.front().size() + 1);
  for (size_t i = 0; i + 1 < energies.size(); ++i) {
    double sum = 0;
    for (const auto& channel : channels) sum += Square(static_cast<double>(channel[i]));
    energies[i + 1] = energies[i] + sum;
  }
  return energies;
}

// Computes d(a), see LoopFinder.h: compares the sound of all channels in windows around two places.
class Likeness {
 public:
  explicit Likeness(const std::vector<std::vector<float>>& channels)
      : channels_(channels), energies_(Energies(channels)) {}

  size_t Frames() const { return energies_.size() - 1; }

  // d between the `window` values from `other` and those from each of the places
  // first ... first + count - 1.
  std::vector<float> Distances(size_t first, size_t count, size_t other, size_t window) const {
    std::vector<float> result(count);
    constexpr size_t kBlock = 2048;
    for (size_t start = 0; start < count; start += kBlock) {
      const size_t part = std::min(kBlock, count - start);
      for (const auto& channel : channels_) {
        for (size_t k = 0; k < window; ++k) {
          const float weight = channel[other + k];
          const float* values = &channel[first + start + k];
          float* sums = &result[start];
          for (size_t i = 0; i < part; ++i) sums[i] += weight * values[i];
        }
      }
    }
    const double own = energies_[other + window] - energies_[other];
    for (size_t i = 0; i < count; ++i) {
      const size_t place = first + i;
      const double energy = own + energies_[place + window] - energies_[place];
      result[i] =
          energy > 0 ? static_cast<float>(1 - 2 * static_cast<double>(result[i]) / energy) : 0;
    }
    return result;
  }

 private:
  const std::vector<std::vector<float>>& channels_;
  std::vector<double> energies_;
};

// Rates jumps near one end cheaply: with one predictor for each channel, fitted around the end.
//
// The values after a jump from `end` to `start` are those after the end plus a difference d that
// begins at the jump, d[n] = x[start + n] - x[end + n]. Prediction is linear, so the residual after
// the jump is that of the sound at the end plus that of d:
//
//   r[n] = e[end + n] + d[n] - sum c[k] d[n - k],  k = 1 ... n
class JumpRating {
 public:
  // Covers ends up to `reach` frames from `end`.
  JumpRating(const Sound& sound, size_t end, size_t reach) {
    const auto fit = std::max(static_cast<size_t>(kFitSeconds * sound.rateHz), reach) +
                     kPredictionOrder + kSeamFrames;
    first_ = end > fit ? end - fit : 0;
    const size_t last = std::min(end + fit, sound.Frames());
    for (const auto& values : sound.channels) {
      const std::array sections = {Channel(values).subspan(first_, last - first_)};
      const Predictor predictor(sections);
      std::vector<float> residual = predictor.Residual(sections[0]);
      const double tone = ResidualLevel(residual, 1e-9);
      channels_.push_back({values, predictor.Coefficients(), std::move(residual), tone});
    }
    first_ += kPredictionOrder;
  }

  // The largest residual after the jump relative to that of the sound, in the worst channel. If it
  // exceeds `limit`, returns any value above `limit`.
  double Rate(size_t start, size_t end, double limit) const {
    double worst = 0;
    std::array<double, kSeamFrames> d;
    for (const auto& channel : channels_) {
      const double bound = limit * channel.tone;
      double most = 0;
      for (size_t n = 0; n < kSeamFrames && most <= bound; ++n) {
        d[n] = static_cast<double>(channel.values[start + n] - channel.values[end + n]);
        double residual = static_cast<double>(channel.residual[end + n - first_]) + d[n];
        for (size_t k = 1; k <= std::min(n, kPredictionOrder); ++k) {
          residual -= channel.coefficients[k - 1] * d[n - k];
        }
        most = std::max(most, std::fabs(residual));
      }
      worst = std::max(worst, most / channel.tone);
      if (worst > limit) break;
    }
    return worst;
  }

  size_t FirstEnd() const { return first_; }

 private:
  struct Fitted {
    Channel values;
    std::array<double, kPredictionOrder> coefficients;
    std::vector<float> residual;  // from frame first_ on
    double tone;                  // level of the residual
  };
  std::vector<Fitted> channels_;
  size_t first_ = 0;
};

class Search {
 public:
  Search(const Sound& sound, const LoopWish& wish)
      : sound_(sound), wish_(wish), frames_(sound.Frames()) {
    shortest_ = wish.shortestFrames != 0
                    ? wish.shortestFrames
                    : std::min(static_cast<size_t>(kShortestSeconds * sound.rateHz), frames_ / 6);
    shortest_ = std::max(shortest_, 2 * kSeamFrames);
    margin_ = std::max(kSeamFrames, wish.crossfadeFrames);
  }

  std::vector<FoundLoop> Run() {
    if (frames_ < shortest_ + margin_ + kSeamFrames + 1 || Peak(sound_) == 0) return {};
    FrameRange part = Sustained(sound_, shortest_);
    low_ = std::max(part.first, margin_);
    high_ = std::min(part.last, frames_ - kSeamFrames - 1);
    if (high_ < low_ + shortest_) low_ = margin_;
    if (high_ < low_ + shortest_) return {};
    window_ = static_cast<size_t>(std::max(kWindowSeconds * sound_.rateHz, 2 * wish_.periodFrames));
    window_ = std::min(window_, frames_ / 8);
    const double fewest = wish_.periodFrames > 0 ? wish_.periodFrames / 6 : 8;
    factor_ = static_cast<size_t>(std::clamp(fewest, 1.0, 8.0));
    if (window_ / factor_ < 8) factor_ = 1;

    const Likeness exact(sound_.channels);
    std::vector<std::vector<float>> coarseChannels;
    for (const auto& channel : sound_.channels) {
      coarseChannels.push_back(Decimated(channel, factor_));
    }
    const Likeness coarse(coarseChannels);
    const size_t ends = std::clamp<size_t>((high_ - low_ - shortest_) / (window_ + 1), 1, kEnds);
    for (size_t k = 1; k <= ends; ++k) {
      SearchEnd(low_ + shortest_ + (high_ - low_ - shortest_) * k / ends, coarse, exact);
    }
    return Ranked();
  }

 private:
  // Searches all lengths of loops that end near `end`, the frame after the last one.
  void SearchEnd(size_t end, const Likeness& coarse, const Likeness& exact) {
    const size_t half = window_ / 2;
    const size_t coarseWindow = std::max<size_t>(window_ / factor_, 1);
    const size_t first = low_ > half ? (low_ - half) / factor_ : 0;
    size_t other = end > half ? (end - half) / factor_ : 0;
    other = std::min(other, coarse.Frames() - coarseWindow);
    const size_t limit = other - std::min(other, shortest_ / factor_);
    if (limit <= first + 2) return;
    const std::vector<float> distances =
        coarse.Distances(first, limit - first, other, coarseWindow);
    const JumpRating rating(sound_, end, SlideFrames());
    // The most similar start of each range of lengths.
    double length = static_cast<double>(shortest_) / static_cast<double>(factor_);
    const size_t longest = other - first;
    while (length < static_cast<double>(longest)) {
      const double next = length * kLengthRatio;
      const size_t from = longest - std::min(longest, static_cast<size_t>(next));
      const size_t to = std::min(longest - static_cast<size_t>(length), distances.size());
      if (from < to) {
        const auto best = std::min_element(distances.begin() + static_cast<std::ptrdiff_t>(from),
                                           distances.begin() + static_cast<std::ptrdiff_t>(to));
        const size_t place = first + static_cast<size_t>(best - distances.begin());
        Refine((other - place) * factor_, end, exact, rating);
      }
      length = next;
    }
  }

  // Finds the exact length near `length`, and the best place of a loop of this length near `end`.
  void Refine(size_t length, size_t end, const Likeness& exact, const JumpRating& rating) {
    const size_t reach = factor_ + 1;
    const size_t half = std::min(window_ / 2, end - low_);
    const size_t other = std::min(end - half, exact.Frames() - window_);
    const size_t middle = other - std::min(other, length);
    const size_t first = middle > reach ? middle - reach : 0;
    const size_t last = std::min(middle + reach, other - std::min(other, shortest_));
    if (last < first) return;
    const std::vector<float> distances = exact.Distances(first, last - first + 1, other, window_);
    const auto best = std::min_element(distances.begin(), distances.end());
    const size_t found = other - (first + static_cast<size_t>(best - distances.begin()));
    Slide(found, end, static_cast<double>(*best), rating);
  }

  // Moves a loop of `length` to the place near `end` with the best seam.
  void Slide(size_t length, size_t end, double distance, const JumpRating& rating) {
    const size_t reach = SlideFrames();
    const size_t lowEnd =
        std::max({low_ + length, end > reach ? end - reach : 0, rating.FirstEnd()});
    const size_t highEnd = std::min(end + reach, high_);
    if (lowEnd > highEnd) return;
    FoundLoop best{};
    double least = std::numeric_limits<double>::infinity();
    for (size_t at = lowEnd; at <= highEnd; ++at) {
      const double rate = rating.Rate(at - length, at, least);
      if (rate >= least) continue;
      least = rate;
      best.loop = {at - length, at - 1};
    }
    best.seamDb = Decibels(least);
    best.likeness = 1 - distance;
    best.cost = Cost(best);
    found_.push_back(best);
  }

  size_t SlideFrames() const { return static_cast<size_t>(kSlideSeconds * sound_.rateHz); }

  double Cost(const FoundLoop& found) const {
    const double seconds = static_cast<double>(found.loop.Length()) / sound_.rateHz;
    const double seam = std::max(found.seamDb, 0.0);
    return seam * (wish_.crossfadeFrames > 0 ? kCrossfadedSeam : 1) +
           kLevelWeight * std::fabs(found.steps.levelDb) + found.steps.spectrumDb +
           kDistanceDb * (1 - found.likeness) +
           kShortDb * std::max(0.0, std::log2(kLongSeconds / seconds)) +
           kVeryShortDb * std::max(0.0, std::log2(kShortestSeconds / seconds));
  }

  bool Differs(const FoundLoop& found, const std::vector<FoundLoop>& others) const {
    const auto near = static_cast<size_t>(std::max(2 * wish_.periodFrames, 0.02 * sound_.rateHz));
    const auto apart = [near](size_t a, size_t b) { return (a > b ? a - b : b - a) >= near; };
    return std::all_of(others.begin(), others.end(), [&](const FoundLoop& other) {
      return apart(found.loop.first, other.loop.first) || apart(found.loop.last, other.loop.last);
    });
  }

  std::vector<FoundLoop> Ranked() {
    const auto cheaper = [](const FoundLoop& a, const FoundLoop& b) {
      if (a.cost != b.cost) return a.cost < b.cost;
      return std::pair(a.loop.first, a.loop.last) < std::pair(b.loop.first, b.loop.last);
    };
    std::sort(found_.begin(), found_.end(), cheaper);
    // The best kRated are rated more exactly and ordered by that. It is always the same number, so
    // that the best loop does not depend on how many are wanted.
    std::vector<FoundLoop> kept;
    const size_t wanted = std::max(kRated, wish_.most);
    for (const FoundLoop& found : found_) {
      if (kept.size() == wanted) break;
      if (Differs(found, kept)) kept.push_back(found);
    }
    for (FoundLoop& found : kept) {
      found.steps = StepsOf(sound_, found.loop);
      found.seamDb = RoughSeamDecibels(sound_, found.loop);
      found.cost = Cost(found);
    }
    const size_t rated = std::min(kRated, kept.size());
    std::sort(kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(rated), cheaper);
    if (kept.size() > wish_.most) kept.resize(wish_.most);
    for (FoundLoop& found : kept) found.seamDb = SeamDecibels(sound_, found.loop);
    return kept;
  }

  const Sound& sound_;
  const LoopWish& wish_;
  size_t frames_;
  size_t shortest_ = 0;
  size_t margin_ = 0;  // fewest frames before a loop's start
  size_t low_ = 0;     // earliest start
  size_t high_ = 0;    // latest frame after the end
  size_t window_ = 0;
  size_t factor_ = 1;  // frames per coarse value
  std::vector<FoundLoop> found_;
};

}  // namespace

std::vector<FoundLoop> FindLoops(const Sound& sound, const LoopWish& wish) {
  if (sound.Frames() == 0) return {};
  return Search(sound, wish).Run();
}

}  // namespace zyl::audio
