// Shared by the fuzzers in this folder. A harness passes arbitrary bytes to a reader and aborts if
// the reader breaks its contract: it returns either nothing and a reason, or an object that can be
// written and read again, and its memory is bounded by the length of the input.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/AllocationWatch.h"

namespace zyl::fuzz {

[[noreturn]] inline void Broken(const char* promise) {
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

inline void Require(bool kept, const char* promise) {
  if (!kept) Broken(promise);
}

// While an instance exists, the allocated memory stays below a fixed amount plus a multiple of the
// input size.
class MemoryBound {
 public:
  static constexpr size_t kPerInputByte = 32;

  MemoryBound(size_t inputBytes, size_t fixedBytes)
      : limit_(test::AllocationWatch::LiveBytes() + fixedBytes + kPerInputByte * inputBytes) {
    test::AllocationWatch::ResetPeak();
  }
  ~MemoryBound() {
    Require(test::AllocationWatch::PeakBytes() <= limit_,
            "memory is bounded by the input's length");
  }
  MemoryBound(const MemoryBound&) = delete;
  MemoryBound& operator=(const MemoryBound&) = delete;

 private:
  size_t limit_;
};

// A folder that is removed at exit; in memory if the system has such a file system.
class ScratchFolder {
 public:
  ScratchFolder() {
    const std::filesystem::path inMemory = "/dev/shm";
    const auto base =
        std::filesystem::is_directory(inMemory) ? inMemory : std::filesystem::temp_directory_path();
    path_ = base / ("zyl-fuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() {
    std::error_code failed;
    std::filesystem::remove_all(path_, failed);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  std::string File(const char* name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace zyl::fuzz
