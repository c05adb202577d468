// Script methods that store samples in files, merge channels into one file, and look at files.
#pragma once

#include <string>

#include "frame/Arguments.h"

bool SampleWrite(Call& call);
bool SampleWriteMerged(Call& call);
void SampleCopyFile(ZylSProgram& object, Arg<std::string, "Source"> source,
                    Arg<std::string, "Dest"> dest);
int32_t GetChannelCount(ZylSProgram& object, Arg<std::string, "Path"> path);
