// Conversion between sampler parameters and the "smpl" chunk of WAVE files.
//
// Pitch: the chunk stores the note that plays the sound untransposed and a fraction of a semitone
// above it in units of 1/2^32. The fraction is never negative: key 60 with tune +64 (1/256
// semitone) is note 60 with fraction 1/4, and tune -64 is note 59 with fraction 3/4. Readers
// convert a fraction above one half to the next key with a negative tune.
//
// Loop ends are inclusive, as in RiffLoop.
#pragma once

#include <cstdint>
#include <vector>

#include "../byteOrder.h"
#include "../riff.h"
#include "SampleAccess.h"

namespace zyl {

struct WavSampler {
  int32_t pitch = 60 * 256;  // note and fraction in 1/256 semitone
  std::vector<RiffLoop> loops;

  bool operator==(const WavSampler&) const = default;
};

WavSampler ToWavSampler(const RiffParameters& parameters);
// Doesn't change rate, start and end.
void FromWavSampler(const WavSampler& sampler, RiffParameters& parameters);

// Returns false if the chunk is too short. Loops beyond kMaxLoops are stored in `kept` unparsed.
// Sets `loopsMissing` if the chunk declares more loops than `sampler` holds.
bool ReadSmpl(const Bytes& bytes, WavKept& kept, WavSampler& sampler, bool& loopsMissing);
// Reads the pitch from an "inst" chunk: key and detune in cents.
bool ReadInst(const Bytes& bytes, WavSampler& sampler);
// Returns an "inst" chunk of at least 7 bytes with its pitch replaced.
Bytes MakeInst(Bytes kept, const RiffParameters& parameters);
Bytes MakeSmpl(const RiffParameters& parameters, uint64_t frames, const FileOrigin* origin);

}  // namespace zyl
