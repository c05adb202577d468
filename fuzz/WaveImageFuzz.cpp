// Reads arbitrary bytes of a pad as images of WAVE files, and creates images of the resulting
// samples.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "host/riff.h"
#include "pads/WaveImage.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool SameParameters(const SampleParameters& a, const SampleParameters& b) {
  const auto sameLoop = [](const genericLoop& x, const genericLoop& y) {
    return x.loopStart == y.loopStart && x.loopEnd == y.loopEnd && x.loopTimes == y.loopTimes &&
           x.loopFineLen == y.loopFineLen && x.loopType == y.loopType;
  };
  // A file without loops does not store their playback type.
  const bool samePlayback = a.loopCount == 0 || a.playbackType == b.playbackType;
  return a.frameCount == b.frameCount && a.bits == b.bits && a.sampleRate == b.sampleRate &&
         a.key == b.key && a.tune == b.tune && samePlayback &&
         a.holdLoopTuneOff == b.holdLoopTuneOff && a.loopCount == b.loopCount &&
         std::equal(a.loops, a.loops + a.loopCount, b.loops, sameLoop);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  // An exact-size allocation, so that a sanitizer detects reads past the end.
  const auto* first = reinterpret_cast<const std::byte*>(bytes);
  const std::vector<std::byte> pad(first, first + count);
  const zyl::SampleUse sample = zyl::SampleOfImage(pad);
  if (sample == nullptr) return 0;
  const SampleParameters& parameters = sample->shared();
  Require(sample->getChannelCount() >= 1 && sample->getChannelCount() <= kMaxChannels);
  Require(parameters.frameCount >= 0 && parameters.loopCount <= kMaxLoops);
  const zyl::WaveImage image = zyl::ImageOfSample(*sample);
  Require(image.length > 0);
  const auto* written = reinterpret_cast<const std::byte*>(image.bytes.get());
  const zyl::SampleUse again = zyl::SampleOfImage({written, static_cast<size_t>(image.length)});
  Require(again != nullptr && again->getChannelCount() == sample->getChannelCount());
  Require(SameParameters(parameters, again->shared()));
  const auto channelBytes = static_cast<size_t>(parameters.frameCount) *
                            static_cast<size_t>(sample->getChannelBytesPS(-1));
  for (int c = 0; channelBytes > 0 && c < sample->getChannelCount(); ++c) {
    Require(std::memcmp(sample->getChannelBuffer(c), again->getChannelBuffer(c), channelBytes) ==
            0);
  }
  return 0;
}
