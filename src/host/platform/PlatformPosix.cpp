#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Platform.h"

namespace zyl {

void* LoadLibraryFile(const std::string& path, std::string& reason) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) reason = dlerror();
  return library;
}

void* FindLibrarySymbol(void* library, const char* name) { return dlsym(library, name); }
void UnloadLibraryFile(void* library) { dlclose(library); }

bool LockPages(const void* address, size_t bytes) { return mlock(address, bytes) == 0; }
void UnlockPages(const void* address, size_t bytes) { munlock(address, bytes); }
size_t PageSize() { return static_cast<size_t>(sysconf(_SC_PAGESIZE)); }

uint64_t PhysicalMemoryBytes() {
  const long pages = sysconf(_SC_PHYS_PAGES);
  return pages < 0 ? 0 : static_cast<uint64_t>(pages) * PageSize();
}

uint64_t LockedMemoryBytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmLck:", 0) == 0) return std::stoull(line.substr(6)) * 1024;
  }
  return 0;
}

std::string AbsolutePath(const std::string& path) {
  if (path.size() > kMaxPathBytes) return path;
  std::error_code failed;
  const auto absolute = std::filesystem::absolute(path, failed);
  return failed ? path : absolute.lexically_normal().string();
}

bool FileExists(const std::string& path) {
  std::error_code failed;
  return std::filesystem::is_regular_file(path, failed) && !failed;
}

bool FollowLinks(std::string& path) {
  constexpr int kMaxLinks = 32;
  constexpr size_t kMaxLinkBytes = 4096;
  for (int depth = 0; depth < kMaxLinks; ++depth) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return true;
    std::string link(kMaxLinkBytes, '\0');
    const ssize_t length = ::readlink(path.c_str(), link.data(), link.size());
    if (length <= 0 || static_cast<size_t>(length) == link.size()) break;
    link.resize(static_cast<size_t>(length));
    path = (std::filesystem::path(path).parent_path() / link).string();
  }
  errno = ELOOP;
  return false;
}

bool IsSameFile(const std::string& first, const std::string& second) {
  if (std::max(first.size(), second.size()) > kMaxPathBytes) return first == second;
  struct stat one {};
  struct stat other {};
  const bool firstExists = ::stat(first.c_str(), &one) == 0;
  const bool secondExists = ::stat(second.c_str(), &other) == 0;
  if (firstExists && secondExists) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
  }
  if (firstExists || secondExists) return false;
  const auto canonical = [](std::string path) {
    std::error_code failed;
    FollowLinks(path);
    const auto found = std::filesystem::weakly_canonical(path, failed);
    return failed ? AbsolutePath(path) : found.string();
  };
  return canonical(first) == canonical(second);
}

std::string TemporaryFolder() {
  std::error_code failed;
  const auto folder = std::filesystem::temp_directory_path(failed);
  return failed ? "/tmp" : folder.string();
}

int ProcessNumber() { return static_cast<int>(getpid()); }

}  // namespace zyl
