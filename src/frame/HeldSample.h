// Access to the sample records of zones, and a guard that keeps one alive.
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

// The sample record of a zone, or null.
inline genericSample* ZoneSample(const LoadedProgram& program, const OneKeyGroup& keygroup,
                                 const OneZone& zone) {
  return program->sampleTable[kZones * *keygroup + *zone];
}
