// The module's state, from load to unload. Script thread only.
#pragma once

#include <wx/init.h>

#include "frame/ZylSProgram.h"
#include "pitch/PitchJobManager.h"
#include "sample/SampleList.h"
#include "util/PlexList.h"

// The method table: 295 rows and a terminating row; filled at load.
ZylFuncInfo* MethodTable();

class ModuleState {
 public:
  // Members are initialised in the order of their declaration and destroyed in reverse.
  ModuleState();
  ~ModuleState();
  ModuleState(const ModuleState&) = delete;
  ModuleState& operator=(const ModuleState&) = delete;

  static ModuleState& Get();

 private:
  // Initialised before everything that uses wxWidgets. Its destructor waits for threads that are
  // still deleting themselves, so that no code of the module runs after it is unloaded.
  wxInitializer wx_;

 public:
  // Registration list, last pushed record first.
  ZylDllRegisterClass* registrations = nullptr;
  uint32_t auxTable = 0;  // only the terminator
  PlexList<ZylSProgram*> programRegistry;
  bool lockAll = false;  // lock records while they are attached
  SampleList tempSamples;
  PitchJobManager pitchJobs;

  // The lookup table that all program objects share; built on first use.
  hashEntry* HashTable(ZylDispatch* dispatch);
  hashEntry* RebuildHashTable(ZylDispatch* dispatch);

 private:
  hashEntry* hash_ = nullptr;
};
