// Reads arbitrary bytes as an AIFF or AIFC file, writes the result to a file, and reads it again.
#include "Sounds.h"
#include "riff/SampleReaders.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  using zyl::fuzz::Require;
  static const zyl::fuzz::ScratchFolder folder;
  const zyl::fuzz::MemoryBound bound(count, zyl::fuzz::kDecoderBytes);
  std::string reason;
  AifSample sample;
  if (!zyl::ReadAif(zyl::MemorySource(bytes, count), sample, true, reason)) {
    Require(!reason.empty(), "a refusal has a reason");
    return 0;
  }
  Require(sample.IsValid(), "what was read is whole");
  RiffFile file(folder.File("sound.aif"), sample.FormatFlag());
  if (!sample.Write(file)) return 0;
  Require(file.Close(), "the file takes what was written");
  const auto again = ReadSampleFile(folder.File("sound.aif"), true, reason);
  Require(again != nullptr, "what was written can be read");
  if (sample.FrameCount() > 0) zyl::fuzz::RequireSameSample(sample, *again);
  return 0;
}
