#include "sample/ZoneMethods.h"

#include <utility>

#include "frame/SampleRecords.h"

void ZoneSampleSet(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                   OptPath<"NewSample"> newSample) {
  // Load first: if memory runs out, the zone must keep its sample and the sample its object.
  std::string path;
  zyl::SampleUse loaded;
  if (newSample) {
    path = newSample.Text();
    loaded = zyl::LoadSampleOrThrow(path.c_str(), true, 0);
  }
  if (const genericSample* sample = ZoneSample(program, keygroup, zone)) {
    object.sampleObjects.DeleteBySample(sample);
    // DeleteBySample notified the modules; one of them may have given the object another program.
    if (!program.IsAttachedTo(object)) return;
  }
  program->setSample(std::move(loaded), std::move(path), *keygroup, *zone, 0);
  object.dirty = true;
  object.PurgeSampleObjects();
}

std::string ZoneSamplePath(ZylSProgram&, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                           OptPath<"NewPath"> newPath) {
  vendlKeyGroup& extension = program->keyGroupExtensions[*keygroup];
  const char* path = extension.SamplePath(*zone);
  std::string before = path == nullptr ? "" : path;
  if (newPath) extension.setSamplePath(*zone, newPath.Text(), true);
  return before;
}

std::string Zonename(ZylSProgram&, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                     Opt<std::string, "NewString">) {
  const genericSample* sample = ZoneSample(program, keygroup, zone);
  return sample == nullptr || sample->name == nullptr ? "" : sample->name;
}

bool ZoneSampleExists(ZylSProgram&, LoadedProgram program, OneKeyGroup keygroup, OneZone zone) {
  return ZoneSample(program, keygroup, zone) != nullptr;
}
