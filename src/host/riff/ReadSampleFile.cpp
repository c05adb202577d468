#include <new>

#include "../platform/InputFile.h"
#include "../riff.h"
#include "ChunkWalker.h"
#include "SampleReaders.h"

namespace zyl {

std::unique_ptr<BasicSample> ReadSampleSource(const ByteSource& source, bool withData,
                                              std::string& reason) {
  const ChunkWalker walker(source);
  if (walker.Type() == "WAVE" && walker.Order() == ByteOrder::kLittle) {
    auto sample = std::make_unique<WavSample>();
    if (!ReadWav(source, *sample, withData, reason)) return nullptr;
    return sample;
  }
  if (walker.Form() == "FORM" && (walker.Type() == "AIFF" || walker.Type() == "AIFC")) {
    auto sample = std::make_unique<AifSample>();
    if (!ReadAif(source, *sample, withData, reason)) return nullptr;
    return sample;
  }
  auto sample = std::make_unique<WavSample>();
  if (!DecodeSound(source, *sample, withData, reason)) return nullptr;
  return sample;
}

}  // namespace zyl

std::unique_ptr<BasicSample> ReadSampleFile(const std::string& path, bool withData,
                                            std::string& reason) {
  reason.clear();
  try {
    const zyl::InputFile file(path);
    if (!file.Good()) {
      reason = file.Error();
      return nullptr;
    }
    return zyl::ReadSampleSource(zyl::FileSource(file), withData, reason);
  } catch (const std::bad_alloc&) {
    reason = "there is not enough memory for the file";
    return nullptr;
  }
}

std::vector<ChunkInfo> ListFileChunks(const std::string& path) {
  std::vector<ChunkInfo> chunks;
  const zyl::InputFile file(path);
  if (!file.Good()) return chunks;
  const zyl::FileSource source(file);
  zyl::ChunkWalker walker(source);
  zyl::ChunkHead head;
  while (!walker.Form().empty() && walker.Next(head)) {
    chunks.push_back({std::string(head.Id()), head.size, head.offset});
  }
  return chunks;
}
