// Replaces a file atomically.
//
// Write() appends to a temporary file in the target's folder. Commit() flushes it to disk and
// renames it over the target. Destroying the object before Commit, or after a Commit that failed
// before the rename, removes the temporary file and leaves the target unchanged. If only flushing
// the folder fails, Commit returns false although the target is replaced. If the target is a
// symbolic link, the file that it points to is replaced and the link is kept.
//
// An existing target must be a regular file that the process may write. A target without any write
// permission is refused for every user, including the superuser. The new file gets the target's
// owner, group, mode, access control list and user attributes, as far as the system permits.
//
// A process that ends before Commit leaves the target unchanged. Its temporary file is removed by
// the system if it supports unnamed files, otherwise by the next save of the same target.
//
// After the first failure every operation returns false and Error() describes that failure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace zyl {

class AtomicFile {
 public:
  // When the temporary file gets its name: kAtOnce for callers that write to it by path.
  enum class Naming { kAtCommit, kAtOnce };

  // Opens the temporary file; `path` is UTF-8. Good() is false on failure.
  explicit AtomicFile(const std::string& path, Naming naming = Naming::kAtCommit);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  bool Good() const { return state_ == State::kOpen; }
  bool Write(const void* bytes, size_t count);
  // Bytes passed to Write.
  uint64_t Size() const { return sizeBytes_; }
  // Returns true if the target now holds every byte written, flushed to disk. Call once.
  bool Commit();
  // Empty while the temporary file is unnamed.
  const std::string& TemporaryPath() const { return tempPath_; }
  // Removes the temporary file and leaves the target unchanged. No effect after Commit.
  void Abandon();
  // Empty if there was no error; otherwise one line with the target's path.
  const std::string& Error() const { return error_; }

 private:
  enum class State { kOpen, kFailed, kCommitted };
  bool Flush();
  bool WriteThrough(const std::byte* bytes, size_t count);
  bool Fail(const std::string& doing);

  std::string path_;    // as passed by the caller
  std::string target_;  // with symbolic links resolved
  std::string tempPath_;
  std::string error_;
  std::unique_ptr<std::byte[]> buffer_;
  size_t buffered_ = 0;
  uint64_t sizeBytes_ = 0;
  int handle_ = -1;
  State state_ = State::kFailed;
};

}  // namespace zyl
