// Reads and writes program files, with the changed samples of their zones.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "../akai.h"
#include "../base.h"
#include "../platform/AtomicFile.h"
#include "../platform/InputFile.h"
#include "../platform/Platform.h"
#include "../riff/Presets.h"
#include "ProgramStore.h"
#include "SampleFile.h"

namespace {

namespace fs = std::filesystem;

constexpr uint32_t kMaxFileBytes = 1u << 30;

bool WriteProgram(const akaiProgram& program, const std::string& path, int mode) {
  const std::vector<std::byte> image = zyl::ProgramImage(program, path, mode);
  if (image.size() > kMaxFileBytes) {
    ZylDiagnostic(path + ": the program is too large for a program file");
    return false;
  }
  zyl::AtomicFile file(path);
  file.Write(image.data(), image.size());
  if (file.Commit()) return true;
  ZylDiagnostic(file.Error());
  return false;
}

// Makes a file name from a sample's name: without path separators and short enough for every file
// system.
std::string FileStem(std::string name) {
  constexpr size_t kMaxBytes = 200;
  size_t length = std::min(name.size(), kMaxBytes);
  while (length > 0 && length < name.size() && (name[length] & 0xC0) == 0x80) --length;
  name.resize(length);
  for (char& c : name) {
    if (c == '/' || c == '\\' || c == ':' || c == '\0') c = '_';
  }
  return name;
}

// Whether writing the program to `path` would replace the file of one of its samples.
bool IsFileOfOwnSample(const akaiProgram& program, const std::string& path) {
  for (int i = 0; i < kZones * program.AllocatedKeyGroups(); ++i) {
    const char* zonePath = program.keyGroupExtensions[i / kZones].SamplePath(i % kZones);
    if (zonePath != nullptr && zyl::IsSameFile(zonePath, path)) return true;
    const genericSample* sample = program.sampleTable[i];
    const char* filePath = sample == nullptr ? nullptr : sample->filePath;
    if (filePath != nullptr && zyl::IsSameFile(filePath, path)) return true;
  }
  return false;
}

// Returns an unused path in the program file's folder, other than the program's own path.
std::string FreePathBeside(const std::string& programPath, const std::string& name) {
  const fs::path folder = fs::path(zyl::AbsolutePath(programPath)).parent_path();
  const std::string stem =
      FileStem(name.empty() ? FileString(programPath).BaseName() + " sample" : name);
  fs::path path = folder / (stem + ".wav");
  std::error_code failed;
  for (int n = 2;
       fs::exists(fs::symlink_status(path, failed)) || zyl::IsSameFile(path.string(), programPath);
       ++n) {
    path = folder / (stem + " " + std::to_string(n) + ".wav");
  }
  return path.string();
}

// Stores the changed samples of a program. Samples without a file, or from a format that can't be
// written, are stored as WAVE files in the program's folder, and their zones get the new path.
bool WriteChangedSamples(akaiProgram& program, const std::string& programPath) {
  bool all = true;
  std::set<const zyl::SampleFile*> seen;
  for (int i = 0; i < kZones * program.AllocatedKeyGroups(); ++i) {
    genericSample* sample = program.sampleTable[i];
    if (sample == nullptr || !sample->shared().dirty) continue;
    if (!seen.insert(zyl::SampleFile::Of(sample)).second) continue;
    if (sample->filePath != nullptr && zyl::CanStoreAs(sample->filePath)) {
      all = writeSample(sample, sample->filePath, 0) && all;
      continue;
    }
    const std::string path =
        FreePathBeside(programPath, sample->name == nullptr ? "" : sample->name);
    if (!writeSample(sample, path.c_str(), 0)) {
      all = false;
      continue;
    }
    sample->setFilePath(path);
    sample->shared().dirty = false;
    ZylDiagnostic("stored the changed sample of keygroup " + std::to_string(i / kZones) +
                  ", zone " + std::to_string(i % kZones) + " in " + path);
  }
  return all;
}

bool ReadWhole(const std::string& path, std::vector<std::byte>& bytes, std::string& reason) {
  const zyl::InputFile file(path);
  if (!file.Good()) {
    reason = file.Error();
    return false;
  }
  if (file.Size() > kMaxFileBytes) {
    reason = "is too large for a program file";
    return false;
  }
  bytes.resize(static_cast<size_t>(file.Size()));
  if (file.ReadAt(0, bytes.data(), bytes.size()) != bytes.size()) {
    reason = "could not be read completely";
    return false;
  }
  return true;
}

}  // namespace

akaiProgram* readAkaiProgram(int, const char* path, int loadSamples) {
  std::string reason;
  try {
    std::vector<std::byte> bytes;
    const std::string programPath = path == nullptr ? "" : path;
    akaiProgram* program = nullptr;
    if (ReadWhole(programPath, bytes, reason)) {
      program = zyl::ProgramFromImage(bytes, programPath, loadSamples != 0, reason);
    }
    if (program == nullptr) ZylDiagnostic(programPath + ": " + reason);
    return program;
  } catch (const std::bad_alloc&) {
    ZylDiagnostic("not enough memory to read the program");
    return nullptr;
  }
}

int writeAkaiProgram(akaiProgram* program, int, const char* path, int mode) {
  if (program == nullptr || path == nullptr || *path == '\0') {
    ZylDiagnostic("cannot write the program: no file name is given");
    return 0;
  }
  try {
    if (IsFileOfOwnSample(*program, path)) {
      ZylDiagnostic(std::string(path) + ": is the file of one of the program's samples");
      return 0;
    }
    // Samples first: they may get new paths, which the program file must contain.
    const bool samples = (mode & kWriteSamples) == 0 || WriteChangedSamples(*program, path);
    return WriteProgram(*program, path, mode) && samples ? 1 : 0;
  } catch (const std::bad_alloc&) {
    ZylDiagnostic("not enough memory to write the program");
    return 0;
  }
}

char* createPresetArray(const char* path, int& count) {
  count = 0;
  std::optional<std::vector<ZylPreset>> presets;
  try {
    presets = zyl::ReadPresets(path == nullptr ? "" : path);
  } catch (const std::bad_alloc&) {
    // Handled like an unreadable file.
  }
  constexpr size_t kEntry = 21;
  if (!presets) return nullptr;
  const size_t bytes = kEntry * presets->size() + 1;
  auto* block = static_cast<char*>(::operator new(bytes, std::nothrow));
  if (block == nullptr) return nullptr;
  std::memset(block, 0, bytes);
  for (const ZylPreset& preset : *presets) {
    std::copy_n(preset.name.data(), std::min(preset.name.size(), kEntry - 1),
                block + kEntry * static_cast<size_t>(count));
    ++count;
  }
  return block;
}
