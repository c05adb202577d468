// A file opened for reading at any place, with 64-bit sizes. Only regular files can be opened, so
// that a pipe or a device never makes a reader wait.
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
  // Reads up to `count` bytes from `offset`; fewer at the end of the file or after an error.
  size_t ReadAt(uint64_t offset, void* bytes, size_t count) const;
  // Why the file is not open, without its path; else empty.
  const std::string& Error() const { return error_; }

 private:
  int handle_ = -1;
  uint64_t sizeBytes_ = 0;
  std::string error_;
};

}  // namespace zyl
