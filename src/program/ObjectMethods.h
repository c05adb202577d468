// The script methods for the program object's flags, registered modules and channel mask.
#pragma once

#include <string>

#include "frame/Arguments.h"

bool Dirty(ZylSProgram& object, Opt<bool, "NewDirty"> newDirty);
bool EnableRegisterCall(ZylSProgram& object, Opt<bool, "Enable"> enable);
int32_t MaxIndyOut(ZylSProgram& object, Opt<int32_t, "NewMaxIndyOut"> newValue);
// Sends OnDeletingPrg to the registered modules, and releases the sample objects.
void PrepareDelete(ZylSProgram& object);
// Registers an algorithm, which is then notified of changes. Registering twice has no effect.
void Register(ZylSProgram& object, AlgoArg<"RegisterModule"> module);
bool IsValid(ZylSProgram& object);
bool IsLocked(ZylSProgram& object);
int32_t PRGmute(ZylSProgram& object, LoadedProgram program, Opt<int32_t, "Mute"> newValue);
int32_t PRGtmmute(ZylSProgram& object, LoadedProgram program, Opt<int32_t, "Mute"> newValue);
int32_t PRGsolo(ZylSProgram& object, LoadedProgram program, Opt<int32_t, "Solo"> newValue);
int32_t PRGtmMidiChannel(ZylSProgram& object, LoadedProgram program,
                         Opt<int32_t, "MidiChannel"> newValue);
// Sets the record's file path to an unused one in the temporary folder, and returns it.
std::string SetUniqueFilePath(ZylSProgram& object, LoadedProgram program);
