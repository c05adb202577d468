// Reads arbitrary bytes as a WAVE file; the result is written, read again and written again to the
// same bytes.
#include "Sounds.h"
#include "riff/SampleReaders.h"

namespace {

struct Image {
  explicit Image(WavSample& sample) {
    char* made = nullptr;
    length = sample.WriteToMem(&made);
    bytes.reset(made);
  }
  std::unique_ptr<char[]> bytes;
  int length = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  using zyl::fuzz::Require;
  const zyl::fuzz::MemoryBound bound(count, zyl::fuzz::kDecoderBytes);
  std::string reason;
  WavSample sample;
  if (!zyl::ReadWav(zyl::MemorySource(bytes, count), sample, true, reason)) {
    Require(!reason.empty(), "a refusal has a reason");
    return 0;
  }
  Require(sample.IsValid(), "what was read is whole");
  const Image first(sample);
  // An empty sound before chunks with unknown names is read as an unclosed stream.
  if (first.length == 0 || sample.FrameCount() == 0) return 0;
  WavSample again;
  Require(again.ReadFromMem(first.bytes.get(), first.length), "what was written can be read");
  zyl::fuzz::RequireSameSample(sample, again);
  const Image second(again);
  Require(first.length == second.length && std::memcmp(first.bytes.get(), second.bytes.get(),
                                                       static_cast<size_t>(first.length)) == 0,
          "writing again changes nothing");
  return 0;
}
