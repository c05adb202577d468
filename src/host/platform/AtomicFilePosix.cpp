#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "AtomicFile.h"

namespace zyl {
namespace {

constexpr size_t kBufferBytes = size_t{1} << 17;
constexpr int kMaxLinks = 32;
constexpr int kMaxNameTries = 1000;

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// Follows symbolic links, also one whose file is not there yet. False on a ring of links.
bool FollowLinks(std::string& path) {
  for (int depth = 0; depth < kMaxLinks; ++depth) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return true;
    std::string link(4096, '\0');
    const ssize_t length = ::readlink(path.c_str(), link.data(), link.size());
    if (length <= 0 || static_cast<size_t>(length) == link.size()) break;
    link.resize(static_cast<size_t>(length));
    path = link[0] == '/' ? link : FolderOf(path) + "/" + link;
  }
  errno = ELOOP;
  return false;
}

// Opens a new file beside `target`; other processes and threads get other names.
int OpenTemporary(const std::string& target, std::string& tempPath) {
  static std::atomic<unsigned> counter{0};
  for (int tries = 0; tries < kMaxNameTries; ++tries) {
    tempPath = FolderOf(target) + "/.zyl-" + std::to_string(::getpid()) + "-" +
               std::to_string(counter.fetch_add(1)) + ".tmp";
    const int handle = ::open(tempPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (handle >= 0 || errno != EEXIST) return handle;
  }
  return -1;
}

// A new name in a folder is on disk only when the folder is. Not every file system can do that, so
// only a real input/output error counts.
bool FlushFolder(const std::string& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return true;
  const bool good = ::fsync(handle) == 0 || (errno != EIO && errno != ENOSPC);
  ::close(handle);
  return good;
}

}  // namespace

AtomicFile::AtomicFile(const std::string& path) : path_(path), target_(path) {
  if (path.empty() || path.find('\0') != std::string::npos) {
    errno = EINVAL;
    Fail("open");
    return;
  }
  if (!FollowLinks(target_)) {
    Fail("open");
    return;
  }
  struct stat status {};
  const bool exists = ::stat(target_.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    Fail("replace");
    return;
  }
  handle_ = OpenTemporary(target_, tempPath_);
  if (handle_ < 0) {
    const int error = errno;
    tempPath_.clear();
    errno = error;
    Fail("write");
    return;
  }
  if (exists) {
    // The owner only where the system allows it; it resets some mode bits, so it comes first.
    [[maybe_unused]] const int owner = ::fchown(handle_, status.st_uid, status.st_gid);
    ::fchmod(handle_, status.st_mode & 07777);
  }
  buffer_.reset(new std::byte[kBufferBytes]);
  state_ = State::kOpen;
}

AtomicFile::~AtomicFile() { Abandon(); }

bool AtomicFile::Fail(const std::string& doing) {
  if (error_.empty()) error_ = path_ + ": cannot " + doing + ": " + std::strerror(errno);
  state_ = State::kFailed;
  Abandon();
  return false;
}

void AtomicFile::Abandon() {
  if (handle_ >= 0) ::close(handle_);
  handle_ = -1;
  if (!tempPath_.empty()) ::unlink(tempPath_.c_str());
  tempPath_.clear();
  buffered_ = 0;
  if (state_ != State::kCommitted) state_ = State::kFailed;
}

bool AtomicFile::WriteThrough(const std::byte* bytes, size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(handle_, bytes, std::min(count, size_t{1} << 30));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      if (written == 0) errno = EIO;
      return Fail("write");
    }
    bytes += written;
    count -= static_cast<size_t>(written);
  }
  return true;
}

bool AtomicFile::Flush() {
  const size_t count = buffered_;
  buffered_ = 0;
  return WriteThrough(buffer_.get(), count);
}

bool AtomicFile::Write(const void* bytes, size_t count) {
  if (!Good()) return false;
  if (count == 0) return true;
  sizeBytes_ += count;
  if (count >= kBufferBytes) {
    return Flush() && WriteThrough(static_cast<const std::byte*>(bytes), count);
  }
  if (count > kBufferBytes - buffered_ && !Flush()) return false;
  std::memcpy(buffer_.get() + buffered_, bytes, count);
  buffered_ += count;
  return true;
}

bool AtomicFile::Commit() {
  if (!Good() || !Flush()) return false;
  if (::fsync(handle_) != 0) return Fail("flush");
  const int handle = handle_;
  handle_ = -1;
  if (::close(handle) != 0) return Fail("close");
  if (std::rename(tempPath_.c_str(), target_.c_str()) != 0) return Fail("replace");
  tempPath_.clear();
  if (!FlushFolder(FolderOf(target_))) return Fail("flush the folder of");
  state_ = State::kCommitted;
  return true;
}

}  // namespace zyl
