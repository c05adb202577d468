// Access to stored sample values, with a reader and a writer per width.
//
// A channel is an array of signed little-endian integers of 1, 2, 3 or 4 bytes; 8-bit values are
// signed in memory even if they are unsigned in files. All code that reads or writes values uses
// these functors, so that compilers can inline them and vectorise the surrounding loops.
#pragma once

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace zyl {

// Reads and writes values of `Bytes` bytes. Indexes count values, not bytes, and aren't checked.
// Buffers may be unaligned.
template <int Bytes>
requires(Bytes >= 1 && Bytes <= 4) struct ValueAccess {
  static constexpr int bytesPerValue = Bytes;
  static constexpr int32_t highest = static_cast<int32_t>((int64_t{1} << (8 * Bytes - 1)) - 1);
  static constexpr int32_t lowest = -highest - 1;

  static int32_t Read(const std::byte* values, ptrdiff_t index) noexcept {
    const std::byte* at = values + index * Bytes;
    if constexpr (Bytes == 1) {
      return static_cast<int8_t>(*at);
    } else if constexpr (Bytes == 2 && isNative) {
      int16_t value;
      std::memcpy(&value, at, 2);
      return value;
    } else if constexpr (Bytes == 4 && isNative) {
      int32_t value;
      std::memcpy(&value, at, 4);
      return value;
    } else {
      // Assemble the value in the top bytes; the right shift then extends its sign.
      uint32_t bits = 0;
      for (int i = 0; i < Bytes; ++i) {
        bits |= std::to_integer<uint32_t>(at[i]) << (8 * (4 - Bytes + i));
      }
      return static_cast<int32_t>(bits) >> (8 * (4 - Bytes));
    }
  }

  // Clamps the value to the range of the width.
  static void Write(std::byte* values, ptrdiff_t index, int32_t value) noexcept {
    Store(values, index, std::clamp(value, lowest, highest));
  }

  // Like Write, but the value must be within the range of the width.
  static void Store(std::byte* values, ptrdiff_t index, int32_t value) noexcept {
    std::byte* at = values + index * Bytes;
    if constexpr (Bytes == 2 && isNative) {
      const auto narrow = static_cast<int16_t>(value);
      std::memcpy(at, &narrow, 2);
    } else if constexpr (Bytes == 4 && isNative) {
      std::memcpy(at, &value, 4);
    } else {
      const auto bits = static_cast<uint32_t>(value);
      for (int i = 0; i < Bytes; ++i) at[i] = static_cast<std::byte>((bits >> (8 * i)) & 0xFFu);
    }
  }

 private:
  static constexpr bool isNative = std::endian::native == std::endian::little;
};

constexpr bool IsValueWidth(int bytesPerValue) noexcept {
  return bytesPerValue >= 1 && bytesPerValue <= 4;
}

// Calls `visit` with the ValueAccess of a width that is known only at run time, and returns its
// result. The width must satisfy IsValueWidth.
template <class Visitor>
decltype(auto) VisitWidth(int bytesPerValue, Visitor&& visit) {
  assert(IsValueWidth(bytesPerValue));
  switch (bytesPerValue) {
    case 1:
      return std::forward<Visitor>(visit)(ValueAccess<1>{});
    case 2:
      return std::forward<Visitor>(visit)(ValueAccess<2>{});
    case 3:
      return std::forward<Visitor>(visit)(ValueAccess<3>{});
    default:
      return std::forward<Visitor>(visit)(ValueAccess<4>{});
  }
}

// Converts values to another width: appends zero bytes or drops the lowest bytes.
inline void ConvertValues(const std::byte* from, int fromBytes, std::byte* to, int toBytes,
                          ptrdiff_t count) noexcept {
  if (fromBytes == toBytes) {
    if (count > 0) std::memcpy(to, from, static_cast<size_t>(count * toBytes));
    return;
  }
  VisitWidth(fromBytes, [&](auto source) {
    VisitWidth(toBytes, [&](auto target) {
      constexpr int shift = 8 * (target.bytesPerValue - source.bytesPerValue);
      for (ptrdiff_t i = 0; i < count; ++i) {
        const int32_t value = source.Read(from, i);
        if constexpr (shift >= 0) {
          target.Store(to, i, static_cast<int32_t>(static_cast<uint32_t>(value) << shift));
        } else {
          target.Store(to, i, value >> -shift);
        }
      }
    });
  });
}

}  // namespace zyl
