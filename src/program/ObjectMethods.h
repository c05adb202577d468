// The program object's own script methods: its flags, its registered modules, its channel mask.
#pragma once

#include <string>

#include "frame/Arguments.h"

bool Dirty(ZylSProgram& object, Opt<bool, "NewDirty"> newDirty);
bool EnableRegisterCall(ZylSProgram& object, Opt<bool, "Enable"> enable);
int32_t MaxIndyOut(ZylSProgram& object, Opt<int32_t, "NewMaxIndyOut"> newValue);
// Tells the registered modules that the program object ends, and drops its sample objects.
void PrepareDelete(ZylSProgram& object);
// Registers an algorithm: it is told of changes from then on, once however often it registers.
void Register(ZylSProgram& object, AlgoArg<"RegisterModule"> module);
bool IsValid(ZylSProgram& object);
bool IsLocked(ZylSProgram& object);
int32_t PRGmute(ZylSProgram& object, LoadedProgram program, Opt<int32_t, "Mute"> newValue);
int32_t PRGtmmute(ZylSProgram& object, LoadedProgram program, Opt<int32_t, "Mute"> newValue);
int32_t PRGsolo(ZylSProgram& object, LoadedProgram program, Opt<int32_t, "Solo"> newValue);
int32_t PRGtmMidiChannel(ZylSProgram& object, LoadedProgram program,
                         Opt<int32_t, "MidiChannel"> newValue);
// Gives the record a file path in the temporary folder that no file has, and returns it.
std::string SetUniqueFilePath(ZylSProgram& object, LoadedProgram program);
