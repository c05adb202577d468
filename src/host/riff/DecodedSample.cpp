#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <new>

#include "SampleAccess.h"
#include "SampleReaders.h"

namespace zyl {
namespace {

constexpr sf_count_t kBlockFrames = 16384;

// A few bytes can decode to any length of silence, so the decoded size is limited to
// kSoundBytesPerFileByte times the file's size, but never below kMinSoundLimitBytes.
constexpr uint64_t kMinSoundLimitBytes = uint64_t{1} << 28;
constexpr uint64_t kSoundBytesPerFileByte = 64;

// Adapts a byte source to libsndfile's virtual I/O.
struct Stream {
  const ByteSource* source;
  sf_count_t place;
};

sf_count_t StreamLength(void* data) {
  return static_cast<sf_count_t>(static_cast<Stream*>(data)->source->Size());
}

sf_count_t StreamSeek(sf_count_t offset, int whence, void* data) {
  auto* stream = static_cast<Stream*>(data);
  const sf_count_t from = whence == SF_SEEK_SET   ? 0
                          : whence == SF_SEEK_CUR ? stream->place
                                                  : StreamLength(data);
  if (offset < -from || offset > INT64_MAX - from) return -1;
  stream->place = from + offset;
  return stream->place;
}

sf_count_t StreamRead(void* bytes, sf_count_t count, void* data) {
  auto* stream = static_cast<Stream*>(data);
  if (count <= 0) return 0;
  const size_t got = stream->source->ReadAt(static_cast<uint64_t>(stream->place), bytes,
                                            static_cast<size_t>(count));
  stream->place += static_cast<sf_count_t>(got);
  return static_cast<sf_count_t>(got);
}

sf_count_t StreamWrite(const void*, sf_count_t, void*) { return 0; }

sf_count_t StreamTell(void* data) { return static_cast<Stream*>(data)->place; }

struct Depth {
  unsigned bytesPerValue;
  unsigned bits;
  bool floating;  // decode through floating point: the integer calls scale or wrap
};

Depth DepthOf(int subFormat) {
  switch (subFormat) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_DPCM_8:
      return {1, 8, false};
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_ALAC_24:
      return {3, 24, false};
    case SF_FORMAT_ALAC_20:
      return {3, 20, false};
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_ALAC_32:
      return {4, 32, false};
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE:
      return {3, 24, true};
    case SF_FORMAT_VORBIS:
    case SF_FORMAT_OPUS:
    case SF_FORMAT_MPEG_LAYER_I:
    case SF_FORMAT_MPEG_LAYER_II:
    case SF_FORMAT_MPEG_LAYER_III:
      return {2, 16, true};
    case SF_FORMAT_DWVW_24:
      return {3, 24, false};
    default:
      return {2, 16, false};
  }
}

// Converts a value of full scale 1 to `bits` bits, clamped and left-justified in 32; NaN becomes 0.
int32_t ClampToBits(double value, unsigned bits) {
  const double scale = std::ldexp(1.0, static_cast<int>(bits) - 1);
  if (std::isnan(value)) return 0;
  const double clamped = std::clamp(std::nearbyint(value * scale), -scale, scale - 1);
  return static_cast<int32_t>(static_cast<uint32_t>(static_cast<int32_t>(clamped)) << (32 - bits));
}

// One channel's buffer while its final length is unknown.
struct GrowingChannel {
  std::unique_ptr<std::byte[]> bytes;
  size_t capacity = 0;

  // Preserves the first `used` bytes. Returns false if memory runs out.
  bool Resize(size_t used, size_t wanted) {
    std::unique_ptr<std::byte[]> larger(new (std::nothrow) std::byte[wanted]);
    if (!larger) return false;
    if (used > 0) std::memcpy(larger.get(), bytes.get(), used);
    bytes = std::move(larger);
    capacity = wanted;
    return true;
  }
};

class Decoder {
 public:
  Decoder(SNDFILE* file, const SF_INFO& info, uint64_t sourceBytes)
      : file_(file),
        depth_(DepthOf(info.format & SF_FORMAT_SUBMASK)),
        channelCount_(static_cast<size_t>(info.channels)),
        channels_(channelCount_) {
    // Preallocate the declared length only as far as is plausible for the size of the file.
    const uint64_t credible = sourceBytes / channelCount_ + kBlockFrames;
    const uint64_t mostBytes =
        std::max(kMinSoundLimitBytes, std::min(sourceBytes, UINT64_MAX / kSoundBytesPerFileByte) *
                                          kSoundBytesPerFileByte);
    mostFrames_ = std::min<uint64_t>(mostBytes / channelCount_ / depth_.bytesPerValue, UINT32_MAX);
    const auto declared = static_cast<uint64_t>(std::max<sf_count_t>(info.frames, 0));
    firstFrames_ = static_cast<size_t>(std::min(declared, credible));
  }

