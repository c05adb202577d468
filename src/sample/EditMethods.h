// Script methods that create samples and edit their data.
#pragma once

#include <optional>
#include <string>

#include "frame/Forms.h"

bool SampleCreate(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                  Arg<std::string, "Extension"> extension,
                  OptInRange<"Channels", 1, kMaxChannels> channels);
int32_t SampleGetSize(ZylSProgram& object, SampleArg sample);
// Writes the handle of a channel's data to `buffer` and returns the number of positions.
int32_t SampleGetBuffer(ZylSProgram& object, SampleArg sample, VarArg<int32_t, "Buffer"> buffer,
                        Opt<int32_t, "Channel"> channel);
std::optional<int32_t> SampleSize(Call& call, SampleArg sample, Opt<int32_t, "NewSize"> newSize);
int32_t SampleStart(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue);
int32_t SampleEnd(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue);
std::optional<int32_t> SampleBits(Call& call, SampleArg sample, Opt<int32_t, "NewValue"> newValue);
std::optional<int32_t> SampleChannelCount(Call& call, SampleArg sample,
                                          Opt<int32_t, "NewValue"> newValue);
int32_t ChannelOfObject(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue);
int32_t ChannelOfZone(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup,
                      OneZone zone, Opt<int32_t, "NewValue"> newValue);
inline constexpr Forms<&ChannelOfObject, &ChannelOfZone> SampleChannel;
int32_t SampleValue(ZylSProgram& object, SampleArg sample, Arg<int32_t, "Index"> index,
                    Opt<int32_t, "NewValue"> newValue);

using StartIndexArg = Arg<int32_t, "StartIndex">;
using EndIndexArg = Arg<int32_t, "EndIndex">;

void SampleSetValues(ZylSProgram& object, SampleArg sample, StartIndexArg start, EndIndexArg end,
                     Arg<int32_t, "Value"> value);
void SampleMultiplyValues(ZylSProgram& object, SampleArg sample, StartIndexArg start,
                          EndIndexArg end, Arg<double, "Value"> factor);
void SampleOffsetValues(ZylSProgram& object, SampleArg sample, StartIndexArg start, EndIndexArg end,
                        Arg<int32_t, "Value"> offset);
void SampleReverseValues(ZylSProgram& object, SampleArg sample, StartIndexArg start,
                         EndIndexArg end);
bool SampleExtract(ZylSProgram& object, SampleArg sample, StartIndexArg start, EndIndexArg end);
bool SampleDelete(ZylSProgram& object, SampleArg sample, StartIndexArg start, EndIndexArg end);
bool SampleCopyTo(ZylSProgram& object, SampleArg sample, OtherSample<"CopyToSample"> other,
                  Opt<int32_t, "InsertIndex"> index);
bool SampleCopyFrom(ZylSProgram& object, SampleArg sample, OtherSample<"CopyFromSample"> other,
                    Opt<int32_t, "StartIndex"> start, Opt<int32_t, "EndIndex"> end);
