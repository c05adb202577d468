// Conversion between sample files and the file objects of their formats.
#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "../base.h"
#include "../platform/Platform.h"
#include "SampleFile.h"

namespace zyl {
namespace {

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

enum class Container { kNone, kWave, kAiff };

Container ContainerFor(const std::string& path) {
  const std::string extension = LowerCase(FileString(path).Extension());
  if (extension == "wav" || extension == "wave") return Container::kWave;
  if (extension == "aif" || extension == "aiff" || extension == "aifc") return Container::kAiff;
  return Container::kNone;
}

}  // namespace

void SampleFile::Adopt(std::unique_ptr<BasicSample> file) {
  const auto channels = std::clamp(static_cast<int>(file->ChannelCount()), 1, kMaxChannels);
  const RiffParameters& from = file->parameters;
  SetChannelCount(channels);
  std::vector<SampleBlock> blocks(static_cast<size_t>(channels));
  for (unsigned c = 0; c < blocks.size(); ++c) blocks[c] = SampleBlock(file->TakeLinBuffer(c));
  const int positions =
      static_cast<int>(std::min<uint64_t>(file->FrameCount(), static_cast<uint64_t>(INT32_MAX)));
  if (blocks[0] != nullptr) {
    SetBlocks(std::move(blocks), static_cast<int>(file->BytesPerValue()), positions);
  }
  if (!file->Name().empty()) {
    Rename(file->Name());
    titled_ = true;
  }
  {
    const std::lock_guard<std::mutex> hold(soundMutex_);
    parameters.frameCount = positions;
    parameters.bits = static_cast<uint16_t>(file->BitsPerValue());
    parameters.sampleRate = rateHz_ = from.rateHz;
  }
  parameters.key = from.key;
  parameters.tune = from.tune;
  parameters.playbackType = from.playbackType;
  parameters.holdLoopTuneOff = from.holdLoopTuneOff;
  parameters.start = from.start;
  parameters.end = from.end < 0 ? std::max(positions - 1, 0) : from.end;
  parameters.loopCount = 0;
  for (const RiffLoop& loop : from.loops) {
    if (parameters.loopCount == kMaxLoops) break;
    genericLoop& to = parameters.loops[parameters.loopCount++];
    to.loopStart = static_cast<int32_t>(std::min<uint32_t>(loop.start, INT32_MAX));
    to.loopEnd = static_cast<int32_t>(std::min<uint32_t>(loop.end, INT32_MAX));
    to.loopFineLen = loop.fineLen;
    to.loopTimes = static_cast<int32_t>(std::min<uint32_t>(loop.times, INT32_MAX));
    to.loopType = loop.type;
  }
  container_ = std::move(file);
}

bool CanStoreAs(const std::string& path) { return ContainerFor(path) != Container::kNone; }

void SampleFile::CopyParametersTo(BasicSample& file) const {
  RiffParameters& to = file.parameters;
  to.rateHz = parameters.sampleRate;
  to.key = parameters.key;
  to.tune = parameters.tune;
  to.playbackType = parameters.playbackType;
  to.holdLoopTuneOff = parameters.holdLoopTuneOff;
  to.start = parameters.start;
  to.end = parameters.end;
  to.loops.clear();
  for (uint32_t i = 0; i < std::min<uint32_t>(parameters.loopCount, kMaxLoops); ++i) {
    const genericLoop& loop = parameters.loops[i];
    to.loops.push_back({static_cast<uint32_t>(std::max(loop.loopStart, 0)),
                        static_cast<uint32_t>(std::max(loop.loopEnd, 0)), loop.loopFineLen,
                        static_cast<uint32_t>(std::max(loop.loopTimes, 0)), loop.loopType});
  }
  file.SetBitsPerValue(parameters.bits);
}

bool SampleFile::WriteTo(const std::string& path, int channelMask, std::string& reason) {
  const Container kind = ContainerFor(path);
  if (kind == Container::kNone) {
    reason = path + ": samples can only be stored as .wav or .aif";
    return false;
  }
  std::unique_ptr<BasicSample> made;
  BasicSample* file = container_.get();
  // A file whose format doesn't match its extension keeps its format when stored to its own path.
  const bool ownName = file != nullptr && AbsolutePath(path) == absolutePath_;
  std::vector<unsigned> selected;
  for (unsigned c = 0; c < blocks_.size(); ++c) {
    if (channelMask == 0 || (static_cast<unsigned>(channelMask) >> c & 1u) != 0) {
      selected.push_back(c);
    }
  }
  if (selected.empty()) {
    reason = path + ": the channel mask selects no channel of the sample";
    return false;
  }
  const bool sameKind = kind == Container::kWave ? dynamic_cast<WavSample*>(file) != nullptr
                                                 : dynamic_cast<AifSample*>(file) != nullptr;
  if (!sameKind && !ownName) {
    if (kind == Container::kWave) {
      made = std::make_unique<WavSample>();
    } else {
      made = std::make_unique<AifSample>();
    }
    file = made.get();
  }
  CopyParametersTo(*file);
  file->SetName(titled_ ? name_.c_str() : "");
  file->SetChannelCount(static_cast<unsigned>(selected.size()));
  // Remove the lent buffers from the file object on every exit path.
  const std::unique_ptr<BasicSample, void (*)(BasicSample*)> lent(
      file, [](BasicSample* borrower) { borrower->DetachLinBuffers(); });
  std::byte empty[1];  // channels of an empty sample have no blocks
  for (unsigned i = 0; i < selected.size(); ++i) {
    std::byte* block = blocks_[selected[i]].get();
    file->SetLinBuffer(parameters.frameCount == 0 ? empty : block,
                       static_cast<unsigned>(BytesPerValue()),
                       static_cast<unsigned>(parameters.frameCount), i);
  }
  if (!file->CreateInterleavedBuffer() || !file->IsValid()) {
    reason = path + ": the sample is too large for this file format";
    return false;
  }
  RiffFile target(path, file->FormatFlag());
  if (file->Write(target) && target.Close()) return true;
  reason = target.Error();
  return false;
}

}  // namespace zyl

int getTypeFromExtension(const char* extension) {
  const std::string lower = zyl::LowerCase(extension == nullptr ? "" : extension);
  if (lower == "s") return 1;
  if (lower == "wav") return 2;
  if (lower == "aif") return 3;
  return 0;
}
