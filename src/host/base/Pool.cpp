#include "Pool.h"

#include <utility>

#include "../hostapp.h"

namespace zyl {

namespace pool {

namespace {
#if defined(__SANITIZE_ADDRESS__)
constexpr size_t kDefaultMaxBytes = 0;  // so that AddressSanitizer detects use after free
#else
constexpr size_t kDefaultMaxBytes = 8u << 20;
#endif
}  // namespace

std::atomic<size_t> maxBytes{kDefaultMaxBytes};
constinit thread_local Store store{};

}  // namespace pool

void LimitFreeBlocks(size_t bytes) noexcept {
  using namespace pool;
  maxBytes = bytes;
  for (Free*& first : store.first) {
    while (first != nullptr) ::operator delete(std::exchange(first, first->next));
  }
  store.bytes = 0;
}

}  // namespace zyl

void ZylLimitFreeBlocks(size_t bytes) { zyl::LimitFreeBlocks(bytes); }
