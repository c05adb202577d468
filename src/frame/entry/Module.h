// The module's state, from load to unload. Script thread only.
#pragma once

#include <wx/init.h>

#include <memory>

#include "frame/ZylSProgram.h"
#include "pitch/PitchJobManager.h"
#include "sample/SampleList.h"
#include "util/PlexList.h"

// The method table: 295 rows and a terminating one. It is a constant, so it is complete before the
// members below are initialised.
ZylFuncInfo* MethodTable();

// The members are initialised in their order when the library is loaded, and cleaned up in reverse
// when it is unloaded.
class ModuleState {
 public:
  ModuleState();
  ~ModuleState() = default;
  ModuleState(const ModuleState&) = delete;
  ModuleState& operator=(const ModuleState&) = delete;

  static ModuleState& Get();

 private:
  struct TempSampleList : SampleList {
    ~TempSampleList() { DeleteAll(); }
  };

  wxInitializer wx_;

 public:
  int sampleType;                      // what the host returned for "CSample"; not used
  ZylDllRegisterClass* registrations;  // a stack: the record pushed last comes first

 private:
  std::unique_ptr<hashEntry> hash_;

 public:
  uint32_t auxTable = 0;  // unused: a table with nothing but its end mark
  PlexList<ZylSProgram*> programRegistry;
  bool lockAll;  // locks the memory of records while they are attached
  TempSampleList tempSamples;
  PitchJobManager pitchJobs;

  // The lookup table that all program objects share; built on first use.
  hashEntry* HashTable(ZylDispatch* dispatch);
  hashEntry* RebuildHashTable(ZylDispatch* dispatch);
};
