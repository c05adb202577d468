#include "params/ProgramMethods.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "params/ParameterNumbers.h"
#include "params/ParameterTable.h"

std::string PRGname(ZylSProgram& object, LoadedProgram program,
                    Opt<std::string, "NewString"> newName) {
  std::byte* name = ProgramField(*program.record, ParameterOf("PRGname"));
  std::string before = LoadText(name);
  if (newName && std::strncmp(program->name, newName.Text(), kTextFieldBytes) != 0) {
    object.dirty = true;
    StoreText(name, newName.Text());
  }
  return before;
}

int32_t PRGmidiChannel(ZylSProgram& object, LoadedProgram, Opt<int32_t, "NewValue"> newValue) {
  const int32_t before = object.GetMidiChannel();
  if (newValue) {
    ChangeNotice notice(object, ParameterOf("PRGmidiChannel").number, newValue.param);
    object.SetMidiChannel(*newValue);
    notice.Send();
  }
  return before;
}

IndyOutputChange::IndyOutputChange(ZylSProgram& object)
    : object_(object),
      value_(newROCParam(0)),
      notice_(object, ParameterOf("PRGindyOutput").number, value_.get()),
      zonesNotice_(object, number::kZoneOutput, value_.get()) {}

void IndyOutputChange::Apply(int32_t output) {
  const auto stored = static_cast<int8_t>(output);
  object_.program->indyOutput = stored;
  value_->SetInt(stored);
  notice_.Send();
  zonesNotice_.Send();
}

int32_t PRGindyOutput(ZylSProgram& object, LoadedProgram program,
                      Opt<int32_t, "NewValue"> newValue) {
  const int32_t before = program->indyOutput;
  if (newValue) IndyOutputChange(object).Apply(*newValue);
  return before;
}

void StoreKeyGroups(akaiProgram& record, int32_t count) {
  record.keyGroups = count;
  record.keyGroupsByte = static_cast<uint8_t>(std::min(count, 255));
}

int32_t PRGkeyGroups(ZylSProgram& object, LoadedProgram program,
                     Opt<int32_t, "NewValue"> newValue) {
  const int32_t before = program->keyGroups;
  if (newValue && *newValue != before) {
    ChangeNotice notice(object, ParameterOf("PRGkeyGroups").number, newValue.param);
    object.dirty = true;
    StoreKeyGroups(*program.record, *newValue);
    notice.Send();
  }
  return before;
}

int32_t PRGmasterDetune(ZylSProgram&, LoadedProgram program, IndexArg<"Index", 13> index,
                        Opt<int32_t, "NewValue"> newValue) {
  static_assert(std::size(decltype(akaiProgramHdrImage::masterDetune){}) == 13);
  int8_t& detune = program->masterDetune[*index];
  const int32_t before = detune;
  if (newValue) detune = static_cast<int8_t>(*newValue);
  return before;
}
