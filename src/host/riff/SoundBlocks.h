// Sound between files and planar buffers: blocks of interleaved frames on one side, one buffer of
// signed little-endian values per channel on the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "../riff.h"
#include "ByteSource.h"

namespace zyl {

// How a file stores its values.
struct SoundLayout {
  unsigned channels = 0;
  unsigned bytesPerValue = 0;
  bool bigEndian = false;
  bool unsigned8 = false;

  size_t FrameBytes() const { return size_t{channels} * bytesPerValue; }
};

// One channel's sound; behind `frames` there is silence.
struct ChannelView {
  const std::byte* data = nullptr;
  unsigned bytesPerValue = 0;
  uint64_t frames = 0;
};

// Reads `sample.FrameCount()` frames from `offset` into buffers of the sample's own. False when
// there is no memory for them; frames that cannot be read become silence and `complete` false.
bool ReadSound(const ByteSource& source, uint64_t offset, const SoundLayout& layout,
               BasicSample& sample, bool& complete);

// Writes `frames` frames of the channels. Narrower values are shifted up to the file's width; no
// channel is wider than that.
bool WriteSound(ByteSink& sink, const SoundLayout& layout, const std::vector<ChannelView>& channels,
                uint64_t frames);

}  // namespace zyl
