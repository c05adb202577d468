// Operating system interface, with one source file per system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zyl {

// Loads a shared library. Returns null and sets `reason` on failure.
void* LoadLibraryFile(const std::string& path, std::string& reason);
void* FindLibrarySymbol(void* library, const char* name);
void UnloadLibraryFile(void* library);

// Locks whole pages in memory, or unlocks them. LockPages returns false if the system refuses.
bool LockPages(const void* address, size_t bytes);
void UnlockPages(const void* address, size_t bytes);
size_t PageSize();

uint64_t PhysicalMemoryBytes();
// Bytes that this process has locked in memory.
uint64_t LockedMemoryBytes();

// No system opens longer paths. Functions return them unchanged, because normalising them would
// take excessive time and memory.
inline constexpr size_t kMaxPathBytes = size_t{1} << 15;

// Makes the path absolute and removes "." and ".." lexically, without accessing the file system.
std::string AbsolutePath(const std::string& path);
bool FileExists(const std::string& path);
// Replaces a path that is a symbolic link by its final target, which need not exist. Returns false
// with errno ELOOP if the links form a cycle.
bool FollowLinks(std::string& path);
// Whether both paths refer to the same file, also through symbolic or hard links. If neither
// exists, whether both would create the same file.
bool IsSameFile(const std::string& first, const std::string& second);
std::string TemporaryFolder();
int ProcessNumber();

}  // namespace zyl
