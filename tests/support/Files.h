// Files and temporary folders for tests.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace zyl::test {

template <class Bytes = std::string>
Bytes ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(file), {});
}
// Creates a new file: some file systems flush a file that is overwritten.
inline void WriteBytes(const std::string& path, std::string_view bytes) {
  std::filesystem::remove(path);
  std::ofstream(path, std::ios::binary) << bytes;
}
inline void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
  WriteBytes(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

// Removed with this object. In memory if possible, because the tests flush thousands of files.
class TempFolder {
 public:
  TempFolder() {
    const std::filesystem::path inMemory = "/dev/shm";
    const auto base =
        std::filesystem::is_directory(inMemory) ? inMemory : std::filesystem::temp_directory_path();
    std::string name = (base / "zyl-test-XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr) path_ = name;
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string File(const std::string& name) const { return path_ + "/" + name; }
  size_t EntryCount() const {
    const std::filesystem::directory_iterator entries(path_);
    return static_cast<size_t>(std::distance(begin(entries), end(entries)));
  }

 private:
  std::string path_;
};

}  // namespace zyl::test
