// Reads arbitrary bytes as a SoundFont file: presets with names of at most 20 characters, or
// nothing.
#include "Harness.h"
#include "riff/Presets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  const zyl::fuzz::MemoryBound bound(count, size_t{1} << 16);
  const auto presets = zyl::ReadPresets(zyl::MemorySource(bytes, count));
  for (size_t i = 0; presets && i < presets->size(); ++i) {
    zyl::fuzz::Require((*presets)[i].name.size() <= 20, "a name has at most 20 characters");
  }
  return 0;
}
