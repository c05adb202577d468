#include "SoundBlocks.h"

#include <bit>
#include <memory>
#include <new>

#include "../platform/LargeBlock.h"
#include "SampleAccess.h"

namespace zyl {
namespace {

// Fits the L2 cache together with the converted values.
constexpr size_t kBlockBytes = size_t{1} << 17;
constexpr std::byte kSignBit{0x80};

// `from` and `to` may be the same buffer if the stride is kBytes.
template <unsigned kBytes, bool kBig>
void Gather(const std::byte* from, size_t strideBytes, std::byte* to, size_t frames) {
  for (size_t i = 0; i < frames; ++i, from += strideBytes, to += kBytes) {
    std::byte value[kBytes];
    std::memcpy(value, from, kBytes);
    for (unsigned b = 0; b < kBytes; ++b) to[b] = value[kBig ? kBytes - 1 - b : b];
  }
}

// Fast path for the most common format, 16-bit stereo: a frame is one 32-bit word. Compilers
// vectorise fixed-length loops over local arrays at every optimisation level.
void GatherStereo16(const std::byte* from, std::byte* left, std::byte* right, size_t frames) {
  constexpr size_t kStep = 32;
  size_t done = 0;
  if constexpr (std::endian::native == std::endian::little) {
    for (; done + kStep <= frames; done += kStep) {
      uint32_t words[kStep];
      uint16_t l[kStep];
      uint16_t r[kStep];
      std::memcpy(words, from + 4 * done, sizeof words);
      for (size_t i = 0; i < kStep; ++i) l[i] = static_cast<uint16_t>(words[i]);
      for (size_t i = 0; i < kStep; ++i) r[i] = static_cast<uint16_t>(words[i] >> 16);
      std::memcpy(left + 2 * done, l, sizeof l);
      std::memcpy(right + 2 * done, r, sizeof r);
    }
  }
  Gather<2, false>(from + 4 * done, 4, left + 2 * done, frames - done);
  Gather<2, false>(from + 4 * done + 2, 4, right + 2 * done, frames - done);
}

void GatherChannel(const SoundLayout& layout, const std::byte* from, std::byte* to, size_t frames) {
  const size_t stride = layout.FrameBytes();
  switch (layout.bytesPerValue * 2 + (layout.bigEndian ? 1 : 0)) {
    case 4:
      return Gather<2, false>(from, stride, to, frames);
    case 5:
      return Gather<2, true>(from, stride, to, frames);
    case 6:
      return Gather<3, false>(from, stride, to, frames);
    case 7:
      return Gather<3, true>(from, stride, to, frames);
    case 8:
      return Gather<4, false>(from, stride, to, frames);
    case 9:
      return Gather<4, true>(from, stride, to, frames);
    default:
      return Gather<1, false>(from, stride, to, frames);
  }
}

void FlipSign(std::byte* bytes, size_t count) {
  for (size_t i = 0; i < count; ++i) bytes[i] ^= kSignBit;
}

// Reads `count` bytes. Zero-fills the missing ones and sets `complete` to false.
void ReadOrZero(const ByteSource& source, uint64_t offset, std::byte* bytes, size_t count,
                bool& complete) {
  const size_t got = source.ReadAt(offset, bytes, count);
  if (got == count) return;
  std::memset(bytes + got, 0, count - got);
  complete = false;
}

template <unsigned kFrom, unsigned kTo, bool kBig>
void Scatter(const std::byte* from, std::byte* to, size_t strideBytes, size_t frames) {
  for (size_t i = 0; i < frames; ++i, from += kFrom, to += strideBytes) {
    for (unsigned b = 0; b < kTo; ++b) {
      const std::byte value = b < kTo - kFrom ? std::byte{0} : from[b - (kTo - kFrom)];
      to[kBig ? kTo - 1 - b : b] = value;
    }
  }
}

template <unsigned kFrom, unsigned kTo>
void ScatterOrder(bool big, const std::byte* from, std::byte* to, size_t stride, size_t frames) {
  if (big) {
    Scatter<kFrom, kTo, true>(from, to, stride, frames);
  } else {
    Scatter<kFrom, kTo, false>(from, to, stride, frames);
  }
}

void ScatterChannel(const SoundLayout& layout, unsigned fromBytes, const std::byte* from,
                    std::byte* to, size_t frames) {
  const size_t stride = layout.FrameBytes();
  const bool big = layout.bigEndian;
  switch (fromBytes * 10 + layout.bytesPerValue) {
    case 11:
      return ScatterOrder<1, 1>(big, from, to, stride, frames);
    case 12:
      return ScatterOrder<1, 2>(big, from, to, stride, frames);
    case 13:
      return ScatterOrder<1, 3>(big, from, to, stride, frames);
    case 14:
      return ScatterOrder<1, 4>(big, from, to, stride, frames);
    case 22:
      return ScatterOrder<2, 2>(big, from, to, stride, frames);
    case 23:
      return ScatterOrder<2, 3>(big, from, to, stride, frames);
    case 24:
      return ScatterOrder<2, 4>(big, from, to, stride, frames);
    case 33:
      return ScatterOrder<3, 3>(big, from, to, stride, frames);
    case 34:
      return ScatterOrder<3, 4>(big, from, to, stride, frames);
    case 44:
      return ScatterOrder<4, 4>(big, from, to, stride, frames);
    default:
      return;
  }
}

}  // namespace

bool ReadSound(const ByteSource& source, uint64_t offset, const SoundLayout& layout,
               BasicSample& sample, bool& complete) {
  const uint64_t frames = sample.FrameCount();
  const uint64_t channelBytes = frames * layout.bytesPerValue;
  if (channelBytes > SIZE_MAX / 2) return false;
  std::vector<std::byte*> buffers;
  for (auto& channel : SampleAccess::Channels(sample)) {
    channel.own.reset(new (std::nothrow) std::byte[static_cast<size_t>(channelBytes)]);
    if (!channel.own) return false;
    AdviseLargeBlock(channel.own.get(), static_cast<size_t>(channelBytes));
    channel.bytesPerValue = layout.bytesPerValue;
    channel.frames = frames;
    buffers.push_back(channel.own.get());
  }
  if (layout.channels == 1) {
    std::byte* to = buffers[0];
    ReadOrZero(source, offset, to, static_cast<size_t>(channelBytes), complete);
    if (layout.bigEndian) GatherChannel(layout, to, to, static_cast<size_t>(frames));
  } else {
    const size_t blockFrames = kBlockBytes / layout.FrameBytes();
    const auto block = std::make_unique<std::byte[]>(blockFrames * layout.FrameBytes());
    for (uint64_t done = 0; done < frames; done += blockFrames) {
      const size_t count = static_cast<size_t>(std::min<uint64_t>(blockFrames, frames - done));
      ReadOrZero(source, offset + done * layout.FrameBytes(), block.get(),
                 count * layout.FrameBytes(), complete);
      const size_t place = static_cast<size_t>(done) * layout.bytesPerValue;
      if (layout.channels == 2 && layout.bytesPerValue == 2 && !layout.bigEndian) {
        GatherStereo16(block.get(), buffers[0] + place, buffers[1] + place, count);
        continue;
      }
      for (unsigned c = 0; c < layout.channels; ++c) {
        GatherChannel(layout, block.get() + c * layout.bytesPerValue, buffers[c] + place, count);
      }
    }
  }
  if (layout.unsigned8) {
    for (std::byte* buffer : buffers) FlipSign(buffer, static_cast<size_t>(channelBytes));
  }
  return true;
}

bool WriteSound(ByteSink& sink, const SoundLayout& layout, const std::vector<ChannelView>& channels,
                uint64_t frames) {
  const size_t blockFrames = kBlockBytes / layout.FrameBytes();
  const auto block = std::make_unique<std::byte[]>(blockFrames * layout.FrameBytes());
  for (uint64_t done = 0; done < frames; done += blockFrames) {
    const size_t count = static_cast<size_t>(std::min<uint64_t>(blockFrames, frames - done));
    const size_t bytes = count * layout.FrameBytes();
    std::memset(block.get(), 0, bytes);
    for (size_t c = 0; c < channels.size(); ++c) {
      const ChannelView& view = channels[c];
      if (done >= view.frames) continue;
      const size_t there = static_cast<size_t>(std::min<uint64_t>(count, view.frames - done));
      ScatterChannel(layout, view.bytesPerValue, view.data + done * view.bytesPerValue,
                     block.get() + c * layout.bytesPerValue, there);
    }
    if (layout.unsigned8) FlipSign(block.get(), bytes);
    if (!sink.Write(block.get(), bytes)) return false;
  }
  return true;
}

}  // namespace zyl
