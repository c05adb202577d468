#include "sample/SampleEdit.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "host/valueAccess.h"
#include "sample/ValueRanges.h"

namespace {

// The number of positions that a new block has beyond its data.
constexpr size_t kSparePositions = 16;

// A run of positions of a channel; silent if `values` is null.
struct Piece {
  const std::byte* values;
  int32_t first;
  int32_t positions;
  int bytesPerValue;
};

void CopyPiece(const Piece& piece, std::byte* to, int bytes) {
  if (piece.values == nullptr) {
    std::memset(to, 0, static_cast<size_t>(piece.positions) * static_cast<size_t>(bytes));
    return;
  }
  const std::byte* from = piece.values + ptrdiff_t{piece.first} * piece.bytesPerValue;
  zyl::ConvertValues(from, piece.bytesPerValue, to, bytes, piece.positions);
}

SampleBlock Joined(std::initializer_list<Piece> pieces, int bytes) {
  size_t positions = kSparePositions;
  for (const Piece& piece : pieces) positions += static_cast<size_t>(piece.positions);
  SampleBlock block = NewSampleBlock(positions * static_cast<size_t>(bytes));
  std::byte* to = block.get();
  for (const Piece& piece : pieces) {
    CopyPiece(piece, to, bytes);
    to += static_cast<size_t>(piece.positions) * static_cast<size_t>(bytes);
  }
  return block;
}

Piece PieceOf(const genericSample& sample, int channel, int32_t first, int32_t positions) {
  return {sample.getChannelBuffer(channel), first, positions, sample.getChannelBytesPS(-1)};
}

// Returns the channel of `other` that is copied to a channel of `sample`. A whole sample pairs its
// channels in order and its last one with all further channels; a channel record pairs its channel
// with every channel.
int PartnerChannel(const genericSample& other, int channel) {
  return other.channel >= 0 ? other.channel : std::min(channel, other.getChannelCount() - 1);
}

bool IsEdited(const genericSample& sample, int channel) {
  return sample.channel < 0 || sample.channel == channel;
}

template <class Make>
std::vector<SampleBlock> NewBlocks(const genericSample& sample, Make make) {
  std::vector<SampleBlock> blocks(static_cast<size_t>(sample.getChannelCount()));
  for (size_t c = 0; c < blocks.size(); ++c) blocks[c] = make(static_cast<int>(c));
  return blocks;
}

template <class Move>
void MoveLoopPoints(SampleParameters& parameters, Move move) {
  const uint32_t count = std::min<uint32_t>(parameters.loopCount, kMaxLoops);
  for (uint32_t i = 0; i < count; ++i) move(parameters.loops[i]);
}

}  // namespace

bool ResizeSample(genericSample& sample, int32_t positions) {
  SampleParameters& parameters = sample.shared();
  const bool shortened = positions < parameters.frameCount;
  sample.setBuffers({}, sample.getChannelBytesPS(-1), positions);
  if (!shortened) return true;
  const int32_t last = std::max(positions - 1, 0);
  parameters.start = std::min(parameters.start, last);
  parameters.end = std::min(parameters.end, last);
  MoveLoopPoints(parameters, [&](genericLoop& loop) {
    loop.loopStart = std::min(loop.loopStart, last);
    loop.loopEnd = std::min(loop.loopEnd, last);
  });
  return true;
}

bool ExtractRange(genericSample& sample, int32_t s, int32_t e) {
  SampleParameters& parameters = sample.shared();
  if (!zyl::ClampRange(parameters.frameCount, s, e)) return false;
  const int32_t n = e - s + 1;
  const int bytes = sample.getChannelBytesPS(-1);
  sample.setBuffers(
      NewBlocks(sample, [&](int c) { return Joined({PieceOf(sample, c, s, n)}, bytes); }), bytes,
      n);
  if (parameters.end >= n) parameters.end = n - 1;
  if (parameters.start >= parameters.end) parameters.start = std::max(parameters.end, 1) - 1;
  MoveLoopPoints(parameters, [&](genericLoop& loop) {
    if (loop.loopStart >= s) loop.loopStart = loop.loopStart > e ? 0 : loop.loopStart - s;
    if (loop.loopEnd >= s) loop.loopEnd = loop.loopEnd > e ? n - 1 : loop.loopEnd - s;
  });
  return true;
}

