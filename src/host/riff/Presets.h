// The presets of a SoundFont bank (.sf2, .sf3).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "../hostapp.h"
#include "ByteSource.h"

namespace zyl {

// In file order. Nothing for a file that is damaged or of another kind; an empty list for one
// without presets. `path` is UTF-8.
std::optional<std::vector<ZylPreset>> ReadPresets(const std::string& path);
std::optional<std::vector<ZylPreset>> ReadPresets(const ByteSource& source);

}  // namespace zyl
