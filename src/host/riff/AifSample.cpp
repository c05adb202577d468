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
using zyl::Slot;

constexpr uint8_t kAifcFlag = 1;

// How the file stores its values: as the file that was read did, where that still holds them.
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

void PlanOwn(const AifSample& sample, const AifKept& marked, FormPlan& plan) {
  RiffParameters readBack;
  zyl::FromAifSampler(zyl::ToAifSampler(sample.parameters), readBack);
  if (zyl::SameMeaning(readBack, sample.parameters, sample.FrameCount())) return;
  zyl::OwnChunk own;
  own.frames = sample.FrameCount();
  own.parameters = sample.parameters;
  own.loopMarks = marked.loopMarks;
  plan.Add(zyl::kOwnChunkId, zyl::PackOwnChunk(own));
}

bool HasName(const AifSample& sample) {
  return std::any_of(sample.otherChunks.begin(), sample.otherChunks.end(),
                     [](const ListChunk& c) { return std::string_view(c.id, 4) == "NAME"; });
}

// A kept title gives way to another one.
void PlanOther(const ListChunk& other, const AifSample& sample, const FileOrigin* origin,
               FormPlan& plan) {
  const bool renamed = origin != nullptr && !sample.Name().empty() && sample.Name() != origin->name;
  if (renamed && std::string_view(other.id, 4) == "NAME") {
    plan.Add("NAME", FieldWriter(ByteOrder::kBig).Text(sample.Name()).block);
  } else {
    plan.Keep(other);
  }
}

FormPlan Plan(const AifSample& sample) {
  const FileOrigin* origin = zyl::SampleAccess::Origin(sample);
  const Storage storage = ChooseStorage(sample, origin);
  const AifKept marked = zyl::PlaceMarkers(sample.parameters, origin);
  FormPlan plan;
  plan.order = ByteOrder::kBig;
  plan.form = "FORM";
  plan.type = storage.isAifc ? "AIFC" : "AIFF";
  plan.sound = {sample.ChannelCount(), sample.BytesPerValue(), storage.bigEndian, false};
  size_t nextOther = 0;
  for (const Slot slot : zyl::LayoutOf(sample, {Slot::kFormat, Slot::kOther, Slot::kMarkers,
                                                Slot::kSampler, Slot::kOwn, Slot::kSound})) {
    switch (slot) {
      case Slot::kFormat:
        plan.Add("COMM", MakeFormat(sample, origin, storage));
        break;
      case Slot::kMarkers:
        if (!marked.markers.empty()) plan.Add("MARK", zyl::MakeMarkers(marked));
        break;
      case Slot::kSampler:
        if (NeedsInstrument(sample.parameters, origin)) {
          plan.Add("INST", zyl::MakeInstrument(sample.parameters, marked));
        }
        break;
      case Slot::kOwn:
        PlanOwn(sample, marked, plan);
        break;
      case Slot::kSound:
        plan.chunks.push_back({"SSND", Bytes(8), nullptr, true});
        break;
      case Slot::kOther:
        PlanOther(sample.otherChunks[nextOther++], sample, origin, plan);
        break;
    }
  }
  if (!sample.Name().empty() && !HasName(sample)) {
    plan.Add("NAME", FieldWriter(ByteOrder::kBig).Text(sample.Name()).block);
  }
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
