// The layout of a file to be written: its chunks in order, one of which holds the sound data. All
// sizes are known before the first byte is written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SampleAccess.h"
#include "SoundBlocks.h"

namespace zyl {

// Both formats store their size as a 32-bit word.
inline constexpr uint64_t kMaxFileBytes = uint64_t{1} << 32;

struct PlannedChunk {
  std::string id;
  Bytes bytes;                   // in the sound chunk: bytes before the frames
  const Bytes* kept = nullptr;   // used instead of `bytes` unless null
  const Bytes* after = nullptr;  // in the sound chunk: bytes after the frames
  bool isSound = false;
  int pad = 0;  // padding byte of an odd chunk; -1: none (only at the end of the file)
};

struct FormPlan {
  ByteOrder order = ByteOrder::kLittle;
  std::string form;
  std::string type;
  SoundLayout sound;
  std::vector<PlannedChunk> chunks;

  const Bytes* prefix = nullptr;  // before the form
  const Bytes* tail = nullptr;    // after the last chunk
  uint64_t formBytes = 0;         // declared length of the form read
  uint64_t chunksEnd = 0;         // end of its last chunk; both 0 if unknown

  void Add(std::string_view id, Bytes bytes) {
    chunks.push_back({std::string(id), std::move(bytes)});
  }
  void Keep(std::string_view id, const Bytes& kept) {
    chunks.push_back({std::string(id), {}, &kept});
  }
  uint64_t FileBytes(uint64_t soundBytes) const;
  // Length of the form from its first byte to the end of its last chunk.
  uint64_t ChunkBytes(uint64_t soundBytes) const;
};

// Whether the sample still has the format of the file that it was read from, ignoring the number of
// frames.
bool SameFormat(const BasicSample& sample);
// Whether format, length and parameters are still as read. `parameters` are the sample's parameters
// as they will be stored.
bool Unchanged(const BasicSample& sample, const RiffParameters& parameters);

// Adds the chunk of a slot as it was read. Returns false if there was none.
bool KeepStored(const BasicSample& sample, Slot slot, const char* id, FormPlan& plan);

// Adds the sound chunk. If format and length are unchanged, keeps the bytes that preceded and
// followed the frames; otherwise writes `head` before the frames.
void PlanSound(const BasicSample& sample, const char* id, Bytes head, FormPlan& plan);

// Keeps the bytes before the form and after the chunks of the file that the sample was read from.
void PlanSurroundings(const BasicSample& sample, FormPlan& plan);

// Writes the file. Returns false without writing if the sample is invalid or the file would be too
// long.
bool WriteForm(const FormPlan& plan, const BasicSample& sample, ByteSink& sink);

// Writes `sample` to `file`; abandons the file on failure.
bool WriteFormToFile(const FormPlan& plan, const BasicSample& sample, RiffFile& file);

// Returns the slots of the file that the sample was read from, then the missing ones of `usual`,
// with one kOther slot per unknown chunk.
std::vector<Place> LayoutOf(const BasicSample& sample, std::initializer_list<Slot> usual);

}  // namespace zyl
