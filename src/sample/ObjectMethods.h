// Script methods for the sample objects of a program's zones, temporary samples, and a sample's
// simple properties.
#pragma once

#include <string>
#include <variant>

#include "frame/Forms.h"

// Returns the program's object for a record, created on first use; null for a null record.
CSample* SampleObjectFor(ZylSProgram& object, genericSample* record);

CSample* SampleGet(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup, OneZone zone);
CSample* SampleGetByName(ZylSProgram& object, LoadedProgram program, PathArg<"Name"> name);

// Temporary samples belong to the module, not to a program.
CSample* CreateTempSample(ZylSProgram& object, PathArg<"SamplePath"> path,
                          Opt<int32_t, "Channel"> channel);
// Returns the object, or with "Lock" an integer. GetTempSample only finds samples in memory;
// ReadTempSample also loads files.
using SampleOrInteger = std::variant<CSample*, int32_t>;
SampleOrInteger GetTempSample(ZylSProgram& object, PathArg<"SamplePath"> path,
                              Opt<int32_t, "Channel"> channel, Opt<bool, "Lock"> lock);
SampleOrInteger ReadTempSample(ZylSProgram& object, PathArg<"SamplePath"> path,
                               Opt<int32_t, "Channel"> channel, Opt<bool, "Lock"> lock);
void DeleteTempSample(ZylSProgram& object, OptionalSample<"Sample"> sample);

bool LockObject(ZylSProgram& object, SampleArg sample, Opt<bool, "NewValue"> newValue,
                Opt<int32_t, "TempSample"> temp);
bool LockZone(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
              Opt<bool, "NewValue"> newValue);
inline constexpr Forms<&LockObject, &LockZone> SampleLock;
void SampleReload(ZylSProgram& object, PathArg<"SamplePath"> path);
int32_t SampleGetRefCount(ZylSProgram& object, SampleArg sample);
bool SampleDirty(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                 Opt<bool, "NewValue"> newValue);
std::string FileNameOfObject(ZylSProgram& object, OtherSample<"SampleOrKeyGroup"> sample,
                             Opt<std::string, "NewValue"> unused);
std::string FileNameOfZone(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup,
                           OneZone zone, Opt<std::string, "NewValue"> unused);
std::string FileNameOfNothing(ZylSProgram& object, Unused<"SampleOrKeyGroup"> other,
                              Opt<std::string, "NewValue"> unused);
inline constexpr Forms<&FileNameOfObject, &FileNameOfZone, &FileNameOfNothing> SampleFileName;
std::string SampleFilePath(ZylSProgram& object, SampleArg sample, OptPath<"NewValue"> newValue);
std::string SampleName(ZylSProgram& object, SampleArg sample, Opt<std::string, "NewName"> newName);

int32_t Samplekey(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue);
int32_t SampleplaybackType(ZylSProgram& object, SampleArg sample,
                           Opt<int32_t, "NewValue"> newValue);
int32_t SampleholdLoopTuneOff(ZylSProgram& object, SampleArg sample,
                              Opt<int32_t, "NewValue"> newValue);
int32_t SampleSampleRate(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue);
int32_t Sampletune(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue);
// Returns the tuning that plays the sample at its pitch at the host's rate, in 1/65536 of the unit
// of `tune`. Does not change the sample.
int32_t SampleRecalcTune(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> unused);
// Returns the bytes of one channel and its record; with "LockedMemory", 0 unless they are locked.
int32_t SampleMemory(ZylSProgram& object, SampleArg sample, Opt<bool, "LockedMemory"> locked);
