// AIFF and AIFC reader. One pass over the chunks collects the format, markers, instrument, the
// position of the sound data and all other chunks; the sound data is read afterwards.
#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>

#include "AifFormat.h"
#include "AifSampler.h"
#include "ChunkWalker.h"
#include "FormOrigin.h"
#include "OwnChunk.h"
#include "SampleAccess.h"
#include "SampleReaders.h"
#include "SoundBlocks.h"

namespace zyl {
namespace {

struct AifParts {
  bool hasFormat = false;
  bool hasSound = false;
  bool isAifc = false;
  AifFormat format;
  ChunkHead sound;
  AifSampler sampler;
  InstrumentMarks marks;
  std::optional<OwnChunk> own;
};

// Returns false if the chunk is malformed.
bool ParseKnownChunk(const Bytes& bytes, Slot slot, FileOrigin& origin, AifParts& parts) {
  switch (slot) {
    case Slot::kFormat:
      parts.hasFormat = ReadAifFormat(bytes, parts.isAifc, parts.format);
      return parts.hasFormat;
    case Slot::kMarkers:
      return ReadMarkers(bytes, origin.aif);
    case Slot::kSampler:
      origin.hadSampler = ReadInstrument(bytes, origin.aif, parts.sampler, parts.marks);
      return origin.hadSampler;
    default:
      parts.own = UnpackOwnChunk(bytes);
      return true;
  }
}

Slot SlotOf(const ChunkHead& head) {
  if (head.Is("COMM")) return Slot::kFormat;
  if (head.Is("MARK")) return Slot::kMarkers;
  if (head.Is("INST")) return Slot::kSampler;
  return head.Is(kOwnChunkId) ? Slot::kOwn : Slot::kOther;
}

void KeepOther(const ChunkHead& head, Bytes bytes, BasicSample& sample) {
  ListChunk other;
  std::memcpy(other.id, head.id, sizeof other.id);
  if (head.Is("NAME") && sample.Name().empty()) {
    const std::string name(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    sample.SetName(name.c_str());
  }
  other.data = std::move(bytes);
  sample.otherChunks.push_back(std::move(other));
}

void Collect(const ByteSource& source, BasicSample& sample, FileOrigin& origin, AifParts& parts,
             std::string& reason) {
  ChunkWalker walker(source);
  ChunkHead head;
  while (walker.Next(head)) {
    const auto known = [&](Slot slot) { return HasPlace(origin.layout, slot); };
    if (head.Is("SSND") && !known(Slot::kSound)) {
      parts.sound = head;
      parts.hasSound = true;
      AddPlace(source, walker, head, Slot::kSound, origin);
      continue;
    }
    if (!head.Whole()) {
      AddReason(reason, "a chunk is truncated");
      continue;
    }
    const Slot slot = SlotOf(head);
    if (slot == Slot::kOwn && known(slot)) continue;
    Bytes bytes = ReadChunk(source, head);
    if (slot != Slot::kOther && !known(slot) && ParseKnownChunk(bytes, slot, origin, parts)) {
      AddPlace(source, walker, head, slot, origin);
      origin.stored[static_cast<size_t>(slot)] = std::move(bytes);
    } else {
      AddPlace(source, walker, head, Slot::kOther, origin);
      KeepOther(head, std::move(bytes), sample);
    }
  }
  RememberForm(source, walker, origin, reason);
}

// Remembers the bytes before and after the frames in the sound chunk.
void RememberSoundChunk(const ByteSource& source, const ChunkHead& sound, uint64_t offset,
                        uint64_t soundBytes, FileOrigin& origin) {
  Bytes& head = origin.stored[static_cast<size_t>(Slot::kSound)];
  head.resize(static_cast<size_t>(offset - sound.offset));
  head.resize(source.ReadAt(sound.offset, head.data(), head.size()));
  RememberSoundTail(source, sound, offset, soundBytes, origin);
}

// Finds the first frame: it follows two 32-bit words, the first of which is an offset to skip.
bool FindSound(const ByteSource& source, const AifParts& parts, uint64_t& offset, uint64_t& bytes) {
  std::byte words[8];
  if (parts.sound.available < sizeof words ||
      source.ReadAt(parts.sound.offset, words, sizeof words) != sizeof words) {
    return false;
  }
  const uint64_t skip = sizeof words + uint64_t{FieldReader(words, 4, ByteOrder::kBig).U32()};
  if (skip > parts.sound.available) return false;
  offset = parts.sound.offset + skip;
  bytes = parts.sound.available - skip;
  return true;
}

bool ReadPcm(const ByteSource& source, const AifParts& parts, const AifPcmType& type,
             AifSample& sample, FileOrigin& origin, bool withData, std::string& reason) {
  const AifFormat& format = parts.format;
  const unsigned bytesPerValue =
      type.bytesPerValue > 0 ? type.bytesPerValue : (format.bits + 7) / 8;
  if (bytesPerValue < 1 || bytesPerValue > 4) {
    return Refuse(reason, std::to_string(format.bits) + " bits per value are not supported");
  }
  const bool fitting = (format.bits + 7) / 8 == bytesPerValue;
  const unsigned bits = fitting ? format.bits : 8 * bytesPerValue;
  const SoundLayout layout{format.channels, bytesPerValue, type.bigEndian, false};
  uint64_t offset = 0;
  uint64_t bytes = 0;
  if (parts.hasSound && !FindSound(source, parts, offset, bytes)) {
    return Refuse(reason, "the sound data is missing");
  }
  if (!parts.hasSound && format.frames != 0) return Refuse(reason, "the file has no sound data");
  const uint64_t available = bytes / layout.FrameBytes();
  // A streaming writer may leave the frame count at 0.
  const uint64_t frames =
      format.frames == 0 ? available : std::min<uint64_t>(available, format.frames);
  if (frames == 0 && format.frames != 0) return Refuse(reason, "the sound data is missing");
  if (frames > UINT32_MAX) return Refuse(reason, "the sound data is too long");
  if (frames != format.frames) {
    AddReason(reason, "the sound data is not as long as declared: it has " +
                          std::to_string(frames) + " whole frames");
  }
  SampleAccess::SetFormat(sample, format.channels, bits, bytesPerValue, frames);
  SampleAccess::SetFlag(sample, parts.isAifc ? 1 : 0);
  sample.encoding = "PCM " + std::to_string(bits) + " bit";
  if (parts.isAifc) sample.encoding += " (AIFC " + format.compression + ")";
  if (!withData) return true;
  bool complete = true;
  if (!ReadSound(source, offset, layout, sample, complete)) {
    throw std::bad_alloc();
  }
  if (!complete) AddReason(reason, "some of the sound data cannot be read");
  if (parts.hasSound) {
    RememberSoundChunk(source, parts.sound, offset, frames * layout.FrameBytes(), origin);
  }
  SampleAccess::SetWritable(sample);
  return true;
}

void SetParameters(AifParts& parts, AifSample& sample, FileOrigin& origin, std::string& reason) {
  RiffParameters& parameters = sample.parameters;
  ResolveLoops(parts.marks, origin.aif, parts.sampler);
  FromAifSampler(parts.sampler, parameters);
  if (parts.own && parts.own->frames == sample.FrameCount() &&
      ToAifSampler(parts.own->parameters) == parts.sampler &&
      MarkersAgree(*parts.own, origin.aif)) {
    parameters = parts.own->parameters;
    origin.aif.loopMarks = parts.own->loopMarks;
  }
  parameters.rateHz = RateOrDefault(parts.format.rateHz, reason);
  if (ClampParameters(parameters, sample.FrameCount())) {
    AddReason(reason, "a loop extends beyond the sound data");
  }
}

}  // namespace

bool ReadAif(const ByteSource& source, AifSample& sample, bool withData, std::string& reason) {
  const ChunkWalker walker(source);
  AifParts parts;
  parts.isAifc = walker.Type() == "AIFC";
  if (walker.Form() != "FORM" || (!parts.isAifc && walker.Type() != "AIFF")) {
    return Refuse(reason, "not an AIFF file");
  }
  FileOrigin& origin = SampleAccess::NewOrigin(sample);
  Collect(source, sample, origin, parts, reason);
  if (!parts.hasFormat) return Refuse(reason, "the file has no format");
  if (!ChannelsFit(parts.format.channels, reason)) return false;
  if (const AifPcmType* type = FindAifPcmType(parts.format.compression)) {
    if (!ReadPcm(source, parts, *type, sample, origin, withData, reason)) return false;
    origin.aif.compression = parts.format.compression;
    origin.aif.compressionName = parts.format.compressionName;
  } else {
    if (!DecodeSound(source, sample, withData, reason)) return false;
    DropChunks(sample, origin, {"FVER", "PEAK"});
  }
  origin.aif.rate = parts.format.rate;
  SetParameters(parts, sample, origin, reason);
  RememberOrigin(sample, origin);
  // Rebuild the format chunk if the data was decoded or a value corrected.
  if (FindAifPcmType(parts.format.compression) == nullptr ||
      parts.format.frames != sample.FrameCount() || parts.format.rateHz < 1) {
    origin.stored[static_cast<size_t>(Slot::kFormat)].clear();
  }
  return true;
}

}  // namespace zyl
