// Finds, loads, reloads, locks and stores sample files.
#include <algorithm>
#include <cctype>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "../akai.h"
#include "../base.h"
#include "../platform/Platform.h"
#include "ProgramStore.h"
#include "SampleFile.h"

using zyl::SampleFile;

namespace {

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

SampleFile* ReadFromDisk(const std::string& path, bool data) {
  try {
    std::string reason;
    std::unique_ptr<BasicSample> file = ReadSampleFile(path, data, reason);
    if (!reason.empty()) ZylDiagnostic(path + ": " + reason);
    return file == nullptr ? nullptr : SampleFile::Make(std::move(file), path);
  } catch (const std::bad_alloc&) {
    ZylDiagnostic("there is not enough memory for the sample");
    return nullptr;
  }
}

enum class Container { kNone, kWave, kAiff };

Container ContainerFor(const std::string& path) {
  const std::string extension = LowerCase(FileString(path).Extension());
  if (extension == "wav" || extension == "wave") return Container::kWave;
  if (extension == "aif" || extension == "aiff" || extension == "aifc") return Container::kAiff;
  return Container::kNone;
}

}  // namespace

genericSample* newSample() { return new genericSample; }

int getTypeFromExtension(const char* extension) {
  const std::string lower = LowerCase(extension == nullptr ? "" : extension);
  if (lower == "s") return 1;
  if (lower == "wav") return 2;
  if (lower == "aif") return 3;
  return 0;
}

genericSample* loadSample(const char* path, int data, int, int channel) {
  if (path == nullptr || *path == '\0') return nullptr;
  SampleFile* file = SampleFile::Find(path);
  std::unique_ptr<SampleFile> read;  // released once a record is used
  if (file == nullptr) {
    read.reset(ReadFromDisk(path, data != 0));
    if (read == nullptr) return nullptr;
    file = read.get();
    file->hidden = data == 0;
  }
  genericSample* record = file->Record(channel);
  if (record == nullptr) {
    ZylDiagnostic(std::string(path) + ": there is no channel " + std::to_string(channel));
    return nullptr;
  }
  static_cast<void>(read.release());
  ++record->useCount;
  return record;
}

genericSample* findSampleFN(const char* path, int, int channel) {
  SampleFile* file = path == nullptr ? nullptr : SampleFile::Find(path);
  return file == nullptr ? nullptr : file->Record(channel);
}

genericSample* findSampleInPrgFN(const char* fileName, akaiProgram* program, int channel) {
  if (fileName == nullptr || program == nullptr) return nullptr;
  const std::string wanted = fileName;
  const int entries = kZones * program->KeyGroupCount();
  const auto find = [&](auto matches) -> genericSample* {
    for (int i = 0; i < entries; ++i) {
      genericSample* sample = program->sampleTable[i];
      if (sample == nullptr || sample->filePath == nullptr) continue;
      if (channel >= 0 && sample->channel != channel) continue;
      if (matches(sample->filePath)) return sample;
    }
    return nullptr;
  };
  genericSample* found = find([&](const char* path) { return wanted == path; });
  if (found == nullptr) {
    found = find([&](const char* path) { return wanted == FileString(path).FileName(); });
  }
  if (found == nullptr) {
    found = find([&](const char* path) { return wanted == FileString(path).BaseName(); });
  }
  return found;
}

bool reloadSample(const char* path) {
  SampleFile* old = path == nullptr ? nullptr : SampleFile::Find(path);
  if (old == nullptr) return false;
  std::unique_ptr<SampleFile> fresh(ReadFromDisk(path, true));
  if (fresh == nullptr) return false;
  struct Zone {
    akaiProgram* program;
    genericSample** place;
    genericSample* record;
  };
  std::vector<Zone> zones;
  for (akaiProgram* program : zyl::AllPrograms()) {
    for (int i = 0; i < kZones * program->AllocatedKeyGroups(); ++i) {
      genericSample* sample = program->sampleTable[i];
      if (sample == nullptr || SampleFile::Of(sample) != old) continue;
      genericSample* record = fresh->Record(sample->channel);
      if (record == nullptr) continue;  // fewer channels than before: the zone keeps the old sound
      zones.push_back({program, &program->sampleTable[i], record});
    }
  }
  fresh->SetPath(old->Path());
  // Nothing below throws.
  static_cast<void>(fresh.release());
  old->ForgetPath();
  for (Zone& zone : zones) {
    ++zone.record->useCount;
    if (zone.program->lockCount != 0) {
      lockSample(zone.record);
      unlockSample(*zone.place);
    }
    std::swap(*zone.place, zone.record);
  }
  // Last: the old file is deleted with its last use.
  for (const Zone& zone : zones) zone.record->deleteSample();
  return true;
}

