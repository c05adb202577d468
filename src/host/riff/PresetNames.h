// The presets of a SoundFont 2 file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ByteSource.h"

namespace zyl {

// Their names in file order, of up to 20 characters as stored. Nothing for a file that is damaged
// or none of its kind; an empty list for one without presets. `path` is UTF-8.
std::optional<std::vector<std::string>> ReadPresetNames(const std::string& path);
std::optional<std::vector<std::string>> ReadPresetNames(const ByteSource& source);

}  // namespace zyl
