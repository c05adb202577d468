// Iterates over the chunks of a RIFF (little-endian) or FORM (big-endian) file.
//
// No declared size is trusted: chunks are clipped to the end of the file, and the form's size ends
// the iteration only if a chunk ends there too. If a streaming writer left the size of the sound
// chunk at 0 or 0xFFFFFFFF, the chunk extends to the end of the file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "../byteOrder.h"
#include "ByteSource.h"

namespace zyl {

// Iteration stops after this many chunks. No real sound file has more, and storing them would take
// more memory than the size of the file.
inline constexpr int kMaxChunks = 4096;

struct ChunkHead {
  char id[5] = "";
  uint64_t size = 0;       // as declared
  uint64_t offset = 0;     // of the first byte of data
  uint64_t available = 0;  // bytes of data in the file

  std::string_view Id() const { return std::string_view(id, 4); }
  bool Is(std::string_view other) const { return Id() == other; }
  bool Whole() const { return available == size; }
};

class ChunkWalker {
 public:
  // Reads the form's header. Form() is empty if the source has no known form.
  explicit ChunkWalker(const ByteSource& source);
  // Iterates over the chunks in a list chunk of `source`, starting after its four-letter type.
  ChunkWalker(const ByteSource& source, const ChunkHead& list, ByteOrder order);

  // "RIFF", "RF64", "BW64", "FORM" or empty.
  const std::string& Form() const { return form_; }
  // "WAVE", "AIFF", ...
  const std::string& Type() const { return type_; }
  ByteOrder Order() const { return order_; }

  // Moves to the next chunk; returns false at the end.
  bool Next(ChunkHead& head);
  // Offset of the chunk after the current one, that is, after its padding.
  uint64_t Place() const { return next_; }
  // Declared length of the form with its header; 0 if the file is shorter or the length is unset.
  uint64_t FormBytes() const { return formBytes_; }
  // A declared size was inconsistent with the file.
  bool SawBadSize() const { return sawBadSize_; }
  // The declared length of the form exceeds the file.
  bool FormCut() const { return formCut_; }

 private:
  bool LooksLikeChunks(uint64_t offset) const;
  uint64_t PlaceAfter(const ChunkHead& head) const;
  bool ReadHead(uint64_t offset, ChunkHead& head) const;
  void FixSoundSize(ChunkHead& head);

  const ByteSource& source_;
  std::string form_;
  std::string type_;
  ByteOrder order_ = ByteOrder::kLittle;
  std::string_view soundId_;
  uint64_t next_ = 0;
  uint64_t formEnd_ = 0;
  uint64_t formBytes_ = 0;
  uint64_t largeSoundBytes_ = 0;  // from a "ds64" chunk
  int count_ = 0;
  bool nested_ = false;
  bool sawFormat_ = false;
  bool sawSound_ = false;
  bool sawBadSize_ = false;
  bool formCut_ = false;
};

// Reads a chunk's data; shorter than `head.available` after a read error.
Bytes ReadChunk(const ByteSource& source, const ChunkHead& head);

}  // namespace zyl
