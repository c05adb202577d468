// The script methods of the parameter rows: one function for each kind of record, driven by the
// row.
#pragma once

#include "frame/Arguments.h"
#include "params/ParameterTable.h"

// Each returns the previous value, and stores a new one by the rule of its kind of record.
int32_t ProgramFieldValue(ZylSProgram& object, const Parameter& row, const LoadedProgram& program,
                          const Opt<int32_t, "NewValue">& newValue);
int32_t TolmoFieldValue(ZylSProgram& object, const Parameter& row, const LoadedProgram& program,
                        const Opt<int32_t, "NewValue">& newValue);
int32_t KeygroupFieldValue(ZylSProgram& object, const Parameter& row, const LoadedProgram& program,
                           const KeyGroupIndex& keygroup, const Opt<int32_t, "NewValue">& newValue);
int32_t ZoneFieldValue(ZylSProgram& object, const Parameter& row, const LoadedProgram& program,
                       const OneKeyGroup& keygroup, const OneZone& zone,
                       const Opt<int32_t, "NewValue">& newValue);

namespace field {

template <FixedText Name>
inline constexpr const Parameter& kRow = ParameterOf(Name.text);

template <FixedText Name>
int32_t OfProgram(ZylSProgram& object, const LoadedProgram& program,
                  const Opt<int32_t, "NewValue">& newValue) {
  return kRow<Name>.record == Record::kTolmo
             ? TolmoFieldValue(object, kRow<Name>, program, newValue)
             : ProgramFieldValue(object, kRow<Name>, program, newValue);
}

template <FixedText Name>
int32_t OfKeygroups(ZylSProgram& object, const LoadedProgram& program,
                    const KeyGroupIndex& keygroup, const Opt<int32_t, "NewValue">& newValue) {
  return KeygroupFieldValue(object, kRow<Name>, program, keygroup, newValue);
}

template <FixedText Name>
int32_t OfZone(ZylSProgram& object, const LoadedProgram& program, const OneKeyGroup& keygroup,
               const OneZone& zone, const Opt<int32_t, "NewValue">& newValue) {
  return ZoneFieldValue(object, kRow<Name>, program, keygroup, zone, newValue);
}

template <FixedText Name>
consteval auto Body() {
  constexpr Record kRecord = kRow<Name>.record;
  if constexpr (kRecord == Record::kProgram || kRecord == Record::kTolmo) {
    return &OfProgram<Name>;
  } else if constexpr (kRecord == Record::kKeygroup || kRecord == Record::kExtension) {
    return &OfKeygroups<Name>;
  } else {
    return &OfZone<Name>;
  }
}

}  // namespace field

template <FixedText Name>
inline constexpr auto kFieldMethod = field::Body<Name>();
