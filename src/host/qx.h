// Utilities: blocks of list nodes, byte images, the profile, memory sizes, buffer handles.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "byteOrder.h"
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
class MemInterpreter {
 public:
  MemInterpreter() : MemInterpreter(nullptr, 0) {}
  MemInterpreter(const void* bytes, size_t size)
      : in_(static_cast<const std::byte*>(bytes), size, zyl::ByteOrder::kLittle) {}

  void PrepareWrite(size_t size) {
    out_.block.clear();
    out_.block.reserve(size);
  }
  void AddDWORD(uint32_t value) { out_.U32(value); }
  void AddWORD(uint16_t value) { out_.U16(value); }
  void AddSHORT(int16_t value) { out_.U16(static_cast<uint16_t>(value)); }
  void AddBlock(const void* bytes, size_t size) { out_.Raw(bytes, size); }
  const std::vector<std::byte>& Image() const { return out_.block; }

  uint32_t GetDWORD() { return in_.U32(); }
  uint16_t GetWORD() { return in_.U16(); }
  int16_t GetSHORT() { return in_.I16(); }
  // Returns false and leaves `bytes` unchanged if fewer than `size` bytes remain.
  bool GetBlock(void* bytes, size_t size) {
    const std::byte* raw = in_.Raw(size);
    if (raw != nullptr && size > 0) std::memcpy(bytes, raw, size);
    return in_.Good();
  }
  size_t Remaining() const { return in_.Left(); }
  bool Good() const { return in_.Good(); }

 private:
  zyl::FieldReader in_;
  zyl::FieldWriter out_{zyl::ByteOrder::kLittle};
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
