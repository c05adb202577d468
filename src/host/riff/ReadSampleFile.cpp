#include <new>

#include "../platform/InputFile.h"
#include "../riff.h"
#include "ChunkWalker.h"
#include "SampleReaders.h"

namespace zyl {

namespace {

constexpr size_t kTagHeadBytes = 10;
// Bounds the time for a file full of empty tags.
constexpr int kMaxTags = 16;

// Total length of the ID3v2 tags at the start of a file.
uint64_t TagBytes(const ByteSource& source) {
  uint64_t end = 0;
  for (int i = 0; i < kMaxTags; ++i) {
    std::byte head[kTagHeadBytes];
    if (source.ReadAt(end, head, sizeof head) != sizeof head) return end;
    FieldReader in(head, sizeof head, ByteOrder::kBig);
    if (in.Text(3) != "ID3") return end;
    in.U16();  // version
    const bool footer = (in.U8() & 0x10) != 0;
    uint64_t size = kTagHeadBytes * (footer ? 2 : 1);
    const uint32_t sevenBits = in.U32();
    if ((sevenBits & 0x80808080) != 0) return end;
    for (int shift = 0; shift < 4; ++shift) {
      size += uint64_t{sevenBits >> (8 * shift) & 0x7F} << (7 * shift);
    }
    if (size > source.Size() - end) return end;
    end += size;
  }
  return end;
}

// Reads the form after the tags, and keeps the tags.
template <typename Sample, bool (*kRead)(const ByteSource&, Sample&, bool, std::string&)>
std::unique_ptr<BasicSample> ReadForm(const ByteSource& source, uint64_t tagBytes, bool withData,
                                      std::string& reason) {
  auto sample = std::make_unique<Sample>();
  if (!kRead(OffsetSource(source, tagBytes), *sample, withData, reason)) return nullptr;
  Bytes& prefix = SampleAccess::Origin(*sample)->prefix;
  prefix.resize(static_cast<size_t>(tagBytes));
  prefix.resize(source.ReadAt(0, prefix.data(), prefix.size()));
  return sample;
}

}  // namespace

std::unique_ptr<BasicSample> ReadSampleSource(const ByteSource& source, bool withData,
                                              std::string& reason) {
  const uint64_t tagBytes = TagBytes(source);
  const OffsetSource rest(source, tagBytes);
  const ChunkWalker walker(rest);
  if (walker.Type() == "WAVE" && walker.Order() == ByteOrder::kLittle) {
    return ReadForm<WavSample, ReadWav>(source, tagBytes, withData, reason);
  }
  if (walker.Form() == "FORM" && (walker.Type() == "AIFF" || walker.Type() == "AIFC")) {
    return ReadForm<AifSample, ReadAif>(source, tagBytes, withData, reason);
  }
  auto sample = std::make_unique<WavSample>();
  char id[4] = "";
  const bool isFlac = rest.ReadAt(0, id, 4) == 4 && std::string_view(id, 4) == "fLaC";
  const bool read = isFlac ? ReadFlac(rest, *sample, withData, reason)
                           : DecodeSound(source, *sample, withData, reason);
  if (!read) return nullptr;
  return sample;
}

std::unique_ptr<BasicSample> ReadSampleOrThrow(const std::string& path, bool withData,
                                               std::string& reason) {
  const InputFile file(path);
  if (file.Good()) return ReadSampleSource(FileSource(file), withData, reason);
  reason = file.Error();
  return nullptr;
}

}  // namespace zyl

std::unique_ptr<BasicSample> ReadSampleFile(const std::string& path, bool withData,
                                            std::string& reason) {
  reason.clear();
  try {
    return zyl::ReadSampleOrThrow(path, withData, reason);
  } catch (const std::bad_alloc&) {
    reason = "not enough memory for the file";
    return nullptr;
  }
}

std::vector<ChunkInfo> ListFileChunks(const std::string& path) {
  std::vector<ChunkInfo> chunks;
  const zyl::InputFile file(path);
  if (!file.Good()) return chunks;
  const zyl::FileSource source(file);
  const uint64_t tagBytes = zyl::TagBytes(source);
  const zyl::OffsetSource form(source, tagBytes);
  zyl::ChunkWalker walker(form);
  zyl::ChunkHead head;
  while (!walker.Form().empty() && walker.Next(head)) {
    chunks.push_back({std::string(head.Id()), head.size, tagBytes + head.offset});
  }
  return chunks;
}
