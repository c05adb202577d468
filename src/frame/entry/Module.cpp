#include "frame/entry/Module.h"

#include <cstddef>
#include <new>

namespace {

constexpr int kSampleTypeId = 5587;
constexpr int kSampleBaseNumber = 5500;
constexpr uint32_t kClassVersion = 0x10001;

ZylDispatch* MakeProgram(RIOObject* creator) {
  try {
    auto* program = new ZylSProgram;
    program->owner = creator;
    return program;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

ZylDllRegisterClass programClass = {nullptr,     "ZylSProgram", "ZylDisplayObject",
                                    MakeProgram, kClassVersion, 0};

ZylDllRegisterClass* Push(ZylDllRegisterClass& record, ZylDllRegisterClass* list) {
  record.next = list;
  return &record;
}

// Members are destroyed in reverse: the workers end before the temporary samples, which they may
// analyse, are destroyed. GCC and Clang support offsetof for this class.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(ModuleState, tempSamples) < offsetof(ModuleState, pitchJobs));
#pragma GCC diagnostic pop

// Constructed when the library is loaded, destroyed when it is unloaded.
ModuleState loaded;

}  // namespace

ModuleState& ModuleState::Get() { return loaded; }

ModuleState::ModuleState()
    : sampleType(RegisterRIOObject("CSample", kSampleTypeId, kSampleBaseNumber, CSample::Factory)),
      registrations(Push(programClass, nullptr)),
      lockAll(qxGetPrivateProfileLong("Sampler", "LockAll", 0, nullptr) != 0) {}

hashEntry* ModuleState::HashTable(ZylDispatch* dispatch) {
  return hash_ != nullptr ? hash_.get() : RebuildHashTable(dispatch);
}

hashEntry* ModuleState::RebuildHashTable(ZylDispatch* dispatch) {
  hash_.reset();
  hash_.reset(ZylCreateFuncHashTable(dispatch));
  return hash_.get();
}

PlexList<ZylSProgram*>& ZylSProgram::Registry() { return ModuleState::Get().programRegistry; }
bool ZylSProgram::LocksRecords() { return ModuleState::Get().lockAll; }
ZylFuncInfo* ZylSProgram::GetFuncTable() { return MethodTable(); }
uint32_t* ZylSProgram::GetAuxTable() { return &ModuleState::Get().auxTable; }
hashEntry* ZylSProgram::GetHashTable() { return ModuleState::Get().HashTable(this); }
hashEntry* ZylSProgram::RebuildHashTable() { return ModuleState::Get().RebuildHashTable(this); }
SampleList& TempSamples() { return ModuleState::Get().tempSamples; }
PitchJobManager& PitchJobs() { return ModuleState::Get().pitchJobs; }

extern "C" __attribute__((visibility("default"))) int RegisterAllClasses(const char* dllName) {
  for (ZylDllRegisterClass* record = ModuleState::Get().registrations; record != nullptr;
       record = record->next) {
    ZylNewDllInfoTag(dllName, record);
  }
  return 1;
}
