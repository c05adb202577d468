#include "ChunkWalker.h"

#include <algorithm>

namespace zyl {
namespace {

constexpr uint64_t kHeadBytes = 8;
constexpr uint32_t kOpenSize = 0xFFFFFFFFu;

bool IsChunkId(std::string_view id) {
  return std::all_of(id.begin(), id.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
}

// IDs of known chunks of sound files and SoundFont banks.
constexpr std::string_view kKnownIds[] = {
    // WAVE
    "fmt ", "data", "fact", "smpl", "inst", "LIST", "cue ", "plst", "labl", "note", "ltxt", "bext",
    "iXML", "axml", "aXML", "_PMX", "acid", "strc", "cart", "levl", "DISP", "PEAK", "ds64", "JUNK",
    "junk", "FLLR", "PAD ", "id3 ", "ID3 ", "slnt", "wavl", "umid", "elm1", "minf", "regn", "chna",
    "zyls",
    // AIFF
    "COMM", "SSND", "MARK", "INST", "COMT", "FVER", "NAME", "AUTH", "(c) ", "ANNO", "APPL", "AESD",
    "MIDI", "SAXL", "CHAN", "basc", "trns",
    // INFO lists
    "INAM", "IART", "ICMT", "ICOP", "ICRD", "IENG", "IGNR", "IKEY", "IMED", "IPRD", "ISBJ", "ISFT",
    "ISRC", "ISRF", "ITCH", "ITRK", "IPRT", "ILNG", "ICMS",
    // SoundFont banks
    "ifil", "isng", "irom", "iver", "sm24", "phdr", "pbag", "pmod", "pgen", "ibag", "imod", "igen",
    "shdr"};

bool IsKnownId(std::string_view id) {
  return std::find(std::begin(kKnownIds), std::end(kKnownIds), id) != std::end(kKnownIds);
}

}  // namespace

ChunkWalker::ChunkWalker(const ByteSource& source) : source_(source) {
  std::byte head[12];
  if (source.ReadAt(0, head, sizeof head) != sizeof head) return;
  const std::string form(reinterpret_cast<const char*>(head), 4);
  if (form == "FORM") {
    order_ = ByteOrder::kBig;
    soundId_ = "SSND";
  } else if (form == "RIFF" || form == "RF64" || form == "BW64") {
    soundId_ = "data";
  } else {
    return;
  }
  form_ = form;
  type_.assign(reinterpret_cast<const char*>(head) + 8, 4);
  const uint64_t declared = kHeadBytes + FieldReader(head + 4, 4, order_).U32();
  if (declared > sizeof head && declared <= source.Size()) formBytes_ = declared;
  next_ = sizeof head;
  formCut_ = declared > source.Size() && form != "RF64" && form != "BW64";
  formEnd_ = declared <= sizeof head ? source.Size() : std::min(declared, source.Size());
}

ChunkWalker::ChunkWalker(const ByteSource& source, const ChunkHead& list, ByteOrder order)
    : source_(source), order_(order), next_(list.offset + 4), nested_(true) {
  formEnd_ = list.offset + list.available;
}

bool ChunkWalker::ReadHead(uint64_t offset, ChunkHead& head) const {
  std::byte bytes[kHeadBytes];
  if (source_.ReadAt(offset, bytes, sizeof bytes) != sizeof bytes) return false;
  std::memcpy(head.id, bytes, 4);
  head.id[4] = '\0';
  head.size = FieldReader(bytes + 4, 4, order_).U32();
  head.offset = offset + kHeadBytes;
  head.available = std::min(head.size, source_.Size() - head.offset);
  // Trailing zeros are not a chunk.
  return std::any_of(head.id, head.id + 4, [](char c) { return c != '\0'; });
}

// Offset of the chunk after `head`. Some writers omit the padding byte of odd-sized chunks: use the
// unpadded offset if only that one has a known chunk ID.
uint64_t ChunkWalker::PlaceAfter(const ChunkHead& head) const {
  const uint64_t end = head.offset + head.available;
  ChunkHead next;
  if (head.available % 2 == 0 || !ReadHead(end, next) || !IsKnownId(next.Id())) {
    return end + head.available % 2;
  }
  const bool padded = ReadHead(end + 1, next) && IsKnownId(next.Id());
  return padded ? end + 1 : end;
}

// Whether complete chunks fill the file from `offset` to its end. If so, the bytes after an empty
// sound chunk are chunks, not sound data.
bool ChunkWalker::LooksLikeChunks(uint64_t offset) const {
  for (int i = 0; i < kMaxChunks; ++i) {
    if (offset >= source_.Size()) return true;
    ChunkHead head;
    if (!ReadHead(offset, head) || !IsChunkId(head.Id()) || !head.Whole()) return false;
    offset = PlaceAfter(head);
  }
  return false;
}

void ChunkWalker::FixSoundSize(ChunkHead& head) {
  if (head.Is("ds64") && form_ != "RIFF" && head.available >= 16) {
    std::byte sizes[16];
    if (source_.ReadAt(head.offset, sizes, sizeof sizes) == sizeof sizes) {
      largeSoundBytes_ = FieldReader(sizes + 8, 8, order_).U64();
    }
  }
  // Only the first sound chunk counts. Scanning ahead from every one would take quadratic time.
  if (head.Id() != soundId_ || soundId_.empty() || sawSound_) return;
  const uint64_t left = source_.Size() - head.offset;
  if (head.size == kOpenSize && largeSoundBytes_ > 0) {
    head.size = largeSoundBytes_;
    head.available = std::min(head.size, left);
  } else if (head.size == kOpenSize || (head.size == 0 && !LooksLikeChunks(head.offset))) {
    head.available = left;
  }
}

bool ChunkWalker::Next(ChunkHead& head) {
  if (count_ >= kMaxChunks) {
    sawBadSize_ = true;
    return false;
  }
  if (next_ >= formEnd_) {
    // Ignore a form size that ends before the sound chunk.
    if (nested_ || next_ >= source_.Size() || (sawFormat_ && sawSound_)) return false;
    formEnd_ = source_.Size();
    sawBadSize_ = true;
  }
  if (!ReadHead(next_, head)) return false;
  FixSoundSize(head);
  sawBadSize_ = sawBadSize_ || !head.Whole();
  sawFormat_ = sawFormat_ || head.Is("fmt ") || head.Is("COMM");
  sawSound_ = sawSound_ || head.Id() == soundId_;
  next_ = PlaceAfter(head);
  if (next_ > formEnd_ + 1) {
    formEnd_ = nested_ ? formEnd_ : source_.Size();
    sawBadSize_ = true;
  }
  ++count_;
  return true;
}

Bytes ReadChunk(const ByteSource& source, const ChunkHead& head) {
  Bytes bytes(static_cast<size_t>(head.available));
  const size_t got = source.ReadAt(head.offset, bytes.data(), bytes.size());
  bytes.resize(got);
  return bytes;
}

}  // namespace zyl
