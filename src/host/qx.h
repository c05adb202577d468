// Utilities: blocks of list nodes, byte images, the profile, memory sizes, buffer handles.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "export.h"

// The header of a block of list nodes; blocks form a singly linked chain.
struct ZYLHOST_API qxPlex {
  qxPlex* next;

  // Prepends a block for `count` nodes of `nodeSize` bytes to the chain and returns it.
  static qxPlex* Create(qxPlex*& chain, unsigned count, unsigned nodeSize);
  // Frees all blocks of the chain and sets `chain` to null.
  static void FreeDataChain(qxPlex*& chain);
  void* Nodes() { return this + 1; }
};

// Writes or reads the fields of a byte image in order, little-endian. Reading past the end returns
// 0 and makes Good() false. An image to read is not copied.
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

// Reads an integer from the profile, an INI file. A null `file` means the path from qxSetProfile.
// Returns `defaultValue` if the file, section or key is missing or the value is not a number.
ZYLHOST_API void qxSetProfile(const std::string& path);
ZYLHOST_API int32_t qxGetPrivateProfileLong(const char* section, const char* key,
                                            int32_t defaultValue, const char* file);

// Replaces the file at `path` atomically. `write` gets the path of an empty temporary file, stores
// the content there and returns whether it succeeded; after the content is on disk, that file
// replaces `path`. On failure returns false, leaves an existing file unchanged and sets `reason` to
// one line that names the path, or to an empty string if `write` failed. Paths are UTF-8.
ZYLHOST_API bool qxReplaceFile(const std::string& path,
                               const std::function<bool(const std::string& temporary)>& write,
                               std::string& reason);

// In bytes, clamped to 2^31 - 1.
ZYLHOST_API int32_t qxGetTotalPhysicalMemory();
ZYLHOST_API int32_t qxGetLockedMemory();

// Buffer handles identify buffers in scripts, whose integers cannot hold an address. Returns 0 only
// for a null buffer. A handle becomes invalid when its buffer is withdrawn.
ZYLHOST_API int32_t qxBufferHandle(const void* buffer, size_t bytes);
ZYLHOST_API void qxWithdrawBuffer(const void* buffer);
// Copies the first `bytes` bytes to `out`. Returns false and sets `reason` if the handle is unknown
// or the buffer is shorter.
ZYLHOST_API bool qxBufferBytes(uint32_t handle, size_t bytes, std::string& out,
                               std::string& reason);

// The machine's physical memory in bytes, not clamped, for computing limits.
ZYLHOST_API int64_t qxGetPhysicalMemoryBytes();
