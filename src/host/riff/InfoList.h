// The title of a WAVE file in its list of information texts.
#pragma once

#include <optional>
#include <string>

#include "ByteOrder.h"

namespace zyl {

// The title that a "LIST" chunk's data holds; empty where there is none.
std::string ListedName(const Bytes& list);
// A list that holds a title alone.
Bytes MakeNameList(const std::string& name);
// The list with another title in the place of its own; nothing for a list without one.
std::optional<Bytes> WithListedName(const Bytes& list, const std::string& name);

}  // namespace zyl
