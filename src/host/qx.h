// The utility library: node blocks, byte images, the profile, memory figures, buffer handles.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "export.h"

// A block of list nodes in a chain of blocks.
struct ZYLHOST_API qxPlex {
  qxPlex* next;

  // Adds a block of `count` nodes of at least `nodeSize` bytes to the chain and returns it.
  static qxPlex* Create(qxPlex*& chain, unsigned count, unsigned nodeSize);
  // Frees the whole chain.
  static void FreeDataChain(qxPlex*& chain);
  void* Nodes() { return this + 1; }
};

// A byte image that is written or read in order; fields are little-endian. Reading beyond the end
// answers 0 and makes Good() false.
class ZYLHOST_API MemInterpreter {
 public:
  MemInterpreter() = default;
  MemInterpreter(const void* bytes, size_t size);

  void PrepareWrite(size_t size);
  void AddDWORD(uint32_t value);
  void AddWORD(uint16_t value);
  void AddSHORT(int16_t value);
  void AddBlock(const void* bytes, size_t size);
  const std::vector<std::byte>& Image() const { return image_; }

  uint32_t GetDWORD();
  uint16_t GetWORD();
  int16_t GetSHORT();
  bool GetBlock(void* bytes, size_t size);
  size_t Remaining() const { return size_ - position_; }
  bool Good() const { return good_; }

 private:
  std::vector<std::byte> image_;
  const std::byte* read_ = nullptr;
  size_t size_ = 0;
  size_t position_ = 0;
  bool good_ = true;
};

// The profile: an INI file. Without a file name, the one that qxSetProfile named; with neither, or
// where section or key are missing, the default.
ZYLHOST_API void qxSetProfile(const std::string& path);
ZYLHOST_API int32_t qxGetPrivateProfileLong(const char* section, const char* key,
                                            int32_t defaultValue, const char* file);

// Replaces the file at `path` by what `write` stores in the empty file whose path it is given.
// Until that is whole and on disk, and when `write` returns false, the file stays as it was. False
// with a reason in one line that names the path; the reason is empty when it was `write` that
// failed. Paths are UTF-8.
ZYLHOST_API bool qxReplaceFile(const std::string& path,
                               const std::function<bool(const std::string& temporary)>& write,
                               std::string& reason);

// Bytes; a figure beyond 2^31 - 1 reads as 2^31 - 1.
ZYLHOST_API int32_t qxGetTotalPhysicalMemory();
ZYLHOST_API int32_t qxGetLockedMemory();

// Handles stand for the address of a buffer where a script integer cannot hold it. A handle is
// never 0, and dies when its buffer is withdrawn.
ZYLHOST_API int32_t qxBufferHandle(const void* buffer, size_t bytes);
ZYLHOST_API void qxWithdrawBuffer(const void* buffer);
// Copies the first `bytes` bytes; false with a reason for an unknown handle or beyond the end.
ZYLHOST_API bool qxBufferBytes(uint32_t handle, size_t bytes, std::string& out,
                               std::string& reason);

// The machine's memory as it is, for limits.
ZYLHOST_API int64_t qxGetPhysicalMemoryBytes();
