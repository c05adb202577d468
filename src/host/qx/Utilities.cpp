#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <map>
#include <mutex>
#include <string_view>

#include "../platform/Platform.h"
#include "../qx.h"

qxPlex* qxPlex::Create(qxPlex*& chain, unsigned count, unsigned nodeSize) {
  void* memory = ::operator new (sizeof(qxPlex) + size_t{count} * nodeSize);
  auto* block = new (memory) qxPlex{chain};
  chain = block;
  return block;
}

void qxPlex::FreeDataChain(qxPlex*& chain) {
  while (chain != nullptr) {
    qxPlex* next = chain->next;
    ::operator delete(chain);
    chain = next;
  }
}

namespace {

std::string& ProfilePath() {
  static std::string path;
  return path;
}

std::string_view Trimmed(std::string_view text) {
  const auto space = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
  while (!text.empty() && space(text.front())) text.remove_prefix(1);
  while (!text.empty() && space(text.back())) text.remove_suffix(1);
  return text;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) ==
           std::tolower(static_cast<unsigned char>(y));
  });
}

int32_t ClampToInt(uint64_t bytes) {
  return static_cast<int32_t>(std::min<uint64_t>(bytes, INT32_MAX));
}

}  // namespace

void qxSetProfile(const std::string& path) { ProfilePath() = path; }

int32_t qxGetPrivateProfileLong(const char* section, const char* key, int32_t defaultValue,
                                const char* file) {
  std::ifstream profile(file == nullptr ? ProfilePath() : file);
  bool inSection = false;
  for (std::string text; std::getline(profile, text);) {
    const std::string_view line = Trimmed(text);
    if (line.empty() || line.front() == ';' || line.front() == '#') continue;
    if (line.front() == '[') {
      inSection = line.back() == ']' &&
                  EqualsIgnoringCase(Trimmed(line.substr(1, line.size() - 2)), section);
      continue;
    }
    const size_t equals = line.find('=');
    if (!inSection || equals == std::string_view::npos) continue;
    if (!EqualsIgnoringCase(Trimmed(line.substr(0, equals)), key)) continue;
    const std::string value(Trimmed(line.substr(equals + 1)));
    char* end = nullptr;
    const long number = std::strtol(value.c_str(), &end, 10);
    return end == value.c_str()
               ? defaultValue
               : static_cast<int32_t>(std::clamp<long>(number, INT32_MIN, INT32_MAX));
  }
  return defaultValue;
}

int64_t qxGetPhysicalMemoryBytes() { return static_cast<int64_t>(zyl::PhysicalMemoryBytes()); }
int32_t qxGetTotalPhysicalMemory() { return ClampToInt(zyl::PhysicalMemoryBytes()); }
int32_t qxGetLockedMemory() { return ClampToInt(zyl::LockedMemoryBytes()); }

namespace {

struct Buffer {
  const std::byte* address;
  size_t bytes;
};
std::mutex buffersMutex;
std::map<uint32_t, Buffer> buffers;
uint32_t lastHandle = 0;

}  // namespace

int32_t qxBufferHandle(const void* buffer, size_t bytes) {
  if (buffer == nullptr) return 0;
  const std::lock_guard<std::mutex> hold(buffersMutex);
  for (auto& [handle, known] : buffers) {
    if (known.address == buffer && known.bytes == bytes) return static_cast<int32_t>(handle);
  }
  // Handles are reused only after 2^31 - 1 others, so a stale handle finds no buffer.
  lastHandle = lastHandle == INT32_MAX ? 1 : lastHandle + 1;
  buffers[lastHandle] = {static_cast<const std::byte*>(buffer), bytes};
  return static_cast<int32_t>(lastHandle);
}

void qxWithdrawBuffer(const void* buffer) {
  const std::lock_guard<std::mutex> hold(buffersMutex);
  std::erase_if(buffers, [&](const auto& entry) { return entry.second.address == buffer; });
}

bool qxBufferBytes(uint32_t handle, size_t bytes, std::string& out, std::string& reason) {
  const std::lock_guard<std::mutex> hold(buffersMutex);
  const auto found = buffers.find(handle);
  if (found == buffers.end()) {
    reason = "no buffer has this handle";
    return false;
  }
  if (bytes > found->second.bytes) {
    reason = "the buffer holds " + std::to_string(found->second.bytes) + " bytes";
    return false;
  }
  out.assign(reinterpret_cast<const char*>(found->second.address), bytes);
  return true;
}
