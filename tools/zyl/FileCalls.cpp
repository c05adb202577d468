#include "FileCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include "Errors.h"
#include "host/hostapp.h"
#include "host/qx.h"

namespace zyl {

namespace {

namespace fs = std::filesystem;

// Returns nil and the reason to the script.
int Refuse(lua_State* L, std::string_view reason) {
  lua_pushnil(L);
  lua_pushlstring(L, reason.data(), reason.size());
  return 2;
}

int RefuseWithErrno(lua_State* L) { return Refuse(L, std::strerror(errno)); }

int Accept(lua_State* L) {
  lua_pushboolean(L, 1);
  return 1;
}

const char* TypeName(mode_t mode) {
  return S_ISREG(mode) ? "file" : S_ISDIR(mode) ? "folder" : "other";
}

int FileType(lua_State* L) {
  struct stat status {};
  if (::stat(CheckPath(L, 1), &status) != 0) return RefuseWithErrno(L);
  lua_pushstring(L, TypeName(status.st_mode));
  return 1;
}

int FileInfo(lua_State* L) {
  struct stat status {};
  if (::stat(CheckPath(L, 1), &status) != 0) return RefuseWithErrno(L);
  lua_createtable(L, 0, 4);
  lua_pushstring(L, TypeName(status.st_mode));
  lua_setfield(L, -2, "type");
  lua_pushinteger(L, status.st_size);
  lua_setfield(L, -2, "size");
  lua_pushinteger(L, status.st_mode & 07777);
  lua_setfield(L, -2, "mode");
  lua_pushinteger(L, lua_Integer{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec);
  lua_setfield(L, -2, "modified");
  return 1;
}

int AbsolutePath(lua_State* L) {
  std::error_code failure;
  const fs::path path = fs::weakly_canonical(fs::absolute(CheckPath(L, 1), failure), failure);
  if (failure) return Refuse(L, failure.message());
  lua_pushlstring(L, path.native().data(), path.native().size());
  return 1;
}

int WriteFile(lua_State* L) {
  size_t length = 0;
  const char* bytes = luaL_checklstring(L, 2, &length);
  std::string reason;
  return ZylWriteFile(CheckPath(L, 1), {bytes, length}, reason) ? Accept(L) : Refuse(L, reason);
}

bool WriteThrough(int file, const char* bytes, size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(file, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<size_t>(written);
  }
  return true;
}

int AppendFile(lua_State* L) {
  size_t length = 0;
  const char* path = CheckPath(L, 1);
  const char* bytes = luaL_checklstring(L, 2, &length);
  const int file = ::open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  if (file < 0) return RefuseWithErrno(L);
  const bool good = WriteThrough(file, bytes, length) && ::fdatasync(file) == 0;
  const int error = errno;
  const bool closed = ::close(file) == 0;
  if (!good) errno = error;
  return good && closed ? Accept(L) : RefuseWithErrno(L);
}

// A hard link needs no copy, but shares later changes with all names of the file. So a file that
// already has several is copied.
bool LinkInstead(const char* from, const char* to) {
  struct stat status {};
  return ::lstat(from, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
         ::link(from, to) == 0;
}

int CopyFile(lua_State* L) {
  const std::string from = CheckPath(L, 1);
  const std::string to = CheckPath(L, 2);
  if (lua_toboolean(L, 3) != 0 && LinkInstead(from.c_str(), to.c_str())) return Accept(L);
  std::error_code failure;
  if (!fs::is_regular_file(from, failure)) {
    return Refuse(L, failure ? failure.message() : "is not a regular file");
  }
  std::string reason;
  const auto copy = [&](const std::string& temporary) {
    fs::copy_file(from, temporary, fs::copy_options::overwrite_existing, failure);
    if (!failure) fs::permissions(temporary, fs::status(from).permissions(), failure);
    if (!failure) fs::last_write_time(temporary, fs::last_write_time(from), failure);
    return !failure;
  };
  if (qxReplaceFile(to, copy, reason)) return Accept(L);
  return Refuse(L, failure ? failure.message() : reason);
}

// replaceFile(path, write): calls write(temporary) to store the new content. An error of `write`
// removes the temporary file on its way up.
int ReplaceFile(lua_State* L) {
  const std::string path = CheckPath(L, 1);
  luaL_checktype(L, 2, LUA_TFUNCTION);
  std::string reason;
  std::string refusal;
  const auto write = [&](const std::string& temporary) {
    lua_pushvalue(L, 2);
    lua_pushlstring(L, temporary.data(), temporary.size());
    lua_call(L, 1, 2);
    const bool good = lua_toboolean(L, -2) != 0;
    if (!good && lua_type(L, -1) == LUA_TSTRING) refusal = lua_tostring(L, -1);
    lua_pop(L, 2);
    return good;
  };
  if (qxReplaceFile(path, write, reason)) return Accept(L);
  return Refuse(L, refusal.empty() ? reason : refusal);
}

// Computes the FNV-1a hash, 64 bits, of the content. Sets errno on failure.
bool HashFile(int file, uint64_t& hash) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return false;
  if (!S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return false;
  }
  hash = 14695981039346656037u;
  std::array<unsigned char, 1 << 16> block;
  for (;;) {
    const ssize_t count = ::read(file, block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
      hash = (hash ^ block[i]) * 1099511628211u;
    }
  }
}

int Digest(lua_State* L) {
  const int file = ::open(CheckPath(L, 1), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return RefuseWithErrno(L);
  uint64_t hash = 0;
  const bool good = HashFile(file, hash);
  const int error = errno;
  // Before any call of Lua, which may not return.
  ::close(file);
  errno = error;
  if (!good) return RefuseWithErrno(L);
  std::array<char, 17> text;
  std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(hash));
  lua_pushstring(L, text.data());
  return 1;
}

}  // namespace

const char* CheckPath(lua_State* L, int argument) {
  size_t length = 0;
  const char* path = luaL_checklstring(L, argument, &length);
  luaL_argcheck(L, std::strlen(path) == length, argument, "a path cannot hold a zero byte");
  return path;
}

void AddFileCalls(lua_State* L) {
  const luaL_Reg functions[] = {{"fileType", Guarded<FileType>},
                                {"fileInfo", Guarded<FileInfo>},
                                {"absolutePath", Guarded<AbsolutePath>},
                                {"writeFile", Guarded<WriteFile>},
                                {"appendFile", Guarded<AppendFile>},
                                {"copyFile", Guarded<CopyFile>},
                                {"replaceFile", Guarded<ReplaceFile>},
                                {"digest", Guarded<Digest>},
                                {nullptr, nullptr}};
  luaL_setfuncs(L, functions, 0);
}

}  // namespace zyl
