// Script methods that write samples to files, merge channels into one file, and inspect files.
#pragma once

#include <optional>
#include <string>

#include "frame/Arguments.h"

bool SampleWrite(ZylSProgram& object, SampleArg sample, OptPath<"NewPath"> path,
                 Opt<int32_t, "ChannelMask"> mask);

// The channels of the merged file; samples without a record are skipped.
using MergedChannels =
    Repeated<OtherSample<"Sample", NullObject::kAllowed>, Arg<int32_t, "Channel">>;
std::optional<bool> SampleWriteMerged(Call& call, PathArg<"NewPath"> path,
                                      Deferred<MergedChannels> channels);
void SampleCopyFile(ZylSProgram& object, PathArg<"Source"> source, PathArg<"Dest"> dest);
int32_t GetChannelCount(ZylSProgram& object, PathArg<"Path"> path);
