// The title of a WAVE file in its list of information texts.
#pragma once

#include <string>

#include "ByteOrder.h"

namespace zyl {

// The title that a "LIST" chunk's data holds; empty where there is none.
std::string ListedName(const Bytes& list);
// A list that holds a title alone.
Bytes MakeNameList(const std::string& name);
// Whether a "LIST" chunk's data is a list of information texts.
bool IsInfoList(const Bytes& list);
// Such a list with another title in place of its own, or after its texts; without one for an empty
// name.
Bytes WithListedName(const Bytes& list, const std::string& name);

}  // namespace zyl
