#include "audio/Onsets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "audio/Levels.h"
#include "audio/Prediction.h"

namespace zyl::audio {

namespace {

constexpr size_t kBands = 36;
constexpr double kLowestHz = 45;
constexpr double kBandsPerOctave = 4;
constexpr double kQuality = 5.8;  // neighbouring bands meet at -3 dB
constexpr double kBlockSeconds = 0.005;
constexpr size_t kBlocksAfter = 12;  // 60 ms
constexpr size_t kBlocksBefore = 6;  // 30 ms
constexpr float kRelevantDb = 35;    // below the loudest band
constexpr float kNoisePart = 0.02F;  // the part of the recording that is at most noise
constexpr float kAboveNoiseDb = 3;
constexpr float kRangeDb = 80;        // below the loudest moment: counts as noise
constexpr float kNoteDb = 50;         // a note reaches at least this below the loudest moment
constexpr size_t kSilentBlocks = 20;  // 0.1 s
constexpr size_t kSlowBlocks = 60;    // 0.3 s: the longest slow attack
constexpr float kClearDb = 15;        // that a sound reaches above the noise
constexpr float kMostRise = 30;
constexpr float kLeastRise = 4;
constexpr float kLeastCountedRise = 1.5F;  // if the number of notes is known
constexpr float kDropWeight = 1.0F / 3;
constexpr double kFitSeconds = 0.12;    // of the predictor, before an onset
constexpr double kEarlySeconds = 0.06;  // an onset is at most this before the largest rise
constexpr double kLateSeconds = 0.07;
constexpr double kCellSeconds = 0.001;  // resolution of an onset
constexpr size_t kTailCells = 30;
constexpr size_t kAttackCells = 10;
constexpr double kLeastResidual = 5e-6;
constexpr std::ptrdiff_t kConfirmedCells = 7;  // of the following eight
// A slow attack rises in power at most by kSlowRise, at least by 1 / kRising, in kRiseCells.
constexpr size_t kRiseCells = 8;
constexpr size_t kMostRiseCells = 60;
constexpr double kSlowRise = 2.5;
constexpr double kRising = 0.9;
// Amplitudes of a new note over the tail, in the residual: the next one if the first finds nothing.
constexpr std::array kOverTail = {1.4, 1.2, 1.08};
constexpr double kEndDb = -60;        // a note ends at this level relative to its peak,
constexpr double kLeastFadeDb = -20;  // or in the noise, but not above this level
constexpr double kSilenceDb = -30;    // relative to the loudest moment

size_t BlockFrames(const Sound& sound) {
  return std::max<size_t>(1, static_cast<size_t>(kBlockSeconds * sound.rateHz));
}

using Spectrum = std::array<float, kBands>;

// In silence the filters would decay into denormal numbers, which are slow.
void FlushState(Spectrum& y1, Spectrum& y2) {
  constexpr float kLeast = 1e-20F;
  for (size_t i = 0; i < kBands; ++i) {
    if (std::fabs(y1[i]) < kLeast && std::fabs(y2[i]) < kLeast) y1[i] = y2[i] = 0;
  }
}

// The levels of the bands of all channels in dB, one spectrum for each block. Band-pass filters of
// second order, the bands side by side so that the compiler vectorises them.
std::vector<Spectrum> BandLevels(const Sound& sound) {
  std::array<float, kBands> b0{};
  std::array<float, kBands> a1{};
  std::array<float, kBands> a2{};
  for (size_t i = 0; i < kBands; ++i) {
    const double hertz = kLowestHz * std::exp2(static_cast<double>(i) / kBandsPerOctave);
    if (hertz > 0.45 * sound.rateHz) break;  // the band stays silent
    const double w = 2 * std::numbers::pi * hertz / sound.rateHz;
    const double alpha = std::sin(w) / (2 * kQuality);
    b0[i] = static_cast<float>(alpha / (1 + alpha));
    a1[i] = static_cast<float>(-2 * std::cos(w) / (1 + alpha));
    a2[i] = static_cast<float>((1 - alpha) / (1 + alpha));
  }
  const size_t block = BlockFrames(sound);
  std::vector<Spectrum> levels((sound.Frames() + block - 1) / block);
  for (const auto& channel : sound.channels) {
    Spectrum y1{};
    Spectrum y2{};
    float x1 = 0;
    float x2 = 0;
    for (size_t n = 0; n < channel.size(); ++n) {
      const float x = channel[n];
      const float difference = x - x2;
      x2 = x1;
      x1 = x;
      if (n % block == 0) FlushState(y1, y2);
      Spectrum& energy = levels[n / block];
      for (size_t i = 0; i < kBands; ++i) {
        const float y = b0[i] * difference - a1[i] * y1[i] - a2[i] * y2[i];
        y2[i] = y1[i];
        y1[i] = y;
        energy[i] += y * y;
      }
    }
  }
  const float scale = 1.0F / static_cast<float>(block * sound.channels.size());
  for (Spectrum& spectrum : levels) {
    for (float& level : spectrum) level = 10 * std::log10(level * scale + 1e-14F);
  }
  return levels;
}

// The level that the quietest part of a recording has at most. Reorders `levels`.
float QuietLevel(std::vector<float>& levels) {
  const auto place = levels.begin() + static_cast<std::ptrdiff_t>(
                                          kNoisePart * static_cast<float>(levels.size() - 1));
  std::nth_element(levels.begin(), place, levels.end());
  return *place;
}

// Raises each band to its noise, which is what the quietest part of the recording has.
void RaiseToNoise(std::vector<Spectrum>& levels) {
  float loudest = -200;
  for (const Spectrum& spectrum : levels) {
    loudest = std::max(loudest, *std::max_element(spectrum.begin(), spectrum.end()));
  }
  std::vector<float> sorted(levels.size());
  for (size_t i = 0; i < kBands; ++i) {
    for (size_t t = 0; t < levels.size(); ++t) sorted[t] = levels[t][i];
    const float noise = std::max(QuietLevel(sorted) + kAboveNoiseDb, loudest - kRangeDb);
    for (Spectrum& spectrum : levels) spectrum[i] = std::max(spectrum[i], noise);
  }
}

// The largest level of each band in the blocks first ... end - 1.
Spectrum Largest(const std::vector<Spectrum>& levels, size_t first, size_t end) {
  Spectrum most = levels[first];
  for (size_t t = first + 1; t < end; ++t) {
    for (size_t i = 0; i < kBands; ++i) most[i] = std::max(most[i], levels[t][i]);
  }
  return most;
}

// What speaks for an onset at one block, in dB.
struct Evidence {
  float bands = 0;    // mean rise of the bands
  float loudest = 0;  // the loudest band after it
};

std::vector<Evidence> EvidenceOf(const std::vector<Spectrum>& levels) {
  const size_t count = levels.size();
  Spectrum floor = levels[0];
  for (const Spectrum& spectrum : levels) {
    for (size_t i = 0; i < kBands; ++i) floor[i] = std::min(floor[i], spectrum[i]);
  }
  std::vector<Evidence> evidence(count);
  for (size_t t = 0; t < count; ++t) {
    const size_t first = t > kBlocksBefore ? t - kBlocksBefore : 0;
    const size_t end = std::min(t + kBlocksAfter, count);
    const Spectrum after = Largest(levels, t, end);
    const Spectrum before = t == 0 ? floor : Largest(levels, first, t);
    Evidence& found = evidence[t];
    found.loudest = *std::max_element(after.begin(), after.end());
    float sum = 0;
    float bands = 0;
    for (size_t i = 0; i < kBands; ++i) {
      if (after[i] < found.loudest - kRelevantDb) continue;
      sum += std::clamp(after[i] - before[i], 0.0F, kMostRise);
      ++bands;
    }
    found.bands = sum / bands;
  }
  return evidence;
}

// The blocks at which the level `total` rises from silence, however slowly.
std::vector<size_t> EndsOfSilence(const std::vector<float>& total) {
  std::vector<float> sorted = total;
  const float loudest = *std::max_element(total.begin(), total.end());
  const float silence = std::max(QuietLevel(sorted) + kAboveNoiseDb, loudest - kRangeDb);
  if (silence > loudest - kNoteDb) return {};  // no pauses
  std::vector<size_t> ends;
  size_t silent = 0;  // blocks before t
  for (size_t t = 0; t < total.size(); ++t) {
    if (total[t] <= silence) {
      ++silent;
      continue;
    }
    const auto after = total.begin() + static_cast<std::ptrdiff_t>(t);
    const auto end = after + static_cast<std::ptrdiff_t>(std::min(kSlowBlocks, total.size() - t));
    if (silent >= kSilentBlocks &&
        *std::max_element(after, end) >= std::max(silence + kClearDb, loudest - kNoteDb)) {
      ends.push_back(t);
    }
    silent = 0;
  }
  return ends;
}

// The blocks of onsets.
std::vector<size_t> Choose(const std::vector<Evidence>& evidence, const std::vector<float>& total,
                           const OnsetWish& wish) {
  float loudest = -200;
  for (const Evidence& it : evidence) loudest = std::max(loudest, it.loudest);
  // The largest rises of the bands; others nearby belong to the same onset.
  std::vector<size_t> order;
  for (size_t t = 0; t < evidence.size(); ++t) {
    if (evidence[t].loudest < loudest - kNoteDb) continue;
    if (evidence[t].bands >= (wish.count > 0 ? kLeastCountedRise : kLeastRise)) order.push_back(t);
  }
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return evidence[a].bands > evidence[b].bands; });
  std::vector<size_t> peaks;
  std::vector<bool> taken(evidence.size());
  for (const size_t t : order) {
    if (taken[t]) continue;
    peaks.push_back(t);
    const size_t end = std::min(t + kBlocksAfter, taken.size());
    for (size_t k = t > kBlocksAfter ? t - kBlocksAfter : 0; k < end; ++k) taken[k] = true;
  }
  std::sort(peaks.begin(), peaks.end());

