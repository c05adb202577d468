// Private data of sample objects, for the readers and writers in this folder.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "../byteOrder.h"
#include "../riff.h"

struct BasicSample::Channel {
  std::unique_ptr<std::byte[]> own;
  const std::byte* lent = nullptr;
  unsigned bytesPerValue = 0;
  uint64_t frames = 0;
  bool keptCopy = false;  // `own` is a copy made by DetachLinBuffers

  const std::byte* Data() const { return own ? own.get() : lent; }
};

namespace zyl {

// The role of a chunk in its format. Each except kOther occurs at most once.
enum class Slot : uint8_t { kFormat, kSound, kMarkers, kSampler, kOwn, kOther };
inline constexpr size_t kKnownSlots = 5;

// One chunk in the order of its file.
struct Place {
  Slot slot;
  int pad = 0;  // padding byte of an odd chunk; -1 if the file has none
};

// Contents of "fmt " and "smpl" chunks other than the sampler parameters.
struct WavKept {
  unsigned formatBits = 0;  // bits per value declared in the format chunk
  uint32_t channelMask = 0;
  uint32_t manufacturer = 0;
  uint32_t product = 0;
  uint32_t note = 0;
  uint32_t fraction = 0;
  uint32_t periodNs = 0;
  uint32_t smpteFormat = 0;
  uint32_t smpteOffset = 0;
  std::vector<uint32_t> loopIds;
  Bytes surplusLoops;  // loops beyond kMaxLoops, as stored
  Bytes samplerData;
};

// A marker at the boundary before frame `position`.
struct AifMarker {
  uint16_t id = 0;
  uint32_t position = 0;
  std::string name;
};

// Contents of "COMM", "MARK" and "INST" chunks other than the sampler parameters.
struct AifKept {
  std::string compression;                                  // four letters of an AIFC file
  Bytes compressionName;                                    // as stored
  Bytes rate;                                               // 80-bit float
  std::array<uint8_t, 6> instrument{0, 127, 1, 127, 0, 0};  // key and velocity range, gain
  std::vector<AifMarker> markers;
  std::vector<std::pair<uint16_t, uint16_t>> loopMarks;  // start and end marker IDs of each loop
};

struct FileOrigin {
  std::vector<Place> layout;
  // The known chunks as read, indexed by slot, to be written back while their meaning is unchanged;
  // of the sound chunk, the bytes before the frames. Empty if the reader corrected the chunk.
  std::array<Bytes, kKnownSlots> stored;
  Bytes soundTail;         // bytes after the last whole frame in the sound chunk
  Bytes prefix;            // an ID3 tag before the form
  Bytes tail;              // bytes after the last chunk
  uint64_t formBytes = 0;  // declared length of the form; 0 if the file is damaged
  uint64_t chunksEnd = 0;  // end of the last chunk
  bool hadSampler = false;
  uint64_t frames = 0;
  unsigned channels = 0;
  unsigned bytesPerValue = 0;
  unsigned bits = 0;
  RiffParameters parameters;  // as read
  std::string name;           // title; empty if there is none
  WavKept wav;
  AifKept aif;
};

inline bool HasPlace(const std::vector<Place>& layout, Slot slot) {
  return std::any_of(layout.begin(), layout.end(),
                     [slot](const Place& place) { return place.slot == slot; });
}

struct SampleAccess {
  using Channel = BasicSample::Channel;
  static std::vector<Channel>& Channels(BasicSample& sample) { return sample.channels_; }
  static const std::vector<Channel>& Channels(const BasicSample& sample) {
    return sample.channels_;
  }
  static const FileOrigin* Origin(const BasicSample& sample) { return sample.origin_.get(); }
  static FileOrigin* Origin(BasicSample& sample) { return sample.origin_.get(); }
  static FileOrigin& NewOrigin(BasicSample& sample) {
    sample.origin_ = std::make_unique<FileOrigin>();
    return *sample.origin_;
  }
  static void SetFormat(BasicSample& sample, unsigned channels, unsigned bits,
                        unsigned bytesPerValue, uint64_t frames) {
    sample.SetChannelCount(channels);
    sample.bits_ = bits;
    sample.bytesPerValue_ = bytesPerValue;
    sample.frameCount_ = frames;
  }
  static void SetFlag(BasicSample& sample, uint8_t flag) { sample.formatFlag_ = flag; }
  static void SetBits(BasicSample& sample, unsigned bits) { sample.bits_ = bits; }
  static void SetFrames(BasicSample& sample, uint64_t frames) { sample.frameCount_ = frames; }
  static void SetWritable(BasicSample& sample) { sample.writable_ = true; }
};

}  // namespace zyl
