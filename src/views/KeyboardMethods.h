// Script methods that draw a keyboard and colour the keyboards of the keygroup list.
#pragma once

#include "views/ListModule.h"

// Marks the keygroup's key range on the keyboard. Does nothing for a negative index or a null
// keyboard.
void DrawKeyGroupKB(ZylSProgram& object, LoadedProgram program, KeyGroupOrNone keygroup,
                    ContainerArg<"GO"> keyboard, ListModuleArg module);

// Colours the keyboards of the module's keygroup list: `ColorSel` and `ColorBKSel` if the
// keygroup's range contains `SelKey`, otherwise `Color` and `ColorBK`. Objects that already have
// their colour are not redrawn.
void UpdateKeyboardSelection(Call& call, LoadedProgram program, Arg<int32_t, "SelKey"> key,
                             Arg<double, "Color"> color, Arg<double, "ColorBK"> colorBK,
                             Arg<double, "ColorSel"> colorSel, Arg<double, "ColorBKSel"> colorBKSel,
                             ListModuleArg module);