void dropUnusedSample(const char* path) {
  SampleFile* file = path == nullptr ? nullptr : SampleFile::Find(path);
  if (file != nullptr && !file->IsUsed()) delete file;
}

int lockSample(genericSample* sample) {
  ++sample->lockValue;
  sample->memLocked = 1;
  SampleFile::Of(sample)->CountLock(sample, +1);
  return sample->lockValue;
}

void unlockSample(genericSample* sample) {
  if (sample->lockValue == 0) return;
  --sample->lockValue;
  sample->memLocked = sample->lockValue != 0 ? 1 : 0;
  SampleFile::Of(sample)->CountLock(sample, -1);
}

bool writeSample(genericSample* sample, const char* path, int channelMask) {
  if (sample == nullptr || path == nullptr || *path == '\0') return false;
  SampleFile* file = SampleFile::Of(sample);
  std::string reason;
  try {
    const bool whole = channelMask == 0 && !file->Path().empty() &&
                       zyl::AbsolutePath(file->Path()) == zyl::AbsolutePath(path);
    if (file->WriteTo(path, channelMask, reason)) {
      if (whole) file->parameters.dirty = false;
      return true;
    }
    ZylDiagnostic(reason);
  } catch (const std::bad_alloc&) {
    ZylDiagnostic("not enough memory to store the sample");
  }
  return false;
}

namespace zyl {

bool CanStoreAs(const std::string& path) { return ContainerFor(path) != Container::kNone; }

void SampleFile::CopyParametersTo(BasicSample& file) const {
  RiffParameters& to = file.parameters;
  to.rateHz = parameters.sampleRate;
  to.key = parameters.key;
  to.tune = parameters.tune;
  to.playbackType = parameters.playbackType;
  to.holdLoopTuneOff = parameters.holdLoopTuneOff;
  to.start = parameters.start;
  to.end = parameters.end;
  to.loops.clear();
  for (uint32_t i = 0; i < std::min<uint32_t>(parameters.loopCount, kMaxLoops); ++i) {
    const genericLoop& loop = parameters.loops[i];
    to.loops.push_back({static_cast<uint32_t>(std::max(loop.loopStart, 0)),
                        static_cast<uint32_t>(std::max(loop.loopEnd, 0)), loop.loopFineLen,
                        static_cast<uint32_t>(std::max(loop.loopTimes, 0)), loop.loopType});
  }
  file.SetBitsPerValue(parameters.bits);
}

bool SampleFile::WriteTo(const std::string& path, int channelMask, std::string& reason) {
  const Container kind = ContainerFor(path);
  if (kind == Container::kNone) {
    reason = path + ": samples can only be stored as .wav or .aif";
    return false;
  }
  std::unique_ptr<BasicSample> made;
  BasicSample* file = container_.get();
  // A file whose format doesn't match its extension keeps its format when stored to its own path.
  const bool ownName = file != nullptr && AbsolutePath(path) == absolutePath_;
  std::vector<unsigned> selected;
  for (unsigned c = 0; c < blocks_.size(); ++c) {
    if (channelMask == 0 || (static_cast<unsigned>(channelMask) >> c & 1u) != 0) {
      selected.push_back(c);
    }
  }
  if (selected.empty()) {
    reason = path + ": the channel mask selects no channel of the sample";
    return false;
  }
  const bool sameKind = kind == Container::kWave ? dynamic_cast<WavSample*>(file) != nullptr
                                                 : dynamic_cast<AifSample*>(file) != nullptr;
  if (!sameKind && !ownName) {
    if (kind == Container::kWave) {
      made = std::make_unique<WavSample>();
    } else {
      made = std::make_unique<AifSample>();
    }
    file = made.get();
  }
  CopyParametersTo(*file);
  file->SetName(titled_ ? name_.c_str() : "");
  file->SetChannelCount(static_cast<unsigned>(selected.size()));
  // Remove the lent buffers from the file object on every exit path.
  const std::unique_ptr<BasicSample, void (*)(BasicSample*)> lent(
      file, [](BasicSample* borrower) { borrower->DetachLinBuffers(); });
  std::byte empty[1];  // channels of an empty sample have no blocks
  for (unsigned i = 0; i < selected.size(); ++i) {
    std::byte* block = blocks_[selected[i]].get();
    file->SetLinBuffer(parameters.frameCount == 0 ? empty : block,
                       static_cast<unsigned>(BytesPerValue()),
                       static_cast<unsigned>(parameters.frameCount), i);
  }
  if (!file->CreateInterleavedBuffer() || !file->IsValid()) {
    reason = path + ": the sample is too large for this file format";
    return false;
  }
  RiffFile target(path, file->FormatFlag());
  if (file->Write(target) && target.Close()) return true;
  reason = target.Error();
  return false;
}

}  // namespace zyl
