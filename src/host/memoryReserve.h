// Memory for library code that cannot cope with a failed allocation.
//
// wxThread is such code: if an allocation fails in its constructor, the list of all threads keeps a
// dangling entry, and if one fails while a thread starts or ends, the process is terminated. All
// these allocations are small; most of them format trace messages.
//
// The reserves that exist together form one pool of blocks. When `operator new` fails on a thread
// that may use the pool, the new handler frees one block, and the allocation is repeated. All
// threads but the script thread may use it; ZylReserveDraw changes that for a scope. So code that
// handles failed allocations cannot use up the memory of code that does not.
#pragma once

#include <cstddef>

#include "export.h"

class ZYLHOST_API ZylMemoryReserve {
 public:
  // From construction to join, a thread makes about 50 allocations of at most 128 bytes in
  // wxWidgets 3.2. There is one block for each, because other threads may take what is left of a
  // freed block. Freed blocks of this size can serve smaller requests: glibc caches only blocks up
  // to 1032 bytes for requests of the same size.
  static constexpr size_t kBlocks = 64;
  static constexpr size_t kBlockBytes = 2048;

  // Adds kBlocks blocks to the pool and replaces those that were drawn. Throws std::bad_alloc.
  ZylMemoryReserve();
  ~ZylMemoryReserve();
  ZylMemoryReserve(const ZylMemoryReserve&) = delete;
  ZylMemoryReserve& operator=(const ZylMemoryReserve&) = delete;
};

// While one exists, the thread that created it may or may not use the pool. May be nested.
class ZYLHOST_API ZylReserveDraw {
 public:
  explicit ZylReserveDraw(bool mayDraw) noexcept;
  ~ZylReserveDraw();
  ZylReserveDraw(const ZylReserveDraw&) = delete;
  ZylReserveDraw& operator=(const ZylReserveDraw&) = delete;

 private:
  const int before_;
};
