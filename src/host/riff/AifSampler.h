// The sampler parameters as an AIFF file's "INST" and "MARK" chunks have them.
//
// Pitch: a base note and a detune in cents, -50 to 50; tune in 1/256 semitone is cents * 2.56,
// rounded either way.
//
// Loops: a sustain loop and a release loop, each a play mode and two markers. A marker lies between
// frames, so a loop ends with the marker before frame `end + 1`. The first loop is the sustain
// loop. The release loop is the second loop, or the first again, where sound is to go on looping
// after the key is let go; without one the loop ends with the key. Play mode 0 says that nothing
// loops. Further loops have markers only.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "../riff.h"
#include "ByteOrder.h"
#include "OwnChunk.h"
#include "SampleAccess.h"

namespace zyl {

struct AifLoop {
  int16_t playMode = 0;  // 0 none, 1 forward, 2 forward and backward
  bool there = false;
  uint32_t start = 0;
  uint32_t end = 0;  // inclusive

  bool operator==(const AifLoop&) const = default;
};

struct AifSampler {
  int8_t note = 60;
  int8_t cents = 0;
  AifLoop sustain;
  AifLoop release;

  bool operator==(const AifSampler&) const = default;
};

AifSampler ToAifSampler(const RiffParameters& parameters);
// Leaves rate, start and end alone.
void FromAifSampler(const AifSampler& sampler, RiffParameters& parameters);

// Both false for chunks that are too short to be what they say.
bool ReadMarkers(const Bytes& bytes, AifKept& kept);
struct InstrumentMarks {
  std::pair<uint16_t, uint16_t> sustain;
  std::pair<uint16_t, uint16_t> release;
};
bool ReadInstrument(const Bytes& bytes, AifKept& kept, AifSampler& sampler, InstrumentMarks& marks);
// Puts the markers' positions into the loops, and the loops' markers into `kept.loopMarks`.
void ResolveLoops(const InstrumentMarks& marks, AifKept& kept, AifSampler& sampler);
// Whether each loop of the own chunk lies where its markers are.
bool MarkersAgree(const OwnChunk& own, const AifKept& kept);

// The markers and loop markers of a file with these loops: markers that belong to no loop stay, a
// loop keeps the markers it came with where it can.
AifKept PlaceMarkers(const RiffParameters& parameters, const FileOrigin* origin);
Bytes MakeMarkers(const AifKept& kept);
Bytes MakeInstrument(const RiffParameters& parameters, const AifKept& kept);

}  // namespace zyl
