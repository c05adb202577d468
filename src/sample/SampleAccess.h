// A record's values for the operations that work on plain buffers.
#pragma once

#include <cstdint>
#include <vector>

#include "host/akai.h"
#include "host/qx.h"
#include "host/riff.h"
#include "sample/ValueRanges.h"

// The record's own channel, channel 0 of a whole sample.
inline zyl::ValueView ReadableValues(const genericSample& sample) {
  return {sample.buffer, sample.shared().frameCount, sample.getChannelBytesPS(-1)};
}

// The values of all channels that an edit through the record changes, to be changed in place. What
// needs a copy for that is copied here, so that the edit itself cannot run out of memory.
inline std::vector<zyl::ValueBuffer> WritableChannels(genericSample& sample) {
  std::vector<zyl::ValueBuffer> channels;
  for (const int channel : sample.EditedChannels()) {
    channels.push_back({sample.WritableChannel(channel), sample.shared().frameCount,
                        sample.getChannelBytesPS(-1)});
  }
  return channels;
}

// A length that the sample can have: not negative, and its channels not beyond the machine's
// memory.
inline bool IsPossibleSize(const genericSample& sample, int32_t positions) {
  const int64_t bytes =
      int64_t{positions} * sample.getChannelBytesPS(-1) * sample.getChannelCount();
  return positions >= 0 && bytes <= qxGetPhysicalMemoryBytes();
}

// Lends a channel to a file object as its channel `place`; no sound where there is no such channel.
inline void LendChannel(const genericSample& sample, int channel, BasicSample& file,
                        unsigned place) {
  static std::byte empty[1];  // the sound of a channel without any
  const bool known = channel < sample.getChannelCount();
  const int positions = sample.getChannelSize(channel);
  file.SetLinBuffer(known && positions == 0 ? empty : sample.getChannelBuffer(channel),
                    static_cast<unsigned>(sample.getChannelBytesPS(channel)),
                    static_cast<unsigned>(positions), place);
}
