// A file that is replaced whole or not at all.
//
// Everything written goes to a temporary file in the target's folder. Commit() flushes it to disk
// and renames it over the target; an object that is destroyed without a successful Commit removes
// the temporary file and leaves the target as it was. A target that is a symbolic link is followed:
// the file it points to is replaced and the link stays.
//
// An existing target must be a regular file that the process may write. One without any write
// permission is refused for every user, also for one whom the system would let write it. The new
// file takes over the target's owner, group, mode, access control list and user attributes, as far
// as the system lets the process set them.
//
// A process that ends before Commit leaves the target as it was. The system removes its temporary
// file where it supports files without a name; elsewhere the next save of the same target does.
//
// After the first failure every operation returns false and Error() says what went wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace zyl {

class AtomicFile {
 public:
  // When the temporary file gets its name: kAtOnce for a caller that has it filled by its path.
  enum class Naming { kAtCommit, kAtOnce };

  // Opens the temporary file; `path` is UTF-8. Good() tells whether that worked.
  explicit AtomicFile(const std::string& path, Naming naming = Naming::kAtCommit);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  bool Good() const { return state_ == State::kOpen; }
  // Buffered; true for a count of 0 while the file is good.
  bool Write(const void* bytes, size_t count);
  // Bytes handed to Write so far.
  uint64_t Size() const { return sizeBytes_; }
  // True when the target now holds, on disk, every byte written. Once only.
  bool Commit();
  // Empty while the temporary file has no name.
  const std::string& TemporaryPath() const { return tempPath_; }
  bool Committed() const { return state_ == State::kCommitted; }
  // Removes the temporary file; the target stays as it was. No effect after Commit.
  void Abandon();
  // Empty while all is well; otherwise one readable line with the target's path.
  const std::string& Error() const { return error_; }

 private:
  enum class State { kOpen, kFailed, kCommitted };
  bool Flush();
  bool WriteThrough(const std::byte* bytes, size_t count);
  bool Fail(const std::string& doing);

  std::string path_;    // as the caller gave it
  std::string target_;  // the file that a symbolic link leads to
  std::string tempPath_;
  std::string error_;
  std::unique_ptr<std::byte[]> buffer_;
  size_t buffered_ = 0;
  uint64_t sizeBytes_ = 0;
  int handle_ = -1;
  State state_ = State::kFailed;
};

}  // namespace zyl
