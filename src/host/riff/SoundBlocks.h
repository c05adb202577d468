// Converts sound data between interleaved frames in files and planar buffers: one buffer of signed
// little-endian values per channel.
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

// One channel's data; silence follows `frames`.
struct ChannelView {
  const std::byte* data = nullptr;
  unsigned bytesPerValue = 0;
  uint64_t frames = 0;
};

// Reads `sample.FrameCount()` frames from `offset` into buffers that the sample owns. Returns false
// if memory runs out. Replaces frames that can't be read by silence and sets `complete` to false.
bool ReadSound(const ByteSource& source, uint64_t offset, const SoundLayout& layout,
               BasicSample& sample, bool& complete);

// Writes `frames` frames of the channels. Shifts narrower values up to the file's width; no channel
// may be wider than that.
bool WriteSound(ByteSink& sink, const SoundLayout& layout, const std::vector<ChannelView>& channels,
                uint64_t frames);

}  // namespace zyl
