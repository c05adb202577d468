// Accuracy of the pitch tracker and of aubio's methods on the same synthetic sounds, as Markdown
// tables. 30 pitches from 55 Hz to 1500 Hz at equal ratios, four kinds of sound, one second each,
// 16-bit at 44.1 kHz. Hop 128 frames for all, buffer 2048 for aubio, default settings.
//
// A value is right within 50 cents of the true pitch, an octave error within 50 cents of a multiple
// or fraction of it up to 6, none if there is no pitch, and otherwise wrong. Methods report with
// different delays: each is compared at the delay, in steps of a hop, with the most right values,
// and among those with the lowest median error.

#include <aubio/aubio.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Measure.h"
#include "pitch/SamplePitchTracker.h"

namespace {

constexpr double kRateHz = 44100.0;
constexpr double kPi = 3.141592653589793;
constexpr int kFrames = 44100;
constexpr int kHop = 128;
constexpr int kPitches = 30;
constexpr int kMargin = 4096;  // frames at either end that are not judged
constexpr int kLongestDelay = 2048;

struct Kind {
  const char* name;
  std::function<double(int)> level;  // of partial k
  double inharmonicity;              // partial k at k f sqrt(1 + B k^2)
  double vibratoCents;               // to either side, 5.5 times a second
};

const std::array<Kind, 4> kKinds = {{
    {"harmonic", [](int k) { return 1.0 / k; }, 0, 0},
    {"weak fundamental", [](int k) { return k == 1 ? 0.05 : 1.0 / k; }, 0, 0},
    {"inharmonic", [](int k) { return 1.0 / k; }, 0.0005, 0},
    {"vibrato", [](int k) { return 1.0 / k; }, 0, 50},
}};

struct Sound {
  std::vector<int16_t> values;
  std::vector<double> pitchHz;  // true pitch at each frame
};

double PitchHz(int index) { return 55.0 * std::pow(1500.0 / 55.0, index / (kPitches - 1.0)); }

Sound MakeSound(const Kind& kind, double pitchHz) {
  Sound sound;
  double cycles = 0;
  for (int i = 0; i < kFrames; ++i) {
    const double cents = kind.vibratoCents * std::sin(2 * kPi * 5.5 * i / kRateHz);
    const double now = pitchHz * std::exp2(cents / 1200);
    double value = 0;
    for (int k = 1; k <= 12; ++k) {
      const double ratio = k * std::sqrt(1 + kind.inharmonicity * k * k);
      if (ratio * now > 16000) break;
      value += kind.level(k) * std::sin(2 * kPi * ratio * cycles + 0.7 * k * k);
    }
    sound.values.push_back(static_cast<int16_t>(std::lround(7000 * value)));
    // The perceived pitch of an inharmonic sound is near its lowest partial.
    sound.pitchHz.push_back(now * std::sqrt(1 + kind.inharmonicity));
    cycles += now / kRateHz;
  }
  return sound;
}

// Pitch in Hz per hop, 0 for none. Value i of a track belongs to frame i * 128.
std::vector<double> OwnPitches(const Sound& sound) {
  const auto* const data = reinterpret_cast<const std::byte*>(sound.values.data());
  SamplePitchTracker tracker({&data, 1, 2, kFrames, kRateHz});
  const std::vector<float> track = zyl::AnalyzePitch(tracker, {}, nullptr).value();
  std::vector<double> pitches;
  pitches.reserve(track.size());
  for (const float period : track) pitches.push_back(period > 0 ? kRateHz / period : 0);
  return pitches;
}

std::vector<double> AubioPitches(const Sound& sound, const char* method) {
  aubio_pitch_t* const pitch = new_aubio_pitch(method, 2048, kHop, static_cast<uint_t>(kRateHz));
  aubio_pitch_set_unit(pitch, "Hz");
  fvec_t* const in = new_fvec(kHop);
  fvec_t* const out = new_fvec(1);
  std::vector<double> pitches;
  for (size_t at = 0; at + kHop <= sound.values.size(); at += kHop) {
    for (size_t i = 0; i < kHop; ++i) {
      in->data[i] = static_cast<float>(sound.values[at + i]) * 0x1p-15F;
    }
    aubio_pitch_do(pitch, in, out);
    pitches.push_back(static_cast<double>(out->data[0]));
  }
  del_fvec(out);
  del_fvec(in);
  del_aubio_pitch(pitch);
  return pitches;
}

struct Score {
  double right = 0, octave = 0, wrong = 0, none = 0;
  std::vector<double> cents;  // of right values

