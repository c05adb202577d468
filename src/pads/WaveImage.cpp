#include "pads/WaveImage.h"

#include <climits>

#include "host/base.h"
#include "host/riff.h"
#include "sample/SampleAccess.h"

namespace zyl {
namespace {

// Whether the name differs from the one derived from the path. Derived names aren't written, since
// the path isn't either.
bool HasOwnName(const genericSample& sample) {
  if (sample.name == nullptr) return false;
  return sample.filePath == nullptr || FileString(sample.filePath).BaseName() != sample.name;
}

}  // namespace

WaveImage ImageOfSample(const genericSample& sample) {
  WavSample wave(nullptr);
  sample.writeValuesToWav(&wave);
  if (HasOwnName(sample)) wave.SetName(sample.name);
  const int channels = sample.getChannelCount();
  wave.SetChannelCount(static_cast<unsigned>(channels));
  for (int i = 0; i < channels; ++i) LendChannel(sample, i, wave, static_cast<unsigned>(i));
  WaveImage image;
  if (wave.CreateInterleavedBuffer()) {
    // Write while the sample's buffers are lent, so that the sound isn't copied twice.
    char* bytes = nullptr;
    image.length = wave.WriteToMem(&bytes);
    image.bytes.reset(bytes);
  }
  wave.DetachLinBuffers();
  return image;
}

SampleUse SampleOfImage(std::span<const std::byte> image) {
  if (image.empty() || image.size() > INT_MAX) return nullptr;
  auto wave = std::make_unique<WavSample>(nullptr);
  wave->ReadFromMem(reinterpret_cast<const char*>(image.data()), static_cast<int>(image.size()));
  if (!wave->IsValid()) return nullptr;
  wave->CreateLinBuffers(kMaxChannels);
  wave->DeleteInterleavedBuffer();
  SampleUse sample(new genericSample);
  sample->setWavSample(wave.release(), 0);
  return sample;
}

}  // namespace zyl
