#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
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

// A temporary file is locked by whoever writes it, and its name is made of the target's. So one
// that nobody holds is what an ended process left behind, and the next save of its target removes
// it.

std::string TemporaryName(const std::string& target, int number) {
  // FNV-1a of the target's name.
  uint64_t hash = 14695981039346656037u;
  for (size_t i = target.rfind('/') + 1; i < target.size(); ++i) {
    hash = (hash ^ static_cast<uint8_t>(target[i])) * 1099511628211u;
  }
  char name[48];
  std::snprintf(name, sizeof name, "/.zyl-%016llx-%d.tmp", static_cast<unsigned long long>(hash),
                number);
  return FolderOf(target) + name;
}

bool Lock(int handle) { return ::flock(handle, LOCK_EX | LOCK_NB) == 0; }
// Also where the file system has no locks: nothing is taken for left there.
bool HoldNew(int handle) { return Lock(handle) || errno != EWOULDBLOCK; }

// The path still leads to the open file.
bool IsAt(int handle, const std::string& path) {
  struct stat open {};
  struct stat there {};
  return ::fstat(handle, &open) == 0 && ::lstat(path.c_str(), &there) == 0 &&
         open.st_dev == there.st_dev && open.st_ino == there.st_ino;
}

// Whoever removes a left file holds its lock meanwhile, so that no two take it for left, and one of
// them the other's new file.
void RemoveIfLeft(const std::string& path) {
  const int handle = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (handle < 0) return;
  if (Lock(handle) && IsAt(handle, path)) ::unlink(path.c_str());
  ::close(handle);
}

// Makes a new file beside `target` by `make`, which answers false with errno EEXIST for a name that
// is taken. Other processes and threads get other names.
template <class Make>
bool TakeTemporaryName(const std::string& target, std::string& path, Make make) {
  for (int number = 0; number < kMaxNameTries; ++number) {
    path = TemporaryName(target, number);
    for (int tries = 0; tries < 2; ++tries) {
      if (make(path)) return true;
      if (errno != EEXIST) return false;
      RemoveIfLeft(path);
    }
  }
  errno = EEXIST;
  return false;
}

// A file without a name goes with the process that wrote it. -1 where the system has none.
int OpenNameless(const std::string& target) {
#if defined(O_TMPFILE)
  if (::access("/proc/self/fd", X_OK) != 0) return -1;  // the way in which it gets its name
  const int handle = ::open(FolderOf(target).c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666);
  if (handle >= 0 && HoldNew(handle)) return handle;
  if (handle >= 0) ::close(handle);
#else
  static_cast<void>(target);
#endif
  return -1;
}

int OpenNamed(const std::string& target, std::string& tempPath) {
  int handle = -1;
  const bool made = TakeTemporaryName(target, tempPath, [&](const std::string& path) {
    handle = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (handle < 0) return false;
    // Before it was locked, someone may have taken it for left.
    if (HoldNew(handle) && IsAt(handle, path)) return true;
    ::close(handle);
    handle = -1;
    errno = EEXIST;
    return false;
  });
  return made ? handle : -1;
}

// Gives a nameless file its temporary name.
bool Name(int handle, const std::string& target, std::string& tempPath) {
  const std::string open = "/proc/self/fd/" + std::to_string(handle);
  return TakeTemporaryName(target, tempPath, [&](const std::string& path) {
    return ::linkat(AT_FDCWD, open.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
  });
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
  // First, since what is opened before it is not closed when there is no memory for it.
  buffer_.reset(new std::byte[kBufferBytes]);
  handle_ = OpenNameless(target_);
  if (handle_ < 0) handle_ = OpenNamed(target_, tempPath_);
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
  if (tempPath_.empty() && !Name(handle_, target_, tempPath_)) {
    tempPath_.clear();
    return Fail("name");
  }
  // Closed afterwards: until then the lock says that the temporary name is in use.
  if (std::rename(tempPath_.c_str(), target_.c_str()) != 0) return Fail("replace");
  tempPath_.clear();
  const int handle = handle_;
  handle_ = -1;
  if (::close(handle) != 0) return Fail("close");
  if (!FlushFolder(FolderOf(target_))) return Fail("flush the folder of");
  state_ = State::kCommitted;
  return true;
}

}  // namespace zyl
