// The methods that this build does not have yet. Their arguments are declared here, so that the
// method reference knows them.
#pragma once

#include "frame/Forms.h"

template <auto Body>
struct NotAvailable {};

namespace later {

template <FixedText Name, FixedText Class>
struct ObjectArg {
  static constexpr DeclaredArgument kDeclared{
      .name = Name.text, .type = kTypeObject, .className = Class.text};
};
using ListModuleArg = AlgoArg<"ListModule", Presence::kRequired, NullObject::kAllowed>;

void DrawKeyGroupKB(ZylSProgram&, LoadedProgram, KeyGroupIndex, ObjectArg<"GO", "GOContainer">,
                    ListModuleArg);
void UpdateKeyboardSelection(ZylSProgram&, LoadedProgram, Arg<int32_t, "SelKey">,
                             Arg<double, "Color">, Arg<double, "ColorBK">, Arg<double, "ColorSel">,
                             Arg<double, "ColorBKSel">, ListModuleArg);
void ListFillKeygroups(ZylSProgram&, LoadedProgram, ListModuleArg, Opt<bool, "KeyAsValue">);
void ListFillZones(ZylSProgram&, LoadedProgram, KeyGroupIndex, ListModuleArg,
                   Opt<bool, "KeyAsValue">);

}  // namespace later

template <auto Body>
inline constexpr NotAvailable<Body> kNotAvailable;
