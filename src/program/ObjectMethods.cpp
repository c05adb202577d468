#include "program/ObjectMethods.h"

#include <utility>

bool Dirty(ZylSProgram& object, Opt<bool, "NewDirty"> newDirty) {
  bool dirty = object.dirty;
  if (const akaiProgram* record = object.program; record != nullptr && !dirty) {
    const int entries = kZones * record->KeyGroupCount();
    for (int i = 0; i < entries && !dirty; ++i) {
      const genericSample* sample = record->sampleTable[i];
      dirty = sample != nullptr && sample->shared().dirty;
    }
  }
  if (newDirty) object.dirty = *newDirty;
  return dirty;
}

bool EnableRegisterCall(ZylSProgram& object, Opt<bool, "Enable"> enable) {
  const bool before = object.enableRegisterCall;
  if (enable) object.enableRegisterCall = *enable;
  return before;
}

int32_t MaxIndyOut(ZylSProgram& object, Opt<int32_t, "NewMaxIndyOut"> newValue) {
  const int32_t before = object.maxIndyOut;
  if (newValue) object.maxIndyOut = *newValue;
  return before;
}

void PrepareDelete(ZylSProgram& object) {
  ROCParams arguments;
  arguments.AddTail(newROCParam(object.owner));
  object.CallRegistered("OnDeletingPrg", arguments, false);
  object.sampleObjects.DeleteAll();
}

void Register(ZylSProgram& object, AlgoArg<"RegisterModule"> module) {
  const RIOObject* algo = module.Object();
  const auto same = [&](const ROCParam* entry) {
    return entry != nullptr && entry->Object() == algo;
  };
  if (object.registeredModules.FindIf(same) != nullptr) return;
  object.registeredModules.AddTail(module.param);
  module.param->AddReference();
}

bool IsValid(ZylSProgram& object) { return object.program != nullptr; }
bool IsLocked(ZylSProgram& object) {
  return object.program != nullptr && object.program->lockCount != 0;
}

namespace {

// Stores a field without setting the dirty flag or notifying.
template <class Field, class NewValue>
int32_t PlainAccess(Field& field, const NewValue& newValue) {
  const auto before = static_cast<int32_t>(field);
  if (newValue) field = static_cast<Field>(*newValue);
  return before;
}

}  // namespace

int32_t PRGmute(ZylSProgram&, LoadedProgram program, Opt<int32_t, "Mute"> newValue) {
  return PlainAccess(program->mute, newValue);
}
int32_t PRGtmmute(ZylSProgram&, LoadedProgram program, Opt<int32_t, "Mute"> newValue) {
  return PlainAccess(program->tmmute, newValue);
}
int32_t PRGsolo(ZylSProgram&, LoadedProgram program, Opt<int32_t, "Solo"> newValue) {
  return PlainAccess(program->solo, newValue);
}

int32_t PRGtmMidiChannel(ZylSProgram&, LoadedProgram program,
                         Opt<int32_t, "MidiChannel"> newValue) {
  return PlainAccess(program->tmMidiChannel, newValue);
}

std::string SetUniqueFilePath(ZylSProgram&, LoadedProgram program) {
  return program->setUniqueTempName();
}
