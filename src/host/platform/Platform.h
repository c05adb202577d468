// What differs between systems, one small interface with one source file per system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zyl {

// A loadable library; null with a reason when it cannot be loaded.
void* LoadLibraryFile(const std::string& path, std::string& reason);
void* FindLibrarySymbol(void* library, const char* name);
void UnloadLibraryFile(void* library);

// Calls `last` at the very end of this thread, once for a thread: its start routine has returned by
// then, and what libraries keep for each thread has been cleared up.
void CallAtThreadEnd(void (*last)(void*), void* value);

// Keeps whole pages resident, or lets them go again. False when the system refuses.
bool LockPages(const void* address, size_t bytes);
void UnlockPages(const void* address, size_t bytes);
size_t PageSize();

uint64_t PhysicalMemoryBytes();
// Bytes that this process keeps resident by locks.
uint64_t LockedMemoryBytes();

// No system opens a longer path. Such a text names no file and is kept as it stands: taking it
// apart would cost memory and time beyond all measure.
inline constexpr size_t kMaxPathBytes = size_t{1} << 15;

// The path made absolute and free of "." and ".." without asking for its target.
std::string AbsolutePath(const std::string& path);
bool FileExists(const std::string& path);
// Replaces a path whose last part is a symbolic link by what it leads to, also where no file is
// yet. False with errno ELOOP on a ring of links.
bool FollowLinks(std::string& path);
// Whether both paths lead to one file: by another spelling, a symbolic or a hard link. Where no
// file is yet, whether both would make the same one.
bool IsSameFile(const std::string& first, const std::string& second);
std::string TemporaryFolder();
int ProcessNumber();

}  // namespace zyl
