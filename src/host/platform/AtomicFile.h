// A file that is there whole or not at all.
//
// Everything written goes to a temporary file in the target's folder. Commit() flushes it to disk
// and renames it over the target; an object that is destroyed without a successful Commit removes
// the temporary file and leaves the target as it was. A target that is a symbolic link is followed:
// the file it points to is replaced and the link stays. The permissions of an existing target are
// kept.
//
// A process that ends in the middle leaves the target as it was. Its temporary file goes with it
// where the system knows files without a name; elsewhere the next save of the same target removes
// it.
//
// After the first failure every operation answers false and Error() says what went wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace zyl {

class AtomicFile {
 public:
  // Opens the temporary file; `path` is UTF-8. Good() tells whether that worked.
  explicit AtomicFile(const std::string& path);
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

  std::string path_;      // as the caller gave it
  std::string target_;    // the file behind a symbolic link
  std::string tempPath_;  // empty while the temporary file has no name
  std::string error_;
  std::unique_ptr<std::byte[]> buffer_;
  size_t buffered_ = 0;
  uint64_t sizeBytes_ = 0;
  int handle_ = -1;
  State state_ = State::kFailed;
};

}  // namespace zyl
