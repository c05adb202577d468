// The module's own state, from load to unload. Script thread only.
#pragma once

#include <wx/init.h>

#include "frame/ZylSProgram.h"
#include "pitch/PitchJobManager.h"
#include "sample/SampleList.h"
#include "util/PlexList.h"

// The method table: 295 rows and a terminating one; filled at load.
ZylFuncInfo* MethodTable();

class ModuleState {
 public:
  // The initialisers run in the order in which the members stand, the clean-ups in reverse.
  ModuleState();
  ~ModuleState();
  ModuleState(const ModuleState&) = delete;
  ModuleState& operator=(const ModuleState&) = delete;

  static ModuleState& Get();

 private:
  // Before everything that uses wxWidgets. Its end waits for threads that are still deleting
  // themselves, so that no code of the module runs when the library goes.
  wxInitializer wx_;

 public:
  // Registration list, last pushed record first.
  ZylDllRegisterClass* registrations = nullptr;
  uint32_t auxTable = 0;  // only its end
  PlexList<ZylSProgram*> programRegistry;
  bool lockAll = false;  // every attached record is locked while it is attached
  SampleList tempSamples;
  PitchJobManager pitchJobs;

  // Lookup shared by all program objects: built on first request.
  hashEntry* HashTable(ZylDispatch* dispatch);
  hashEntry* RebuildHashTable(ZylDispatch* dispatch);

 private:
  hashEntry* hash_ = nullptr;
};
