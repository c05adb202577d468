#include "SamplePitchTracker.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

#include "TrackCorrection.h"

namespace {

constexpr int kMaxChannels = 16;

// Returns one value of `kBytes` bytes, full scale 1. Assembled in the upper bytes of 32 bits, all
// widths have the same scale. The result is exact.
template <int kBytes>
double ReadValue(const std::byte* at) {
  uint32_t bits = 0;
  if constexpr (kBytes == 2 && std::endian::native == std::endian::little) {
    int16_t value;  // the same value, in a form that vectorises
    std::memcpy(&value, at, sizeof value);
    return value * 0x1p-15;
  }
  for (int i = 0; i < kBytes; ++i) {
    bits |= std::to_integer<uint32_t>(at[i]) << (8 * (4 - kBytes + i));
  }
  return static_cast<int32_t>(bits) * 0x1p-31;
}

template <int kBytes>
void AddChannel(const std::byte* from, double* frames, int count, bool first) {
  if (first) {
    for (int i = 0; i < count; ++i) frames[i] = ReadValue<kBytes>(from + i * kBytes);
  } else {
    for (int i = 0; i < count; ++i) frames[i] += ReadValue<kBytes>(from + i * kBytes);
  }
}

constexpr std::array<void (*)(const std::byte*, double*, int, bool), 4> kAddChannel = {
    AddChannel<1>, AddChannel<2>, AddChannel<3>, AddChannel<4>};

bool IsReadable(const zyl::PitchSource& source) {
  if (source.channelBuffers == nullptr || source.channelCount < 1) return false;
  if (source.bytesPerSample < 1 || source.bytesPerSample > 4) return false;
  return std::none_of(source.channelBuffers, source.channelBuffers + source.channelCount,
                      [](const std::byte* buffer) { return buffer == nullptr; });
}

}  // namespace

SamplePitchTracker::SamplePitchTracker(const zyl::PitchSource& source, double processingRateHz)
    : PitchTracker(processingRateHz), source_(source) {
  source_.channelCount = std::min(source_.channelCount, kMaxChannels);
  source_.frameCount = std::max(source_.frameCount, 0);
  output.resize(static_cast<size_t>(source_.frameCount) / 128 + 1);
  if (!IsReadable(source_)) source_.frameCount = 0;
}

int SamplePitchTracker::ReadFrames(double* frames, int count) {
  const int read = std::min<int>(count, source_.frameCount - cursor_);
  if (read == 0) return 0;
  const ptrdiff_t offset = ptrdiff_t{cursor_} * source_.bytesPerSample;
  const auto addChannel = kAddChannel[static_cast<size_t>(source_.bytesPerSample - 1)];
  for (int channel = 0; channel < source_.channelCount; ++channel) {
    addChannel(source_.channelBuffers[channel] + offset, frames, read, channel == 0);
  }
  cursor_ += read;
  return read;
}

double SamplePitchTracker::ReadFrame() {
  double frame = 0.0;
  ReadFrames(&frame, 1);
  return frame;
}

bool SamplePitchTracker::AtEnd() { return cursor_ >= source_.frameCount; }

void SamplePitchTracker::StoreValue(int index, double value) {
  output[static_cast<size_t>(index)] = static_cast<float>(value);
}

namespace zyl {

std::optional<std::vector<float>> AnalyzePitch(SamplePitchTracker& tracker,
                                               const PitchSettings& settings,
                                               PitchProgress* progress) {
  const double rateHz = tracker.Source().rateHz;
  tracker.SetMinPeriod(settings.minPeriodHz, rateHz);
  tracker.SetMaxPeriod(settings.maxPeriodHz, rateHz);
  tracker.SetThreshold(settings.rmsThres);
  if (!tracker.Analyze(progress)) return std::nullopt;

  std::vector<float> track = std::move(tracker.output);
  const int n = static_cast<int>(track.size());
  CorrectOctaveErrors(track.data(), n, settings.findPitchLen);
  CorrectOctaveErrors(track.data(), n, settings.findPitchLen);
  if (!SmoothTrack(track.data(), n, settings.smoothLength, &tracker.abort)) return std::nullopt;
  return track;
}

}  // namespace zyl
