// Program parameters with their own rules.
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

// A new first individual output of the program. Zone outputs count from it, so that the modules are
// notified of those too. Apply allocates nothing.
class IndyOutputChange {
 public:
  IndyOutputChange(ZylSProgram& object, int32_t output);
  void Apply();

 private:
  ZylSProgram& object_;
  int8_t output_;
  ROCParamPtr value_;
  ChangeNotice notice_;
  ChangeNotice zonesNotice_;
};
inline int32_t GetIndyOutput(const akaiProgram& record) { return record.indyOutput; }
// The count of keygroups that scripts see; the records stay as many as they are.
void StoreKeyGroups(akaiProgram& record, int32_t count);
