// The classes and object types that loaded modules have registered. Script thread only.
#pragma once

#include <string_view>

#include "../base.h"

namespace zyl {

const ZylDllRegisterClass* FindClass(std::string_view className);

// Attributes the following registrations to `module`; null for none.
void BeginModule(const void* module);
// Runs the calls that the module registered with ZylBeforeUnload.
void RunBeforeUnload(const void* module);
// Removes everything that the module registered.
void UnregisterModule(const void* module);

}  // namespace zyl
