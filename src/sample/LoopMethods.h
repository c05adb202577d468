// Script methods for a sample's loops (count, points, quality, search) and its DC offset.
#pragma once

#include <optional>

#include "frame/Arguments.h"

using LoopIndexArg = IndexArg<"LoopIndex", kMaxLoops>;
// Scripts reach the repeat count of the first 8 loops only.
using TimedLoopIndexArg = IndexArg<"LoopIndex", 8>;

int32_t SampleLoopCount(ZylSProgram& object, SampleArg sample,
                        OptInRange<"NewValue", 0, kMaxLoops> newValue);
int32_t SampleLoopStart(ZylSProgram& object, SampleArg sample, LoopIndexArg loop,
                        Opt<int32_t, "NewValue"> newValue);
int32_t SampleLoopEnd(ZylSProgram& object, SampleArg sample, LoopIndexArg loop,
                      Opt<int32_t, "NewValue"> newValue);
std::optional<double> SampleLoopFineLen(Call& call, SampleArg sample, LoopIndexArg loop,
                                        Opt<double, "NewValue"> newValue);
int32_t SampleLoopTimes(ZylSProgram& object, SampleArg sample, TimedLoopIndexArg loop,
                        Opt<int32_t, "NewValue"> newValue);
int32_t SampleLoopQual(ZylSProgram& object, SampleArg sample, LoopIndexArg loop);
int32_t SampleLoopFindStart(ZylSProgram& object, SampleArg sample, LoopIndexArg loop,
                            Arg<int32_t, "StartIndex"> start, Arg<int32_t, "LastIndex"> last,
                            Arg<int32_t, "Treshold"> threshold);
int32_t SampleLoopFindEnd(ZylSProgram& object, SampleArg sample, LoopIndexArg loop,
                          Arg<int32_t, "StartIndex"> start, Arg<int32_t, "LastIndex"> last,
                          Arg<int32_t, "Treshold"> threshold);
int32_t SampleGetDCOffset(ZylSProgram& object, SampleArg sample, Arg<int32_t, "StartIndex"> start,
                          Arg<int32_t, "EndIndex"> end);
