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
using zyl::Place;
using zyl::Slot;

constexpr uint8_t kExtensibleFlag = 1;

// Declares the container's full width: some programs reject narrower values or read silence. The
// own chunk stores the actual bit depth.
Bytes MakeFormat(const WavSample& sample, const FileOrigin* origin) {
  const uint32_t channels = sample.ChannelCount();
  const uint32_t frameBytes = channels * sample.BytesPerValue();
  const uint32_t bits = 8 * sample.BytesPerValue();
  const bool extensible = (sample.FormatFlag() & kExtensibleFlag) != 0;
  const auto rateHz = static_cast<uint32_t>(std::max(sample.parameters.rateHz, 0));
  const uint64_t bytesPerSecond = std::min<uint64_t>(uint64_t{rateHz} * frameBytes, UINT32_MAX);
  FieldWriter out(ByteOrder::kLittle);
  out.U16(extensible ? 0xFFFE : 1).U16(channels).U32(rateHz);
  out.U32(static_cast<uint32_t>(bytesPerSecond)).U16(frameBytes);
  out.U16(bits);
  if (extensible) {
    const bool sameChannels = origin != nullptr && origin->channels == channels;
    out.U16(22).U16(bits).U32(sameChannels ? origin->wav.channelMask : 0);
    // The PCM sub-format GUID.
    out.U32(1).U16(0).U16(0x10).U32(0xAA000080).U32(0x719B3800);
  }
  return std::move(out.block);
}

bool NeedsSmpl(const RiffParameters& now, const FileOrigin* origin) {
  if (origin == nullptr || origin->hadSampler) return true;
  const RiffParameters& then = origin->parameters;
  return now.key != then.key || now.tune != then.tune || now.loops != then.loops;
}

// Bits per value that the format chunk to be written will declare.
unsigned FormatBits(const WavSample& sample) {
  const FileOrigin* origin = zyl::SampleAccess::Origin(sample);
  const bool kept =
      zyl::SameFormat(sample) && !origin->stored[static_cast<size_t>(Slot::kFormat)].empty();
  return kept ? origin->wav.formatBits : 8 * sample.BytesPerValue();
}

void PlanOwn(const WavSample& sample, const RiffParameters& parameters, FormPlan& plan) {
  RiffParameters readBack;
  zyl::FromWavSampler(zyl::ToWavSampler(parameters), readBack);
  const bool bitsDeclared = sample.BitsPerValue() == FormatBits(sample);
  if (bitsDeclared && zyl::Equivalent(readBack, parameters, sample.FrameCount())) return;
  zyl::OwnChunk own;
  own.frames = sample.FrameCount();
  own.parameters = parameters;
  own.bits = bitsDeclared ? 0 : sample.BitsPerValue();
  plan.Add(zyl::kOwnChunkId, zyl::PackOwnChunk(own));
}

// Returns an unknown chunk with the frame count or pitch that it duplicates updated; nullopt if
// these are unchanged since the file was read.
std::optional<Bytes> Updated(const ListChunk& other, const WavSample& sample,
                             const RiffParameters& now, const FileOrigin& origin) {
  const std::string_view id(other.id, 4);
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
  return std::nullopt;
}

// Writes a changed title into the INFO list that has the old one, or into the first INFO list if
// the file had no title.
class TitlePlanner {
 public:
  TitlePlanner(const std::string& oldName, const std::string& newName)
      : oldName_(oldName), newName_(newName), pending_(oldName != newName) {}

  std::optional<Bytes> Updated(const ListChunk& other) {
    if (!pending_ || std::string_view(other.id, 4) != "LIST" || !zyl::IsInfoList(other.data) ||
        zyl::ListedName(other.data) != oldName_) {
      return std::nullopt;
    }
    Bytes updated = zyl::WithListedName(other.data, newName_);
    // In a damaged list, readers may not find an appended title.
    if (zyl::ListedName(updated) != newName_) return std::nullopt;
    pending_ = false;
    return updated;
  }
  void PlanRest(FormPlan& plan) const {
    if (pending_ && !newName_.empty()) plan.Add("LIST", zyl::MakeNameList(newName_));
  }

 private:
  const std::string& oldName_;
  const std::string& newName_;
  bool pending_;
};

void PlanOther(const ListChunk& other, const WavSample& sample, const RiffParameters& parameters,
               const FileOrigin* origin, TitlePlanner& title, FormPlan& plan) {
  const std::string_view id(other.id, 4);  // may contain zeros
  std::optional<Bytes> updated = title.Updated(other);
  if (!updated && origin != nullptr) updated = Updated(other, sample, parameters, *origin);
  if (updated) {
    plan.Add(id, std::move(*updated));
  } else {
    plan.Keep(id, other.data);
  }
}

FormPlan Plan(const WavSample& sample) {
  const FileOrigin* origin = zyl::SampleAccess::Origin(sample);
  RiffParameters parameters = sample.parameters;
  zyl::ClampParameters(parameters, sample.FrameCount());
  const bool unchanged = zyl::Unchanged(sample, parameters);
  static const std::string noName;
  TitlePlanner title(origin != nullptr ? origin->name : noName, sample.Name());
  FormPlan plan;
  plan.form = "RIFF";
  plan.type = "WAVE";
  plan.sound = {sample.ChannelCount(), sample.BytesPerValue(), false, sample.BytesPerValue() == 1};
  size_t nextOther = 0;
  for (const Place& place : zyl::LayoutOf(
           sample, {Slot::kFormat, Slot::kOther, Slot::kSound, Slot::kSampler, Slot::kOwn})) {
    const size_t planned = plan.chunks.size();
    switch (place.slot) {
      case Slot::kFormat:
        if (zyl::SameFormat(sample) && zyl::KeepStored(sample, place.slot, "fmt ", plan)) break;
        plan.Add("fmt ", MakeFormat(sample, origin));
        break;
      case Slot::kSound:
        zyl::PlanSound(sample, "data", {}, plan);
        break;
      case Slot::kSampler:
        if (unchanged && zyl::KeepStored(sample, place.slot, "smpl", plan)) break;
        if (NeedsSmpl(parameters, origin)) {
          plan.Add("smpl", zyl::MakeSmpl(parameters, sample.FrameCount(), origin));
        }
        break;
      case Slot::kOwn:
        if (unchanged && zyl::KeepStored(sample, place.slot, zyl::kOwnChunkId, plan)) break;
        PlanOwn(sample, parameters, plan);
        break;
      case Slot::kOther:
        PlanOther(sample.otherChunks[nextOther++], sample, parameters, origin, title, plan);
        break;
      case Slot::kMarkers:
        break;
    }
    if (plan.chunks.size() > planned) plan.chunks.back().pad = place.pad;
  }
  title.PlanRest(plan);
  zyl::PlanSurroundings(sample, plan);
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
    // Handled like a damaged image.
  }
  SetChannelCount(0);
  return false;
}
