// The plan of a file to be written: its chunks in order, of which one is the sound. All sizes are
// known before the first byte is written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SampleAccess.h"
#include "SoundBlocks.h"

namespace zyl {

// No file of either format can be longer: its size is a 32-bit word.
inline constexpr uint64_t kMaxFileBytes = uint64_t{1} << 32;

struct PlannedChunk {
  std::string id;
  Bytes bytes;                   // for the sound chunk: what precedes the sound
  const Bytes* kept = nullptr;   // instead of `bytes`
  const Bytes* after = nullptr;  // for the sound chunk: what follows the sound
  bool isSound = false;
  int pad = 0;  // after an odd chunk; -1: none, honoured at the end of the file
};

struct FormPlan {
  ByteOrder order = ByteOrder::kLittle;
  std::string form;
  std::string type;
  SoundLayout sound;
  std::vector<PlannedChunk> chunks;

  const Bytes* prefix = nullptr;  // before the form
  const Bytes* tail = nullptr;    // after the last chunk
  uint64_t formBytes = 0;         // declared length of a form ...
  uint64_t chunksEnd = 0;         // ... whose chunks end here; 0 for a form that is not kept

  void Add(std::string_view id, Bytes bytes) {
    chunks.push_back({std::string(id), std::move(bytes)});
  }
  void Keep(std::string_view id, const Bytes& kept) {
    chunks.push_back({std::string(id), {}, &kept});
  }
  uint64_t FileBytes(uint64_t soundBytes) const;
  // From the first byte of the form to the end of its last chunk.
  uint64_t ChunkBytes(uint64_t soundBytes) const;
};

// Whether the sample still has the format of the file that it was read from: what the format chunk
// says, the number of frames aside.
bool SameFormat(const BasicSample& sample);
// Whether that and everything else that the known chunks say is still as it was read, given the
// sample's parameters as they are to be stored.
bool Unchanged(const BasicSample& sample, const RiffParameters& parameters);

// Adds the chunk of a slot as it was read. False where there is none.
bool KeepStored(const BasicSample& sample, Slot slot, const char* id, FormPlan& plan);

// Adds the sound chunk, with what surrounded the sound where it still fits; `head` precedes the
// sound otherwise.
void PlanSound(const BasicSample& sample, const char* id, Bytes head, FormPlan& plan);

// Takes over what surrounds the chunks of the file that the sample was read from.
void PlanSurroundings(const BasicSample& sample, FormPlan& plan);

// Writes the file; nothing is written when it would be too long.
bool WriteForm(const FormPlan& plan, const BasicSample& sample, ByteSink& sink);

// Writes `sample` to `file` by its plan, or abandons the file.
bool WriteFormToFile(const FormPlan& plan, const BasicSample& sample, RiffFile& file);

// Every slot of the file that the sample came from, then those of `usual` that it had not, and as
// many kOther slots as there are other chunks.
std::vector<Place> LayoutOf(const BasicSample& sample, std::initializer_list<Slot> usual);

}  // namespace zyl
