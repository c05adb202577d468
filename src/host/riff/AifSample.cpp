#include <algorithm>

#include "../riff.h"
#include "AifFormat.h"
#include "AifSampler.h"
#include "FormPlan.h"

namespace {

using zyl::AifKept;
using zyl::ByteOrder;
using zyl::Bytes;
using zyl::FieldWriter;
using zyl::FileOrigin;
using zyl::FormPlan;
using zyl::Place;
using zyl::Slot;

constexpr uint8_t kAifcFlag = 1;

// How to store values: as in the file that was read, if its type still fits their width.
struct Storage {
  bool isAifc = false;
  bool bigEndian = true;
  std::string compression = "NONE";
  Bytes name;
};

Storage ChooseStorage(const AifSample& sample, const FileOrigin* origin) {
  Storage storage;
  storage.isAifc = (sample.FormatFlag() & kAifcFlag) != 0;
  const zyl::AifPcmType* type =
      origin == nullptr ? nullptr : zyl::FindAifPcmType(origin->aif.compression);
  if (storage.isAifc && type != nullptr &&
      (type->bytesPerValue == 0 || type->bytesPerValue == sample.BytesPerValue())) {
    storage.bigEndian = type->bigEndian;
    storage.compression = type->id;
    storage.name = origin->aif.compressionName;
  } else {
    storage.name = FieldWriter(ByteOrder::kBig).U8(14).Text("not compressed").U8(0).block;
  }
  return storage;
}

Bytes MakeFormat(const AifSample& sample, const FileOrigin* origin, const Storage& storage) {
  const int32_t rateHz = sample.parameters.rateHz;
  const bool sameRate = origin != nullptr && origin->parameters.rateHz == rateHz &&
                        zyl::RateFromExtended(origin->aif.rate.data()) >= 1;
  const Bytes rate = sameRate ? origin->aif.rate
                              : zyl::ExtendedFromRate(static_cast<uint32_t>(std::max(rateHz, 0)));
  FieldWriter out(ByteOrder::kBig);
  out.U16(sample.ChannelCount()).U32(static_cast<uint32_t>(sample.FrameCount()));
  out.U16(sample.BitsPerValue()).Raw(rate.data(), rate.size());
  if (storage.isAifc) out.Text(storage.compression).Raw(storage.name.data(), storage.name.size());
  return std::move(out.block);
}

bool NeedsInstrument(const RiffParameters& now, const FileOrigin* origin) {
  if (origin == nullptr || origin->hadSampler) return true;
  const RiffParameters& then = origin->parameters;
  return now.key != then.key || now.tune != then.tune || now.loops != then.loops;
}

void PlanOwn(const RiffParameters& parameters, uint64_t frames, const AifKept& marked,
             FormPlan& plan) {
  RiffParameters readBack;
  zyl::FromAifSampler(zyl::ToAifSampler(parameters), readBack);
  if (zyl::Equivalent(readBack, parameters, frames)) return;
  zyl::OwnChunk own;
  own.frames = frames;
  own.parameters = parameters;
  own.loopMarks = marked.loopMarks;
  plan.Add(zyl::kOwnChunkId, zyl::PackOwnChunk(own));
}

FormPlan Plan(const AifSample& sample) {
  const FileOrigin* origin = zyl::SampleAccess::Origin(sample);
  const Storage storage = ChooseStorage(sample, origin);
  RiffParameters parameters = sample.parameters;
  zyl::ClampParameters(parameters, sample.FrameCount());
  const bool unchanged = zyl::Unchanged(sample, parameters);
  const AifKept marked = zyl::PlaceMarkers(parameters, origin);
  // A new title replaces the "NAME" chunks that were read.
  const bool renamed = sample.Name() != (origin != nullptr ? origin->name : std::string());
  bool titled = !renamed || sample.Name().empty();
  const auto addTitle = [&](FormPlan& to) {
    if (!titled) to.Add("NAME", FieldWriter(ByteOrder::kBig).Text(sample.Name()).block);
    titled = true;
  };
  FormPlan plan;
  plan.order = ByteOrder::kBig;
  plan.form = "FORM";
  plan.type = storage.isAifc ? "AIFC" : "AIFF";
  plan.sound = {sample.ChannelCount(), sample.BytesPerValue(), storage.bigEndian, false};
  size_t nextOther = 0;
  for (const Place& place : zyl::LayoutOf(sample, {Slot::kFormat, Slot::kOther, Slot::kMarkers,
                                                   Slot::kSampler, Slot::kOwn, Slot::kSound})) {
    const size_t planned = plan.chunks.size();
    switch (place.slot) {
      case Slot::kFormat:
        if (origin != nullptr && zyl::SameFormat(sample) && origin->frames == sample.FrameCount() &&
            zyl::KeepStored(sample, place.slot, "COMM", plan)) {
          break;
        }
        plan.Add("COMM", MakeFormat(sample, origin, storage));
        break;
      case Slot::kMarkers:
        if (unchanged && zyl::KeepStored(sample, place.slot, "MARK", plan)) break;
        if (!marked.markers.empty()) plan.Add("MARK", zyl::MakeMarkers(marked));
        break;
      case Slot::kSampler:
        if (unchanged && zyl::KeepStored(sample, place.slot, "INST", plan)) break;
        if (NeedsInstrument(parameters, origin)) {
          plan.Add("INST", zyl::MakeInstrument(parameters, marked));
        }
        break;
      case Slot::kOwn:
        if (unchanged && zyl::KeepStored(sample, place.slot, zyl::kOwnChunkId, plan)) break;
        PlanOwn(parameters, sample.FrameCount(), marked, plan);
        break;
      case Slot::kSound:
        zyl::PlanSound(sample, "SSND", Bytes(8), plan);
        break;
      case Slot::kOther: {
        const ListChunk& other = sample.otherChunks[nextOther++];
        const std::string_view id(other.id, 4);  // may contain zeros
        if (renamed && id == "NAME") {
          addTitle(plan);
        } else {
          plan.Keep(id, other.data);
        }
        break;
      }
    }
    if (plan.chunks.size() > planned) plan.chunks.back().pad = place.pad;
  }
  addTitle(plan);
  zyl::PlanSurroundings(sample, plan);
  return plan;
}

}  // namespace

AifSample::AifSample() = default;
AifSample::~AifSample() = default;

uint64_t AifSample::PlannedFileBytes(uint64_t soundBytes) const {
  return Plan(*this).FileBytes(soundBytes);
}

bool AifSample::Write(RiffFile& file) {
  written_ = true;
  return zyl::WriteFormToFile(Plan(*this), *this, file);
}
