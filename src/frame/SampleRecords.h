// Helpers for sample records: setting the dirty flag, finding the record of a zone.
#pragma once

#include "frame/Arguments.h"
#include "host/akai.h"

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
