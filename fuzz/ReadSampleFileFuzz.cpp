// Feeds any bytes to the reader of sample files, and writes what it makes of them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "riff.h"
#include "riff/SampleReaders.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  std::string reason;
  const zyl::MemorySource source(bytes, count);
  const auto sample = zyl::ReadSampleSource(source, true, reason);
  if (sample == nullptr) {
    if (reason.empty()) std::abort();
    return 0;
  }
  if (!sample->IsValid()) std::abort();
  auto* wav = dynamic_cast<WavSample*>(sample.get());
  if (wav == nullptr) {
    // No way into memory for the other container; planning it covers its chunks.
    sample->CreateInterleavedBuffer();
    return 0;
  }
  char* image = nullptr;
  const int length = wav->WriteToMem(&image);
  const std::unique_ptr<char[]> owner(image);
  // An empty sound before chunks of strange names is taken for a stream that was never closed.
  if (length == 0 || wav->FrameCount() == 0) return 0;
  WavSample again;
  if (!again.ReadFromMem(image, length) || again.FrameCount() != wav->FrameCount()) std::abort();
  return 0;
}
