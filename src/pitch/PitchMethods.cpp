#include "pitch/PitchMethods.h"

#include <utility>

#include "frame/SampleRecords.h"
#include "frame/ZylSProgram.h"
#include "pitch/PitchJobManager.h"

namespace {

zyl::PitchSettings SettingsOf(const MinPeriodArg& minPeriod, const MaxPeriodArg& maxPeriod,
                              const SmoothLengthArg& smoothLength,
                              const FindPitchLenArg& findPitchLen, const RMSthresArg& rmsThres) {
  const zyl::PitchSettings standard;
  return {minPeriod.ValueOr(standard.minPeriodHz), maxPeriod.ValueOr(standard.maxPeriodHz),
          smoothLength.ValueOr(standard.smoothLength), findPitchLen.ValueOr(standard.findPitchLen),
          rmsThres.ValueOr(standard.rmsThres)};
}

// Stores the settings of the last request in the program object. Called after the request, which
// may throw.
void KeepSettings(ZylSProgram& object, const zyl::PitchSettings& settings) {
  object.minPeriod = settings.minPeriodHz;
  object.maxPeriod = settings.maxPeriodHz;
  object.smoothLength = settings.smoothLength;
  object.findPitchLen = settings.findPitchLen;
  object.rmsThres = settings.rmsThres;
}

ROCPad* PadOf(const CBModuleArg& module, const char* name) {
  RIOObject* object = module.Object();
  return object == nullptr ? nullptr : ZylFindPad(object->GetDispatch(true), name);
}

}  // namespace

bool CalcSamplePitch(ZylSProgram& object, AnySample sample, MinPeriodArg minPeriod,
                     MaxPeriodArg maxPeriod, SmoothLengthArg smoothLength,
                     FindPitchLenArg findPitchLen, RMSthresArg rmsThres) {
  const auto settings = SettingsOf(minPeriod, maxPeriod, smoothLength, findPitchLen, rmsThres);
  const bool starts = sample.Record() != nullptr && !sample.Record()->hasPitchData();
  if (starts) PitchJobs().StartSampleJob(sample.Record(), settings);
  KeepSettings(object, settings);
  return starts;
}

bool CalcKeygroupPitch(ZylSProgram& object, LoadedProgram program, KeyGroupOrNone keygroup,
                       MinPeriodArg minPeriod, MaxPeriodArg maxPeriod, SmoothLengthArg smoothLength,
                       FindPitchLenArg findPitchLen, RMSthresArg rmsThres) {
  const auto settings = SettingsOf(minPeriod, maxPeriod, smoothLength, findPitchLen, rmsThres);
  const bool starts = program->sampleTable != nullptr && *keygroup >= 0;
  if (starts) PitchJobs().StartKeygroupJob(*program.record, *keygroup, settings);
  KeepSettings(object, settings);
  return starts;
}

bool CalcProgramPitch(ZylSProgram& object, LoadedProgram program, MinPeriodArg minPeriod,
                      MaxPeriodArg maxPeriod, SmoothLengthArg smoothLength,
                      FindPitchLenArg findPitchLen, RMSthresArg rmsThres) {
  const auto settings = SettingsOf(minPeriod, maxPeriod, smoothLength, findPitchLen, rmsThres);
  const bool starts = program->sampleTable != nullptr;
  if (starts) PitchJobs().StartProgramJob(*program.record, settings);
  KeepSettings(object, settings);
  return starts;
}

bool ClearSamplePitch(ZylSProgram&, AnySample sample) {
  genericSample* record = sample.Record();
  if (record == nullptr) return false;
  // A notified module may discard the object and its record.
  const zyl::SampleUse keepAlive = zyl::AddUse(record);
  sample.object->NotifyDeleting();
  record->clearPitchData();
  PitchJobs().NotifyCleared(record->name);
  return true;
}

bool ClearProgramPitch(ZylSProgram& object, LoadedProgram program) {
  if (program->sampleTable == nullptr) return false;
  // A notified module may change the program, so every step reads its current state.
  for (int i = 0; program.IsAttachedTo(object) && i < kZones * program->KeyGroupCount(); ++i) {
    genericSample* sample = program->sampleTable[i];
    if (sample == nullptr) continue;
    if (CSample* known = object.sampleObjects.FindBySample(sample)) known->NotifyDeleting();
    if (!program.IsAttachedTo(object) || i >= kZones * program->KeyGroupCount()) break;
    if (program->sampleTable[i] != sample || !sample->hasPitchData()) continue;
    sample->setPitchData({});
    PitchJobs().NotifyCleared(sample->name);
  }
  return true;
}

void PitchDataProgressCB(ZylSProgram&, CBModuleArg module) {
  PitchJobs().SetProgressPad(PadOf(module, "progressUpdate"));
}
void PitchDataProgressCBFinish(ZylSProgram&, CBModuleArg module) {
  PitchJobs().SetFinishedPad(PadOf(module, "pitchDataFinished"));
}
void PitchDataCalcCancel(ZylSProgram&) { PitchJobs().CancelAll(); }
int32_t PitchDataCalculating(ZylSProgram&) { return PitchJobs().ThreadCount(); }
int32_t PitchDataTimeLeft(ZylSProgram&) { return PitchJobs().TimeLeft(); }
int32_t PitchDataTimeTotal(ZylSProgram&) { return PitchJobs().TimeTotal(); }
int32_t PitchDataProgressRatio(ZylSProgram&) { return PitchJobs().ProgressRatio(); }
int32_t PitchDataCalcSamples(ZylSProgram&, ArrayArg<"SampleArray"> names) {
  const ROCParamPtr filled(ROCParam::NewArray(0));
  const int32_t count = PitchJobs().CurrentSampleNames(*filled);
  *names.param = std::move(*filled);
  return count;
}

bool SampleCompare(ZylSProgram&, OtherSample<"Sample1", NullObject::kAllowed> first,
                   OtherSample<"Sample2", NullObject::kAllowed> second) {
  const genericSample* one = first.Record();
  const genericSample* two = second.Record();
  if (one == nullptr || two == nullptr) return one == two;
  return one->sourceId == two->sourceId;
}

int32_t SampleGetPitchData(ZylSProgram&, SampleArg sample, VarArg<int32_t, "Buffer"> buffer) {
  int32_t handle = 0;
  const int32_t values = sample->PitchTrackHandle(handle);
  buffer.param->SetInt(handle);
  return values;
}
