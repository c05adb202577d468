#include "program/FileMethods.h"

#include <new>

#include "host/qx.h"

namespace {

constexpr int32_t kDefaultWriteMode = 51;
constexpr int kPresetEntryBytes = 21;

// What a script object that holds another program is copied from; null when there is none.
ZylSProgram* SourceProgram(RIOObject* object) {
  ZylSProgram* source = ZylSProgram::Behind(object);
  return source != nullptr && source->program != nullptr ? source : nullptr;
}

// The end of Read and Find: a given channel is taken as it is, else the record's own is set.
bool AttachWithChannel(ZylSProgram& object, akaiProgram* record,
                       const Opt<int32_t, "MC">& channel) {
  object.Attach(record);
  if (channel) {
    object.midiChannel = *channel;
    object.UpdateChannelMask();
  } else {
    object.SetMidiChannel(record == nullptr ? 0 : record->midiChannel);
  }
  object.LockAttached();
  return record != nullptr;
}

}  // namespace

bool Create(ZylSProgram& object,
            AlgoArg<"ProgramToCopy", Presence::kRequired, NullObject::kAllowed> source,
            Opt<bool, "CopySamples"> copySamples) {
  object.Detach();
  akaiProgram* record = newAkaiProgram();
  int32_t channel = record->midiChannel;
  // Looked up after the detaching: an object that is given itself has nothing left to copy and gets
  // a default program.
  if (const ZylSProgram* other = SourceProgram(source.Object())) {
    record->copyFrom(other->program, copySamples.ValueOr(true));
    channel = other->midiChannel;
  } else {
    record->setDefault();
  }
  object.Attach(record);
  object.SetMidiChannel(channel);
  object.LockAttached();
  return true;
}

bool Read(ZylSProgram& object, PathArg<"PrgName"> path, Opt<int32_t, "LoadSmpl"> loadSamples,
          Opt<int32_t, "MC"> channel) {
  object.Detach();
  return AttachWithChannel(object, readAkaiProgram(0, path.Text(), loadSamples.ValueOr(1)),
                           channel);
}

bool Find(ZylSProgram& object, PathArg<"PrgName"> name, Opt<int32_t, "MC"> channel) {
  object.Detach();
  return AttachWithChannel(object, findAkaiProgram(0, name.Text()), channel);
}

bool Write(ZylSProgram& object, LoadedProgram program, OptPath<"PrgPath"> path,
           IfCounted<Arg<int32_t, "WriteMode">> given) {
  const int32_t mode = given.counted ? *given.value : kDefaultWriteMode;
  const std::string target = path && !(*path).empty() ? std::string(*path) : program->GetFileName();
  const bool stored = writeAkaiProgram(program.record, 0, target.c_str(), mode) != 0;
  if (stored) object.dirty = false;
  return stored;
}

std::string FileName(ZylSProgram&, LoadedProgram program, OptPath<"NewFileName"> newName) {
  std::string before = program->GetFileName();
  if (newName) program->SetFileName(newName.Text());
  return before;
}

int32_t GetTotalPhysicalMemory(ZylSProgram&) { return qxGetTotalPhysicalMemory(); }
int32_t GetLockedMemory(ZylSProgram&) { return qxGetLockedMemory(); }
int32_t GetUsedPhysicalMemory(ZylSProgram&, Opt<bool, "Locked"> locked) {
  return locked.ValueOr(true) ? getTotalLockedMem() : getTotalMem();
}

int32_t GetSFPresetArray(ZylSProgram&, PathArg<"FilePath"> path, ArrayArg<"ResultArray"> names) {
  int count = 0;
  char* block = createPresetArray(path.Text(), count);
  if (block == nullptr) return 0;
  names.param->SetSize(count * 4);
  for (int i = 0; i < count; ++i) {
    names.param->Element(i) = ROCParam(block + kPresetEntryBytes * i);
  }
  ::operator delete(block);
  return count;
}