  const auto limit = static_cast<float>(wish.scoreDb);
  const auto apart = static_cast<size_t>(wish.shortestSeconds / kBlockSeconds);
  std::vector<std::pair<float, size_t>> scores;  // score and block
  size_t previous = 0;                           // block of the previous onset
  for (const size_t t : peaks) {
    const size_t first = t > kBlocksBefore ? t - kBlocksBefore : 0;
    const float before = t == 0 ? 0 : *std::max_element(&total[first], &total[t]);
    const float most = t == 0 ? 0 : *std::max_element(&total[std::min(previous, first)], &total[t]);
    const float score = evidence[t].bands + kDropWeight * (most - before);
    if (score >= limit) previous = t;
    if (score >= limit || wish.count > 0) scores.emplace_back(score, t);
  }
  for (const size_t t : EndsOfSilence(total)) {
    const bool isFound = std::any_of(scores.begin(), scores.end(), [&](const auto& it) {
      return it.first >= limit && it.second + kBlocksAfter >= t && it.second < t + kSlowBlocks;
    });
    if (!isFound) scores.emplace_back(kMostRise, t);
  }
  std::stable_sort(scores.begin(), scores.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  // The clearest first, so that an unclear one nearby does not take its place.
  std::vector<std::pair<float, size_t>> chosen;
  for (const auto& it : scores) {
    if (wish.count > 0 && chosen.size() == wish.count) break;
    if (std::none_of(chosen.begin(), chosen.end(), [&](const auto& other) {
          return it.second < other.second + apart && other.second < it.second + apart;
        })) {
      chosen.push_back(it);
    }
  }
  std::vector<size_t> blocks;
  blocks.reserve(chosen.size());
  for (const auto& [score, t] : chosen) blocks.push_back(t);
  std::sort(blocks.begin(), blocks.end());
  return blocks;
}

// The magnitudes of what a predictor fitted to the sound before `early` does not predict.
struct Unpredicted {
  size_t start;  // frame of the first value
  size_t cell;   // values per cell
  std::vector<float> residual;
  std::vector<double> cells;  // RMS

