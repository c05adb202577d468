// Speed of the pitch tracker on one thread: the whole job (16-bit mono sample at 44.1 kHz to
// corrected track, default settings) compared with aubio's trackers at the same hop and a buffer of
// 2048 frames, and with the plain evaluation of the formulas. All of them run in every round; a
// line shows the median over the rounds of the ratio within a round, and the bar.

#include <aubio/aubio.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Measure.h"
#include "pitch/PlainPitchTracker.h"
#include "pitch/SamplePitchTracker.h"

namespace {

constexpr double kRateHz = 44100.0;
constexpr int kFrames = 88200;
constexpr int kHop = 128;
constexpr int kRounds = 15;

using Sound = std::vector<int16_t>;

// Ten tones of six partials, two per octave from 55 Hz up.
std::vector<Sound> Tones() {
  std::vector<Sound> tones;
  for (int n = 0; n < 10; ++n) {
    const double pitchHz = 55.0 * std::pow(2.0, n / 2.0);
    Sound tone(kFrames);
    for (int i = 0; i < kFrames; ++i) {
      double value = 0;
      for (int k = 1; k <= 6; ++k) {
        value += std::sin(2.0 * 3.141592653589793 * k * pitchHz * i / kRateHz + k) / k;
      }
      tone[static_cast<size_t>(i)] = static_cast<int16_t>(std::lround(8000 * value));
    }
    tones.push_back(tone);
  }
  return tones;
}

std::vector<Sound> Noises() {
  std::vector<Sound> noises;
  for (unsigned seed = 1; seed <= 4; ++seed) {
    std::mt19937 random(seed);
    Sound noise(kFrames);
    for (int16_t& value : noise) value = static_cast<int16_t>(random() % 32768 - 16384);
    noises.push_back(noise);
  }
  return noises;
}

volatile float sink;

void RunTracker(const Sound& sound, const zyl::PitchKernels& kernels) {
  const auto* const data = reinterpret_cast<const std::byte*>(sound.data());
  SamplePitchTracker tracker({&data, 1, 2, static_cast<int32_t>(sound.size()), kRateHz});
  tracker.UseKernels(kernels);
  sink = zyl::AnalyzePitch(tracker, {}, nullptr).value().back();
}

void RunPlain(const Sound& sound) {
  std::vector<double> frames(sound.size());
  std::transform(sound.begin(), sound.end(), frames.begin(), [](int16_t v) { return v * 0x1p-15; });
  std::vector<float> track = PlainTracker(frames, kRateHz, {}).Run();
  PlainCorrectOctaveErrors(track, 10);
  PlainCorrectOctaveErrors(track, 10);
  sink = track.back();
}

void RunAubio(const Sound& sound, const char* method) {
  aubio_pitch_t* const pitch = new_aubio_pitch(method, 2048, kHop, static_cast<uint_t>(kRateHz));
  fvec_t* const in = new_fvec(kHop);
  fvec_t* const out = new_fvec(1);
  for (size_t at = 0; at + kHop <= sound.size(); at += kHop) {
    for (size_t i = 0; i < kHop; ++i) in->data[i] = static_cast<float>(sound[at + i]) * 0x1p-15F;
    aubio_pitch_do(pitch, in, out);
  }
  sink = out->data[0];
  del_fvec(out);
  del_fvec(in);
  del_aubio_pitch(pitch);
}

// Processor time, so that other processes have little influence.
double CpuSeconds(const std::vector<Sound>& sounds, const std::function<void(const Sound&)>& run) {
  const std::clock_t start = std::clock();
  for (const Sound& sound : sounds) run(sound);
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

struct Rival {
  const char* name;
  std::function<void(const Sound&)> run;
  bench::Bar bar;
};

void Compare(const char* what, const std::vector<Sound>& sounds, const std::vector<Rival>& rivals) {
  std::vector<std::vector<double>> ratios(rivals.size());
  std::vector<double> own;
  const auto ours = [](const Sound& sound) { RunTracker(sound, zyl::BestPitchKernels()); };
  CpuSeconds(sounds, ours);
  for (int round = 0; round < kRounds; ++round) {
    own.push_back(CpuSeconds(sounds, ours));
    for (size_t i = 0; i < rivals.size(); ++i) {
      ratios[i].push_back(CpuSeconds(sounds, rivals[i].run) / own.back());
    }
  }
  const double blocks = static_cast<double>(sounds.size()) * kFrames / kHop;
  bench::Report(std::string("pitch of ") + what + ", us per block",
                bench::Median(own) / blocks * 1e6, bench::kNoBar);
  for (size_t i = 0; i < rivals.size(); ++i) {
    bench::Report(std::string("pitch of ") + what + ", times " + rivals[i].name,
                  bench::Median(ratios[i]), rivals[i].bar);
  }
}

}  // namespace

int main() {
  const auto yinfft = [](const Sound& sound) { RunAubio(sound, "yinfft"); };
  const auto yinfast = [](const Sound& sound) { RunAubio(sound, "yinfast"); };
  const auto baseline = [](const Sound& sound) {
    RunTracker(sound, *zyl::RunnablePitchKernels().front());
  };
  Compare("tones", Tones(),
          {{"aubio's yinfft", yinfft, bench::AtLeast(20)},
           {"aubio's yinfast", yinfast, bench::AtLeast(30)},
           {"the plain evaluation", RunPlain, bench::AtLeast(4.5)},
           {"the baseline kernels", baseline, bench::kNoBar}});
  Compare("noise", Noises(),
          {{"aubio's yinfft", yinfft, bench::AtLeast(15)},
           {"aubio's yinfast", yinfast, bench::AtLeast(23)},
           {"the plain evaluation", RunPlain, bench::AtLeast(15)},
           {"the baseline kernels", baseline, bench::kNoBar}});
  aubio_cleanup();
}
