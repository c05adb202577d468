#include "sample/LoopMethods.h"

#include <cmath>
#include <cstdint>

#include "params/ParameterNumbers.h"
#include "sample/LoopSearch.h"
#include "sample/SampleAccess.h"

namespace {

constexpr int32_t kTimedLoops = 8;  // only the first loops have a repeat count for scripts

bool ReadLoopIndex(Call& call, Arg<int32_t, "LoopIndex">& index, int32_t count) {
  if (!index.Read(call, index)) return false;
  return (*index >= 0 && *index < count) || call.ValueError("LoopIndex", 2);
}

bool InUse(const SampleParameters& parameters, int32_t loop) {
  return static_cast<uint32_t>(loop) < parameters.loopCount;
}

void Changed(Call& call, const SampleArg& sample) {
  sample->updateChannels();
  call.program.dirty = true;
  sample->shared().dirty = true;
}

// A loop's integer field; `number` 0 sends no notification.
bool LoopField(Call& call, int32_t genericLoop::*field, int32_t loops, int32_t number) {
  SampleArg sample;
  Arg<int32_t, "LoopIndex"> index;
  Opt<int32_t, "NewValue"> newValue;
  if (!SampleArg::Read(call, sample) || !ReadLoopIndex(call, index, loops) ||
      !newValue.Read(call, newValue)) {
    return false;
  }
  if (!InUse(sample->shared(), *index)) {
    call.Return(newROCParam(-1));
    return true;
  }
  int32_t& value = sample->shared().loops[*index].*field;
  call.Return(newROCParam(value));
  if (!newValue) return true;
  value = *newValue;
  Changed(call, sample);
  if (number != 0) call.program.NotifyParameterChanged(number, newValue.param);
  return true;
}

zyl::LoopPoints PointsOf(const SampleParameters& parameters, int32_t loop) {
  const genericLoop& record = parameters.loops[loop];
  return {record.loopStart, record.loopEnd, record.loopFineLen, InUse(parameters, loop)};
}

using Search = int32_t (*)(const zyl::ValueView&, const zyl::LoopPoints&, int32_t, int32_t,
                           int32_t) noexcept;

// A search leaves dirty flags, notifications and the fine length alone.
bool FindPoint(Call& call, Search search, int32_t genericLoop::*field) {
  SampleArg sample;
  Arg<int32_t, "LoopIndex"> index;
  Arg<int32_t, "StartIndex"> start;
  Arg<int32_t, "LastIndex"> last;
  Arg<int32_t, "Treshold"> threshold;
  if (!SampleArg::Read(call, sample) || !ReadLoopIndex(call, index, kMaxLoops) ||
      !start.Read(call, start) || !last.Read(call, last) || !threshold.Read(call, threshold)) {
    return false;
  }
  SampleParameters& parameters = sample->shared();
  const int32_t found = search(ReadableValues(*sample.Record()), PointsOf(parameters, *index),
                               *start, *last, *threshold);
  parameters.loops[*index].*field = found;
  call.Return(newROCParam(found));
  return true;
}

}  // namespace

bool SampleLoopCount(Call& call) {
  SampleArg sample;
  Opt<int32_t, "NewValue"> newValue;
  if (!SampleArg::Read(call, sample) || !newValue.Read(call, newValue)) return false;
  if (newValue && (*newValue < 0 || *newValue > kMaxLoops)) return call.ValueError("NewValue", 2);
  SampleParameters& parameters = sample->shared();
  const auto before = static_cast<int32_t>(parameters.loopCount);
  call.Return(newROCParam(before));
  if (!newValue || *newValue == before) return true;
  for (int32_t i = *newValue; i < kMaxLoops; ++i) parameters.loops[i].Init();
  parameters.loopCount = static_cast<uint32_t>(*newValue);
  Changed(call, sample);
  return true;
}

bool SampleLoopStart(Call& call) {
  return LoopField(call, &genericLoop::loopStart, kMaxLoops, number::kLoopStart);
}
bool SampleLoopEnd(Call& call) {
  return LoopField(call, &genericLoop::loopEnd, kMaxLoops, number::kLoopEnd);
}
bool SampleLoopTimes(Call& call) {
  return LoopField(call, &genericLoop::loopTimes, kTimedLoops, 0);
}

bool SampleLoopFineLen(Call& call) {
  SampleArg sample;
  Arg<int32_t, "LoopIndex"> index;
  Opt<double, "NewValue"> newValue;
  if (!SampleArg::Read(call, sample) || !ReadLoopIndex(call, index, kMaxLoops) ||
      !newValue.Read(call, newValue)) {
    return false;
  }
  if (!InUse(sample->shared(), *index)) {
    call.Return(newROCParam(-1.0));
    return true;
  }
  // A fraction of a position: what no unsigned 32-bit field holds is no fine length.
  if (newValue && !(*newValue > -1.0 && *newValue < 4294967296.0)) {
    return call.ValueError("NewValue", 3);
  }
  uint32_t& fineLen = sample->shared().loops[*index].loopFineLen;
  call.Return(newROCParam(static_cast<double>(fineLen)));
  if (!newValue) return true;
  fineLen = static_cast<uint32_t>(*newValue);
  Changed(call, sample);
  ROCParam* stored = newROCParam(static_cast<int32_t>(fineLen));
  call.program.NotifyParameterChanged(number::kLoopFineLen, stored);
  deleteROCParam(stored);
  return true;
}

bool SampleLoopQual(Call& call) {
  SampleArg sample;
  Arg<int32_t, "LoopIndex"> index;
  if (!SampleArg::Read(call, sample) || !ReadLoopIndex(call, index, kMaxLoops)) return false;
  const double quality =
      zyl::LoopQuality(ReadableValues(*sample.Record()), PointsOf(sample->shared(), *index));
  call.Return(newROCParam(zyl::ScaledLoopQuality(quality)));
  return true;
}

bool SampleLoopFindStart(Call& call) {
  return FindPoint(call, &zyl::FindLoopStart, &genericLoop::loopStart);
}
bool SampleLoopFindEnd(Call& call) {
  return FindPoint(call, &zyl::FindLoopEnd, &genericLoop::loopEnd);
}

int32_t SampleGetDCOffset(ZylSProgram&, SampleArg sample, Arg<int32_t, "StartIndex"> start,
                          Arg<int32_t, "EndIndex"> end) {
  int32_t s = *start;
  int32_t e = *end;
  if (!zyl::ClampRange(sample->shared().frameCount, s, e)) return 0;
  return zyl::MeanValue(ReadableValues(*sample.Record()), s, e);
}
