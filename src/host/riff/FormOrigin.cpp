#include "FormOrigin.h"

#include <algorithm>

namespace zyl {
namespace {

Bytes ReadBytes(const ByteSource& source, uint64_t offset, uint64_t count) {
  Bytes bytes(static_cast<size_t>(count));
  bytes.resize(source.ReadAt(offset, bytes.data(), bytes.size()));
  return bytes;
}

}  // namespace

void AddPlace(const ByteSource& source, const ChunkWalker& walker, const ChunkHead& head, Slot slot,
              FileOrigin& origin) {
  Place place{slot};
  const uint64_t end = head.offset + head.available;
  std::byte pad{0};
  if (head.available % 2 != 0) {
    const bool padded = walker.Place() > end && source.ReadAt(end, &pad, 1) == 1;
    place.pad = padded ? std::to_integer<int>(pad) : -1;
  }
  origin.layout.push_back(place);
}

void RememberForm(const ByteSource& source, const ChunkWalker& walker, FileOrigin& origin,
                  std::string& reason) {
  if (walker.SawBadSize() || walker.FormCut()) {
    if (reason.empty()) reason = "a declared size is inconsistent with the file";
    return;
  }
  origin.chunksEnd = std::min(walker.Place(), source.Size());
  origin.formBytes = walker.FormBytes();
  origin.tail = ReadBytes(source, origin.chunksEnd, source.Size() - origin.chunksEnd);
}

void RememberSoundTail(const ByteSource& source, const ChunkHead& sound, uint64_t offset,
                       uint64_t soundBytes, FileOrigin& origin) {
  if (!sound.Whole()) return;
  const uint64_t begin = offset + soundBytes;
  origin.soundTail = ReadBytes(source, begin, sound.offset + sound.available - begin);
}

void RememberOrigin(const BasicSample& sample, FileOrigin& origin) {
  origin.frames = sample.FrameCount();
  origin.channels = sample.ChannelCount();
  origin.bits = sample.BitsPerValue();
  origin.bytesPerValue = sample.BytesPerValue();
  origin.parameters = sample.parameters;
  origin.name = sample.Name();
}

void DropChunks(BasicSample& sample, FileOrigin& origin,
                std::initializer_list<std::string_view> ids) {
  std::vector<ListChunk> chunks;
  std::vector<Place> layout;
  size_t next = 0;
  for (const Place& place : origin.layout) {
    if (place.slot == Slot::kOther) {
      ListChunk& chunk = sample.otherChunks[next++];
      if (std::find(ids.begin(), ids.end(), std::string_view(chunk.id, 4)) != ids.end()) continue;
      chunks.push_back(std::move(chunk));
    }
    layout.push_back(place);
  }
  sample.otherChunks = std::move(chunks);
  origin.layout = std::move(layout);
}

}  // namespace zyl