bool DeleteRange(genericSample& sample, int32_t s, int32_t e) {
  SampleParameters& parameters = sample.shared();
  if (!zyl::ClampRange(parameters.frameCount, s, e)) return false;
  const int32_t removed = e - s;
  const int32_t left = parameters.frameCount - removed;
  const int bytes = sample.getChannelBytesPS(-1);
  const int32_t after = parameters.frameCount - e;
  const auto cut = [&](int c) {
    return Joined({PieceOf(sample, c, 0, s), PieceOf(sample, c, e, after)}, bytes);
  };
  sample.setBuffers(NewBlocks(sample, cut), bytes, left);
  const auto moved = [&](int32_t point) {
    if (point <= s) return point;
    return point > e ? point - removed : s;
  };
  parameters.start = moved(parameters.start);
  if (parameters.end >= left) parameters.end = left - 1;
  MoveLoopPoints(parameters, [&](genericLoop& loop) {
    loop.loopStart = moved(loop.loopStart);
    loop.loopEnd = moved(loop.loopEnd);
    if (loop.loopStart == loop.loopEnd && loop.loopEnd < INT32_MAX) ++loop.loopEnd;
  });
  return true;
}

bool InsertSample(genericSample& sample, const genericSample* other, int32_t index) {
  if (other == nullptr) return false;
  SampleParameters& parameters = sample.shared();
  const bool hasData = parameters.frameCount > 0;
  if (hasData && index != 0 && !zyl::ClampIndex(parameters.frameCount, index)) return false;
  const int32_t inserted = other->shared().frameCount;
  const int32_t before = hasData ? index : 0;
  const int32_t after = parameters.frameCount - before;
  if (int64_t{inserted} + parameters.frameCount > INT32_MAX) return false;
  const int bytes = (hasData ? &sample : other)->getChannelBytesPS(-1);
  // `other` may be this sample: its blocks are replaced only after all new ones are complete.
  const auto spliced = [&](int c) {
    const Piece middle = IsEdited(sample, c)
                             ? PieceOf(*other, PartnerChannel(*other, c), 0, inserted)
                             : Piece{nullptr, 0, inserted, bytes};
    return Joined({PieceOf(sample, c, 0, before), middle, PieceOf(sample, c, before, after)},
                  bytes);
  };
  sample.setBuffers(NewBlocks(sample, spliced), bytes, parameters.frameCount + inserted);
  const auto move = [&](int32_t& point) {
    if (point > index) {
      point = static_cast<int32_t>(std::min<int64_t>(int64_t{point} + inserted, INT32_MAX));
    }
  };
  move(parameters.start);
  move(parameters.end);
  MoveLoopPoints(parameters, [&](genericLoop& loop) {
    move(loop.loopStart);
    move(loop.loopEnd);
  });
  return true;
}

bool CopyRangeFrom(genericSample& sample, const genericSample* other, int32_t s, int32_t e) {
  if (other == nullptr || !zyl::ClampRange(other->shared().frameCount, s, e)) return false;
  const int32_t n = e - s + 1;
  const int bytes = other->getChannelBytesPS(-1);
  // With an empty block, setBuffers keeps the channel's data and adapts its length and width.
  const auto copied = [&](int c) {
    if (!IsEdited(sample, c)) return SampleBlock();
    return Joined({PieceOf(*other, PartnerChannel(*other, c), s, n)}, bytes);
  };
  sample.setBuffers(NewBlocks(sample, copied), bytes, n);
  return true;
}
