// The classes and object types that loaded modules have registered. Script thread only.
#pragma once

#include <string_view>

#include "../base.h"

namespace zyl {

const ZylDllRegisterClass* FindClass(std::string_view className);

// Attributes registrations to `module` until the next call; null ends this.
void BeginModule(const void* module);
// Runs what the module asked for with ZylBeforeUnload.
void EndModule(const void* module);
void ForgetModule(const void* module);

}  // namespace zyl
