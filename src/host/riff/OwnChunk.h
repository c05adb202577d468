// The "zyls" chunk stores sampler parameters that the standard WAVE and AIFF chunks can't express.
//
// It is written only if the standard chunks alone would read back differently, and is little-endian
// in both containers; docs/sample-files.md describes its layout. Readers use it only if it agrees
// with the standard chunks: these win in a file that another program has edited.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "../byteOrder.h"
#include "../riff.h"

namespace zyl {

inline constexpr char kOwnChunkId[] = "zyls";

struct OwnChunk {
  uint64_t frames = 0;        // length of the sound data that the parameters belong to
  RiffParameters parameters;  // except the rate
  unsigned bits = 0;          // WAVE: bits per value if the format chunk declares more; else 0
  std::vector<std::pair<uint16_t, uint16_t>> loopMarks;  // AIFF: marker IDs of each loop
};

Bytes PackOwnChunk(const OwnChunk& own);
// Returns nullopt for an unknown version or a truncated chunk. Doesn't clamp values.
std::optional<OwnChunk> UnpackOwnChunk(const Bytes& bytes);

// Whether two sets of parameters play `frames` frames in the same way. Ignores the rate, and treats
// an end of -1 like the last frame.
bool Equivalent(const RiffParameters& a, const RiffParameters& b, uint64_t frames);

// Clamps the parameters to the range of a sample with `frames` frames. Both readers and writers
// call this, so that files read back as written. Removes loops that start beyond the last frame and
// clamps loop ends to it; returns true if that changed a loop.
bool ClampParameters(RiffParameters& parameters, uint64_t frames);

}  // namespace zyl
