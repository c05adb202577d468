#include <algorithm>
#include <cstring>
#include <new>

#include "../riff.h"
#include "FormPlan.h"
#include "SampleAccess.h"

BasicSample::BasicSample() = default;
BasicSample::~BasicSample() = default;

void BasicSample::SetChannelCount(unsigned count) {
  channels_.clear();
  channels_.resize(std::min(count, static_cast<unsigned>(kMaxChannels)));
  writable_ = false;
  written_ = false;
}

void BasicSample::SetLinBuffer(void* buffer, unsigned bytesPerSample, unsigned size,
                               unsigned channelIndex) {
  if (channelIndex >= channels_.size()) return;
  Channel& channel = channels_[channelIndex];
  channel = Channel();
  writable_ = false;
  written_ = false;
  if (buffer == nullptr || bytesPerSample < 1 || bytesPerSample > 4) return;
  channel.lent = static_cast<const std::byte*>(buffer);
  channel.bytesPerValue = bytesPerSample;
  channel.frames = size;
}

void BasicSample::DetachLinBuffers() {
  for (Channel& channel : channels_) {
    if (channel.lent == nullptr) continue;
    if (writable_ && !written_) {
      const size_t bytes = static_cast<size_t>(channel.frames) * channel.bytesPerValue;
      channel.own.reset(new (std::nothrow) std::byte[bytes]);
      if (channel.own) std::memcpy(channel.own.get(), channel.lent, bytes);
      channel.keptCopy = channel.own != nullptr;
    }
    channel.lent = nullptr;
  }
}

bool BasicSample::CreateInterleavedBuffer() {
  writable_ = false;
  if (channels_.empty()) return false;
  uint64_t frames = 0;
  unsigned widest = 0;
  for (const Channel& channel : channels_) {
    if (channel.Data() == nullptr) return false;
    frames = std::max(frames, channel.frames);
    widest = std::max(widest, channel.bytesPerValue);
  }
  const uint64_t oldFrames = frameCount_;
  const unsigned oldWidth = bytesPerValue_;
  const unsigned oldBits = bits_;
  frameCount_ = frames;
  bytesPerValue_ = widest;
  if ((bits_ + 7) / 8 != widest) bits_ = 8 * widest;
  const uint64_t soundBytes = frames * widest * channels_.size();
  if (frames > UINT32_MAX || PlannedFileBytes(soundBytes) > zyl::kMaxFileBytes) {
    frameCount_ = oldFrames;
    bytesPerValue_ = oldWidth;
    bits_ = oldBits;
    return false;
  }
  writable_ = true;
  written_ = false;
  return true;
}

bool BasicSample::IsValid() const {
  return writable_ && !channels_.empty() &&
         std::all_of(channels_.begin(), channels_.end(),
                     [](const Channel& channel) { return channel.Data() != nullptr; });
}

void BasicSample::SetName(const char* name) { name_ = name == nullptr ? "" : name; }

void BasicSample::SetBitsPerValue(unsigned bits) {
  if (bits < 1 || bits > 32) return;
  bits_ = bits;
  // Without sound data, the width follows the bit depth.
  if (std::all_of(channels_.begin(), channels_.end(),
                  [](const Channel& channel) { return channel.Data() == nullptr; })) {
    bytesPerValue_ = (bits + 7) / 8;
  }
}

void BasicSample::CreateLinBuffers(int maxChannels) {
  if (maxChannels >= 0 && channels_.size() > static_cast<size_t>(maxChannels)) {
    channels_.resize(static_cast<size_t>(maxChannels));
  }
  for (Channel& channel : channels_) {
    if (channel.own) continue;
    if (channel.lent == nullptr) {
      channel.bytesPerValue = bytesPerValue_;
      channel.frames = frameCount_;
    }
    const uint64_t bytes = channel.frames * channel.bytesPerValue;
    if (bytes > SIZE_MAX / 2) continue;
    channel.own.reset(new (std::nothrow) std::byte[static_cast<size_t>(bytes)]);
    if (!channel.own) continue;
    if (channel.lent != nullptr) {
      std::memcpy(channel.own.get(), channel.lent, static_cast<size_t>(bytes));
    } else if (bytes > 0) {
      std::memset(channel.own.get(), 0, static_cast<size_t>(bytes));
    }
    channel.lent = nullptr;
  }
}

void BasicSample::DeleteInterleavedBuffer() {
  writable_ = false;
  for (Channel& channel : channels_) {
    if (channel.keptCopy) channel = Channel();
  }
}

std::byte* BasicSample::TakeLinBuffer(unsigned channelIndex) {
  if (channelIndex >= channels_.size()) return nullptr;
  std::byte* buffer = channels_[channelIndex].own.release();
  channels_[channelIndex] = Channel();
  return buffer;
}

const std::byte* BasicSample::LinBuffer(unsigned channelIndex) const {
  return channelIndex < channels_.size() ? channels_[channelIndex].Data() : nullptr;
}

unsigned BasicSample::ChannelCount() const { return static_cast<unsigned>(channels_.size()); }

uint64_t BasicSample::FrameCount() const { return frameCount_; }

unsigned BasicSample::BytesPerValue() const { return bytesPerValue_; }

uint64_t BasicSample::PlannedFileBytes(uint64_t soundBytes) const { return soundBytes; }
