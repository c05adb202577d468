#if !defined(_FILE_OFFSET_BITS)
#define _FILE_OFFSET_BITS 64
#endif
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "InputFile.h"

namespace zyl {

static_assert(sizeof(off_t) == 8);

InputFile::InputFile(const std::string& path) {
  if (path.find('\0') != std::string::npos) {
    error_ = "a path cannot contain a zero byte";
    return;
  }
  // Non-blocking: opening a pipe would otherwise wait for a writer.
  handle_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat status {};
  if (handle_ < 0 || ::fstat(handle_, &status) != 0) {
    error_ = std::strerror(errno);
  } else if (!S_ISREG(status.st_mode)) {
    error_ = S_ISDIR(status.st_mode) ? "is a folder" : "is not a regular file";
  } else {
    sizeBytes_ = static_cast<uint64_t>(status.st_size);
    return;
  }
  if (handle_ >= 0) ::close(handle_);
  handle_ = -1;
}

InputFile::~InputFile() {
  if (handle_ >= 0) ::close(handle_);
}

size_t InputFile::ReadAt(uint64_t offset, void* bytes, size_t count) const {
  size_t done = 0;
  while (handle_ >= 0 && offset + done < sizeBytes_ && done < count) {
    const size_t wanted = std::min(count - done, size_t{1} << 30);
    const ssize_t got = ::pread(handle_, static_cast<std::byte*>(bytes) + done, wanted,
                                static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<size_t>(got);
  }
  return done;
}

}  // namespace zyl
