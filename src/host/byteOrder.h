// Reads and writes chunk fields in either byte order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace zyl {

enum class ByteOrder { kLittle, kBig };

using Bytes = std::vector<std::byte>;

// Reads consecutive fields. Reads past the end return 0 and make Good() false.
class FieldReader {
 public:
  FieldReader(const std::byte* bytes, size_t count, ByteOrder order)
      : bytes_(bytes), count_(count), order_(order) {}
  FieldReader(const Bytes& bytes, ByteOrder order)
      : FieldReader(bytes.data(), bytes.size(), order) {}

  uint8_t U8() { return static_cast<uint8_t>(Take(1)); }
  uint16_t U16() { return static_cast<uint16_t>(Take(2)); }
  uint32_t U32() { return static_cast<uint32_t>(Take(4)); }
  uint64_t U64() { return Take(8); }
  int8_t I8() { return static_cast<int8_t>(U8()); }
  int16_t I16() { return static_cast<int16_t>(U16()); }
  int32_t I32() { return static_cast<int32_t>(U32()); }
  // The next `count` bytes, or null if fewer remain.
  const std::byte* Raw(size_t count) {
    if (count > Left()) {
      good_ = false;
      place_ = count_;
      return nullptr;
    }
    const std::byte* raw = bytes_ + place_;
    place_ += count;
    return raw;
  }
  std::string_view Text(size_t count) {
    const std::byte* raw = Raw(count);
    return raw == nullptr ? std::string_view()
                          : std::string_view(reinterpret_cast<const char*>(raw), count);
  }
  size_t Left() const { return count_ - place_; }
  bool Good() const { return good_; }

 private:
  uint64_t Take(size_t count) {
    const std::byte* raw = Raw(count);
    uint64_t value = 0;
    for (size_t i = 0; raw != nullptr && i < count; ++i) {
      const size_t shift = 8 * (order_ == ByteOrder::kBig ? count - 1 - i : i);
      value |= std::to_integer<uint64_t>(raw[i]) << shift;
    }
    return value;
  }

  const std::byte* bytes_;
  size_t count_;
  size_t place_ = 0;
  ByteOrder order_;
  bool good_ = true;
};

// Appends fields to `block`.
class FieldWriter {
 public:
  explicit FieldWriter(ByteOrder order) : order_(order) {}

  FieldWriter& U8(uint32_t value) { return Put(value, 1); }
  FieldWriter& U16(uint32_t value) { return Put(value, 2); }
  FieldWriter& U32(uint32_t value) { return Put(value, 4); }
  FieldWriter& U64(uint64_t value) { return Put(value, 8); }
  FieldWriter& I32(int32_t value) { return U32(static_cast<uint32_t>(value)); }
  FieldWriter& Raw(const void* bytes, size_t count) {
    const auto* first = static_cast<const std::byte*>(bytes);
    block.insert(block.end(), first, first + count);
    return *this;
  }
  FieldWriter& Text(std::string_view text) { return Raw(text.data(), text.size()); }

  Bytes block;

 private:
  FieldWriter& Put(uint64_t value, size_t count) {
    for (size_t i = 0; i < count; ++i) {
      const size_t shift = 8 * (order_ == ByteOrder::kBig ? count - 1 - i : i);
      block.push_back(static_cast<std::byte>((value >> shift) & 0xFF));
    }
    return *this;
  }

  ByteOrder order_;
};

}  // namespace zyl
