// Sample records of zones, and how to keep one in use.
#pragma once

#include "frame/Arguments.h"
#include "host/akai.h"

// Keeps a record in use while scripts run that may discard every other use of it.
class HeldSample {
 public:
  explicit HeldSample(genericSample& sample) : sample_(sample) { ++sample_.useCount; }
  ~HeldSample() { sample_.deleteSample(); }
  HeldSample(const HeldSample&) = delete;
  HeldSample& operator=(const HeldSample&) = delete;

 private:
  genericSample& sample_;
};

// The sample record of a zone, null for none.
inline genericSample* ZoneSample(const LoadedProgram& program, const OneKeyGroup& keygroup,
                                 const OneZone& zone) {
  return program->sampleTable[kZones * *keygroup + *zone];
}
