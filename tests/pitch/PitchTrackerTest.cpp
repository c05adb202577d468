#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "PlainPitchTracker.h"
#include "pitch/PitchTracker.h"
#include "pitch/SamplePitchTracker.h"
#include "pitch/TrackCorrection.h"
#include "sample/ValueRanges.h"

namespace zyl::test {
namespace {

constexpr double kRateHz = 44100.0;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

std::vector<uint32_t> BitsOf(const std::vector<float>& track) {
  std::vector<uint32_t> bits;
  bits.reserve(track.size());
  for (const float value : track) bits.push_back(std::bit_cast<uint32_t>(value));
  return bits;
}

// Reads its frames one by one.
class FrameTracker : public PitchTracker {
 public:
  explicit FrameTracker(const std::vector<double>& frames)
      : output(frames.size() / 128 + 1), frames_(frames) {}
  double ReadFrame() override { return frames_[next_++]; }
  bool AtEnd() override { return next_ >= frames_.size(); }
  void StoreValue(int index, double value) override {
    output.at(static_cast<size_t>(index)) = static_cast<float>(value);
    if (index == abortAt) abort = true;
  }

  std::vector<float> output;
  int abortAt = -1;

 private:
  const std::vector<double>& frames_;
  size_t next_ = 0;
};

void Configure(PitchTracker& tracker, const PlainPitchSettings& settings, double rateHz) {
  tracker.SetMinPeriod(settings.minPeriodHz, rateHz);
  tracker.SetMaxPeriod(settings.maxPeriodHz, rateHz);
  tracker.SetThreshold(settings.silenceThreshold);
}

void ExpectPlainTrack(const std::vector<double>& frames, const PlainPitchSettings& settings,
                      const std::string& what) {
  const std::vector<uint32_t> plain = BitsOf(PlainTracker(frames, kRateHz, settings).Run());
  for (const zyl::PitchKernels* kernels : zyl::RunnablePitchKernels()) {
    FrameTracker tracker(frames);
    tracker.UseKernels(*kernels);
    Configure(tracker, settings, kRateHz);
    EXPECT_TRUE(tracker.Analyze(nullptr));
    EXPECT_EQ(BitsOf(tracker.output), plain) << what << ", " << kernels->name;
  }
}

std::vector<double> Generate(size_t count, const std::function<double(double)>& wave,
                             double steps = 32768) {
  std::vector<double> frames(count);
  for (size_t i = 0; i < count; ++i) {
    const double value = wave(static_cast<double>(i));
    frames[i] = steps > 0 ? std::round(value * steps) / steps : value;
  }
  return frames;
}

double Tone(double frame, double pitchHz) {
  return std::sin(2 * 3.141592653589793 * pitchHz * frame / kRateHz);
}

// Uniform in [0, 1).
double Random(std::mt19937& random) { return static_cast<double>(random()) / 4294967296.0; }

std::vector<double> Noise(size_t count, double level, unsigned seed) {
  std::mt19937 random(seed);
  return Generate(count, [&](double) { return level * (2 * Random(random) - 1); });
}

std::map<std::string, std::vector<double>> Signals() {
  const auto harmonic = [](double pitchHz) {
    return [pitchHz](double i) {
      return 0.3 * Tone(i, pitchHz) + 0.3 * Tone(i, 2 * pitchHz) + 0.2 * Tone(i, 3 * pitchHz);
    };
  };
  const auto impulses = [](double period) {
    return [period](double i) { return std::fmod(i, period) == 0 ? 1.0 : 0.0; };
  };
  const auto broken = [](double i) {
    return i == 3000 ? kNan : i == 6000 ? kInfinity : 0.5 * Tone(i, 200);
  };
  const auto decay = [](double i) { return std::exp(-i / 1500) * (Tone(i, 131) + Tone(i, 523)); };
  const auto contrast = [](double i) {
    return (std::fmod(i, 3000) < 700 ? 1.0 : 2e-4) * Tone(i, 330);
  };
  const auto glide = [](double i) { return 0.5 * Tone(i, 60 + i * i / 8e6) + 0.1 * Tone(i, 7000); };
  const auto square = [](double i) { return std::fmod(i, 256) < 128 ? 0.5 : -0.5; };
  const auto alternating = [](double i) { return std::fmod(i, 2) < 1 ? 1.0 : -1.0; };
  const auto tone = [](double level, double pitchHz) {
    return [level, pitchHz](double i) { return level * Tone(i, pitchHz); };
  };
  return {
      {"tone 55", Generate(20000, harmonic(55))},
      {"tone 110", Generate(20000, harmonic(110))},
      {"tone 1378.125", Generate(20000, harmonic(1378.125))},
      {"tone 2500", Generate(20000, harmonic(2500))},
      {"long glide", Generate(80001, glide)},
      {"one bit", Generate(20000, tone(0.2, 97), 8)},
      {"constant", Generate(40000, [](double) { return 0.3; })},
      {"least constant", Generate(9000, [](double) { return -1 / 32768.0; })},
      {"silence", std::vector<double>(9000)},
      {"step", Generate(45000, [](double i) { return i < 22000 ? 0.0 : 0.7; })},
      // The last two impulse signals peak at the longest possible lag and just beyond it.
      {"impulses 400", Generate(15000, impulses(400))},
      {"impulses 2036", Generate(15000, impulses(2036))},
      {"impulses 2040", Generate(15000, impulses(2040))},
      {"square", Generate(15000, square)},
      {"alternating", Generate(9000, alternating)},
      {"decay", Generate(60000, decay, 2147483648.0)},
      {"burst and rest", Generate(60000, [](double i) { return i < 2e4 ? Tone(i, 220) : 0.0; })},
      {"loud before faint", Generate(15000, contrast, 0)},
      {"sixteen full scale", Generate(9000, tone(16, 98))},
      {"tiny", Generate(9000, tone(1e-90, 200), 0)},
      {"denormal", Generate(9000, tone(1e-160, 200), 0)},
      {"huge", Generate(9000, tone(1e155, 200), 0)},
      {"broken", Generate(9000, broken, 0)},
      {"long noise", Noise(75000, 0.5, 1)},
      {"faint noise", Noise(12000, 0.005, 2)},
  };
}

TEST(PitchTracker, TracksEqualThePlainEvaluationBitByBit) {
  // The last ones have shortest and longest lags of 31 to 33 and 95 to 97, around the limits of
  // the groups that the screen processes.
  const PlainPitchSettings settings[] = {{},
                                         {2000, 50, 0},
                                         {500, 80, 1e-5},
                                         {8000, 20, 0},
                                         {100, 30, 1e-3},
                                         {355, 116, 0},
                                         {344, 114, 0},
                                         {334, 113, 0},
                                         {2000, 344, 0}};
  for (const auto& [name, frames] : Signals()) {
    for (const PlainPitchSettings& s : settings) {
      ExpectPlainTrack(frames, s, name + " " + std::to_string(s.minPeriodHz));
    }
  }
}

TEST(PitchTracker, AcceptsAnySettings) {
  const std::vector<double> tone = Generate(9000, [](double i) { return 0.4 * Tone(i, 147); });
  for (const std::vector<double>& frames : {tone, Noise(9000, 0.3, 3)}) {
    for (const int minPeriodHz : {0, 1, -1, -2000, 50, 22049, 22050, 30000, INT_MAX, INT_MIN}) {
      for (const int maxPeriodHz : {0, 1, -1, -50, 21, 22, 2000, 2756, INT_MAX, INT_MIN}) {
        for (const double threshold : {1e-5, kNan, -1.0, kInfinity}) {
          ExpectPlainTrack(frames, {minPeriodHz, maxPeriodHz, threshold},
                           std::to_string(minPeriodHz) + " " + std::to_string(maxPeriodHz));
        }
      }
    }
  }
  FrameTracker tracker(tone);
  Configure(tracker, {}, kNan);
  EXPECT_TRUE(tracker.Analyze(nullptr));
  for (const float value : tracker.output) EXPECT_TRUE(std::isfinite(value));
}

TEST(PitchTracker, AcceptsAnyLength) {
  const std::vector<double> all = Generate(5000, [](double i) { return 0.4 * Tone(i, 300); });
  for (size_t count = 0; count <= all.size(); ++count) {
    ExpectPlainTrack({all.begin(), all.begin() + static_cast<ptrdiff_t>(count)}, {},
                     std::to_string(count));
  }
  // Lengths around the block limits of reading, filtering and screening.
  const std::vector<double> noise = Noise(2 * 36864 + 300, 0.4, 4);
  for (const size_t count : {36863U, 36864U, 36865U, 36991U, 36992U, 69631U, 69632U, 73999U}) {
    ExpectPlainTrack({noise.begin(), noise.begin() + static_cast<ptrdiff_t>(count)}, {},
                     std::to_string(count));
  }
}

class Counter : public zyl::PitchProgress {
 public:
  void AddDone(uint32_t frames) override { reports.push_back(frames); }
  std::vector<uint32_t> reports;
};

TEST(PitchTracker, ReportsProgressAndStopsAtTheNextBlock) {
  const std::vector<double> frames = Noise(4096 + 128 * 250 + 5, 0.3, 5);
  Counter counter;
  FrameTracker whole(frames);
  EXPECT_TRUE(whole.Analyze(&counter));
  EXPECT_EQ(counter.reports, (std::vector<uint32_t>{12800, 12800, 6400}));

  for (const int abortAt : {0, 31, 120, 281}) {
    FrameTracker tracker(frames);
    tracker.abortAt = abortAt;
    tracker.SetThreshold(-1);
    EXPECT_FALSE(tracker.Analyze(nullptr));
    for (size_t i = static_cast<size_t>(abortAt) + 1; i < 250; ++i) {
      EXPECT_EQ(tracker.output[i], 0.0F) << abortAt;
    }
  }
  FrameTracker early(frames);
  early.abort = true;
  EXPECT_FALSE(early.Analyze(nullptr));
  EXPECT_EQ(early.output, std::vector<float>(early.output.size()));
}

// Each channel's values in `bytesPerSample` bytes, in a buffer of exactly that size.
class Sample {
 public:
  Sample(const std::vector<std::vector<double>>& channels, int bytesPerSample) {
    const auto width = static_cast<size_t>(bytesPerSample);
    const auto frames = static_cast<int32_t>(channels[0].size());
    for (const std::vector<double>& channel : channels) {
      std::vector<std::byte>& bytes = data_.emplace_back(channel.size() * width);
      const zyl::ValueBuffer buffer{bytes.data(), frames, bytesPerSample};
      for (int32_t i = 0; i < frames; ++i) {
        const double whole = channel[static_cast<size_t>(i)] * std::ldexp(0.5, 8 * bytesPerSample);
        zyl::SetValue(buffer, i, static_cast<int32_t>(std::llround(whole)));
      }
    }
    for (const auto& bytes : data_) buffers_.push_back(bytes.data());
    source = {buffers_.data(), static_cast<int>(channels.size()), bytesPerSample, frames, kRateHz};
  }

