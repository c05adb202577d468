// Parameters by number, for the methods by number, the pad slots and the editor's lists.
//
// A number is looked up in the parameter rows; the few that aren't plain fields (a channel, an
// output, a memory figure, a property of a sample) have their own operations. Unknown numbers
// return -1, and missing texts "". Keygroup index -2 addresses the selected keygroups, other
// negative values all of them; the result is then that of the last one visited.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "frame/Forms.h"
#include "params/ParameterTable.h"
#include "params/ProgramMethods.h"

// A typed text, replaced in place with the text of the stored value. Null: only read.
using TypedText = ROCParam*;

// ---- Operations on the program object; a record must be attached. ----

// Returns the previous value. A new value that differs sets the dirty flag and notifies; the
// notification passes the script's values `number` and `newValue`.
int32_t ProgramParamValue(ZylSProgram& object, ROCParam* number, ROCParam* newValue);

// A change in two steps: the constructor may throw, Apply() doesn't allocate.
class ProgramChange {
 public:
  ProgramChange(ZylSProgram& object, ROCParam* number, ROCParam* newValue);
  // Stores the number that `newValue` holds now. Returns the previous value.
  int32_t Apply();

 private:
  ZylSProgram& object_;
  const Parameter* row_;
  ROCParamPtr newValue_;
  int32_t value_ = -1;  // of a number without a row
  ChangeNotice notice_;
  std::optional<IndyOutputChange> output_;
};

int32_t KeyGroupParamValue(ZylSProgram& object, int32_t number, int32_t keygroup,
                           std::optional<int32_t> newValue = {});
int32_t ZoneParamValue(ZylSProgram& object, int32_t number, int32_t keygroup, int zone,
                       std::optional<int32_t> newValue = {});
std::string ZoneParamText(ZylSProgram& object, int32_t number, int32_t keygroup, int zone,
                          TypedText newText = nullptr);
// Clamps `newValue` in place if the parameter clamps it.
int32_t SampleParamValue(ZylSProgram& object, int32_t number, int keygroup, int zone,
                         ROCParam* newValue = nullptr);
std::string SampleParamText(ZylSProgram& object, int32_t number, int keygroup, int zone,
                            TypedText newText = nullptr);

// ---- Script methods. ----

int32_t PRGIntValue(ZylSProgram& object, const LoadedProgram& program,
                    const Arg<int32_t, "Index">& number, const Opt<int32_t, "NewValue">& newValue);
std::string PRGStringValue(ZylSProgram& object, LoadedProgram program, Arg<int32_t, "Index"> number,
                           OptVar<std::string, "NewString"> newText);
int32_t KGIntValue(ZylSProgram& object, LoadedProgram program, KeyGroupIndex keygroup,
                   Arg<int32_t, "Index"> number, Opt<int32_t, "NewValue"> newValue);
std::string KGStringValue(ZylSProgram& object, LoadedProgram program, KeyGroupIndex keygroup,
                          Arg<int32_t, "Index"> number, OptVar<std::string, "NewString"> newText);
std::optional<int32_t> ZoneIntValue(Call& call, LoadedProgram program, KeyGroupIndex keygroup,
                                    OneZone zone, Arg<int32_t, "Index"> number,
                                    Opt<int32_t, "NewValue"> newValue,
                                    Deferred<Opt<int32_t, "UpdateKG">> updated);
std::string ZoneStringValue(ZylSProgram& object, LoadedProgram program, KeyGroupIndex keygroup,
                            OneZone zone, Arg<int32_t, "Index"> number,
                            OptVar<std::string, "NewString"> newText);
int32_t SampleIntValue(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup,
                       OneZone zone, Arg<int32_t, "Index"> number,
                       OptVar<int32_t, "NewValue"> newValue);
std::string SampleStringValue(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup,
                              OneZone zone, Arg<int32_t, "Index"> number,
                              OptVar<std::string, "NewString"> newText);

// "InValue" of ModulationSource as a number.
struct SourceNumber {
  static constexpr DeclaredArgument kDeclared{
      .name = "InValue", .type = kTypeInteger, .last = kModSources - 1};
  static bool Read(Call& call, SourceNumber& self);

  int32_t value = 0;
};
int32_t ModulationSourceNumber(ZylSProgram& object, VarArg<std::string, "InValue"> name);
std::string ModulationSourceName(ZylSProgram& object, SourceNumber number);
inline constexpr Forms<&ModulationSourceNumber, &ModulationSourceName> ModulationSource;
