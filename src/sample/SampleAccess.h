// Adapts sample records to operations on plain buffers.
#pragma once

#include <cstdint>
#include <vector>

#include "host/akai.h"
#include "host/qx.h"
#include "host/riff.h"
#include "sample/ValueRanges.h"

// The values of the record's channel; of channel 0 for a whole sample.
inline zyl::ValueView ReadableValues(const genericSample& sample) {
  return {sample.buffer, sample.shared().frameCount, sample.getChannelBytesPS(-1)};
}

// The values of all channels that an edit of the record changes. They may be changed in place while
// this object exists. The constructor makes all copies, so that the edit itself needs no memory.
class WritableChannels {
 public:
  explicit WritableChannels(genericSample& sample)
      : sound_(sample.WritableChannels(sample.EditedChannels())) {
    for (std::byte* values : sound_.channels) {
      buffers_.push_back({values, sample.shared().frameCount, sample.getChannelBytesPS(-1)});
    }
  }
  auto begin() const { return buffers_.begin(); }
  auto end() const { return buffers_.end(); }

 private:
  WritableSound sound_;
  std::vector<zyl::ValueBuffer> buffers_;
};

// Whether the sample can have this length: not negative, and its channels fit into the machine's
// memory.
inline bool IsPossibleSize(const genericSample& sample, int32_t positions) {
  const int64_t bytes =
      int64_t{positions} * sample.getChannelBytesPS(-1) * sample.getChannelCount();
  return positions >= 0 && bytes <= qxGetPhysicalMemoryBytes();
}

// Lends a channel to a file object as its channel `place`. Lends no sound if the channel doesn't
// exist.
inline void LendChannel(const genericSample& sample, int channel, BasicSample& file,
                        unsigned place) {
  static std::byte empty[1];  // for channels without sound
  const bool known = channel < sample.getChannelCount();
  const int positions = sample.getChannelSize(channel);
  file.SetLinBuffer(known && positions == 0 ? empty : sample.getChannelBuffer(channel),
                    static_cast<unsigned>(sample.getChannelBytesPS(channel)),
                    static_cast<unsigned>(positions), place);
}
