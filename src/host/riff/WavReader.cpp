// WAVE reader. One pass over the chunks collects the format, the sampler parameters, the position
// of the sound data and all other chunks; the sound data is read afterwards.
#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>

#include "ChunkWalker.h"
#include "FlacChunks.h"
#include "FormOrigin.h"
#include "InfoList.h"
#include "OwnChunk.h"
#include "SampleAccess.h"
#include "SampleReaders.h"
#include "SoundBlocks.h"
#include "WavSampler.h"

namespace zyl {
namespace {

constexpr uint16_t kPcm = 1;
constexpr uint16_t kExtensible = 0xFFFE;
// Bytes 2 to 15 of every sub-format GUID that is derived from a format tag.
constexpr uint8_t kSubFormatTail[14] = {0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};

constexpr uint64_t kSmplBytes = 36;

struct WavFormat {
  uint16_t tag = 0;
  uint16_t channels = 0;
  uint32_t rateHz = 0;
  uint16_t bits = 0;
  uint16_t bytesPerValue = 0;  // 0 if the header is invalid
  uint32_t channelMask = 0;
  bool extensible = false;
};

WavFormat ReadFormat(const Bytes& bytes) {
  FieldReader in(bytes, ByteOrder::kLittle);
  WavFormat format;
  format.tag = in.U16();
  format.channels = in.U16();
  format.rateHz = in.U32();
  in.U32();
  const uint16_t frameBytes = in.U16();
  format.bits = in.U16();
  if (!in.Good()) format.tag = 0;
  auto container = static_cast<uint16_t>((format.bits + 7) / 8);
  if (format.tag == kExtensible) {
    in.U16();
    const uint16_t validBits = in.U16();
    format.channelMask = in.U32();
    format.tag = in.U16();
    const std::byte* tail = in.Raw(sizeof kSubFormatTail);
    if (tail == nullptr || std::memcmp(tail, kSubFormatTail, sizeof kSubFormatTail) != 0) {
      format.tag = 0;
    }
    format.extensible = true;
    if (validBits > 0 && validBits < format.bits) format.bits = validBits;
  }
  // Some headers declare fewer bits than the container holds; the frame size gives its width.
  if (format.channels > 0 && frameBytes % format.channels == 0) {
    const auto wide = static_cast<uint16_t>(frameBytes / format.channels);
    if (wide > container && wide <= 4) container = wide;
  }
  if (format.bits >= 1 && container <= 4) format.bytesPerValue = container;
  // A bit depth that fits a narrower container is unreliable; use the full width.
  if ((format.bits + 7) / 8 < container) format.bits = static_cast<uint16_t>(8 * container);
  return format;
}

Bytes& StoredFormat(FileOrigin& origin) {
  return origin.stored[static_cast<size_t>(Slot::kFormat)];
}

struct WavParts {
  bool hasFormat = false;
  bool hasSound = false;
  bool hasInst = false;
  WavFormat format;
  ChunkHead sound;
  WavSampler sampler;
  std::optional<OwnChunk> own;
};

void ParseKnownChunk(Bytes bytes, Slot slot, FileOrigin& origin, WavParts& parts,
                     std::string& reason) {
  bool loopsMissing = false;
  switch (slot) {
    case Slot::kFormat:
      parts.format = ReadFormat(bytes);
      parts.hasFormat = true;
      break;
    case Slot::kSampler:
      origin.hadSampler = ReadSmpl(bytes, origin.wav, parts.sampler, loopsMissing);
      if (loopsMissing) AddReason(reason, "some loops are ignored");
      break;
    default:
      parts.own = UnpackOwnChunk(bytes);
      break;
  }
  origin.stored[static_cast<size_t>(slot)] = std::move(bytes);
}

void KeepOther(const ByteSource& source, const ChunkHead& head, BasicSample& sample,
               FileOrigin& origin, WavParts& parts) {
  ListChunk other;
  std::memcpy(other.id, head.id, sizeof other.id);
  other.data = ReadChunk(source, head);
  if (head.Is("inst") && !origin.hadSampler && !parts.hasInst) {
    parts.hasInst = ReadInst(other.data, parts.sampler);
  }
  if (head.Is("LIST") && sample.Name().empty()) {
    sample.SetName(ListedName(other.data).c_str());
  }
  sample.otherChunks.push_back(std::move(other));
}

WavParts Collect(const ByteSource& source, BasicSample& sample, FileOrigin& origin,
                 std::string& reason) {
  ChunkWalker walker(source);
  WavParts parts;
  ChunkHead head;
  while (walker.Next(head)) {
    const auto known = [&](Slot slot) { return HasPlace(origin.layout, slot); };
    if (head.Is("data") && !known(Slot::kSound)) {
      parts.sound = head;
      parts.hasSound = true;
      AddPlace(source, walker, head, Slot::kSound, origin);
    } else if (!head.Whole()) {
      AddReason(reason, "a chunk is truncated");
    } else if (head.Is("ds64") && walker.Form() != "RIFF") {
      continue;  // 64-bit sizes: not needed for the plain RIFF form that is written
    } else {
      const Slot slot = head.Is("fmt ")                              ? Slot::kFormat
                        : head.Is("smpl") && head.size >= kSmplBytes ? Slot::kSampler
                        : head.Is(kOwnChunkId)                       ? Slot::kOwn
                                                                     : Slot::kOther;
      if (slot != Slot::kOther && !known(slot)) {
        AddPlace(source, walker, head, slot, origin);
        ParseKnownChunk(ReadChunk(source, head), slot, origin, parts, reason);
      } else if (slot != Slot::kOwn) {
        KeepOther(source, head, sample, origin, parts);
        AddPlace(source, walker, head, Slot::kOther, origin);
      }
    }
  }
  RememberForm(source, walker, origin, reason);
  return parts;
}

bool ReadPcm(const ByteSource& source, const WavParts& parts, WavSample& sample, FileOrigin& origin,
             bool withData, std::string& reason) {
  const WavFormat& format = parts.format;
  if (format.bytesPerValue == 0) {
    return Refuse(reason, std::to_string(format.bits) + " bits per value are not supported");
  }
  if (!parts.hasSound) return Refuse(reason, "the file has no sound data");
  SoundLayout layout{format.channels, format.bytesPerValue, false, format.bytesPerValue == 1};
  const uint64_t frames = parts.sound.available / layout.FrameBytes();
  if (frames == 0 && parts.sound.size > 0) return Refuse(reason, "the sound data is missing");
  if (frames > UINT32_MAX) return Refuse(reason, "the sound data is too long");
  if (!parts.sound.Whole() || parts.sound.available % layout.FrameBytes() != 0) {
    AddReason(reason, "the sound data is not as long as declared: it has " +
                          std::to_string(frames) + " whole frames");
  }
  SampleAccess::SetFormat(sample, format.channels, format.bits, format.bytesPerValue, frames);
  SampleAccess::SetFlag(sample, format.extensible ? 1 : 0);
  sample.encoding = "PCM " + std::to_string(format.bits) + " bit";
  if (!withData) return true;
  bool complete = true;
  if (!ReadSound(source, parts.sound.offset, layout, sample, complete)) {
    throw std::bad_alloc();
  }
  if (!complete) AddReason(reason, "some of the sound data cannot be read");
  RememberSoundTail(source, parts.sound, parts.sound.offset, frames * layout.FrameBytes(), origin);
  SampleAccess::SetWritable(sample);
  return true;
}

// Sets the sampler parameters from the chunks. The own chunk overrides the others if it agrees with
// them; otherwise another program has edited the file.
void SetParameters(const WavParts& parts, WavSample& sample, FileOrigin& origin,
                   std::string& reason) {
  RiffParameters& parameters = sample.parameters;
  const int32_t rateHz = parameters.rateHz;
  FromWavSampler(parts.sampler, parameters);
  if (parts.own && parts.own->frames == sample.FrameCount() &&
      ToWavSampler(parts.own->parameters) == parts.sampler) {
    parameters = parts.own->parameters;
    parameters.rateHz = rateHz;
    const unsigned bits = parts.own->bits;
    if (bits >= 1 && (bits + 7) / 8 == sample.BytesPerValue()) SampleAccess::SetBits(sample, bits);
  }
  if (ClampParameters(parameters, sample.FrameCount())) {
    AddReason(reason, "a loop extends beyond the sound data");
  }
  origin.wav.formatBits = parts.format.bits;
  origin.wav.channelMask = parts.format.channelMask;
  RememberOrigin(sample, origin);
}

}  // namespace

bool ReadWav(const ByteSource& source, WavSample& sample, bool withData, std::string& reason) {
  const ChunkWalker walker(source);
  if (walker.Form().empty() || walker.Order() == ByteOrder::kBig || walker.Type() != "WAVE") {
    return Refuse(reason, "not a WAVE file");
  }
  FileOrigin& origin = SampleAccess::NewOrigin(sample);
  const WavParts parts = Collect(source, sample, origin, reason);
  const WavFormat& format = parts.format;
  if (!parts.hasFormat) return Refuse(reason, "the file has no format");
  if (!ChannelsFit(format.channels, reason)) return false;
  if (format.tag == kPcm) {
    if (!ReadPcm(source, parts, sample, origin, withData, reason)) return false;
  } else {
    if (!DecodeSound(source, sample, withData, reason)) return false;
    DropChunks(sample, origin, {"fact", "PEAK"});
    StoredFormat(origin).clear();
  }
  sample.parameters.rateHz = RateOrDefault(format.rateHz, reason);
  if (static_cast<uint32_t>(sample.parameters.rateHz) != format.rateHz) {
    StoredFormat(origin).clear();
  }
  SetParameters(parts, sample, origin, reason);
  return true;
}

bool ReadFlac(const ByteSource& source, WavSample& sample, bool withData, std::string& reason) {
  if (!DecodeSound(source, sample, withData, reason)) return false;
  const Bytes form = WaveChunksOfFlac(source);
  const MemorySource chunks(form.data(), form.size());
  const ChunkWalker walker(chunks);
  if (walker.Type() != "WAVE" || walker.Order() == ByteOrder::kBig) return true;
  FileOrigin& origin = SampleAccess::NewOrigin(sample);
  std::string ignored;
  const WavParts parts = Collect(chunks, sample, origin, ignored);
  const WavFormat& format = parts.format;
  if (format.tag == kPcm && format.channels == sample.ChannelCount() &&
      format.bytesPerValue == sample.BytesPerValue() &&
      format.rateHz == static_cast<uint32_t>(sample.parameters.rateHz)) {
    SampleAccess::SetBits(sample, format.bits);
    SampleAccess::SetFlag(sample, format.extensible ? 1 : 0);
  } else {
    StoredFormat(origin).clear();
  }
  SetParameters(parts, sample, origin, reason);
  return true;
}

}  // namespace zyl
