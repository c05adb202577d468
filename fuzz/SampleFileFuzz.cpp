// Reads arbitrary bytes as a sample file of any format, including those decoded by libsndfile,
// writes the result to a file, and reads it again.
#include "Sounds.h"
#include "riff/SampleReaders.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  using zyl::fuzz::Require;
  static const zyl::fuzz::ScratchFolder folder;
  std::string reason;
  const auto sample = zyl::ReadSampleSource(zyl::MemorySource(bytes, count), true, reason);
  if (sample == nullptr) {
    Require(!reason.empty(), "a refusal has a reason");
    return 0;
  }
  Require(sample->IsValid(), "what was read is whole");
  RiffFile file(folder.File("sound"), sample->FormatFlag());
  if (!sample->Write(file)) return 0;
  Require(file.Close(), "the file takes what was written");
  const auto again = ReadSampleFile(folder.File("sound"), true, reason);
  Require(again != nullptr || sample->FrameCount() == 0, "what was written can be read");
  if (sample->FrameCount() > 0) zyl::fuzz::RequireSameSample(*sample, *again);
  return 0;
}
