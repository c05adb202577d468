// Transfers program parameters and whole samples through the data pads of DSP modules.
#pragma once

#include <optional>
#include <string>

#include "frame/Forms.h"

// A parameter number in an open-ended list, of any type: the low 16 bits of its value. A text or an
// object counts as 0.
struct ParamWord {
  static constexpr DeclaredArgument kDeclared{.name = "ParamNumber", .type = kTypeInteger};
  static bool Read(Call& call, ParamWord& self);

  std::optional<uint16_t> number;  // empty for a null entry
};

void WriteDataToPad(ZylSProgram& object, LoadedProgram program, PadArg pad,
                    Arg<int32_t, "SlotID"> slotId, Repeated<ParamWord> numbers);
void ReadDataFromPad(ZylSProgram& object, LoadedProgram program, PadArg pad,
                     Arg<int32_t, "SlotID"> slotId);
void EmptyPadData(ZylSProgram& object, PadArg pad);
void RemoveDataFromPad(ZylSProgram& object, LoadedProgram program, PadArg pad,
                       Arg<int32_t, "SlotID"> slotId);
void WriteSampleToPad(Call& call, PadArg pad, SampleArg sample);
CSample* ReadSampleFromPad(ZylSProgram& object, PadArg pad, OptPath<"Path"> path);
