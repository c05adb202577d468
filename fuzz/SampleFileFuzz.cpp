// Any bytes as a sample file of any kind, also of those that are decoded by libsndfile.
#include "Sounds.h"
#include "riff/SampleReaders.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  using zyl::fuzz::Require;
  std::string reason;
  const auto sample = zyl::ReadSampleSource(zyl::MemorySource(bytes, count), true, reason);
  if (sample == nullptr) {
    Require(!reason.empty(), "a refusal has a reason");
    return 0;
  }
  Require(sample->IsValid(), "what was read is whole");
  return 0;
}
