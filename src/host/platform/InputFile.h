// A file opened for random-access reads, with 64-bit sizes. Opens only regular files: reading a
// pipe or a device could block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zyl {

class InputFile {
 public:
  // `path` is UTF-8.
  explicit InputFile(const std::string& path);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  bool Good() const { return handle_ >= 0; }
  uint64_t Size() const { return sizeBytes_; }
  // Reads up to `count` bytes from `offset`. Returns fewer at the end of the file or on an error.
  size_t ReadAt(uint64_t offset, void* bytes, size_t count) const;
  // Why the file could not be opened, without its path; empty if it is open.
  const std::string& Error() const { return error_; }

 private:
  int handle_ = -1;
  uint64_t sizeBytes_ = 0;
  std::string error_;
};

}  // namespace zyl
