// Script methods that store samples in files, merge channels into one file, and look at files.
#pragma once

#include <optional>
#include <string>

#include "frame/Arguments.h"

bool SampleWrite(ZylSProgram& object, SampleArg sample, OptPath<"NewPath"> path,
                 Opt<int32_t, "ChannelMask"> mask);

// A channel that goes into the merged file; one without a record is left out.
using MergedChannels =
    Repeated<OtherSample<"Sample", NullObject::kAllowed>, Arg<int32_t, "Channel">>;
std::optional<bool> SampleWriteMerged(Call& call, PathArg<"NewPath"> path,
                                      Deferred<MergedChannels> channels);
void SampleCopyFile(ZylSProgram& object, PathArg<"Source"> source, PathArg<"Dest"> dest);
int32_t GetChannelCount(ZylSProgram& object, PathArg<"Path"> path);
