// Script methods that store samples in files, merge channels into one file, and look at files.
#pragma once

#include <optional>
#include <string>

#include "frame/Arguments.h"

bool SampleWrite(ZylSProgram& object, SampleArg sample, Opt<std::string, "NewPath"> path,
                 Opt<int32_t, "ChannelMask"> mask);

// A channel that goes into the merged file; one without a record is left out.
using MergedChannels =
    Repeated<OtherSample<"Sample", NullObject::kAllowed>, Arg<int32_t, "Channel">>;
std::optional<bool> SampleWriteMerged(Call& call, Arg<std::string, "NewPath"> path,
                                      Deferred<MergedChannels> channels);
void SampleCopyFile(ZylSProgram& object, Arg<std::string, "Source"> source,
                    Arg<std::string, "Dest"> dest);
int32_t GetChannelCount(ZylSProgram& object, Arg<std::string, "Path"> path);
