#include "../memoryReserve.h"

#include <mutex>
#include <new>

#include "../hostapp.h"

namespace {

// Blocks are linked through their own memory.
struct Block {
  Block* next;
};

std::mutex poolMutex;  // guards the four below
Block* pool = nullptr;
size_t poolSize = 0;
size_t reserves = 0;
std::new_handler previousHandler = nullptr;

enum Draws { kByThread, kYes, kNo };
thread_local Draws draws = kByThread;

// Frees one block if the pool has more than `kept`.
bool FreeBlockAbove(size_t kept) {
  const std::lock_guard<std::mutex> hold(poolMutex);
  if (poolSize <= kept) return false;
  Block* block = pool;
  pool = block->next;
  --poolSize;
  ::operator delete(block);
  return true;
}

void OnFailedAllocation() {
  const bool mayDraw = draws == kByThread ? !ZylIsScriptThread() : draws == kYes;
  if (mayDraw && FreeBlockAbove(0)) return;
  std::new_handler previous;
  {
    const std::lock_guard<std::mutex> hold(poolMutex);
    previous = previousHandler;
  }
  if (previous == nullptr) throw std::bad_alloc();
  previous();
}

// Changes the number of reserves and returns how many blocks the pool lacks.
size_t CountReserves(size_t added) {
  const std::lock_guard<std::mutex> hold(poolMutex);
  reserves += added;
  const size_t wanted = reserves * ZylMemoryReserve::kBlocks;
  return wanted > poolSize ? wanted - poolSize : 0;
}

void DropReserve() {
  size_t kept;
  {
    const std::lock_guard<std::mutex> hold(poolMutex);
    kept = --reserves * ZylMemoryReserve::kBlocks;
  }
  while (FreeBlockAbove(kept)) {
  }
}

// The library is not unloaded before the process ends, so the handler stays.
void InstallHandler() {
  const std::lock_guard<std::mutex> hold(poolMutex);
  static bool installed = false;
  if (!installed) previousHandler = std::set_new_handler(OnFailedAllocation);
  installed = true;
}

}  // namespace

ZylMemoryReserve::ZylMemoryReserve() {
  InstallHandler();
  const ZylReserveDraw draw(false);
  try {
    for (size_t missing = CountReserves(1); missing > 0; --missing) {
      void* memory = ::operator new(kBlockBytes);
      const std::lock_guard<std::mutex> hold(poolMutex);
      pool = new (memory) Block{pool};
      ++poolSize;
    }
  } catch (...) {
    DropReserve();
    throw;
  }
}
ZylMemoryReserve::~ZylMemoryReserve() { DropReserve(); }

ZylReserveDraw::ZylReserveDraw(bool mayDraw) noexcept : before_(draws) {
  draws = mayDraw ? kYes : kNo;
}
ZylReserveDraw::~ZylReserveDraw() { draws = static_cast<Draws>(before_); }
