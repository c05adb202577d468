#include "FormPlan.h"

#include <algorithm>

#include "OwnChunk.h"

namespace zyl {
namespace {

class FileSink : public ByteSink {
 public:
  explicit FileSink(RiffFile& file) : file_(file) {}
  bool Write(const void* bytes, size_t count) override { return file_.Write(bytes, count); }

 private:
  RiffFile& file_;
};

uint64_t DataBytes(const PlannedChunk& chunk, uint64_t soundBytes) {
  uint64_t bytes = chunk.kept != nullptr ? chunk.kept->size() : chunk.bytes.size();
  if (chunk.after != nullptr) bytes += chunk.after->size();
  return bytes + (chunk.isSound ? soundBytes : 0);
}

bool IsLast(const FormPlan& plan, const PlannedChunk& chunk) {
  return &chunk == &plan.chunks.back() && (plan.tail == nullptr || plan.tail->empty());
}

uint64_t PadBytes(const FormPlan& plan, const PlannedChunk& chunk, uint64_t dataBytes) {
  return chunk.pad < 0 && IsLast(plan, chunk) ? 0 : dataBytes & 1;
}

// Returns the declared length of the form read if its actual length is unchanged. Otherwise counts
// the bytes after the last chunk only if the form read counted them.
uint64_t DeclaredBytes(const FormPlan& plan, uint64_t soundBytes) {
  const uint64_t chunkBytes = plan.ChunkBytes(soundBytes);
  if (plan.formBytes == 0) return chunkBytes;
  if (chunkBytes == plan.chunksEnd) return plan.formBytes;
  return chunkBytes + (plan.formBytes > plan.chunksEnd ? plan.formBytes - plan.chunksEnd : 0);
}

bool WriteBlock(ByteSink& sink, const Bytes& bytes) {
  return sink.Write(bytes.data(), bytes.size());
}

}  // namespace

uint64_t FormPlan::ChunkBytes(uint64_t soundBytes) const {
  uint64_t total = 12;
  for (const PlannedChunk& chunk : chunks) {
    const uint64_t size = DataBytes(chunk, soundBytes);
    total += 8 + size + PadBytes(*this, chunk, size);
  }
  return total;
}

uint64_t FormPlan::FileBytes(uint64_t soundBytes) const {
  return (prefix == nullptr ? 0 : prefix->size()) + ChunkBytes(soundBytes) +
         (tail == nullptr ? 0 : tail->size());
}

bool WriteForm(const FormPlan& plan, const BasicSample& sample, ByteSink& sink) {
  const uint64_t soundBytes = sample.FrameCount() * plan.sound.FrameBytes();
  if (!sample.IsValid() || plan.FileBytes(soundBytes) > kMaxFileBytes) return false;
  if (plan.prefix != nullptr && !WriteBlock(sink, *plan.prefix)) return false;
  FieldWriter head(plan.order);
  head.Text(plan.form);
  head.U32(static_cast<uint32_t>(DeclaredBytes(plan, soundBytes) - 8)).Text(plan.type);
  if (!WriteBlock(sink, head.block)) return false;
  for (const PlannedChunk& chunk : plan.chunks) {
    const uint64_t size = DataBytes(chunk, soundBytes);
    FieldWriter chunkHead(plan.order);
    chunkHead.Text(chunk.id).U32(static_cast<uint32_t>(size));
    if (!WriteBlock(sink, chunkHead.block)) return false;
    if (!WriteBlock(sink, chunk.kept != nullptr ? *chunk.kept : chunk.bytes)) return false;
    if (chunk.isSound) {
      std::vector<ChannelView> views;
      for (const auto& channel : SampleAccess::Channels(sample)) {
        views.push_back({channel.Data(), channel.bytesPerValue, channel.frames});
      }
      if (!WriteSound(sink, plan.sound, views, sample.FrameCount())) return false;
    }
    if (chunk.after != nullptr && !WriteBlock(sink, *chunk.after)) return false;
    const auto pad = static_cast<std::byte>(std::max(chunk.pad, 0));
    if (PadBytes(plan, chunk, size) != 0 && !sink.Write(&pad, 1)) return false;
  }
  return plan.tail == nullptr || WriteBlock(sink, *plan.tail);
}

bool WriteFormToFile(const FormPlan& plan, const BasicSample& sample, RiffFile& file) {
  FileSink sink(file);
  if (WriteForm(plan, sample, sink)) return true;
  file.Abandon();
  return false;
}

bool SameFormat(const BasicSample& sample) {
  const FileOrigin* origin = SampleAccess::Origin(sample);
  return origin != nullptr && origin->channels == sample.ChannelCount() &&
         origin->bits == sample.BitsPerValue() && origin->bytesPerValue == sample.BytesPerValue() &&
         origin->parameters.rateHz == sample.parameters.rateHz;
}

bool Unchanged(const BasicSample& sample, const RiffParameters& parameters) {
  const FileOrigin* origin = SampleAccess::Origin(sample);
  return SameFormat(sample) && origin->frames == sample.FrameCount() &&
         Equivalent(parameters, origin->parameters, origin->frames);
}

bool KeepStored(const BasicSample& sample, Slot slot, const char* id, FormPlan& plan) {
  const Bytes& stored = SampleAccess::Origin(sample)->stored[static_cast<size_t>(slot)];
  if (!stored.empty()) plan.Keep(id, stored);
  return !stored.empty();
}

void PlanSound(const BasicSample& sample, const char* id, Bytes head, FormPlan& plan) {
  PlannedChunk chunk{id, std::move(head)};
  chunk.isSound = true;
  const FileOrigin* origin = SampleAccess::Origin(sample);
  if (SameFormat(sample) && origin->frames == sample.FrameCount()) {
    const Bytes& stored = origin->stored[static_cast<size_t>(Slot::kSound)];
    if (!stored.empty()) chunk.kept = &stored;
    chunk.after = &origin->soundTail;
  }
  plan.chunks.push_back(std::move(chunk));
}

void PlanSurroundings(const BasicSample& sample, FormPlan& plan) {
  const FileOrigin* origin = SampleAccess::Origin(sample);
  if (origin == nullptr) return;
  plan.prefix = &origin->prefix;
  plan.tail = &origin->tail;
  plan.formBytes = origin->formBytes;
  plan.chunksEnd = origin->chunksEnd;
}

std::vector<Place> LayoutOf(const BasicSample& sample, std::initializer_list<Slot> usual) {
  std::vector<Place> layout;
  const FileOrigin* origin = SampleAccess::Origin(sample);
  size_t others = sample.otherChunks.size();
  if (origin != nullptr) {
    for (const Place& place : origin->layout) {
      if (place.slot == Slot::kOther && others == 0) continue;
      if (place.slot == Slot::kOther) --others;
      layout.push_back(place);
    }
  }
  for (const Slot slot : usual) {
    if (slot == Slot::kOther) {
      layout.insert(layout.end(), others, Place{slot});
      others = 0;
    } else if (!HasPlace(layout, slot)) {
      layout.push_back({slot});
    }
  }
  return layout;
}

}  // namespace zyl
