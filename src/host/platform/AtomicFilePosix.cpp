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

// A file without any write permission is marked as read-only: the superuser is refused as well.
bool MayReplace(const std::string& target, const struct stat& status) {
  if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
    errno = EACCES;
    return false;
  }
  return ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0;
}

// Best effort: an unprivileged process can give a file only to its own groups, and to no other
// owner.
void CopyOwnerAndMode(const struct stat& from, int to) {
  mode_t mode = from.st_mode & 07777;
  if (::fchown(to, from.st_uid, from.st_gid) != 0) {
    mode &= ~static_cast<mode_t>(S_ISUID);
    if (::fchown(to, static_cast<uid_t>(-1), from.st_gid) != 0) {
      // Another group must not get more than everybody has.
      mode &= ~static_cast<mode_t>(S_ISGID | S_IRWXG) | (mode & S_IRWXO) << 3;
    }
  }
  // Last, since a change of the owner resets mode bits.
  ::fchmod(to, mode);
}

// Copies the access control list and the user attributes. `room` holds one attribute after the list
// of names.
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
int OpenNameless(const std::string& target, mode_t mode) {
#if defined(O_TMPFILE)
  if (::access("/proc/self/fd", X_OK) != 0) return -1;  // the way in which it gets its name
  const int handle = ::open(FolderOf(target).c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode);
  if (handle >= 0 && HoldNew(handle)) return handle;
  if (handle >= 0) ::close(handle);
#else
  static_cast<void>(target), static_cast<void>(mode);
#endif
  return -1;
}

int OpenNamed(const std::string& target, mode_t mode, std::string& tempPath) {
  int handle = -1;
  const bool made = TakeTemporaryName(target, tempPath, [&](const std::string& path) {
    handle = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
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
  // First, since what is opened before it is not closed when there is no memory for it.
  buffer_.reset(new std::byte[kBufferBytes]);
  // Until it has the target's mode, nobody else may open it.
  const mode_t mode = exists ? 0600 : 0666;
  if (naming == Naming::kAtCommit) handle_ = OpenNameless(target_, mode);
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