  // The first cell from `first` on whose values and the following ones exceed `over` times those
  // before it; the number of cells if there is none. They are compared with the loudest of 30 ms,
  // so that the pulses of a low tone are not taken for a note, and these end some cells before, so
  // that a slow attack exceeds them too.
  size_t FirstAbove(size_t first, double over, double& limit) const {
    for (size_t i = first; i + 8 < cells.size(); ++i) {
      double tail = kLeastResidual;
      for (size_t k = i - std::min(i, kTailCells + kAttackCells); k + kAttackCells < i; ++k) {
        tail = std::max(tail, cells[k]);
      }
      limit = over * tail;
      if (cells[i] <= limit) continue;
      const double least = limit;
      const auto confirmed = std::count_if(&cells[i + 1], &cells[i + 9],
                                           [least](double level) { return level > least; });
      if (confirmed >= kConfirmedCells) return i;
    }
    return cells.size();
  }

  // The cell at which the rise to cell `found` begins, if it is slow.
  size_t StartOfRise(size_t found) const {
    const auto power = [this](size_t first) {
      double sum = 0;
      const size_t end = std::min(first + kRiseCells, cells.size());
      for (size_t i = first; i < end; ++i) sum += cells[i] * cells[i];
      return sum;
    };
    size_t at = found;
    double level = power(at);
    if (at < kRiseCells || level > kSlowRise * power(at - kRiseCells)) return found;
    while (at >= kRiseCells && found - at < kMostRiseCells) {
      const double before = power(at - kRiseCells);
      if (before > kRising * level) break;
      at -= kRiseCells;
      level = before;
    }
    return at;
  }
};

Unpredicted Predict(const Sound& sound, Channel channel, size_t early, size_t late) {
  const auto fit = static_cast<size_t>(kFitSeconds * sound.rateHz);
  const size_t first = early > fit ? early - fit : 0;
  const std::array sections = {channel.subspan(first, early - first)};
  Unpredicted it{first + kPredictionOrder,
                 std::max<size_t>(1, static_cast<size_t>(kCellSeconds * sound.rateHz)),
                 {},
                 {}};
  const size_t end = std::min(late + 8 * it.cell, channel.size());
  it.residual = Predictor(sections).Residual(channel.subspan(first, end - first));
  for (size_t at = 0; at + it.cell <= it.residual.size(); at += it.cell) {
    double sum = 0;
    for (size_t i = at; i < at + it.cell; ++i) {
      const auto x = static_cast<double>(it.residual[i]);
      sum += x * x;
    }
    it.cells.push_back(std::sqrt(sum / static_cast<double>(it.cell)));
  }
  return it;
}

// The first frame from `early` to `late` that does not belong to the sound before `early`;
// `otherwise` if there is none.
size_t FirstUnpredicted(const Sound& sound, size_t early, size_t late, size_t otherwise) {
  std::vector<Unpredicted> channels;
  for (const auto& values : sound.channels) {
    channels.push_back(Predict(sound, values, early, late));
  }
  for (const double over : kOverTail) {
    size_t earliest = late;
    for (const Unpredicted& it : channels) {
      const size_t first = (std::max(early, it.start) - it.start) / it.cell;
      double limit = 0;
      const size_t found = it.FirstAbove(first, over, limit);
      if (found == it.cells.size()) continue;
      size_t at = found * it.cell;
      while (static_cast<double>(std::fabs(it.residual[at])) <= limit) ++at;
      const size_t rise = it.StartOfRise(found);
      if (rise < found) at = rise * it.cell;
      earliest = std::min(earliest, std::max(it.start + at, early));
    }
    if (earliest < late) return earliest;
  }
  return otherwise;
}

struct Onset {
  size_t frame;
  size_t place = 0;
  bool found = true;  // otherwise assumed at a place
};

// The notes with these onsets, which are in rising order. Each ends where it has faded, or where
// the next one begins.
std::vector<NoteRange> WithEnds(const Sound& sound, const std::vector<Onset>& onsets) {
  if (onsets.empty()) return {};
  const auto margin = static_cast<size_t>(kOnsetMarginSeconds * sound.rateHz);
  const auto start = [margin](const Onset& it) { return it.frame - std::min(it.frame, margin); };
  const size_t block = BlockFrames(sound);
  const std::vector<float> levels = BlockLevels(sound, block);
  std::vector<float> sorted = levels;
  const double noise =
      static_cast<double>(QuietLevel(sorted)) * FromDecibels(static_cast<double>(kAboveNoiseDb));
  const double loudest = static_cast<double>(*std::max_element(levels.begin(), levels.end()));
  std::vector<NoteRange> notes;
  for (size_t i = 0; i < onsets.size(); ++i) {
    const size_t first = start(onsets[i]);
    const size_t end = i + 1 < onsets.size() ? start(onsets[i + 1]) : sound.Frames();
    const size_t firstBlock = first / block;
    size_t last = std::max((end + block - 1) / block, firstBlock + 1) - 1;
    const size_t lastBlock = last;
    // The block of the next onset may already contain some of it.
    if (last > firstBlock && end < sound.Frames()) --last;
    const double peak =
        static_cast<double>(*std::max_element(&levels[firstBlock], &levels[last] + 1));
    const double silence = std::min(2 * noise, loudest * FromDecibels(kSilenceDb));
    const double faint = loudest * FromDecibels(static_cast<double>(-kNoteDb));
    if (!onsets[i].found && peak <= std::max(silence, faint)) continue;
    // Recordings without pauses have no noise to measure: their quietest part is a note.
    const double limit =
        std::max(std::min(noise, peak * FromDecibels(kLeastFadeDb)), peak * FromDecibels(kEndDb));
    while (last > firstBlock && static_cast<double>(levels[last]) <= limit) --last;
    const bool cut = end < sound.Frames() && last + 1 >= lastBlock;
    notes.push_back({first, cut ? end - 1 : std::min((last + 2) * block, end) - 1, cut,
                     onsets[i].frame, onsets[i].place});
  }
  return notes;
}

// Adds an onset unless it would begin in the margin of the previous one.
void Add(std::vector<Onset>& onsets, const Sound& sound, const Onset& onset) {
  const auto margin = static_cast<size_t>(kOnsetMarginSeconds * sound.rateHz);
  if (onsets.empty() || onset.frame > onsets.back().frame + margin) onsets.push_back(onset);
}

}  // namespace

