// Reads and writes program files: little-endian chunks, the last one a checksum
// (docs/program-file.md).
#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "../akai.h"
#include "../base.h"
#include "../platform/AtomicFile.h"
#include "../platform/InputFile.h"
#include "../platform/Platform.h"
#include "../qx.h"
#include "../riff/Presets.h"
#include "ProgramStore.h"
#include "SampleFile.h"

namespace {

namespace fs = std::filesystem;

constexpr char kMagic[] = "ZYLP";
constexpr uint16_t kVersion = 1;  // readers reject later versions
constexpr size_t kChunkHeadBytes = 4 + 4;
constexpr uint32_t kMaxFileBytes = 1u << 30;

// CRC-32 as in IEEE 802.3, with the reflected polynomial 0xEDB88320.
uint32_t Checksum(const std::byte* bytes, size_t count) {
  static const auto table = [] {
    std::array<uint32_t, 256> made{};
    for (uint32_t i = 0; i < made.size(); ++i) {
      uint32_t value = i;
      for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ ((value & 1) != 0 ? 0xEDB88320u : 0);
      made[i] = value;
    }
    return made;
  }();
  uint32_t sum = 0xFFFFFFFFu;
  for (size_t i = 0; i < count; ++i) {
    sum = table[(sum ^ std::to_integer<uint32_t>(bytes[i])) & 0xFF] ^ sum >> 8;
  }
  return ~sum;
}

// The path of a zone's sample in three forms: as given in the program, relative to the program
// file, and absolute. The last two may be empty.
struct ZonePath {
  uint32_t entry = 0;  // keygroup * 4 + zone
  int32_t channel = 0;
  std::string given;
  std::string relative;
  std::string absolute;
};

// ---- Writing ----

void AddChunk(MemInterpreter& image, const char* id, const void* bytes, size_t size) {
  image.AddBlock(id, 4);
  image.AddDWORD(static_cast<uint32_t>(size));
  image.AddBlock(bytes, size);
}

void AddText(MemInterpreter& image, const std::string& text) {
  image.AddDWORD(static_cast<uint32_t>(text.size()));
  image.AddBlock(text.data(), text.size());
}

// Returns an empty path if `samplePath` exceeds kMaxPathBytes.
std::string RelativeTo(const std::string& programPath, const std::string& samplePath) {
  if (samplePath.size() > zyl::kMaxPathBytes) return {};
  const fs::path folder = fs::path(zyl::AbsolutePath(programPath)).parent_path();
  return fs::path(zyl::AbsolutePath(samplePath)).lexically_relative(folder).generic_string();
}

std::vector<ZonePath> ZonePaths(const akaiProgram& program, const std::string& programPath,
                                int mode) {
  std::vector<ZonePath> all;
  for (int i = 0; i < kZones * program.AllocatedKeyGroups(); ++i) {
    const vendlKeyGroup& extension = program.keyGroupExtensions[i / kZones];
    const char* given = extension.SamplePath(i % kZones);
    if (given == nullptr) continue;
    const genericSample* sample = program.sampleTable[i];
    ZonePath path;
    path.entry = static_cast<uint32_t>(i);
    path.channel = sample == nullptr ? extension.pathChannel[i % kZones] : sample->channel;
    path.given = given;
    const bool neither = (mode & (kWriteRelativePaths | kWriteAbsolutePaths)) == 0;
    const std::string& moved = extension.movedPath[i % kZones];
    if ((mode & kWriteRelativePaths) != 0) {
      path.relative = RelativeTo(programPath, moved.empty() ? given : moved);
    }
    if ((mode & kWriteAbsolutePaths) != 0 || neither) path.absolute = zyl::AbsolutePath(given);
    all.push_back(std::move(path));
  }
  return all;
}

}  // namespace

