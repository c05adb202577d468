// Creating, reading, finding and writing programs; memory figures; the presets of a preset file.
#pragma once

#include <string>

#include "frame/Arguments.h"

// Attaches a new program: a default one, or a copy of the program of `source`.
bool Create(ZylSProgram& object,
            AlgoArg<"ProgramToCopy", Presence::kRequired, NullObject::kAllowed> source,
            Opt<bool, "CopySamples"> copySamples);
bool Read(ZylSProgram& object, PathArg<"PrgName"> path, Opt<int32_t, "LoadSmpl"> loadSamples,
          Opt<int32_t, "MC"> channel);
bool Find(ZylSProgram& object, PathArg<"PrgName"> name, Opt<int32_t, "MC"> channel);
bool Write(ZylSProgram& object, LoadedProgram program, OptPath<"PrgPath"> path,
           IfCounted<Arg<int32_t, "WriteMode">> writeMode);
std::string FileName(ZylSProgram& object, LoadedProgram program, OptPath<"NewFileName"> newName);
int32_t GetTotalPhysicalMemory(ZylSProgram& object);
int32_t GetLockedMemory(ZylSProgram& object);
int32_t GetUsedPhysicalMemory(ZylSProgram& object, Opt<bool, "Locked"> locked);
int32_t GetSFPresetArray(ZylSProgram& object, PathArg<"FilePath"> path,
                         ArrayArg<"ResultArray"> names);
