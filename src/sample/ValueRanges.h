// Bulk edits and measures over the values of one channel.
//
// The buffers belong to the caller; nothing here allocates or keeps one. Positions are int32 and
// count values. Ranges are given ready for use: 0 <= start <= end, within the buffer (ClampRange
// makes them so). The operations differ in whether the end belongs to the range; each says so.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyl {

// The values of one channel, to be changed. See ValueAccess for the widths.
struct ValueBuffer {
  std::byte* values = nullptr;
  std::int32_t frameCount = 0;
  int bytesPerValue = 2;
};

// The values of one channel, to be read.
struct ValueView {
  const std::byte* values = nullptr;
  std::int32_t frameCount = 0;
  int bytesPerValue = 2;

  ValueView() = default;
  ValueView(const std::byte* valueBytes, std::int32_t frames, int bytes)
      : values(valueBytes), frameCount(frames), bytesPerValue(bytes) {}
  ValueView(const ValueBuffer& buffer)  // NOLINT: a buffer is readable as it stands
      : values(buffer.values), frameCount(buffer.frameCount), bytesPerValue(buffer.bytesPerValue) {}
};

// Moves the index to the nearest position of the data; false when there is no data.
bool ClampIndex(std::int32_t frameCount, std::int32_t& index) noexcept;

// ClampIndex on both ends, then puts them in order.
bool ClampRange(std::int32_t frameCount, std::int32_t& start, std::int32_t& end) noexcept;

// Single values; the index must lie within the data.
std::int32_t GetValue(const ValueView& view, std::int32_t index) noexcept;
void SetValue(const ValueBuffer& buffer, std::int32_t index, std::int32_t value) noexcept;

// Fills [start, end) with the value, which is first reduced to a signed 16-bit number and then
// held at the limits of the width.
void SetValues(const ValueBuffer& buffer, std::int32_t start, std::int32_t end,
               std::int32_t value) noexcept;

// Every value of [start, end) becomes value * factor, in double precision, truncated toward zero
// and held at the limits of the width. A product that is not a number becomes 0.
void MultiplyValues(const ValueBuffer& buffer, std::int32_t start, std::int32_t end,
                    double factor) noexcept;

// Every value of [start, end) becomes value + offset, held at the limits of the width.
void OffsetValues(const ValueBuffer& buffer, std::int32_t start, std::int32_t end,
                  std::int32_t offset) noexcept;

// Reverses the order of the values of [start, end]: here the end belongs to the range, so the
// buffer must hold it.
void ReverseValues(const ValueBuffer& buffer, std::int32_t start, std::int32_t end) noexcept;

// The mean of the values of [start, end): their sum, taken in order in double precision, divided
// by their number and truncated toward zero. 0 for an empty range.
std::int32_t MeanValue(const ValueView& view, std::int32_t start, std::int32_t end) noexcept;

}  // namespace zyl
