// Finds, loads, reloads, locks and stores sample files.
#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "../akai.h"
#include "../base.h"
#include "../platform/Platform.h"
#include "../riff/SampleReaders.h"
#include "ProgramStore.h"
#include "SampleFile.h"

using zyl::SampleFile;

namespace {

SampleFile* ReadFromDisk(const std::string& path, bool data) {
  std::string reason;
  std::unique_ptr<BasicSample> file = zyl::ReadSampleOrThrow(path, data, reason);
  if (!reason.empty()) ZylDiagnostic(path + ": " + reason);
  return file == nullptr ? nullptr : SampleFile::Make(std::move(file), path);
}

}  // namespace

genericSample* newSample() { return new genericSample; }

genericSample* loadSample(const char* path, int data, int, int channel) {
  try {
    return zyl::LoadSampleOrThrow(path, data != 0, channel).release();
  } catch (const std::bad_alloc&) {
    ZylDiagnostic("not enough memory for the sample");
    return nullptr;
  }
}

zyl::SampleUse zyl::LoadSampleOrThrow(const char* path, bool data, int channel) {
  if (path == nullptr || *path == '\0') return nullptr;
  SampleFile* file = SampleFile::Find(path);
  std::unique_ptr<SampleFile> read;  // released once a record is in use
  if (file == nullptr) {
    read.reset(ReadFromDisk(path, data));
    if (read == nullptr) return nullptr;
    file = read.get();
    file->hidden = !data;
  }
  genericSample* record = file->Record(channel);
  if (record == nullptr) {
    ZylDiagnostic(std::string(path) + ": there is no channel " + std::to_string(channel));
    return nullptr;
  }
  static_cast<void>(read.release());
  return AddUse(record);
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

namespace zyl {

FileReload::FileReload(const char* path) {
  SampleFile* old = path == nullptr ? nullptr : SampleFile::Find(path);
  if (old == nullptr) return;
  loaded_ = AddUse(old->Record(0));
  SampleFile* fresh = ReadFromDisk(path, true);
  if (fresh == nullptr) return;
  fresh->hidden = true;
  fresh_ = AddUse(fresh->Record(0));
  for (akaiProgram* program : AllPrograms()) {
    for (int i = 0; i < kZones * program->AllocatedKeyGroups(); ++i) {
      const genericSample* sample = program->sampleTable[i];
      if (sample == nullptr || !Replaces(*sample)) continue;
      SampleUse record = Record(sample->channel);
      if (record == nullptr) continue;  // fewer channels than before: the zone keeps the old sound
      zones_.push_back({program, &program->sampleTable[i], std::move(record)});
    }
  }
  fresh->SetPath(old->Path());
}

bool FileReload::Replaces(const genericSample& sample) const {
  return fresh_ != nullptr && SampleFile::Of(&sample) == SampleFile::Of(loaded_.get());
}

SampleUse FileReload::Record(int channel) const {
  const SampleUse& any = fresh_ == nullptr ? loaded_ : fresh_;
  return any == nullptr ? nullptr : AddUse(SampleFile::Of(any.get())->Record(channel));
}

void FileReload::Commit() noexcept {
  if (fresh_ == nullptr) return;
  SampleFile::Of(loaded_.get())->ClearPath();
  SampleFile::Of(fresh_.get())->hidden = false;
  for (Zone& zone : zones_) {
    if (zone.program->lockCount != 0) {
      lockSample(zone.record.get());
      unlockSample(*zone.place);
    }
    genericSample* old = *zone.place;
    *zone.place = zone.record.release();
    zone.record.reset(old);
  }
}

}  // namespace zyl

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
