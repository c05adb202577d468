// The "zyls" chunk: the sampler parameters that WAVE and AIFF have no words for.
//
// It is written only where the standard chunks alone would read back differently, is little-endian
// in both containers, and is laid out in docs/sample-files.md. A reader believes it only where it
// says what the standard chunks say; a file that another program has edited is read by those.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "../riff.h"
#include "ByteOrder.h"

namespace zyl {

inline constexpr char kOwnChunkId[] = "zyls";

struct OwnChunk {
  uint64_t frames = 0;        // length of the sound that the parameters belong to
  RiffParameters parameters;  // all but the rate
  unsigned bits = 0;          // WAVE: bits per value where the format chunk tells more; else 0
  std::vector<std::pair<uint16_t, uint16_t>> loopMarks;  // AIFF: the markers of each loop
};

Bytes PackOwnChunk(const OwnChunk& own);
// Nothing for an unknown version or a chunk that is cut off. Values are as stored.
std::optional<OwnChunk> UnpackOwnChunk(const Bytes& bytes);

// Whether two sets of parameters mean the same for a sound of `frames` frames: the rate aside, and
// the last frame named or left open.
bool SameMeaning(const RiffParameters& a, const RiffParameters& b, uint64_t frames);

// Clamps the parameters to what a sample of `frames` frames can have. Readers do so with what they
// found and writers with what they store, so that what is written is what is read. Loops outside
// the sound are dropped, ends after it come to its last frame; true when that changed a loop.
bool SettleParameters(RiffParameters& parameters, uint64_t frames);

}  // namespace zyl
