// The methods of program parameters that aren't generated from their row.
#pragma once

#include <string>

#include "frame/Arguments.h"
#include "frame/ChangeNotice.h"

std::string PRGname(ZylSProgram& object, LoadedProgram program,
                    Opt<std::string, "NewString"> newName);
int32_t PRGmidiChannel(ZylSProgram& object, LoadedProgram program,
                       Opt<int32_t, "NewValue"> newValue);
int32_t PRGindyOutput(ZylSProgram& object, LoadedProgram program,
                      Opt<int32_t, "NewValue"> newValue);
int32_t PRGkeyGroups(ZylSProgram& object, LoadedProgram program, Opt<int32_t, "NewValue"> newValue);
int32_t PRGmasterDetune(ZylSProgram& object, LoadedProgram program, IndexArg<"Index", 13> index,
                        Opt<int32_t, "NewValue"> newValue);

// Sets the first individual output of the program. Zone outputs count from it, so the modules are
// notified of those too. Apply() doesn't allocate.
class IndyOutputChange {
 public:
  explicit IndyOutputChange(ZylSProgram& object);
  void Apply(int32_t output);

 private:
  ZylSProgram& object_;
  ROCParamPtr value_;
  ChangeNotice notice_;
  ChangeNotice zonesNotice_;
};
inline int32_t GetIndyOutput(const akaiProgram& record) { return record.indyOutput; }
// Sets the keygroup count that scripts see; neither creates nor deletes keygroups.
void StoreKeyGroups(akaiProgram& record, int32_t count);