  zyl::PitchSource source;

 private:
  std::vector<std::vector<std::byte>> data_;
  std::vector<const std::byte*> buffers_;
};

std::vector<float> TrackOf(const zyl::PitchSource& source) {
  SamplePitchTracker tracker(source);
  Configure(tracker, {}, source.rateHz);
  EXPECT_TRUE(tracker.Analyze(nullptr));
  return tracker.output;
}

TEST(SamplePitchTracker, ReadsEveryWidthAtTheSameScale) {
  const std::vector<double> frames = Generate(
      7777, [](double i) { return 0.9 * Tone(i, 200) - 0.09; }, 128);
  const std::vector<float> plain = PlainTracker(frames, kRateHz, {}).Run();
  ASSERT_NEAR(plain[3], 220.5, 1);
  for (const int bytes : {1, 2, 3, 4}) {
    const Sample sample({frames}, bytes);
    EXPECT_EQ(BitsOf(TrackOf(sample.source)), BitsOf(plain)) << bytes;
    SamplePitchTracker single(sample.source);
    for (const double frame : frames) {
      ASSERT_FALSE(single.AtEnd());
      ASSERT_EQ(single.ReadFrame(), frame) << bytes;
    }
    EXPECT_TRUE(single.AtEnd());
  }
}

TEST(SamplePitchTracker, SumsTheFirst16Channels) {
  std::vector<std::vector<double>> channels;
  for (unsigned k = 0; k < 18; ++k) channels.push_back(Noise(6000, 0.2, 10 + k));
  for (const size_t count : {1U, 2U, 3U, 16U, 17U, 18U}) {
    std::vector<double> sum(6000, 0.0);
    for (size_t k = 0; k < std::min<size_t>(count, 16); ++k) {
      for (size_t i = 0; i < sum.size(); ++i) sum[i] += channels[k][i];
    }
    const Sample sample({channels.begin(), channels.begin() + static_cast<ptrdiff_t>(count)}, 2);
    EXPECT_EQ(BitsOf(TrackOf(sample.source)), BitsOf(PlainTracker(sum, kRateHz, {}).Run()))
        << count;
  }
}

TEST(SamplePitchTracker, TreatsAnUnreadableSourceAsEmpty) {
  const Sample sample({Noise(6000, 0.2, 1), Noise(6000, 0.2, 2)}, 2);
  std::vector<zyl::PitchSource> sources(4, sample.source);
  sources[0].bytesPerSample = 5;
  sources[1].channelBuffers = nullptr;
  sources[2].channelCount = 0;
  const std::byte* const holed[] = {sample.source.channelBuffers[0], nullptr};
  sources[3].channelBuffers = holed;
  for (const zyl::PitchSource& source : sources) {
    EXPECT_EQ(TrackOf(source), std::vector<float>(47)) << &source - sources.data();
  }
}

TEST(AnalyzePitch, CorrectsTwiceAndSmooths) {
  const std::vector<double> noise = Noise(30000, 0.5, 6);
  const std::vector<double> frames = Generate(30000, [&](double i) {
    const bool disturbed = std::fmod(i, 3000) < 500;
    return disturbed ? noise[static_cast<size_t>(i)] : 0.4 * Tone(i, 250 + i / 1000);
  });
  std::vector<float> plain = PlainTracker(frames, kRateHz, {}).Run();
  const std::vector<float> raw = plain;
  PlainCorrectOctaveErrors(plain, 7);
  const std::vector<float> once = plain;
  PlainCorrectOctaveErrors(plain, 7);
  ASSERT_NE(raw, once);

  const Sample sample({frames}, 2);
  zyl::PitchSettings settings;
  settings.findPitchLen = 7;
  SamplePitchTracker tracker(sample.source);
  EXPECT_EQ(BitsOf(zyl::AnalyzePitch(tracker, settings, nullptr).value()), BitsOf(plain));

  settings.smoothLength = 5;
  SamplePitchTracker smoothed(sample.source);
  PlainSmoothTrack(plain, 5);
  EXPECT_EQ(BitsOf(zyl::AnalyzePitch(smoothed, settings, nullptr).value()), BitsOf(plain));

  SamplePitchTracker aborted(sample.source);
  aborted.abort = true;
  EXPECT_FALSE(zyl::AnalyzePitch(aborted, settings, nullptr).has_value());
}

TEST(CorrectOctaveErrors, EqualsThePlainEvaluation) {
  std::mt19937 random(7);
  const double bases[] = {100, 128, 90, 1.5, 0.4, 3e5, 63.9};
  for (int round = 0; round < 3000; ++round) {
    std::vector<float> track(random() % 60);
    const double base = bases[random() % 7];
    for (float& value : track) {
      const double factors[] = {1, 1, 1, 1, 1, 2, 3, 0.5, 0.3, 5.4, 0, 0};
      const double jitter = 1 + (Random(random) - 0.5) * 0.1;
      value = static_cast<float>(base * jitter * factors[random() % 12]);
    }
    if (round % 3 == 0) {
      std::fill_n(track.begin() + static_cast<ptrdiff_t>(track.size() / 3), track.size() / 4, 0.0F);
    }
    const int halfWidths[] = {10, 10, 3, 2, 1, 0, -5, 40, INT_MAX, INT_MIN + 100};
    const int halfWidth = halfWidths[random() % 10];
    std::vector<float> plain = track;
    PlainCorrectOctaveErrors(plain, std::clamp(halfWidth, -100, 100));
    CorrectOctaveErrors(track.data(), static_cast<int>(track.size()), halfWidth);
    ASSERT_EQ(BitsOf(track), BitsOf(plain)) << round;
  }
}

TEST(SmoothTrack, EqualsThePlainEvaluation) {
  std::mt19937 random(8);
  for (const int length : {1, 2, 3, 7, 40, 255, 256, 257, 600, 1500, 70000}) {
    std::vector<float> track(length > 2000 ? 150 : 300 + random() % 1000);
    for (size_t i = 0; i < track.size(); ++i) {
      const bool voiced = i / 100 % 2 == 0 ? random() % 8 != 0 : random() % 30 == 0;
      track[i] = voiced ? static_cast<float>(20 + 1900 * Random(random)) : 0.0F;
    }
    std::vector<float> plain = track;
    PlainSmoothTrack(plain, length);
    EXPECT_TRUE(SmoothTrack(track.data(), static_cast<int>(track.size()), length));
    EXPECT_EQ(BitsOf(track), BitsOf(plain)) << length;
  }
}

TEST(SmoothTrack, TerminatesForAnyLength) {
  for (const int length : {INT_MAX, 0, -1, INT_MIN}) {
    std::vector<float> track = {0, 7};
    EXPECT_TRUE(SmoothTrack(track.data(), 2, length));
    EXPECT_EQ(track[0], 0) << length;
    EXPECT_TRUE(length > 0 || track[1] == 7) << length;
  }
  std::vector<float> track(20, 7.0F);
  const std::atomic<bool> abort{true};
  EXPECT_FALSE(SmoothTrack(track.data(), 20, INT_MAX, &abort));
}

}  // namespace
}  // namespace zyl::test
