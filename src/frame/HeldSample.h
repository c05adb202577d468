// Access to the sample records of zones, a guard that keeps one alive, and their dirty flag.
#pragma once

#include "frame/Arguments.h"
#include "host/akai.h"

// Holds a use of a record while scripts run that may release all others.
class HeldSample {
 public:
  explicit HeldSample(genericSample& sample) : sample_(sample) { ++sample_.useCount; }
  ~HeldSample() { sample_.deleteSample(); }
  HeldSample(const HeldSample&) = delete;
  HeldSample& operator=(const HeldSample&) = delete;

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
