// Script methods of pitch analysis: starting and cancelling jobs, queries, clearing and reading
// tracks, comparing samples.
#pragma once

#include "frame/Arguments.h"

using AnySample = OtherSample<"Sample", NullObject::kAllowed>;
using MinPeriodArg = Opt<int32_t, "MinPeriod">;        // highest expected pitch in Hz
using MaxPeriodArg = Opt<int32_t, "MaxPeriod">;        // lowest expected pitch in Hz
using SmoothLengthArg = Opt<int32_t, "SmoothLength">;  // blocks of 128 frames to each side
using FindPitchLenArg = Opt<int32_t, "findPitchLen">;  // blocks to each side
using RMSthresArg = Opt<double, "RMSthres">;           // mean square of silence

bool CalcSamplePitch(ZylSProgram& object, AnySample sample, MinPeriodArg minPeriod,
                     MaxPeriodArg maxPeriod, SmoothLengthArg smoothLength,
                     FindPitchLenArg findPitchLen, RMSthresArg rmsThres);
bool CalcKeygroupPitch(ZylSProgram& object, LoadedProgram program, KeyGroupOrNone keygroup,
                       MinPeriodArg minPeriod, MaxPeriodArg maxPeriod, SmoothLengthArg smoothLength,
                       FindPitchLenArg findPitchLen, RMSthresArg rmsThres);
bool CalcProgramPitch(ZylSProgram& object, LoadedProgram program, MinPeriodArg minPeriod,
                      MaxPeriodArg maxPeriod, SmoothLengthArg smoothLength,
                      FindPitchLenArg findPitchLen, RMSthresArg rmsThres);
bool ClearSamplePitch(ZylSProgram& object, AnySample sample);
bool ClearProgramPitch(ZylSProgram& object, LoadedProgram program);

using CBModuleArg = AlgoArg<"CBModule", Presence::kRequired, NullObject::kAllowed>;
void PitchDataProgressCB(ZylSProgram& object, CBModuleArg module);
void PitchDataProgressCBFinish(ZylSProgram& object, CBModuleArg module);
void PitchDataCalcCancel(ZylSProgram& object);
int32_t PitchDataCalculating(ZylSProgram& object);
int32_t PitchDataTimeLeft(ZylSProgram& object);
int32_t PitchDataTimeTotal(ZylSProgram& object);
int32_t PitchDataProgressRatio(ZylSProgram& object);
int32_t PitchDataCalcSamples(ZylSProgram& object, ArrayArg<"SampleArray"> names);

// Returns true if both objects' records have the same source, or neither has a record.
bool SampleCompare(ZylSProgram& object, OtherSample<"Sample1", NullObject::kAllowed> first,
                   OtherSample<"Sample2", NullObject::kAllowed> second);
// Writes the handle of the track (32-bit floats) to `buffer` and returns the number of values.
int32_t SampleGetPitchData(ZylSProgram& object, SampleArg sample, VarArg<int32_t, "Buffer"> buffer);
