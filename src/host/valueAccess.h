// Access to stored sample values: one reader and one writer per width.
//
// A channel's values lie one after the other as signed little-endian integers of 1, 2, 3 or 4
// bytes (8-bit values are signed in memory too, whatever their files do). Every path that reads
// or writes a value, single or in bulk, is made of these functors, so that all widths are
// understood in one place and the compiler can inline and vectorise the loops around them.
#pragma once

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace zyl {

// Reader and writer of values of `Bytes` bytes. Indexes count values, not bytes; the caller keeps
// them inside its buffer. No alignment is asked for.
template <int Bytes>
requires(Bytes >= 1 && Bytes <= 4) struct ValueAccess {
  static constexpr int bytesPerValue = Bytes;
  static constexpr std::int32_t highest =
      static_cast<std::int32_t>((std::int64_t{1} << (8 * Bytes - 1)) - 1);
  static constexpr std::int32_t lowest = -highest - 1;

  static std::int32_t Read(const std::byte* values, std::ptrdiff_t index) noexcept {
    const std::byte* at = values + index * Bytes;
    if constexpr (Bytes == 1) {
      return static_cast<std::int8_t>(*at);
    } else if constexpr (Bytes == 2 && isNative) {
      std::int16_t value;
      std::memcpy(&value, at, 2);
      return value;
    } else if constexpr (Bytes == 4 && isNative) {
      std::int32_t value;
      std::memcpy(&value, at, 4);
      return value;
    } else {
      // The value is put together in the top bytes; the shift down then carries its sign.
      std::uint32_t bits = 0;
      for (int i = 0; i < Bytes; ++i) {
        bits |= std::to_integer<std::uint32_t>(at[i]) << (8 * (4 - Bytes + i));
      }
      return static_cast<std::int32_t>(bits) >> (8 * (4 - Bytes));
    }
  }

  // A value beyond the width is held at the width's limits.
  static void Write(std::byte* values, std::ptrdiff_t index, std::int32_t value) noexcept {
    Store(values, index, std::clamp(value, lowest, highest));
  }

  // As Write, for a value that is known to lie within the width.
  static void Store(std::byte* values, std::ptrdiff_t index, std::int32_t value) noexcept {
    std::byte* at = values + index * Bytes;
    if constexpr (Bytes == 2 && isNative) {
      const auto narrow = static_cast<std::int16_t>(value);
      std::memcpy(at, &narrow, 2);
    } else if constexpr (Bytes == 4 && isNative) {
      std::memcpy(at, &value, 4);
    } else {
      const auto bits = static_cast<std::uint32_t>(value);
      for (int i = 0; i < Bytes; ++i) at[i] = static_cast<std::byte>((bits >> (8 * i)) & 0xFFu);
    }
  }

 private:
  static constexpr bool isNative = std::endian::native == std::endian::little;
};

constexpr bool IsValueWidth(int bytesPerValue) noexcept {
  return bytesPerValue >= 1 && bytesPerValue <= 4;
}

// Calls `visit` with the ValueAccess of the width and returns its result: the one place where a
// width known at run time becomes a type. The width must satisfy IsValueWidth.
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

// Copies values into another width: shifted up, or down without their lowest bytes.
inline void ConvertValues(const std::byte* from, int fromBytes, std::byte* to, int toBytes,
                          std::ptrdiff_t count) noexcept {
  if (fromBytes == toBytes) {
    if (count > 0) std::memcpy(to, from, static_cast<std::size_t>(count * toBytes));
    return;
  }
  VisitWidth(fromBytes, [&](auto source) {
    VisitWidth(toBytes, [&](auto target) {
      constexpr int shift = 8 * (target.bytesPerValue - source.bytesPerValue);
      for (std::ptrdiff_t i = 0; i < count; ++i) {
        const std::int32_t value = source.Read(from, i);
        if constexpr (shift >= 0) {
          target.Store(to, i,
                       static_cast<std::int32_t>(static_cast<std::uint32_t>(value) << shift));
        } else {
          target.Store(to, i, value >> -shift);
        }
      }
    });
  });
}

}  // namespace zyl
