// The script methods of the parameter rows: one for each family, driven by the row.
#pragma once

#include "frame/Method.h"
#include "params/ParameterTable.h"

// Each reads its family's arguments, makes the result of the value before, and stores a new value
// by the family's rule. False after a report.
bool ProgramFieldMethod(Call& call, const Parameter& row);
bool TolmoFieldMethod(Call& call, const Parameter& row);
bool KeygroupFieldMethod(Call& call, const Parameter& row);
bool ZoneFieldMethod(Call& call, const Parameter& row);

template <FixedText Name>
bool FieldMethod(Call& call) {
  constexpr const Parameter& kRow = ParameterOf(Name.text);
  if constexpr (kRow.record == Record::kProgram) {
    return ProgramFieldMethod(call, kRow);
  } else if constexpr (kRow.record == Record::kTolmo) {
    return TolmoFieldMethod(call, kRow);
  } else if constexpr (kRow.record == Record::kKeygroup || kRow.record == Record::kExtension) {
    return KeygroupFieldMethod(call, kRow);
  } else {
    return ZoneFieldMethod(call, kRow);
  }
}
