// Helpers for sample records: keeping one alive, setting its dirty flag, finding that of a zone.
#pragma once

#include "frame/Arguments.h"
#include "host/akai.h"

// Keeps a record alive while callbacks run that may release all other uses.
class SampleKeepAlive {
 public:
  explicit SampleKeepAlive(genericSample& sample) : sample_(sample) { ++sample_.useCount; }
  ~SampleKeepAlive() { sample_.deleteSample(); }
  SampleKeepAlive(const SampleKeepAlive&) = delete;
  SampleKeepAlive& operator=(const SampleKeepAlive&) = delete;

 private:
  genericSample& sample_;
};

// Sets the dirty flags of the program object and of a sample (or null).
inline void MarkDirty(ZylSProgram& object, genericSample* sample) {
  object.dirty = true;
  if (sample != nullptr) sample->shared().dirty = true;
}

// The sample record of a zone, or null.
inline genericSample* ZoneSample(const LoadedProgram& program, const OneKeyGroup& keygroup,
                                 const OneZone& zone) {
  return program->sampleTable[kZones * *keygroup + *zone];
}
