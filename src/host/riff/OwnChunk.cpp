#include "OwnChunk.h"

#include <algorithm>
#include <cstdlib>

namespace zyl {
namespace {

constexpr uint32_t kVersion = 1;
constexpr size_t kLoopBytes = 24;
constexpr int64_t kMaxTune = 32767;

RiffParameters Plain(RiffParameters parameters, uint64_t frames) {
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
  out.U32(kVersion).U64(own.frames).I32(p.key).I32(p.tune).I32(p.playbackType);
  out.I32(p.holdLoopTuneOff).I32(p.start).I32(p.end).U32(static_cast<uint32_t>(p.loops.size()));
  for (size_t i = 0; i < p.loops.size(); ++i) {
    const RiffLoop& loop = p.loops[i];
    const bool marked = i < own.loopMarks.size();
    out.U32(loop.start).U32(loop.end).U32(loop.fineLen).U32(loop.times).U32(loop.type);
    out.U16(marked ? own.loopMarks[i].first : 0).U16(marked ? own.loopMarks[i].second : 0);
  }
  return std::move(out.block);
}

std::optional<OwnChunk> UnpackOwnChunk(const Bytes& bytes) {
  FieldReader in(bytes, ByteOrder::kLittle);
  if (in.U32() != kVersion) return std::nullopt;
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
  const auto frames = static_cast<int64_t>(std::min<uint64_t>(own.frames, INT64_MAX));
  if (p.key < 0 || p.key > 127 || std::abs(int64_t{p.tune}) > kMaxTune || p.start < 0 ||
      p.end < -1 || p.start > frames || p.end >= std::max<int64_t>(frames, 1)) {
    return std::nullopt;
  }
  if (!in.Good() || loopCount > kMaxLoops || in.Left() != loopCount * kLoopBytes) {
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
  return own;
}

bool SameMeaning(const RiffParameters& a, const RiffParameters& b, uint64_t frames) {
  return Plain(a, frames) == Plain(b, frames);
}

bool SettleLoops(RiffParameters& parameters, uint64_t frames) {
  bool changed = false;
  std::vector<RiffLoop> whole;
  for (RiffLoop loop : parameters.loops) {
    if (loop.start > loop.end || loop.start >= frames) {
      changed = true;
      continue;
    }
    if (loop.end >= frames) {
      loop.end = static_cast<uint32_t>(frames - 1);
      changed = true;
    }
    whole.push_back(loop);
  }
  parameters.loops = std::move(whole);
  return changed;
}

}  // namespace zyl
