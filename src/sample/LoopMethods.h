// Script methods for a sample's loops: count, points, quality, search; and the DC offset.
#pragma once

#include "frame/Arguments.h"

bool SampleLoopCount(Call& call);
bool SampleLoopStart(Call& call);
bool SampleLoopEnd(Call& call);
bool SampleLoopFineLen(Call& call);
bool SampleLoopTimes(Call& call);
bool SampleLoopQual(Call& call);
bool SampleLoopFindStart(Call& call);
bool SampleLoopFindEnd(Call& call);
int32_t SampleGetDCOffset(ZylSProgram& object, SampleArg sample, Arg<int32_t, "StartIndex"> start,
                          Arg<int32_t, "EndIndex"> end);
