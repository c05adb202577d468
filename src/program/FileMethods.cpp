#include "program/FileMethods.h"

#include <memory>
#include <new>
#include <utility>

#include "host/qx.h"

namespace {

constexpr int32_t kDefaultWriteMode = 51;
constexpr int kPresetEntryBytes = 21;

// The program object of an algorithm object if it has a program attached, or null.
ZylSProgram* SourceProgram(RIOObject* object) {
  ZylSProgram* source = ZylSProgram::FromObject(object);
  return source != nullptr && source->program != nullptr ? source : nullptr;
}

// The common part of Read and Find: sets the given channel unchecked, else the record's channel.
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
  object.Attach(record);
  if (record == nullptr) return false;
  int32_t channel = record->midiChannel;
  try {
    // Looked up after attaching: an object that is its own source copies the new, empty record.
    if (const ZylSProgram* other = SourceProgram(source.Object())) {
      record->copyFrom(other->program, copySamples.ValueOr(true));
      channel = other->midiChannel;
    } else {
      record->setDefault();
    }
  } catch (...) {
    object.Detach();
    throw;
  }
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
           IfCounted<Arg<int32_t, "WriteMode">> writeMode) {
  const int32_t mode = writeMode.counted ? *writeMode.value : kDefaultWriteMode;
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
  struct FreeBlock {
    void operator()(char* bytes) const { ::operator delete(bytes); }
  };
  const std::unique_ptr<char, FreeBlock> block(createPresetArray(path.Text(), count));
  if (block == nullptr) return 0;
  const ROCParamPtr filled(ROCParam::NewArray(count));
  for (int i = 0; i < count; ++i) {
    filled->Element(i) = ROCParam(block.get() + kPresetEntryBytes * i);
  }
  *names.param = std::move(*filled);
  return count;
}
