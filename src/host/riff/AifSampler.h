// Conversion between sampler parameters and the "INST" and "MARK" chunks of AIFF files.
//
// Pitch: a base note and a detune in cents, -50 to 50; tune in 1/256 semitone is cents * 2.56,
// rounded in both directions.
//
// Loops: a sustain loop and a release loop, each with a play mode and two markers. A marker's
// position is the boundary before a frame, so the end marker of a loop is at `end + 1`. The first
// loop is the sustain loop. If playback keeps looping after key release (playback type 0), the
// release loop is the second loop, or the first if there is only one; otherwise there is no release
// loop. Play mode 0 means no looping. Further loops are stored as markers only.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "../byteOrder.h"
#include "../riff.h"
#include "OwnChunk.h"
#include "SampleAccess.h"

namespace zyl {

struct AifLoop {
  int16_t playMode = 0;  // 0 none, 1 forward, 2 forward and backward
  bool present = false;
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
// Doesn't change rate, start and end.
void FromAifSampler(const AifSampler& sampler, RiffParameters& parameters);

// ReadMarkers and ReadInstrument return false if the chunk is too short.
bool ReadMarkers(const Bytes& bytes, AifKept& kept);
struct InstrumentMarks {
  std::pair<uint16_t, uint16_t> sustain;
  std::pair<uint16_t, uint16_t> release;
};
bool ReadInstrument(const Bytes& bytes, AifKept& kept, AifSampler& sampler, InstrumentMarks& marks);
// Sets the loops' positions from the markers, and `kept.loopMarks` to the IDs of these markers.
void ResolveLoops(const InstrumentMarks& marks, AifKept& kept, AifSampler& sampler);
// Whether every loop of the own chunk matches the positions of its markers.
bool MarkersAgree(const OwnChunk& own, const AifKept& kept);

// Returns the file's markers updated for these loops. Markers that belong to no loop are kept, and
// each loop reuses its previous markers if possible.
AifKept PlaceMarkers(const RiffParameters& parameters, const FileOrigin* origin);
Bytes MakeMarkers(const AifKept& kept);
Bytes MakeInstrument(const RiffParameters& parameters, const AifKept& kept);

}  // namespace zyl
