#include "WavSampler.h"

#include <algorithm>
#include <cmath>

namespace zyl {
namespace {

constexpr int32_t kTopPitch = 127 * 256 + 255;
constexpr size_t kLoopBytes = 24;

uint32_t PeriodNs(int32_t rateHz) {
  return rateHz <= 0 ? 0 : static_cast<uint32_t>((2000000000LL + rateHz) / (2LL * rateHz));
}

}  // namespace

WavSampler ToWavSampler(const RiffParameters& parameters) {
  WavSampler sampler;
  const int64_t pitch = int64_t{parameters.key} * 256 + parameters.tune;
  sampler.pitch = static_cast<int32_t>(std::clamp<int64_t>(pitch, 0, kTopPitch));
  sampler.loops = parameters.loops;
  if (sampler.loops.size() > kMaxLoops) sampler.loops.resize(kMaxLoops);
  return sampler;
}

void FromWavSampler(const WavSampler& sampler, RiffParameters& parameters) {
  parameters.key = std::min((sampler.pitch + 127) >> 8, 127);
  parameters.tune = sampler.pitch - parameters.key * 256;
  parameters.loops = sampler.loops;
  parameters.playbackType = sampler.loops.empty() ? 2 : 0;
  parameters.holdLoopTuneOff = 0;
}

bool ReadSmpl(const Bytes& bytes, WavKept& kept, WavSampler& sampler, bool& loopsMissing) {
  FieldReader in(bytes, ByteOrder::kLittle);
  kept.manufacturer = in.U32();
  kept.product = in.U32();
  kept.periodNs = in.U32();
  kept.note = in.U32();
  kept.fraction = in.U32();
  kept.smpteFormat = in.U32();
  kept.smpteOffset = in.U32();
  const uint32_t declared = in.U32();
  const uint32_t samplerBytes = in.U32();
  if (!in.Good()) return false;
  sampler = WavSampler();
  if (kept.note <= 127) {
    const uint64_t pitch = (uint64_t{kept.note} << 32) + kept.fraction + (1u << 23);
    sampler.pitch = static_cast<int32_t>(pitch >> 24);
  }
  const size_t stored = std::min<size_t>(declared, in.Left() / kLoopBytes);
  for (size_t i = 0; i < stored && i < kMaxLoops; ++i) {
    kept.loopIds.push_back(in.U32());
    RiffLoop loop;
    loop.type = in.U32();
    loop.start = in.U32();
    loop.end = in.U32();
    loop.fineLen = in.U32();
    loop.times = in.U32();
    sampler.loops.push_back(loop);
  }
  loopsMissing = declared > sampler.loops.size();
  if (stored > kMaxLoops) {
    const size_t surplus = (stored - kMaxLoops) * kLoopBytes;
    const std::byte* first = in.Raw(surplus);
    kept.surplusLoops.assign(first, first + surplus);
  }
  const size_t tail = std::min<size_t>(samplerBytes, in.Left());
  const std::byte* raw = in.Raw(tail);
  if (raw != nullptr) kept.samplerData.assign(raw, raw + tail);
  return true;
}

bool ReadInst(const Bytes& bytes, WavSampler& sampler) {
  FieldReader in(bytes, ByteOrder::kLittle);
  const int32_t note = in.U8();
  const int32_t cents = in.I8();
  if (bytes.size() < 7 || note > 127) return false;
  const auto tune = static_cast<int32_t>(std::lround(cents * 2.56));
  sampler.pitch = std::clamp(note * 256 + tune, 0, kTopPitch);
  return true;
}

Bytes MakeInst(Bytes kept, const RiffParameters& parameters) {
  RiffParameters plain;
  FromWavSampler(ToWavSampler(parameters), plain);
  const auto cents = static_cast<int>(std::lround(plain.tune / 2.56));
  kept[0] = static_cast<std::byte>(plain.key);
  kept[1] = static_cast<std::byte>(static_cast<int8_t>(std::clamp(cents, -50, 50)));
  return kept;
}

Bytes MakeSmpl(const RiffParameters& parameters, uint64_t frames, const FileOrigin* origin) {
  const WavSampler sampler = ToWavSampler(parameters);
  WavKept kept = origin != nullptr ? origin->wav : WavKept();
  const bool read = origin != nullptr && origin->hadSampler;
  // Keep unchanged values as read: they may have a finer resolution than our parameters.
  if (!read || parameters.rateHz != origin->parameters.rateHz) {
    kept.periodNs = PeriodNs(parameters.rateHz);
  }
  if (!read || parameters.key != origin->parameters.key ||
      parameters.tune != origin->parameters.tune) {
    kept.note = static_cast<uint32_t>(sampler.pitch >> 8);
    kept.fraction = static_cast<uint32_t>(sampler.pitch & 0xFF) << 24;
  }
  // Keep surplus loops only if sound data and other loops are unchanged, and only after kMaxLoops
  // loops: otherwise a reader would count a surplus loop among the first kMaxLoops.
  if (!read || origin->frames != frames || parameters.loops != origin->parameters.loops ||
      parameters.loops.size() != kMaxLoops) {
    kept.surplusLoops.clear();
  }
  const size_t loopCount = sampler.loops.size() + kept.surplusLoops.size() / kLoopBytes;
  FieldWriter out(ByteOrder::kLittle);
  out.U32(kept.manufacturer).U32(kept.product).U32(kept.periodNs);
  out.U32(kept.note).U32(kept.fraction).U32(kept.smpteFormat).U32(kept.smpteOffset);
  out.U32(static_cast<uint32_t>(loopCount));
  out.U32(static_cast<uint32_t>(kept.samplerData.size()));
  uint32_t nextId = 0;
  for (const uint32_t id : kept.loopIds) nextId = std::max(nextId, id + 1);
  for (size_t i = 0; i < sampler.loops.size(); ++i) {
    const RiffLoop& loop = sampler.loops[i];
    out.U32(i < kept.loopIds.size() ? kept.loopIds[i] : nextId++);
    out.U32(loop.type).U32(loop.start).U32(loop.end).U32(loop.fineLen).U32(loop.times);
  }
  out.Raw(kept.surplusLoops.data(), kept.surplusLoops.size());
  out.Raw(kept.samplerData.data(), kept.samplerData.size());
  return std::move(out.block);
}

}  // namespace zyl