namespace zyl {

std::vector<std::byte> ProgramImage(const akaiProgram& program, const std::string& path, int mode) {
  MemInterpreter image;
  image.PrepareWrite(4096);
  image.AddBlock(kMagic, 4);
  image.AddWORD(kVersion);
  image.AddWORD(0);
  AddChunk(image, "HEAD", static_cast<const akaiProgramHdrImage*>(&program),
           sizeof(akaiProgramHdrImage));
  const int count = program.AllocatedKeyGroups();
  AddChunk(image, "KGRP", program.keyGroupArray, sizeof(akaiKeyGroup) * static_cast<size_t>(count));
  MemInterpreter extensions;
  MemInterpreter paths;
  for (int k = 0; k < count; ++k) {
    const vendlKeyGroupImage& extension = program.keyGroupExtensions[k];
    extensions.AddBlock(&extension, sizeof(extension));
  }
  for (const ZonePath& zone : ZonePaths(program, path, mode)) {
    paths.AddDWORD(zone.entry);
    paths.AddDWORD(static_cast<uint32_t>(zone.channel));
    AddText(paths, zone.given);
    AddText(paths, zone.relative);
    AddText(paths, zone.absolute);
  }
  AddChunk(image, "KEXT", extensions.Image().data(), extensions.Image().size());
  AddChunk(image, "PATH", paths.Image().data(), paths.Image().size());
  if (program.IsTolmoChunk()) {
    AddChunk(image, "TOLM", program.tolmoChunk.get(), sizeof(TolmoChunk));
  }
  for (const ListChunk& chunk : ProgramStore::OtherChunks(&program)) {
    AddChunk(image, chunk.id, chunk.data.data(), chunk.data.size());
  }
  MemInterpreter sum;
  sum.AddDWORD(Checksum(image.Image().data(), image.Image().size()));
  AddChunk(image, "CSUM", sum.Image().data(), sum.Image().size());
  return image.Image();
}

}  // namespace zyl