  void Add(double pitchHz, double trueHz) {
    if (!(pitchHz > 0)) {
      none += 1;
      return;
    }
    const double error = 1200 * std::log2(pitchHz / trueHz);
    if (std::fabs(error) <= 50) {
      right += 1;
      cents.push_back(std::fabs(error));
      return;
    }
    for (int k = 2; k <= 6; ++k) {
      if (std::fabs(std::fabs(error) - 1200 * std::log2(k)) <= 50) {
        octave += 1;
        return;
      }
    }
    wrong += 1;
  }
  void Add(const Score& other) {
    right += other.right;
    octave += other.octave;
    wrong += other.wrong;
    none += other.none;
    cents.insert(cents.end(), other.cents.begin(), other.cents.end());
  }
  double Percent(double part) const { return 100 * part / (right + octave + wrong + none); }
  // Error that `share` of the right values stay below.
  double Cents(double share) const {
    if (cents.empty()) return 0;
    std::vector<double> sorted = cents;
    std::sort(sorted.begin(), sorted.end());
    return sorted[static_cast<size_t>(share * static_cast<double>(sorted.size() - 1))];
  }
};

// `sign` is +1 for a tracker whose values belong to the start of the window, -1 for the end.
Score ScoreAt(const Sound& sound, const std::vector<double>& pitches, int delay, int sign) {
  Score score;
  for (int i = kMargin / kHop; i < (kFrames - kMargin) / kHop; ++i) {
    const int frame = std::clamp(i * kHop + sign * delay, 0, kFrames - 1);
    score.Add(pitches[static_cast<size_t>(i)], sound.pitchHz[static_cast<size_t>(frame)]);
  }
  return score;
}

// Scores by pitch, all at the method's best delay.
std::vector<Score> BestScores(const std::vector<Sound>& sounds,
                              const std::vector<std::vector<double>>& pitches, int sign) {
  std::vector<Score> best;
  double bestRight = -1;
  double bestCents = 0;
  for (int delay = 0; delay <= kLongestDelay; delay += kHop) {
    std::vector<Score> scores;
    Score total;
    for (size_t n = 0; n < sounds.size(); ++n) {
      scores.push_back(ScoreAt(sounds[n], pitches[n], delay, sign));
      total.Add(scores.back());
    }
    const double cents = total.Cents(0.5);
    if (total.right > bestRight || (total.right == bestRight && cents < bestCents)) {
      best = scores;
      bestRight = total.right;
      bestCents = cents;
    }
  }
  return best;
}

void PrintTroubles(const Kind& kind, const std::vector<Score>& scores) {
  std::printf("\n%s, pitches of which this tracker gets less than 95 %% right:", kind.name);
  bool any = false;
  for (int n = 0; n < kPitches; ++n) {
    const Score& score = scores[static_cast<size_t>(n)];
    if (score.Percent(score.right) >= 95) continue;
    std::printf("%s %.1f Hz (%.0f %% right, %.0f %% octave, %.0f %% wrong, %.0f %% none)",
                any ? "," : "", PitchHz(n), score.Percent(score.right), score.Percent(score.octave),
                score.Percent(score.wrong), score.Percent(score.none));
    any = true;
  }
  std::printf("%s.\n", any ? "" : " none");
}

void PrintNoise() {
  std::mt19937 random(1);
  Sound noise;
  for (int i = 0; i < kFrames; ++i) {
    noise.values.push_back(static_cast<int16_t>(random() % 32768 - 16384));
  }
  const std::vector<double> pitches = OwnPitches(noise);
  const auto voiced = std::count_if(pitches.begin(), pitches.end(), [](double p) { return p > 0; });
  std::printf("\nWhite noise: this tracker gives %.0f %% of the blocks a period.\n",
              100.0 * static_cast<double>(voiced) / static_cast<double>(pitches.size()));
}

// Reports only this tracker's totals, for `./dev bench`.
void ReportOwn() {
  for (const Kind& kind : kKinds) {
    std::vector<Sound> sounds;
    std::vector<std::vector<double>> pitches;
    for (int n = 0; n < kPitches; ++n) {
      sounds.push_back(MakeSound(kind, PitchHz(n)));
      pitches.push_back(OwnPitches(sounds.back()));
    }
    Score total;
    for (const Score& score : BestScores(sounds, pitches, 1)) total.Add(score);
    bench::Report(std::string("pitch of ") + kind.name + " sounds, percent right",
                  total.Percent(total.right), bench::kNoBar);
  }
}

}  // namespace

int main() {
  if (bench::ResultsFile() != nullptr) {
    ReportOwn();
    return 0;
  }
  std::array<std::vector<Score>, kKinds.size()> own;
  std::printf(
      "| sound | method | right %% | octave error %% | wrong %% | none %% | "
      "median error, cents | 95th percentile, cents |\n");
  std::printf("|---|---|---:|---:|---:|---:|---:|---:|\n");
  for (size_t kind = 0; kind < kKinds.size(); ++kind) {
    std::vector<Sound> sounds;
    sounds.reserve(kPitches);
    for (int n = 0; n < kPitches; ++n) sounds.push_back(MakeSound(kKinds[kind], PitchHz(n)));
    for (const char* method :
         {"this tracker", "yin", "yinfast", "yinfft", "mcomb", "fcomb", "schmitt", "specacf"}) {
      const bool isOwn = std::string(method) == "this tracker";
      std::vector<std::vector<double>> pitches;
      pitches.reserve(kPitches);
      for (const Sound& sound : sounds) {
        pitches.push_back(isOwn ? OwnPitches(sound) : AubioPitches(sound, method));
      }
      const std::vector<Score> scores = BestScores(sounds, pitches, isOwn ? 1 : -1);
      if (isOwn) own[kind] = scores;
      Score total;
      for (const Score& score : scores) total.Add(score);
      std::printf("| %s | %s%s | %.1f | %.1f | %.1f | %.1f | %.1f | %.1f |\n", kKinds[kind].name,
                  isOwn ? "" : "aubio ", method, total.Percent(total.right),
                  total.Percent(total.octave), total.Percent(total.wrong),
                  total.Percent(total.none), total.Cents(0.5), total.Cents(0.95));
    }
  }
  for (size_t kind = 0; kind < kKinds.size(); ++kind) PrintTroubles(kKinds[kind], own[kind]);
  PrintNoise();
  aubio_cleanup();
  return 0;
}
