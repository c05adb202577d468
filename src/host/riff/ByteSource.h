// Byte sources and sinks for chunk code: a file or a block of memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "../platform/InputFile.h"

namespace zyl {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual uint64_t Size() const = 0;
  // Reads up to `count` bytes from `offset`. Returns fewer at the end or on an error.
  virtual size_t ReadAt(uint64_t offset, void* bytes, size_t count) const = 0;
};

class FileSource : public ByteSource {
 public:
  explicit FileSource(const InputFile& file) : file_(file) {}
  uint64_t Size() const override { return file_.Size(); }
  size_t ReadAt(uint64_t offset, void* bytes, size_t count) const override {
    return file_.ReadAt(offset, bytes, count);
  }

 private:
  const InputFile& file_;
};

class MemorySource : public ByteSource {
 public:
  MemorySource(const void* bytes, size_t count)
      : bytes_(static_cast<const std::byte*>(bytes)), count_(count) {}
  uint64_t Size() const override { return count_; }
  size_t ReadAt(uint64_t offset, void* bytes, size_t count) const override {
    if (offset >= count_) return 0;
    count = std::min(count, count_ - static_cast<size_t>(offset));
    if (count > 0) std::memcpy(bytes, bytes_ + offset, count);
    return count;
  }

 private:
  const std::byte* bytes_;
  size_t count_;
};

// Another source without its first `skip` bytes.
class OffsetSource : public ByteSource {
 public:
  OffsetSource(const ByteSource& source, uint64_t skip) : source_(source), skip_(skip) {}
  uint64_t Size() const override { return source_.Size() - skip_; }
  size_t ReadAt(uint64_t offset, void* bytes, size_t count) const override {
    return offset >= Size() ? 0 : source_.ReadAt(skip_ + offset, bytes, count);
  }

 private:
  const ByteSource& source_;
  uint64_t skip_;
};

class ByteSink {
 public:
  virtual ~ByteSink() = default;
  virtual bool Write(const void* bytes, size_t count) = 0;
};

// Fills a block of fixed size; a write past its end fails and stores nothing.
class MemorySink : public ByteSink {
 public:
  MemorySink(char* bytes, size_t count) : next_(bytes), left_(count) {}
  bool Write(const void* bytes, size_t count) override {
    if (count > left_) return false;
    if (count > 0) std::memcpy(next_, bytes, count);
    next_ += count;
    left_ -= count;
    return true;
  }
  bool Full() const { return left_ == 0; }

 private:
  char* next_;
  size_t left_;
};

// Appends a remark to a "; "-separated list.
inline void AddReason(std::string& reason, const std::string& remark) {
  if (!reason.empty()) reason += "; ";
  reason += remark;
}

}  // namespace zyl
