#include "OwnChunk.h"

#include <algorithm>

namespace zyl {
namespace {

// Version 2 appends the bits per value. It is used only if these are needed, so that readers of
// version 1 can read all other files.
constexpr uint32_t kVersion = 1;
constexpr uint32_t kVersionWithBits = 2;
constexpr size_t kBitsBytes = 4;
constexpr size_t kLoopBytes = 24;
// The maxima of the fields in sample records.
constexpr int32_t kTopKey = 255;
constexpr int32_t kTopPlaybackType = 255;

RiffParameters Normalized(RiffParameters parameters, uint64_t frames) {
  parameters.rateHz = 0;
  if (parameters.end >= 0 && static_cast<uint64_t>(parameters.end) + 1 == frames) {
    parameters.end = -1;
  }
  return parameters;
}

}  // namespace

Bytes PackOwnChunk(const OwnChunk& own) {
  const RiffParameters& p = own.parameters;
  FieldWriter out(ByteOrder::kLittle);
  out.U32(own.bits > 0 ? kVersionWithBits : kVersion)
      .U64(own.frames)
      .I32(p.key)
      .I32(p.tune)
      .I32(p.playbackType);
  out.I32(p.holdLoopTuneOff).I32(p.start).I32(p.end).U32(static_cast<uint32_t>(p.loops.size()));
  for (size_t i = 0; i < p.loops.size(); ++i) {
    const RiffLoop& loop = p.loops[i];
    const bool marked = i < own.loopMarks.size();
    out.U32(loop.start).U32(loop.end).U32(loop.fineLen).U32(loop.times).U32(loop.type);
    out.U16(marked ? own.loopMarks[i].first : 0).U16(marked ? own.loopMarks[i].second : 0);
  }
  if (own.bits > 0) out.U32(own.bits);
  return std::move(out.block);
}

std::optional<OwnChunk> UnpackOwnChunk(const Bytes& bytes) {
  FieldReader in(bytes, ByteOrder::kLittle);
  const uint32_t version = in.U32();
  if (version != kVersion && version != kVersionWithBits) return std::nullopt;
  const size_t endBytes = version == kVersionWithBits ? kBitsBytes : 0;
  OwnChunk own;
  RiffParameters& p = own.parameters;
  own.frames = in.U64();
  p.key = in.I32();
  p.tune = in.I32();
  p.playbackType = in.I32();
  p.holdLoopTuneOff = static_cast<int8_t>(in.I32());
  p.start = in.I32();
  p.end = in.I32();
  const uint32_t loopCount = in.U32();
  if (!in.Good() || loopCount > kMaxLoops || in.Left() != loopCount * kLoopBytes + endBytes) {
    return std::nullopt;
  }
  for (uint32_t i = 0; i < loopCount; ++i) {
    RiffLoop loop;
    loop.start = in.U32();
    loop.end = in.U32();
    loop.fineLen = in.U32();
    loop.times = in.U32();
    loop.type = in.U32();
    p.loops.push_back(loop);
    const uint16_t first = in.U16();
    own.loopMarks.emplace_back(first, in.U16());
  }
  if (endBytes > 0) own.bits = in.U32();
  return own;
}

bool Equivalent(const RiffParameters& a, const RiffParameters& b, uint64_t frames) {
  return Normalized(a, frames) == Normalized(b, frames);
}

bool ClampParameters(RiffParameters& parameters, uint64_t frames) {
  const auto lastFrame =
      static_cast<int32_t>(std::clamp<int64_t>(static_cast<int64_t>(frames) - 1, 0, INT32_MAX));
  parameters.key = std::clamp(parameters.key, 0, kTopKey);
  parameters.playbackType = std::clamp(parameters.playbackType, 0, kTopPlaybackType);
  parameters.start = std::clamp(parameters.start, 0, lastFrame);
  parameters.end = std::clamp(parameters.end, -1, frames == 0 ? -1 : lastFrame);
  bool changed = false;
  std::vector<RiffLoop> valid;
  for (RiffLoop loop : parameters.loops) {
    if (loop.start > loop.end || loop.start >= frames) {
      changed = true;
      continue;
    }
    if (loop.end >= frames) {
      loop.end = static_cast<uint32_t>(frames - 1);
      changed = true;
    }
    loop.times = std::min<uint32_t>(loop.times, INT32_MAX);
    if (valid.size() < kMaxLoops) valid.push_back(loop);
  }
  parameters.loops = std::move(valid);
  return changed;
}

}  // namespace zyl
