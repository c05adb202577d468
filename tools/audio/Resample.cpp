#include "audio/Resample.h"

#include <samplerate.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <numeric>

namespace zyl::audio {

namespace {

// At least half the filter's length, in frames of the lower rate.
constexpr double kReach = 256;

// Frames that are put before and after the sound, and whether the loop continues there.
struct Margins {
  size_t before = 0;
  size_t after = 0;
  bool loopsAfter = false;
};

Margins MarginsFor(const Sound& sound, double rateHz, const std::optional<Loop>& loop) {
  const auto reach = static_cast<size_t>(kReach * std::max(1.0, sound.rateHz / rateHz));
  // Also without a loop, so that the result has all of its frames.
  Margins margins{0, reach, loop && loop->last + 1 == sound.Frames()};
  if (loop && loop->first == 0) {
    // A time that is a whole number of frames at both rates, so that it can be cut off again.
    const auto from = static_cast<size_t>(sound.rateHz);
    const size_t unit = from / std::gcd(from, static_cast<size_t>(rateHz));
    margins.before = (reach + unit - 1) / unit * unit;
  }
  return margins;
}

// The channels frame by frame, with the loop continued in the margins.
std::vector<float> Interleaved(const Sound& sound, const Margins& margins,
                               const std::optional<Loop>& loop) {
  const size_t channels = sound.channels.size();
  const size_t frames = sound.Frames();
  std::vector<float> values((margins.before + frames + margins.after) * channels);
  for (size_t c = 0; c < channels; ++c) {
    const auto& channel = sound.channels[c];
    float* value = values.data() + c;
    const auto put = [&](float x) {
      *value = x;
      value += channels;
    };
    for (size_t i = margins.before; i > 0; --i) put(channel[loop->last - (i - 1) % loop->Length()]);
    for (const float x : channel) put(x);
    if (!margins.loopsAfter) continue;
    for (size_t i = 0; i < margins.after; ++i) put(channel[loop->first + i % loop->Length()]);
  }
  return values;
}

}  // namespace

bool CanResample(double fromHz, double toHz) {
  return fromHz > 0 && toHz > 0 && src_is_valid_ratio(toHz / fromHz) != 0;
}

Sound Resampled(const Sound& sound, double rateHz, const std::optional<Loop>& loop) {
  const size_t channels = sound.channels.size();
  const double ratio = rateHz / sound.rateHz;
  const auto frames =
      static_cast<size_t>(std::llround(static_cast<double>(sound.Frames()) * ratio));
  Sound result{rateHz, std::vector(channels, std::vector<float>(frames))};
  if (frames == 0 || channels == 0) return result;

  const Margins margins = MarginsFor(sound, rateHz, loop);
  const auto skipped =
      static_cast<size_t>(std::llround(static_cast<double>(margins.before) * ratio));
  const std::vector<float> input = Interleaved(sound, margins, loop);
  std::vector<float> output((skipped + frames) * channels);
  SRC_DATA data{};
  data.data_in = input.data();
  data.input_frames = static_cast<long>(input.size() / channels);
  data.data_out = output.data();
  data.output_frames = static_cast<long>(skipped + frames);
  data.src_ratio = ratio;
  // With valid arguments it fails only for lack of memory. The number of frames that it makes may
  // be one less than rounded; that frame is then silent.
  if (src_simple(&data, SRC_SINC_BEST_QUALITY, static_cast<int>(channels)) != 0) {
    throw std::bad_alloc();
  }
  for (size_t c = 0; c < channels; ++c) {
    const float* value = output.data() + skipped * channels + c;
    for (float& x : result.channels[c]) {
      x = *value;
      value += channels;
    }
  }
  return result;
}

}  // namespace zyl::audio
