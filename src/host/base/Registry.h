// The classes and object types that loaded modules have registered. Script thread only.
#pragma once

#include <string_view>

#include "../base.h"

namespace zyl {

const ZylDllRegisterClass* FindClass(std::string_view className);

// What is registered between the two calls belongs to `module`, and goes with it.
void BeginModule(const void* module);
const void* LoadingModule();
void ForgetModule(const void* module);

}  // namespace zyl
