// The contents of program files: little-endian chunks, the last one a checksum
// (docs/program-file.md).
#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "../akai.h"
#include "../base.h"
#include "../platform/Platform.h"
#include "../qx.h"
#include "ProgramStore.h"

namespace {

namespace fs = std::filesystem;

constexpr char kMagic[] = "ZYLP";
constexpr uint16_t kVersion = 1;  // readers reject later versions
constexpr size_t kChunkHeadBytes = 4 + 4;

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

// ---- Reading ----

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