namespace {

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

// ---- Reading ----

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

constexpr std::string_view kKnownChunks[] = {"HEAD", "KGRP", "KEXT", "PATH", "TOLM"};

struct ProgramChunks {
  std::map<std::string, std::vector<std::byte>, std::less<>> known;
  std::vector<ListChunk> others;
};

bool SplitChunks(std::span<const std::byte> bytes, ProgramChunks& chunks, std::string& reason) {
  MemInterpreter image(bytes.data(), bytes.size());
  char magic[4] = {};
  image.GetBlock(magic, 4);
  if (!image.Good() || std::memcmp(magic, kMagic, 4) != 0) {
    reason = "is not a program file";
    return false;
  }
  const int version = image.GetWORD();
  image.GetWORD();
  if (version > kVersion) {
    reason = "was written by a later version (format " + std::to_string(version) + ")";
    return false;
  }
  while (image.Remaining() >= kChunkHeadBytes) {
    const size_t at = bytes.size() - image.Remaining();
    char idBytes[4] = {};
    image.GetBlock(idBytes, 4);
    const std::string_view id(idBytes, 4);
    std::vector<std::byte> data;
    const uint32_t size = image.GetDWORD();
    if (size > image.Remaining()) break;
    data.resize(size);
    if (size > 0) image.GetBlock(data.data(), size);
    if (id == "CSUM") {
      MemInterpreter sum(data.data(), data.size());
      if (sum.GetDWORD() == Checksum(bytes.data(), at) && sum.Good() && image.Remaining() == 0) {
        return true;
      }
      break;
    }
    if (std::ranges::find(kKnownChunks, id) != std::end(kKnownChunks)) {
      if (!chunks.known.emplace(id, std::move(data)).second) {
        reason = "is damaged: its chunk " + std::string(id) + " is duplicated";
        return false;
      }
    } else {
      ListChunk other;
      std::memcpy(other.id, idBytes, 4);
      other.data = std::move(data);
      chunks.others.push_back(std::move(other));
    }
  }
  reason = "is damaged: its checksum does not match";
  return false;
}

bool GetText(MemInterpreter& image, std::string& text) {
  const uint32_t size = image.GetDWORD();
  if (!image.Good() || size > image.Remaining()) return false;
  text.resize(size);
  return image.GetBlock(text.data(), size);
}

bool ReadZonePaths(const std::vector<std::byte>& data, size_t zones, std::vector<ZonePath>& all) {
  MemInterpreter image(data.data(), data.size());
  while (image.Remaining() > 0) {
    ZonePath zone;
    zone.entry = image.GetDWORD();
    zone.channel = static_cast<int32_t>(image.GetDWORD());
    if (!GetText(image, zone.given) || !GetText(image, zone.relative) ||
        !GetText(image, zone.absolute) || zone.entry >= zones || all.size() == zones) {
      return false;
    }
    all.push_back(std::move(zone));
  }
  return true;
}

// Resolves the stored relative path against the current folder of the program file; empty if none
// is stored.
std::string MovedPath(const ZonePath& zone, const std::string& programPath) {
  if (zone.relative.empty() || zone.relative.size() > zyl::kMaxPathBytes) return {};
  const fs::path folder = fs::path(zyl::AbsolutePath(programPath)).parent_path();
  return (folder / zone.relative).lexically_normal().string();
}

// Returns the path of a zone's sample: the file at the relative path, else the file at the absolute
// path. Returns the given path if neither exists or if it refers to the file found.
std::string ResolvePath(const ZonePath& zone, const std::string& moved) {
  std::string found = moved;
  if (found.empty() || !zyl::FileExists(found)) {
    const std::string fallback = zone.absolute.empty() ? zone.given : zone.absolute;
    if (!zyl::FileExists(fallback)) return zone.given;
    found = fallback;
  }
  return zyl::AbsolutePath(zone.given) == zyl::AbsolutePath(found) ? zone.given : found;
}

bool BuildProgram(akaiProgram* program, const ProgramChunks& chunks, std::vector<ZonePath>& paths,
                  std::string& reason) {
  const auto chunk = [&](const char* id) -> const std::vector<std::byte>& {
    static const std::vector<std::byte> none;
    const auto found = chunks.known.find(id);
    return found == chunks.known.end() ? none : found->second;
  };
  const size_t count = chunk("KGRP").size() / sizeof(akaiKeyGroup);
  const bool organ = !chunk("TOLM").empty();
  if (chunk("HEAD").size() != sizeof(akaiProgramHdrImage) ||
      (organ && chunk("TOLM").size() != sizeof(TolmoChunk)) ||
      chunk("KGRP").size() != count * sizeof(akaiKeyGroup) ||
      chunk("KEXT").size() != count * sizeof(vendlKeyGroupImage) ||
      !ReadZonePaths(chunk("PATH"), count * kZones, paths)) {
    reason = "is damaged: its chunks are inconsistent";
    return false;
  }
  std::vector<akaiKeyGroup> keygroups(count);
  std::vector<vendlKeyGroup> extensions(count);
  if (count > 0) std::memcpy(keygroups.data(), chunk("KGRP").data(), chunk("KGRP").size());
  for (size_t k = 0; k < count; ++k) {
    vendlKeyGroupImage& image = extensions[k];
    std::memcpy(&image, chunk("KEXT").data() + k * sizeof(image), sizeof(image));
  }
  akaiProgramHdrImage& header = *program;
  std::memcpy(&header, chunk("HEAD").data(), sizeof(header));
  program->lockCount = 0;  // the stored count belongs to the program that was written
  ProgramStore::Fill(program, std::move(keygroups), std::move(extensions), chunks.others);
  if (organ) {
    program->EnableTolmoChunk();
    std::memcpy(program->tolmoChunk.get(), chunk("TOLM").data(), sizeof(TolmoChunk));
  }
  return true;
}

void AttachSamples(akaiProgram* program, const std::vector<ZonePath>& paths,
                   const std::string& programPath, bool load) {
  for (const ZonePath& zone : paths) {
    const int keygroup = static_cast<int>(zone.entry) / kZones;
    const int place = static_cast<int>(zone.entry) % kZones;
    const std::string moved = MovedPath(zone, programPath);
    const std::string path = ResolvePath(zone, moved);
    if (load) {
      if (program->setSample(path.c_str(), keygroup, place, zone.channel, 0)) continue;
      ZylDiagnostic(programPath + ": the sample of keygroup " + std::to_string(keygroup) +
                    ", zone " + std::to_string(place) + " could not be loaded: " + path);
    }
    vendlKeyGroup& extension = program->keyGroupExtensions[keygroup];
    extension.setSamplePath(place, path.c_str(), false);
    extension.pathChannel[place] = zone.channel;
    if (moved != zyl::AbsolutePath(path)) extension.movedPath[place] = moved;
  }
}

}  // namespace

namespace zyl {

akaiProgram* ProgramFromImage(std::span<const std::byte> image, const std::string& path,
                              bool loadSamples, std::string& reason) {
  struct Deleter {
    void operator()(akaiProgram* program) const { deleteAkaiProgram(program); }
  };
  ProgramChunks chunks;
  std::vector<ZonePath> paths;
  if (!SplitChunks(image, chunks, reason)) return nullptr;
  std::unique_ptr<akaiProgram, Deleter> program(ProgramStore::Make());
  if (!BuildProgram(program.get(), chunks, paths, reason)) return nullptr;
  program->SetFileName(path);
  AttachSamples(program.get(), paths, path, loadSamples);
  return program.release();
}

}  // namespace zyl

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
