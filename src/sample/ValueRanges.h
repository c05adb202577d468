// Bulk edits and measurements of the values of one channel.
//
// The caller owns the buffers; the functions neither allocate nor keep them. Positions are int32
// and count values. Ranges must satisfy 0 <= start <= end and be within the buffer, as ClampRange
// makes them. Whether the end is included differs between the operations.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyl {

// The values of one channel, writable. See ValueAccess for the widths.
struct ValueBuffer {
  std::byte* values = nullptr;
  int32_t frameCount = 0;
  int bytesPerValue = 2;
};

// The values of one channel, read-only.
struct ValueView {
  const std::byte* values = nullptr;
  int32_t frameCount = 0;
  int bytesPerValue = 2;

  ValueView() = default;
  ValueView(const std::byte* valueBytes, int32_t frames, int bytes)
      : values(valueBytes), frameCount(frames), bytesPerValue(bytes) {}
  ValueView(const ValueBuffer& buffer)  // NOLINT: implicit, since a buffer is readable
      : values(buffer.values), frameCount(buffer.frameCount), bytesPerValue(buffer.bytesPerValue) {}
};

// Clamps the index to the data. Returns false if there is no data.
bool ClampIndex(int32_t frameCount, int32_t& index) noexcept;

// Clamps both ends with ClampIndex, then orders them.
bool ClampRange(int32_t frameCount, int32_t& start, int32_t& end) noexcept;

// Access to single values; the index must be within the data.
int32_t GetValue(const ValueView& view, int32_t index) noexcept;
void SetValue(const ValueBuffer& buffer, int32_t index, int32_t value) noexcept;

// Fills [start, end) with the value, reduced to a signed 16-bit number and then clamped to the
// width.
void SetValues(const ValueBuffer& buffer, int32_t start, int32_t end, int32_t value) noexcept;

// Multiplies the values of [start, end) by the factor in double precision, truncates toward zero
// and clamps to the width. NaN products become 0.
void MultiplyValues(const ValueBuffer& buffer, int32_t start, int32_t end, double factor) noexcept;

// Adds the offset to the values of [start, end) and clamps to the width.
void OffsetValues(const ValueBuffer& buffer, int32_t start, int32_t end, int32_t offset) noexcept;

// Reverses the order of the values of [start, end]. The end is included and must be within the
// data.
void ReverseValues(const ValueBuffer& buffer, int32_t start, int32_t end) noexcept;

// Returns the mean of [start, end): the sum, accumulated in order in double precision, divided by
// the number of values and truncated toward zero. Returns 0 for an empty range.
int32_t MeanValue(const ValueView& view, int32_t start, int32_t end) noexcept;

}  // namespace zyl
