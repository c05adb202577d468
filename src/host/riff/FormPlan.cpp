#include "FormPlan.h"

#include <algorithm>

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
  const uint64_t bytes = chunk.kept != nullptr ? chunk.kept->data.size() : chunk.bytes.size();
  return bytes + (chunk.isSound ? soundBytes : 0);
}

bool WriteBlock(ByteSink& sink, const Bytes& bytes) {
  return sink.Write(bytes.data(), bytes.size());
}

}  // namespace

uint64_t FormPlan::FileBytes(uint64_t soundBytes) const {
  uint64_t total = 12;
  for (const PlannedChunk& chunk : chunks) {
    const uint64_t size = DataBytes(chunk, soundBytes);
    total += 8 + size + (size & 1);
  }
  return total;
}

bool WriteForm(const FormPlan& plan, const BasicSample& sample, ByteSink& sink) {
  const uint64_t soundBytes = sample.FrameCount() * plan.sound.FrameBytes();
  const uint64_t fileBytes = plan.FileBytes(soundBytes);
  if (!sample.IsValid() || fileBytes > kMaxFileBytes) return false;
  FieldWriter head(plan.order);
  head.Text(plan.form).U32(static_cast<uint32_t>(fileBytes - 8)).Text(plan.type);
  if (!WriteBlock(sink, head.block)) return false;
  for (const PlannedChunk& chunk : plan.chunks) {
    const uint64_t size = DataBytes(chunk, soundBytes);
    FieldWriter chunkHead(plan.order);
    chunkHead.Text(chunk.id).U32(static_cast<uint32_t>(size));
    if (!WriteBlock(sink, chunkHead.block)) return false;
    if (!WriteBlock(sink, chunk.kept != nullptr ? chunk.kept->data : chunk.bytes)) return false;
    if (chunk.isSound) {
      std::vector<ChannelView> views;
      for (const auto& channel : SampleAccess::Channels(sample)) {
        views.push_back({channel.Data(), channel.bytesPerValue, channel.frames});
      }
      if (!WriteSound(sink, plan.sound, views, sample.FrameCount())) return false;
    }
    const std::byte pad{0};
    if ((size & 1) != 0 && !sink.Write(&pad, 1)) return false;
  }
  return true;
}

bool WriteFormToFile(const FormPlan& plan, const BasicSample& sample, RiffFile& file) {
  FileSink sink(file);
  if (WriteForm(plan, sample, sink)) return true;
  file.Abandon();
  return false;
}

std::vector<Slot> LayoutOf(const BasicSample& sample, std::initializer_list<Slot> usual) {
  std::vector<Slot> layout;
  const FileOrigin* origin = SampleAccess::Origin(sample);
  size_t others = sample.otherChunks.size();
  if (origin != nullptr) {
    for (const Slot slot : origin->layout) {
      if (slot == Slot::kOther && others == 0) continue;
      if (slot == Slot::kOther) --others;
      layout.push_back(slot);
    }
  }
  for (const Slot slot : usual) {
    if (slot == Slot::kOther) {
      layout.insert(layout.end(), others, slot);
      others = 0;
    } else if (std::find(layout.begin(), layout.end(), slot) == layout.end()) {
      layout.push_back(slot);
    }
  }
  return layout;
}

}  // namespace zyl
