// Reads and writes the title ("INAM") in the INFO list of a WAVE file.
#pragma once

#include <string>

#include "../byteOrder.h"

namespace zyl {

// The title in the data of a "LIST" chunk; empty if there is none.
std::string ListedName(const Bytes& list);
// Makes an INFO list with only a title.
Bytes MakeNameList(const std::string& name);
// Whether the data of a "LIST" chunk is an INFO list.
bool IsInfoList(const Bytes& list);
// Returns an INFO list with its title replaced, or appended if there was none. An empty name
// removes the title.
Bytes WithListedName(const Bytes& list, const std::string& name);

}  // namespace zyl
