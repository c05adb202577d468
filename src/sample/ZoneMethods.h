// Script methods for a zone's sample.
#pragma once

#include <string>

#include "frame/Arguments.h"

void ZoneSampleSet(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                   OptPath<"NewSample"> newSample);
std::string ZoneSamplePath(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup,
                           OneZone zone, OptPath<"NewPath"> newPath);
std::string Zonename(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                     Opt<std::string, "NewString"> unused);
bool ZoneSampleExists(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup,
                      OneZone zone);
