// The plan of a file to be written: its chunks in order, of which one is the sound. All sizes are
// known before the first byte is written.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "SampleAccess.h"
#include "SoundBlocks.h"

namespace zyl {

// No file of either format can be longer: its size is a 32-bit word.
inline constexpr uint64_t kMaxFileBytes = uint64_t{1} << 32;

struct PlannedChunk {
  std::string id;
  Bytes bytes;                      // for the sound chunk: what stands before the sound
  const ListChunk* kept = nullptr;  // instead of `bytes`
  bool isSound = false;
};

struct FormPlan {
  ByteOrder order = ByteOrder::kLittle;
  std::string form;
  std::string type;
  SoundLayout sound;
  std::vector<PlannedChunk> chunks;

  void Add(const char* id, Bytes bytes) { chunks.push_back({id, std::move(bytes)}); }
  void Keep(const ListChunk& kept) { chunks.push_back({std::string(kept.id, 4), {}, &kept}); }
  uint64_t FileBytes(uint64_t soundBytes) const;
};

// Writes the file; nothing is written when it would be too long.
bool WriteForm(const FormPlan& plan, const BasicSample& sample, ByteSink& sink);

// Writes `sample` to `file` by its plan, or abandons the file.
bool WriteFormToFile(const FormPlan& plan, const BasicSample& sample, RiffFile& file);

// Every slot of the file that the sample came from, then those of `usual` that it had not, and as
// many kOther slots as there are other chunks.
std::vector<Slot> LayoutOf(const BasicSample& sample, std::initializer_list<Slot> usual);

}  // namespace zyl
