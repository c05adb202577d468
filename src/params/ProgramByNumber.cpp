// The parameters of the program by number, and modulation sources by name.
#include <algorithm>
#include <array>
#include <cmath>

#include "host/qx.h"
#include "params/ByNumber.h"
#include "params/ParameterNumbers.h"
#include "params/ParameterTable.h"
#include "params/ParameterTexts.h"
#include "params/ProgramMethods.h"

namespace {

constexpr int32_t kLastProgram = number::kFirstKeygroup - 1;

bool IsMemory(int32_t number) {
  return number >= number::kLockedMemory && number <= number::kLastMemory;
}

// A memory figure: a number of bytes, or its percentage of a total.
struct MemoryFigure {
  int32_t bytes;
  bool isPercentage;
  double percent;  // -1 if the total is 0 bytes
};
MemoryFigure MemoryOf(const akaiProgram& record, int32_t number) {
  const bool locked = number < number::kTotalMemory;
  const int32_t bytes = locked ? record.getTotalLockedMem(true) : record.getTotalMem(true);
  const int32_t part = number - (locked ? number::kLockedMemory : number::kTotalMemory);
  if (part == 0) return {bytes, false, 0};
  const int64_t ofAll = locked ? getTotalLockedMem() : getTotalMem();
  // qxGetTotalPhysicalMemory is clamped to 2^31 - 1 bytes, so use the unclamped size.
  const auto whole = static_cast<double>(part == 1 ? ofAll : qxGetPhysicalMemoryBytes());
  return {bytes, true, whole == 0 ? -1.0 : bytes / whole * 100.0};
}

int32_t LoadProgramValue(ZylSProgram& object, const Parameter& row) {
  if (row.store == Store::kMidiChannel) return object.GetMidiChannel();
  return LoadField(ProgramField(*object.program, row), row.type);
}

void StoreProgramValue(ZylSProgram& object, const Parameter& row, int32_t value) {
  switch (row.store) {
    case Store::kMidiChannel:
      object.SetMidiChannel(value);
      break;
    case Store::kKeyGroups:
      StoreKeyGroups(*object.program, value);
      break;
    default:
      StoreField(ProgramField(*object.program, row), row.type, value);
  }
}

// Returns the text of the previous value and stores a typed one. Only modulation sources also set
// the dirty flag and notify.
std::string FieldText(ZylSProgram& object, const Parameter& row, ROCParam* number,
                      TypedText typed) {
  std::byte* field = ProgramField(*object.program, row);
  if (row.text == nullptr) return {};
  std::string text = ValueText(*row.text, LoadField(field, row.type));
  if (typed == nullptr) return text;
  if (row.text == &text_form::kModSource) {
    // Parsing replaces the typed text, so everything that may throw is done before.
    const ROCParamPtr newValue(newROCParam(0));
    ProgramChange change(object, number, newValue.get());
    newValue->SetInt(ValueFromText(*row.text, *typed));
    change.Apply();
    return text;
  }
  const int32_t value = ValueFromText(*row.text, *typed);
  if (value != kNoValue) StoreField(field, row.type, value);
  return text;
}

std::string ProgramText(ZylSProgram& object, ROCParam* number, TypedText typed) {
  const akaiProgram& record = *object.program;
  if (IsMemory(number->Int())) {
    const MemoryFigure figure = MemoryOf(record, number->Int());
    return figure.isPercentage ? PercentText(figure.percent) : MemoryText(figure.bytes);
  }
  const Parameter* row = RowOfNumber(number->Int(), 1, kLastProgram);
  if (row == nullptr) return {};
  if (row->store == Store::kMidiChannel) {
    std::string text = object.GetMidiChannelText();
    if (typed != nullptr) object.SetMidiChannelText(typed);
    return text;
  }
  if (row->store == Store::kIndyOutput) {
    std::string text = OutputText(GetIndyOutput(record));
    if (typed != nullptr) {
      IndyOutputChange change(object);  // may throw; parsing replaces the typed text
      change.Apply(OutputFromText(*typed, object.maxIndyOut));
    }
    return text;
  }
  if (row->type != FieldType::kText) return FieldText(object, *row, number, typed);
  std::byte* field = ProgramField(*object.program, *row);
  std::string text = LoadText(field);
  if (typed == nullptr) return text;
  std::array<std::byte, kTextFieldBytes> stored;
  StoreText(stored.data(), typed->Str().c_str());
  // Replace the typed name with the truncated name that is stored.
  if (row == &ParameterOf("PRGname")) typed->SetStr(LoadText(stored.data()));
  std::copy(stored.begin(), stored.end(), field);
  return text;
}

}  // namespace

