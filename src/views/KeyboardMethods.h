// The keyboards of the editor: drawing one, and colouring those of the keygroup list.
#pragma once

#include "views/ListModule.h"

// Marks a keygroup's range on a keyboard; nothing for a negative index or a null object.
void DrawKeyGroupKB(ZylSProgram& object, LoadedProgram program, KeyGroupOrNone keygroup,
                    ContainerArg<"GO"> keyboard, ListModuleArg module);

// Colours the keyboards of the module's keygroup list: those whose range holds the key get the
// colours `...Sel`, the others the plain ones. What has its colour already is not redrawn.
void UpdateKeyboardSelection(Call& call, LoadedProgram program, Arg<int32_t, "SelKey"> key,
                             Arg<double, "Color"> color, Arg<double, "ColorBK"> colorBK,
                             Arg<double, "ColorSel"> colorSel, Arg<double, "ColorBKSel"> colorBKSel,
                             ListModuleArg module);
