// Walks over the chunks of a RIFF (little-endian) or FORM (big-endian) file.
//
// The walk believes no size: a chunk never reaches behind the end of the file, and the size of the
// whole form ends the walk only where a chunk ends there too. The sound chunk of a file that was
// written as a stream, whose size was left at 0 or at the largest number, reaches to the end of the
// file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ByteOrder.h"
#include "ByteSource.h"

namespace zyl {

// More chunks than this are not looked at: no sound file has them, and they would take more memory
// than the file is long.
inline constexpr int kMaxChunks = 4096;

struct ChunkHead {
  char id[5] = "";
  uint64_t size = 0;       // as declared
  uint64_t offset = 0;     // of the first byte of data
  uint64_t available = 0;  // bytes of data that are really there

  std::string_view Id() const { return std::string_view(id, 4); }
  bool Is(std::string_view other) const { return Id() == other; }
  bool Whole() const { return available == size; }
};

class ChunkWalker {
 public:
  // Opens the form; Form() stays empty when the source is no form of a known kind.
  explicit ChunkWalker(const ByteSource& source);
  // Walks over the chunks inside a list chunk of `source`, behind its four-letter type.
  ChunkWalker(const ByteSource& source, const ChunkHead& list, ByteOrder order);

  // "RIFF", "RF64", "BW64" or "FORM"; empty when it is none of them.
  const std::string& Form() const { return form_; }
  // "WAVE", "AIFF", ...
  const std::string& Type() const { return type_; }
  ByteOrder Order() const { return order_; }

  // The next chunk; false at the end.
  bool Next(ChunkHead& head);
  // Where the chunk after the last one that Next returned begins, padding included.
  uint64_t Place() const { return next_; }
  // Length of the whole form as declared; 0 where the file is shorter or the form was left open.
  uint64_t FormBytes() const { return formBytes_; }
  // Some size did not fit the file.
  bool SawBadSize() const { return sawBadSize_; }
  // The form was declared longer than its file.
  bool FormCut() const { return formCut_; }

 private:
  bool LooksLikeChunks(uint64_t offset) const;
  uint64_t PlaceAfter(const ChunkHead& head) const;
  bool ReadHead(uint64_t offset, ChunkHead& head) const;
  void SettleSize(ChunkHead& head);

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

// Reads a chunk's data whole; empty when it cannot be read.
Bytes ReadChunk(const ByteSource& source, const ChunkHead& head);

}  // namespace zyl