std::vector<NoteRange> FindNotes(const Sound& sound, const OnsetWish& wish) {
  if (sound.Frames() == 0 || Peak(sound) == 0) return {};
  std::vector<Spectrum> levels = BandLevels(sound);
  RaiseToNoise(levels);
  std::vector<float> total = BlockLevels(sound, BlockFrames(sound));
  for (float& level : total) level = 20 * std::log10(level + 1e-7F);
  const std::vector<size_t> chosen = Choose(EvidenceOf(levels), total, wish);
  const size_t block = BlockFrames(sound);
  const auto early = static_cast<size_t>(kEarlySeconds * sound.rateHz);
  const auto late = static_cast<size_t>(kLateSeconds * sound.rateHz);
  std::vector<Onset> onsets;
  for (const size_t t : chosen) {
    const size_t at = t * block;
    Add(onsets, sound,
        {FirstUnpredicted(sound, at > early ? at - early : 0, std::min(at + late, sound.Frames()),
                          at)});
  }
  return WithEnds(sound, onsets);
}

std::vector<NoteRange> FindNotesAt(const Sound& sound, const std::vector<size_t>& places,
                                   size_t reach) {
  std::vector<Onset> onsets;
  for (size_t i = 0; i < places.size() && places[i] < sound.Frames(); ++i) {
    const size_t place = places[i];
    const size_t onset = FirstUnpredicted(sound, place > reach ? place - reach : 0, place, place);
    Add(onsets, sound, {onset, i, onset < place});
  }
  return WithEnds(sound, onsets);
}

}  // namespace zyl::audio
