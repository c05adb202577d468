#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#if defined(__linux__)
#include <sys/xattr.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "AtomicFile.h"
#include "Platform.h"

namespace zyl {
namespace {

constexpr size_t kBufferBytes = size_t{1} << 17;
constexpr int kMaxNameTries = 1000;

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// A file without any write permission is read-only by intent: refuse it even to the superuser.
bool MayReplace(const std::string& target, const struct stat& status) {
  if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
    errno = EACCES;
    return false;
  }
  return ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0;
}

// Best effort: an unprivileged process can't change the owner and can set only its own groups.
void CopyOwnerAndMode(const struct stat& from, int to) {
  mode_t mode = from.st_mode & 07777;
  if (::fchown(to, from.st_uid, from.st_gid) != 0) {
    mode &= ~static_cast<mode_t>(S_ISUID);
    if (::fchown(to, static_cast<uid_t>(-1), from.st_gid) != 0) {
      // The group is a different one: give it no more than others have.
      mode &= ~static_cast<mode_t>(S_ISGID | S_IRWXG) | (mode & S_IRWXO) << 3;
    }
  }
  // After fchown, which resets mode bits.
  ::fchmod(to, mode);
}

// Copies the access control list and the user attributes. The first half of `room` receives the
// list of names, the second half one value at a time.
void CopyAttributes(const std::string& from, int to, std::byte* room, size_t roomBytes) {
#if defined(__linux__)
  char* names = reinterpret_cast<char*>(room);
  const ssize_t listed = ::listxattr(from.c_str(), names, roomBytes / 2);
  for (ssize_t at = 0; at < listed; at += static_cast<ssize_t>(std::strlen(names + at)) + 1) {
    const std::string_view name(names + at);
    if (!name.starts_with("user.") && name != "system.posix_acl_access") continue;
    std::byte* value = room + roomBytes / 2;
    const ssize_t bytes = ::getxattr(from.c_str(), names + at, value, roomBytes / 2);
    if (bytes >= 0) ::fsetxattr(to, names + at, value, static_cast<size_t>(bytes), 0);
  }
#else
  static_cast<void>(from), static_cast<void>(to), static_cast<void>(room);
  static_cast<void>(roomBytes);
#endif
}

// A temporary file's name is derived from the target's name, and its writer holds a lock on it. So
// an unlocked one is stale: its process has ended. The next save of the same target removes it.

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
// Also true on file systems without flock; nothing is ever judged stale there.
bool LockNew(int handle) { return Lock(handle) || errno != EWOULDBLOCK; }

// Whether the path still refers to the open file.
bool IsAt(int handle, const std::string& path) {
  struct stat open {};
  struct stat there {};
  return ::fstat(handle, &open) == 0 && ::lstat(path.c_str(), &there) == 0 &&
         open.st_dev == there.st_dev && open.st_ino == there.st_ino;
}

// Holds the lock while unlinking: otherwise two processes could both judge the file stale, and one
// would delete the other's new file.
void RemoveIfStale(const std::string& path) {
  const int handle = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (handle < 0) return;
  if (Lock(handle) && IsAt(handle, path)) ::unlink(path.c_str());
  ::close(handle);
}

// Calls `make` with unused names in the folder of `target` until it creates the file at `path`.
// `make` must fail with errno EEXIST if the name is taken, also by another process or thread.
template <class Make>
bool CreateTemporary(const std::string& target, std::string& path, Make make) {
  for (int number = 0; number < kMaxNameTries; ++number) {
    path = TemporaryName(target, number);
    for (int tries = 0; tries < 2; ++tries) {
      if (make(path)) return true;
      if (errno != EEXIST) return false;
      RemoveIfStale(path);
    }
  }
  errno = EEXIST;
  return false;
}

// Opens an unnamed file, which the system removes when the process ends. -1 if unsupported.
int OpenUnnamed(const std::string& target, mode_t mode) {
#if defined(O_TMPFILE)
  if (::access("/proc/self/fd", X_OK) != 0) return -1;  // needed by NameFile
  const int handle = ::open(FolderOf(target).c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode);
  if (handle >= 0 && LockNew(handle)) return handle;
  if (handle >= 0) ::close(handle);
#else
  static_cast<void>(target), static_cast<void>(mode);
#endif
  return -1;
}

int OpenNamed(const std::string& target, mode_t mode, std::string& tempPath) {
  int handle = -1;
  const bool made = CreateTemporary(target, tempPath, [&](const std::string& path) {
    handle = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (handle < 0) return false;
    // Another process may have judged it stale and unlinked it before it was locked.
    if (LockNew(handle) && IsAt(handle, path)) return true;
    ::close(handle);
    handle = -1;
    errno = EEXIST;
    return false;
  });
  return made ? handle : -1;
}

// Links an unnamed file to a temporary name.
bool NameFile(int handle, const std::string& target, std::string& tempPath) {
  const std::string open = "/proc/self/fd/" + std::to_string(handle);
  return CreateTemporary(target, tempPath, [&](const std::string& path) {
    return ::linkat(AT_FDCWD, open.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
  });
}

// A rename is durable only after its folder has been flushed. Not every file system supports that,
// so only real I/O errors count.
bool FlushFolder(const std::string& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return true;
  const bool good = ::fsync(handle) == 0 || (errno != EIO && errno != ENOSPC);
  ::close(handle);
  return good;
}

}  // namespace

AtomicFile::AtomicFile(const std::string& path, Naming naming) : path_(path), target_(path) {
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
  if (exists && !MayReplace(target_, status)) {
    Fail("replace");
    return;
  }
  // Allocate before opening: if this throws, the destructor doesn't run and would not close the
  // file.
  buffer_.reset(new std::byte[kBufferBytes]);
  // No access for other users until the file has the target's mode.
  const mode_t mode = exists ? 0600 : 0666;
  if (naming == Naming::kAtCommit) handle_ = OpenUnnamed(target_, mode);
  if (handle_ < 0) handle_ = OpenNamed(target_, mode, tempPath_);
  if (handle_ < 0) {
    const int error = errno;
    tempPath_.clear();
    errno = error;
    Fail("write");
    return;
  }
  if (exists) {
    CopyOwnerAndMode(status, handle_);
    CopyAttributes(target_, handle_, buffer_.get(), kBufferBytes);
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
  if (tempPath_.empty() && !NameFile(handle_, target_, tempPath_)) {
    tempPath_.clear();
    return Fail("name");
  }
  // Close after the rename: closing releases the lock that protects the temporary name.
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