namespace {

const Parameter* ValueRow(int32_t number) {
  const Parameter* row = RowOfNumber(number, 1, kLastProgram);
  return row != nullptr && row->type != FieldType::kText ? row : nullptr;
}

ROCParamPtr Shared(ROCParam* value) {
  value->AddReference();
  return ROCParamPtr(value);
}

// The value of a number without a row.
int32_t FigureValue(const akaiProgram& record, int32_t number) {
  if (!IsMemory(number)) return -1;
  const MemoryFigure figure = MemoryOf(record, number);
  return figure.isPercentage ? static_cast<int32_t>(figure.percent) : figure.bytes;
}

}  // namespace

ProgramChange::ProgramChange(ZylSProgram& object, ROCParam* number, ROCParam* newValue)
    : object_(object),
      row_(ValueRow(number->Int())),
      newValue_(Shared(newValue)),
      notice_(object, number, newValue) {
  if (row_ == nullptr) {
    value_ = FigureValue(*object.program, number->Int());
  } else if (row_->store == Store::kIndyOutput) {
    output_.emplace(object);
  }
}

int32_t ProgramChange::Apply() {
  const int32_t value = newValue_->Int();
  const int32_t before = row_ == nullptr ? value_ : LoadProgramValue(object_, *row_);
  if (output_) {
    output_->Apply(value);
  } else if (row_ != nullptr) {
    StoreProgramValue(object_, *row_, value);
  }
  if (value != before) {
    object_.dirty = true;
    notice_.Send();
  }
  return before;
}

int32_t ProgramParamValue(ZylSProgram& object, ROCParam* number, ROCParam* newValue) {
  if (newValue != nullptr) return ProgramChange(object, number, newValue).Apply();
  const Parameter* row = ValueRow(number->Int());
  return row != nullptr ? LoadProgramValue(object, *row)
                        : FigureValue(*object.program, number->Int());
}

int32_t PRGIntValue(ZylSProgram& object, const LoadedProgram&, const Arg<int32_t, "Index">& number,
                    const Opt<int32_t, "NewValue">& newValue) {
  return ProgramParamValue(object, number.param, newValue.param);
}

std::string PRGStringValue(ZylSProgram& object, LoadedProgram, Arg<int32_t, "Index"> number,
                           OptVar<std::string, "NewString"> newText) {
  return ProgramText(object, number.param, newText.param);
}

bool SourceNumber::Read(Call& call, SourceNumber& self) {
  const int position = call.position++;
  const ROCParam* param = call.Argument(position);
  if (param == nullptr || param->Type() != kTypeInteger) {
    return call.UserError("Expecting InValue (string) or (int) as first argument", position);
  }
  self.value = param->Int();
  return argument::CheckRange(call, "InValue", position, self.value, 0, kModSources - 1);
}

int32_t ModulationSourceNumber(ZylSProgram&, VarArg<std::string, "InValue"> name) {
  return MatchText(text_form::kModSource.names, *name.param);
}

std::string ModulationSourceName(ZylSProgram&, SourceNumber number) {
  return ValueText(text_form::kModSource, number.value);
}