  // Returns false if memory runs out or the decoded sound is too long.
  bool Run() {
    std::vector<int32_t> values(channelCount_ * kBlockFrames);
    std::vector<float> floats(depth_.floating ? values.size() : 0);
    for (;;) {
      sf_count_t got = 0;
      if (depth_.floating) {
        got = sf_readf_float(file_, floats.data(), kBlockFrames);
        const size_t count = static_cast<size_t>(std::max<sf_count_t>(got, 0)) * channelCount_;
        for (size_t i = 0; i < count; ++i) values[i] = ClampToBits(double{floats[i]}, depth_.bits);
      } else {
        got = sf_readf_int(file_, values.data(), kBlockFrames);
      }
      if (got <= 0) break;
      if (frames_ + static_cast<uint64_t>(got) > mostFrames_) return false;
      if (!Append(values.data(), static_cast<size_t>(got))) return false;
    }
    return Trim();
  }

  void MoveTo(BasicSample& sample) {
    auto& channels = SampleAccess::Channels(sample);
    for (size_t c = 0; c < channelCount_; ++c) {
      channels[c].own = std::move(channels_[c].bytes);
      channels[c].bytesPerValue = depth_.bytesPerValue;
      channels[c].frames = frames_;
    }
  }

  size_t Frames() const { return frames_; }

 private:
  bool Append(const int32_t* values, size_t count) {
    const size_t width = depth_.bytesPerValue;
    const size_t used = frames_ * width;
    for (size_t c = 0; c < channelCount_; ++c) {
      GrowingChannel& channel = channels_[c];
      if (used + count * width > channel.capacity) {
        const size_t wanted =
            std::max({(frames_ + count) * width, 2 * channel.capacity, firstFrames_ * width});
        if (!channel.Resize(used, wanted)) return false;
      }
      std::byte* to = channel.bytes.get() + used;
      for (size_t i = 0; i < count; ++i) {
        const auto value = static_cast<uint32_t>(values[i * channelCount_ + c]);
        for (size_t b = 0; b < width; ++b) {
          *to++ = static_cast<std::byte>((value >> (8 * (4 - width + b))) & 0xFF);
        }
      }
    }
    frames_ += count;
    return true;
  }

  bool Trim() {
    const size_t used = frames_ * depth_.bytesPerValue;
    for (GrowingChannel& channel : channels_) {
      if (channel.capacity != used && !channel.Resize(used, used)) return false;
      if (!channel.bytes && !channel.Resize(0, 0)) return false;
    }
    return true;
  }

  SNDFILE* file_;
  Depth depth_;
  size_t channelCount_;
  std::vector<GrowingChannel> channels_;
  size_t firstFrames_ = 0;
  uint64_t mostFrames_ = 0;
  size_t frames_ = 0;
};

std::string FormatName(int format) {
  SF_FORMAT_INFO info{};
  info.format = format;
  const bool known =
      sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info) == 0 && info.name != nullptr;
  return known ? info.name : "unknown";
}

struct Closer {
  void operator()(SNDFILE* file) const { sf_close(file); }
};

}  // namespace

bool DecodeSound(const ByteSource& source, BasicSample& sample, bool withData,
                 std::string& reason) {
  Stream stream{&source, 0};
  SF_VIRTUAL_IO io{StreamLength, StreamSeek, StreamRead, StreamWrite, StreamTell};
  SF_INFO info{};
  const std::unique_ptr<SNDFILE, Closer> file(sf_open_virtual(&io, SFM_READ, &info, &stream));
  if (!file) return Refuse(reason, sf_strerror(nullptr));
  if (!ChannelsFit(static_cast<unsigned>(std::max(info.channels, 0)), reason)) return false;
  const Depth depth = DepthOf(info.format & SF_FORMAT_SUBMASK);
  const auto frames = static_cast<uint64_t>(std::max<sf_count_t>(info.frames, 0));
  if (!withData && frames > UINT32_MAX) return Refuse(reason, "the sound data is too long");
  SampleAccess::SetFormat(sample, static_cast<unsigned>(info.channels), depth.bits,
                          depth.bytesPerValue, frames);
  SampleAccess::SetFlag(sample, 0);
  sample.parameters.rateHz = RateOrDefault(info.samplerate, reason);
  sample.encoding = FormatName(info.format & SF_FORMAT_TYPEMASK) + ", " +
                    FormatName(info.format & SF_FORMAT_SUBMASK);
  if (!withData) return true;
  Decoder decoder(file.get(), info, source.Size());
  if (!decoder.Run()) return Refuse(reason, "the decoded sound is too large");
  if (decoder.Frames() == 0 && frames > 0) return Refuse(reason, "the sound data is missing");
  if (decoder.Frames() != frames) {
    AddReason(reason, "the sound data is not as long as declared: it has " +
                          std::to_string(decoder.Frames()) + " whole frames");
  }
  SampleAccess::SetFrames(sample, decoder.Frames());
  decoder.MoveTo(sample);
  SampleAccess::SetWritable(sample);
  return true;
}

}  // namespace zyl
