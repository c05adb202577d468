// Any bytes as a SoundFont file: names of at most 20 characters, or nothing.
#include "Harness.h"
#include "riff/PresetNames.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  const zyl::fuzz::MemoryBound bound(count, size_t{1} << 16);
  const auto names = zyl::ReadPresetNames(zyl::MemorySource(bytes, count));
  for (size_t i = 0; names && i < names->size(); ++i) {
    zyl::fuzz::Require((*names)[i].size() <= 20, "a name has at most 20 characters");
  }
  return 0;
}
