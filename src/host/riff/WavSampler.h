// The sampler parameters as a WAVE file's "smpl" chunk has them.
//
// Pitch: the chunk stores the note whose key plays the sound untransposed and a fraction of a
// semitone above it in units of 1/2^32. A tuning goes there as it is: key 60 with tune +64 is note
// 60 with fraction 1/4. Below zero the fraction counts from the note below: tune -64 is note 59
// with fraction 3/4. A reader takes a fraction above one half as the next key with a negative tune.
//
// Loop ends are inclusive, as they are in RiffLoop.
#pragma once

#include <cstdint>
#include <vector>

#include "../riff.h"
#include "ByteOrder.h"
#include "SampleAccess.h"

namespace zyl {

struct WavSampler {
  int32_t pitch = 60 * 256;  // note and fraction in 1/256 semitone
  std::vector<RiffLoop> loops;

  bool operator==(const WavSampler&) const = default;
};

WavSampler ToWavSampler(const RiffParameters& parameters);
// Leaves rate, start and end alone.
void FromWavSampler(const WavSampler& sampler, RiffParameters& parameters);

// False for a chunk that is too short to be one. Loops beyond the sixteenth are no
// parameters; they are kept as they are.
bool ReadSmpl(const Bytes& bytes, WavKept& kept, WavSampler& sampler, bool& loopsMissing);
// The same from an "inst" chunk: key and detune in cents.
bool ReadInst(const Bytes& bytes, WavSampler& sampler);
// A kept "inst" chunk, of at least 7 bytes, with another pitch.
Bytes MakeInst(Bytes kept, const RiffParameters& parameters);
Bytes MakeSmpl(const RiffParameters& parameters, uint64_t frames, const FileOrigin* origin);

}  // namespace zyl
