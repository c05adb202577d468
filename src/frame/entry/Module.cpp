#include "frame/entry/Module.h"

#include <wx/dynlib.h>
#include <wx/log.h>

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

ModuleState* theModule = nullptr;

// Keeps wxWidgets loaded when this module is unloaded: the last instructions of a worker thread are
// wxWidgets code.
void KeepWxLoaded() {
  wxString path;
  if (wxDynamicLibrary::GetModuleFromAddress(reinterpret_cast<void*>(&wxUninitialize), &path) ==
      nullptr) {
    return;
  }
  const wxLogNull quiet;
  wxDynamicLibrary library(path);
  library.Detach();
}

// Constructed when the library is loaded, destroyed when it is unloaded.
ModuleState loaded;

}  // namespace

ModuleState& ModuleState::Get() { return *theModule; }

ModuleState::ModuleState() {
  theModule = this;
  KeepWxLoaded();
  RegisterRIOObject("CSample", kSampleTypeId, kSampleBaseNumber, CSample::Factory);
  programClass.next = registrations;
  registrations = &programClass;
  MethodTable();
  lockAll = qxGetPrivateProfileLong("Sampler", "LockAll", 0, nullptr) != 0;
}

ModuleState::~ModuleState() {
  pitchJobs.StopAll();
  tempSamples.DeleteAll();
  delete hash_;
  hash_ = nullptr;
}

hashEntry* ModuleState::HashTable(ZylDispatch* dispatch) {
  return hash_ != nullptr ? hash_ : RebuildHashTable(dispatch);
}

hashEntry* ModuleState::RebuildHashTable(ZylDispatch* dispatch) {
  delete hash_;
  hash_ = nullptr;
  hash_ = ZylCreateFuncHashTable(dispatch);
  return hash_;
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
