#include "sample/LoopMethods.h"

#include <cmath>
#include <cstdint>

#include "frame/ChangeNotice.h"
#include "frame/SampleRecords.h"
#include "params/ParameterNumbers.h"
#include "sample/LoopSearch.h"
#include "sample/SampleAccess.h"

namespace {

bool InUse(const SampleParameters& parameters, int32_t loop) {
  return static_cast<uint32_t>(loop) < parameters.loopCount;
}

void Changed(ZylSProgram& object, const SampleArg& sample) {
  sample->updateChannels();
  MarkDirty(object, sample.Record());
}

// Reads or stores an integer field of a loop. `number` is the parameter number of the notification;
// 0 sends none.
int32_t LoopField(ZylSProgram& object, const SampleArg& sample, int32_t genericLoop::*field,
                  int32_t loop, const Opt<int32_t, "NewValue">& newValue, int32_t number) {
  if (!InUse(sample->shared(), loop)) return -1;
  int32_t& value = sample->shared().loops[loop].*field;
  const int32_t before = value;
  if (newValue) {
    std::optional<ChangeNotice> notice;
    if (number != 0) notice.emplace(object, number, newValue.param);
    value = *newValue;
    Changed(object, sample);
    if (notice) notice->Send();
  }
  return before;
}

zyl::LoopPoints PointsOf(const SampleParameters& parameters, int32_t loop) {
  const genericLoop& record = parameters.loops[loop];
  return {record.loopStart, record.loopEnd, record.loopFineLen, InUse(parameters, loop)};
}

using Search = int32_t (*)(const zyl::ValueView&, const zyl::LoopPoints&, int32_t, int32_t,
                           int32_t) noexcept;

// Searches a loop point and stores it, without setting dirty flags or sending notifications.
int32_t FindPoint(const SampleArg& sample, int32_t loop, Search search, int32_t genericLoop::*field,
                  int32_t start, int32_t last, int32_t threshold) {
  SampleParameters& parameters = sample->shared();
  const int32_t found =
      search(ReadableValues(*sample.Record()), PointsOf(parameters, loop), start, last, threshold);
  parameters.loops[loop].*field = found;
  return found;
}

}  // namespace

int32_t SampleLoopCount(ZylSProgram& object, SampleArg sample,
                        OptInRange<"NewValue", 0, kMaxLoops> newValue) {
  SampleParameters& parameters = sample->shared();
  const auto before = static_cast<int32_t>(parameters.loopCount);
  if (!newValue || *newValue == before) return before;
  for (int32_t i = *newValue; i < kMaxLoops; ++i) parameters.loops[i].Init();
  parameters.loopCount = static_cast<uint32_t>(*newValue);
  Changed(object, sample);
  return before;
}

int32_t SampleLoopStart(ZylSProgram& object, SampleArg sample, LoopIndexArg loop,
                        Opt<int32_t, "NewValue"> newValue) {
  return LoopField(object, sample, &genericLoop::loopStart, *loop, newValue, number::kLoopStart);
}
int32_t SampleLoopEnd(ZylSProgram& object, SampleArg sample, LoopIndexArg loop,
                      Opt<int32_t, "NewValue"> newValue) {
  return LoopField(object, sample, &genericLoop::loopEnd, *loop, newValue, number::kLoopEnd);
}
int32_t SampleLoopTimes(ZylSProgram& object, SampleArg sample, TimedLoopIndexArg loop,
                        Opt<int32_t, "NewValue"> newValue) {
  return LoopField(object, sample, &genericLoop::loopTimes, *loop, newValue, 0);
}

std::optional<double> SampleLoopFineLen(Call& call, SampleArg sample, LoopIndexArg loop,
                                        Opt<double, "NewValue"> newValue) {
  if (!InUse(sample->shared(), *loop)) return -1.0;
  // Truncated toward zero, the value must fit the unsigned 32-bit field.
  if (newValue && !(*newValue > -1.0 && *newValue < 4294967296.0)) {
    return newValue.Reject(call);
  }
  uint32_t& fineLen = sample->shared().loops[*loop].loopFineLen;
  const uint32_t before = fineLen;
  if (newValue) {
    const auto stored = static_cast<uint32_t>(*newValue);
    const ROCParamPtr value(newROCParam(static_cast<int32_t>(stored)));
    ChangeNotice notice(call.program, number::kLoopFineLen, value.get());
    fineLen = stored;
    Changed(call.program, sample);
    notice.Send();
  }
  return before;
}

int32_t SampleLoopQual(ZylSProgram&, SampleArg sample, LoopIndexArg loop) {
  return zyl::ScaledLoopQuality(
      zyl::LoopQuality(ReadableValues(*sample.Record()), PointsOf(sample->shared(), *loop)));
}

int32_t SampleLoopFindStart(ZylSProgram&, SampleArg sample, LoopIndexArg loop,
                            Arg<int32_t, "StartIndex"> start, Arg<int32_t, "LastIndex"> last,
                            Arg<int32_t, "Treshold"> threshold) {
  return FindPoint(sample, *loop, &zyl::FindLoopStart, &genericLoop::loopStart, *start, *last,
                   *threshold);
}
int32_t SampleLoopFindEnd(ZylSProgram&, SampleArg sample, LoopIndexArg loop,
                          Arg<int32_t, "StartIndex"> start, Arg<int32_t, "LastIndex"> last,
                          Arg<int32_t, "Treshold"> threshold) {
  return FindPoint(sample, *loop, &zyl::FindLoopEnd, &genericLoop::loopEnd, *start, *last,
                   *threshold);
}

int32_t SampleGetDCOffset(ZylSProgram&, SampleArg sample, Arg<int32_t, "StartIndex"> start,
                          Arg<int32_t, "EndIndex"> end) {
  int32_t s = *start;
  int32_t e = *end;
  if (!zyl::ClampRange(sample->shared().frameCount, s, e)) return 0;
  return zyl::MeanValue(ReadableValues(*sample.Record()), s, e);
}
