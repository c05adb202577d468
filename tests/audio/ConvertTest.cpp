// Rate and width conversion of signals with known results.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "audio/Resample.h"
#include "audio/WaveImage.h"

namespace zyl::test {
using namespace audio;
namespace {

std::vector<float> Tone(double hertz, double rateHz, size_t frames, double phase) {
  std::vector<float> values(frames);
  for (size_t i = 0; i < frames; ++i) {
    const double turns = hertz * static_cast<double>(i) / rateHz;
    values[i] = static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * turns + phase));
  }
  return values;
}

float LargestError(const std::vector<float>& a, const std::vector<float>& b, size_t margin) {
  float error = 0;
  for (size_t i = margin; i + margin < a.size(); ++i)
    error = std::max(error, std::fabs(a[i] - b[i]));
  return error;
}

TEST(Resample, PreservesTonesWithoutDelayOrArtefacts) {
  const struct {
    double from, to, hertz;
  } cases[] = {{44100, 48000, 20},   {44100, 48000, 20000}, {48000, 44100, 20000},
               {44100, 11025, 4000}, {8000, 192000, 3500},  {44100, 44101, 15000}};
  for (const auto& it : cases) {
    SCOPED_TRACE(it.to / it.from);
    const size_t frames = 20011;
    const Sound sound{it.from, {Tone(it.hertz, it.from, frames, 0.3), std::vector<float>(frames)}};
    const Sound result = Resampled(sound, it.to, {});
    ASSERT_EQ(result.Frames(), static_cast<size_t>(std::llround(20011 * it.to / it.from)));
    EXPECT_EQ(result.rateHz, it.to);
    const auto wanted = Tone(it.hertz, it.to, result.Frames(), 0.3);
    EXPECT_LT(LargestError(result.channels[0], wanted, result.Frames() / 10), 2e-6F);  // -108 dB
    EXPECT_EQ(result.channels[1], std::vector<float>(result.Frames()));
  }
  // Frequencies above half the new rate are removed.
  const Sound high{44100, {Tone(12500, 44100, 20000, 0)}};
  const Sound low = Resampled(high, 22050, {});
  EXPECT_LT(LargestError(low.channels[0], std::vector<float>(low.Frames()), 1000), 2e-6F);
  EXPECT_FALSE(CanResample(1000, 257000) || CanResample(0, 44100) || CanResample(44100, -1));
}

TEST(Resample, ContinuesLoopsBeyondTheEdges) {
  const size_t frames = 44100;  // whole periods of the tone
  const Sound sound{44100, {Tone(441, 44100, frames, 1)}};
  for (const double rate : {48000.0, 22050.0}) {
    const auto wanted = Tone(441, rate, static_cast<size_t>(rate), 1);
    for (const Loop loop : {Loop{0, frames - 1}, Loop{0, 99}, Loop{frames - 100, frames - 1}}) {
      const auto values = Resampled(sound, rate, loop).channels[0];
      const auto error = [&](size_t i) { return std::fabs(values[i] - wanted[i]); };
      EXPECT_EQ(error(0) < 2e-6F, loop.first == 0);
      EXPECT_EQ(error(values.size() - 1) < 2e-6F, loop.last == frames - 1);
    }
  }
}

TEST(WaveImage, ClampsAndCountsValuesBeyondFullScale) {
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  const Sound sound{44100, {{0, 0.5F, -1, 0.99999F, 1.5F, -2, kNan}}};
  const struct {
    int bits;
    std::string values;
  } cases[] = {{8, std::string("\x80\xC0\x00\xFF\xFF\x00\xFF", 7)},
               {12, std::string("\0\0\0\x40\0\x80\xF0\x7F\xF0\x7F\0\x80\xF0\x7F", 14)},
               {16, std::string("\0\0\0\x40\0\x80\xFF\x7F\xFF\x7F\0\x80\xFF\x7F", 14)}};
  for (const auto& it : cases) {
    for (const bool dither : {false, true}) {
      const WaveImage image = WaveOf(sound, it.bits, dither);
      EXPECT_EQ(image.clipped, 3U) << it.bits;
      // Noise may lower the value just below full scale.
      std::string values = image.bytes.substr(44);
      if (dither) values[(it.bits + 7) / 8 * 3] = it.values[(it.bits + 7) / 8 * 3];
      EXPECT_EQ(values, it.values) << it.bits;
    }
  }
}

}  // namespace
}  // namespace zyl::test
