// The classes and object types that loaded modules have registered. Script thread only.
#pragma once

#include <string_view>

#include "../base.h"

namespace zyl {

const ZylDllRegisterClass* FindClass(std::string_view className);

// Attributes registrations to `module` until the next call; null ends this.
void BeginModule(const void* module);
const void* LoadingModule();
void ForgetModule(const void* module);

}  // namespace zyl
