// Lists the presets of a SoundFont bank (.sf2, .sf3).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "../hostapp.h"
#include "ByteSource.h"

namespace zyl {

// In file order. Returns nullopt if the file is damaged or isn't a SoundFont bank, and an empty
// list if it has no presets. `path` is UTF-8.
std::optional<std::vector<ZylPreset>> ReadPresets(const std::string& path);
std::optional<std::vector<ZylPreset>> ReadPresets(const ByteSource& source);

}  // namespace zyl
