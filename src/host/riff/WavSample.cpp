#include <algorithm>
#include <climits>
#include <new>
#include <optional>

#include "../riff.h"
#include "ByteSource.h"
#include "FormPlan.h"
#include "InfoList.h"
#include "OwnChunk.h"
#include "SampleReaders.h"
#include "WavSampler.h"

namespace {

using zyl::ByteOrder;
using zyl::Bytes;
using zyl::FieldWriter;
using zyl::FileOrigin;
using zyl::FormPlan;
using zyl::Slot;

constexpr uint8_t kExtensibleFlag = 1;

Bytes MakeFormat(const WavSample& sample, const FileOrigin* origin) {
  const uint32_t channels = sample.ChannelCount();
  const uint32_t frameBytes = channels * sample.BytesPerValue();
  const bool extensible = (sample.FormatFlag() & kExtensibleFlag) != 0;
  const auto rateHz = static_cast<uint32_t>(std::max(sample.parameters.rateHz, 0));
  const uint64_t bytesPerSecond = std::min<uint64_t>(uint64_t{rateHz} * frameBytes, UINT32_MAX);
  FieldWriter out(ByteOrder::kLittle);
  out.U16(extensible ? 0xFFFE : 1).U16(channels).U32(rateHz);
  out.U32(static_cast<uint32_t>(bytesPerSecond)).U16(frameBytes);
  out.U16(extensible ? 8 * sample.BytesPerValue() : sample.BitsPerValue());
  if (extensible) {
    const bool sameChannels = origin != nullptr && origin->channels == channels;
    out.U16(22).U16(sample.BitsPerValue()).U32(sameChannels ? origin->wav.channelMask : 0);
    // The sub-format identifier of PCM.
    out.U32(1).U16(0).U16(0x10).U32(0xAA000080).U32(0x719B3800);
  }
  return std::move(out.block);
}

bool HasInfoList(const WavSample& sample) {
  return std::any_of(sample.otherChunks.begin(), sample.otherChunks.end(), [](const ListChunk& c) {
    return std::string_view(c.id, 4) == "LIST" && c.data.size() >= 4 &&
           std::memcmp(c.data.data(), "INFO", 4) == 0;
  });
}

bool NeedsSmpl(const RiffParameters& now, const FileOrigin* origin) {
  if (origin == nullptr || origin->hadSampler) return true;
  const RiffParameters& then = origin->parameters;
  return now.key != then.key || now.tune != then.tune || now.loops != then.loops;
}

void PlanOwn(const WavSample& sample, FormPlan& plan) {
  RiffParameters readBack;
  zyl::FromWavSampler(zyl::ToWavSampler(sample.parameters), readBack);
  if (zyl::SameMeaning(readBack, sample.parameters, sample.FrameCount())) return;
  zyl::OwnChunk own;
  own.frames = sample.FrameCount();
  own.parameters = sample.parameters;
  plan.Add(zyl::kOwnChunkId, zyl::PackOwnChunk(own));
}

// A kept chunk with what it repeats of the sample: the count of frames, the pitch, the title.
// Nothing when all of that is still as it was read.
std::optional<Bytes> Renewed(const ListChunk& other, const WavSample& sample,
                             const FileOrigin& origin) {
  const std::string_view id(other.id, 4);
  const RiffParameters& now = sample.parameters;
  const RiffParameters& then = origin.parameters;
  if (id == "fact" && other.data.size() >= 4 && origin.frames != sample.FrameCount()) {
    FieldWriter out(ByteOrder::kLittle);
    out.U32(static_cast<uint32_t>(sample.FrameCount()));
    out.Raw(other.data.data() + 4, other.data.size() - 4);
    return std::move(out.block);
  }
  if (id == "inst" && other.data.size() >= 7 && (now.key != then.key || now.tune != then.tune)) {
    return zyl::MakeInst(other.data, now);
  }
  if (id == "LIST" && !sample.Name().empty() && sample.Name() != origin.name &&
      zyl::ListedName(other.data) == origin.name) {
    return zyl::WithListedName(other.data, sample.Name());
  }
  return std::nullopt;
}

void PlanOther(const ListChunk& other, const WavSample& sample, const FileOrigin* origin,
               FormPlan& plan) {
  std::optional<Bytes> renewed;
  if (origin != nullptr) renewed = Renewed(other, sample, *origin);
  if (renewed) {
    plan.Add(std::string(other.id, 4).c_str(), std::move(*renewed));
  } else {
    plan.Keep(other);
  }
}

FormPlan Plan(const WavSample& sample) {
  const FileOrigin* origin = zyl::SampleAccess::Origin(sample);
  FormPlan plan;
  plan.form = "RIFF";
  plan.type = "WAVE";
  plan.sound = {sample.ChannelCount(), sample.BytesPerValue(), false, sample.BytesPerValue() == 1};
  size_t nextOther = 0;
  for (const Slot slot : zyl::LayoutOf(
           sample, {Slot::kFormat, Slot::kOther, Slot::kSound, Slot::kSampler, Slot::kOwn})) {
    switch (slot) {
      case Slot::kFormat:
        plan.Add("fmt ", MakeFormat(sample, origin));
        break;
      case Slot::kSound:
        plan.chunks.push_back({"data", {}, nullptr, true});
        break;
      case Slot::kSampler:
        if (NeedsSmpl(sample.parameters, origin)) {
          plan.Add("smpl", zyl::MakeSmpl(sample.parameters, sample.FrameCount(), origin));
        }
        break;
      case Slot::kOwn:
        PlanOwn(sample, plan);
        break;
      case Slot::kOther:
        PlanOther(sample.otherChunks[nextOther++], sample, origin, plan);
        break;
      case Slot::kMarkers:
        break;
    }
  }
  if (!sample.Name().empty() && !HasInfoList(sample))
    plan.Add("LIST", zyl::MakeNameList(sample.Name()));
  return plan;
}

}  // namespace

WavSample::WavSample() = default;

WavSample::WavSample(ListChunk* list) {
  if (list != nullptr) otherChunks.push_back(*list);
}

WavSample::~WavSample() = default;

uint64_t WavSample::PlannedFileBytes(uint64_t soundBytes) const {
  return Plan(*this).FileBytes(soundBytes);
}

bool WavSample::Write(RiffFile& file) {
  written_ = true;
  return zyl::WriteFormToFile(Plan(*this), *this, file);
}

int WavSample::WriteToMem(char** image) {
  if (image == nullptr) return 0;
  *image = nullptr;
  written_ = true;
  const FormPlan plan = Plan(*this);
  const uint64_t bytes = plan.FileBytes(frameCount_ * plan.sound.FrameBytes());
  if (!IsValid() || bytes > INT_MAX) return 0;
  std::unique_ptr<char[]> block(new (std::nothrow) char[static_cast<size_t>(bytes)]);
  if (!block) return 0;
  zyl::MemorySink sink(block.get(), static_cast<size_t>(bytes));
  if (!zyl::WriteForm(plan, *this, sink) || !sink.Full()) return 0;
  *image = block.release();
  return static_cast<int>(bytes);
}

bool WavSample::ReadFromMem(const char* image, int length) {
  otherChunks.clear();
  parameters = RiffParameters();
  name_.clear();
  SetChannelCount(0);
  if (image == nullptr || length <= 0) return false;
  std::string reason;
  const zyl::MemorySource source(image, static_cast<size_t>(length));
  try {
    if (zyl::ReadWav(source, *this, true, reason)) return true;
  } catch (const std::bad_alloc&) {
    // No image then, as with a damaged one.
  }
  SetChannelCount(0);
  return false;
}
