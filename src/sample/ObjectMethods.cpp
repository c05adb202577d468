#include "sample/ObjectMethods.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "frame/SampleRecords.h"

namespace {

constexpr int32_t kRecordBytes = 560;  // size of a sample record

// Creates an object for a record in `list`, which then owns the object.
CSample* AddObject(SampleList& list, ZylSProgram* parent, zyl::SampleUse record) {
  // Set the parent last, so that an object that fails to enter the list sends no notification.
  auto made = std::make_unique<CSample>(parent, std::move(record));
  made->parentProgram = nullptr;
  list.AddIfAbsent(made.get());
  made->parentProgram = parent;
  return made.release();
}
CSample* AddTemp(zyl::SampleUse record) {
  return AddObject(TempSamples(), nullptr, std::move(record));
}

// Returns the temporary object for a file's channel: the existing one, a new one for a record in
// memory, or, with `load`, a new one for the file, which is read now.
CSample* FindOrMakeTemp(const char* path, int32_t channel, bool load) {
  CSample* known = TempSamples().FindTemp(path, channel);
  if (known != nullptr) {
    if (load) ++known->refCount;
    return known;
  }
  if (genericSample* record = findSampleFN(path, 0, channel)) {
    return AddTemp(zyl::AddUse(record));
  }
  zyl::SampleUse made;
  if (genericSample* whole = findSampleFN(path, 0, -1)) {
    made.reset(whole->createChannelRef(channel));
  } else if (load) {
    made.reset(loadSample(path, 1, 0, channel));
  }
  return made == nullptr ? nullptr : AddTemp(std::move(made));
}

int32_t LockTemp(CSample* temp) {
  if (temp == nullptr) return 0;
  if (temp->locked) return temp->sample->lockValue;
  const int32_t value = lockSample(temp->sample);
  temp->locked = value != 0;
  return value;
}

SampleOrInteger TempSample(const char* path, int32_t channel, const Opt<bool, "Lock">& lock,
                           bool load) {
  CSample* temp = FindOrMakeTemp(path, channel, load);
  if (lock.ValueOr(false)) return LockTemp(temp);
  if (lock && !load) return temp == nullptr ? 0 : temp->sample->recordId;
  return temp;
}

// Returns a shared parameter and stores a new value; a different one dirties sample and program.
template <class Field>
int32_t Accessor(ZylSProgram& object, const SampleArg& sample, Field SampleParameters::*field,
                 const ROCParam* newValue, int32_t stored) {
  SampleParameters& parameters = sample->shared();
  const int32_t before = parameters.*field;
  if (newValue != nullptr) {
    const auto value = static_cast<Field>(stored);
    if (value != before) MarkDirty(object, sample.Record());
    parameters.*field = value;
    sample->updateChannels();
  }
  return before;
}

std::string TextOf(const char* text) { return text == nullptr ? "" : text; }

std::string FileNameOf(const genericSample* record) {
  return FileString(record == nullptr ? "" : TextOf(record->filePath)).FileName();
}

}  // namespace

CSample* SampleObjectFor(ZylSProgram& object, genericSample* record) {
  if (record == nullptr) return nullptr;
  CSample* known = object.sampleObjects.FindBySample(record);
  if (known != nullptr) return known;
  return AddObject(object.sampleObjects, &object, zyl::AddUse(record));
}

CSample* SampleGet(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup, OneZone zone) {
  return SampleObjectFor(object, ZoneSample(program, keygroup, zone));
}

CSample* SampleGetByName(ZylSProgram& object, LoadedProgram program, PathArg<"Name"> name) {
  return SampleObjectFor(object, findSampleInPrgFN(name.Text(), program.record, -1));
}

CSample* CreateTempSample(ZylSProgram&, PathArg<"SamplePath"> path,
                          Opt<int32_t, "Channel"> channel) {
  SampleList& temps = TempSamples();
  if (CSample* known = temps.FindTemp(path.Text(), channel.ValueOr(0))) return known;
  const int type = getTypeFromExtension(FileString(*path).Extension().c_str());
  if (type == 0) return nullptr;
  zyl::SampleUse record(newSample());
  record->create(type, 1);
  record->setFilePath(path.Text());
  return AddTemp(std::move(record));
}

SampleOrInteger GetTempSample(ZylSProgram&, PathArg<"SamplePath"> path,
                              Opt<int32_t, "Channel"> channel, Opt<bool, "Lock"> lock) {
  return TempSample(path.Text(), channel.ValueOr(0), lock, false);
}
SampleOrInteger ReadTempSample(ZylSProgram&, PathArg<"SamplePath"> path,
                               Opt<int32_t, "Channel"> channel, Opt<bool, "Lock"> lock) {
  return TempSample(path.Text(), channel.ValueOr(0), lock, true);
}

void DeleteTempSample(ZylSProgram&, OptionalSample<"Sample"> sample) {
  SampleList& temps = TempSamples();
  if (sample.IsAbsent()) {
    temps.DeleteAll();
  } else if (sample.object != nullptr) {
    temps.RemoveAndRelease(sample.object);
  }
}

bool LockObject(ZylSProgram&, SampleArg sample, Opt<bool, "NewValue"> newValue,
                Opt<int32_t, "TempSample"> temp) {
  const bool before = sample->lockValue != 0;
  if (!newValue) return before;
  if (*newValue) {
    lockSample(sample.Record());
  } else {
    unlockSample(sample.Record());
  }
  if (temp && TempSamples().Contains(sample.object) != nullptr) {
    sample.object->locked = false;
  }
  return before;
}

bool LockZone(ZylSProgram&, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
              Opt<bool, "NewValue"> newValue) {
  const genericSample* record = ZoneSample(program, keygroup, zone);
  const bool before = record != nullptr && record->lockValue != 0;
  if (newValue && *newValue) program->lockSample(*keygroup, *zone);
  if (newValue && !*newValue) program->unlockSample(*keygroup, *zone);
  return before;
}

void SampleReload(ZylSProgram& object, PathArg<"SamplePath"> path) {
  zyl::FileReload reload(path.Text());
  object.sampleObjects.RebindAfterReload(reload);
}

int32_t SampleGetRefCount(ZylSProgram&, SampleArg sample) { return sample->useCount; }

bool SampleDirty(ZylSProgram&, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                 Opt<bool, "NewValue"> newValue) {
  const genericSample* record = ZoneSample(program, keygroup, zone);
  if (record == nullptr) return false;
  if (newValue) record->shared().dirty = *newValue;
  return record->shared().dirty;
}

std::string FileNameOfObject(ZylSProgram& object, OtherSample<"SampleOrKeyGroup"> sample,
                             Opt<std::string, "NewValue">) {
  std::string name = FileNameOf(sample.Record());
  if (sample.Record() == nullptr) object.ReleaseSampleObject(sample.object);
  return name;
}
std::string FileNameOfZone(ZylSProgram&, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                           Opt<std::string, "NewValue">) {
  return FileNameOf(ZoneSample(program, keygroup, zone));
}
std::string FileNameOfNothing(ZylSProgram&, Unused<"SampleOrKeyGroup">,
                              Opt<std::string, "NewValue">) {
  return "";
}

std::string SampleFilePath(ZylSProgram&, SampleArg sample, OptPath<"NewValue"> newValue) {
  std::string before = TextOf(sample->filePath);
  if (newValue) sample->setFilePath(newValue.Text());
  return before;
}

std::string SampleName(ZylSProgram&, SampleArg sample, Opt<std::string, "NewName"> newName) {
  std::string before = TextOf(sample->name);
  if (newName) {
    sample->setName(newName.Text());
    sample->shared().dirty = true;
  }
  return before;
}

int32_t Samplekey(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue) {
  return Accessor(object, sample, &SampleParameters::key, newValue.param,
                  newValue.ValueOr(0) & 0xFF);
}
int32_t SampleplaybackType(ZylSProgram& object, SampleArg sample,
                           Opt<int32_t, "NewValue"> newValue) {
  return Accessor(object, sample, &SampleParameters::playbackType, newValue.param,
                  newValue.ValueOr(0) & 0xFF);
}
int32_t SampleholdLoopTuneOff(ZylSProgram& object, SampleArg sample,
                              Opt<int32_t, "NewValue"> newValue) {
  return Accessor(object, sample, &SampleParameters::holdLoopTuneOff, newValue.param,
                  newValue.ValueOr(0));
}
int32_t SampleSampleRate(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue) {
  return Accessor(object, sample, &SampleParameters::sampleRate, newValue.param,
                  newValue.ValueOr(0));
}
int32_t Sampletune(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue) {
  return Accessor(object, sample, &SampleParameters::tune, newValue.param, newValue.ValueOr(0));
}

int32_t SampleRecalcTune(ZylSProgram&, SampleArg sample, Opt<int32_t, "NewValue">) {
  const double ratio =
      static_cast<uint32_t>(sample->shared().sampleRate) / UnitAttribute::sampleRate;
  if (!(ratio > 0)) return 0;
  // 256 steps per semitone, 12 semitones per octave. The clamp covers a host rate near 0.
  const double steps = std::log10(ratio) / std::log10(2.0) * -3072.0;
  const auto n = static_cast<int64_t>(std::clamp(steps, -2147483648.0, 2147483647.0));
  const auto difference = static_cast<uint32_t>(sample->shared().tune - n);
  return static_cast<int32_t>(difference << 16);
}

int32_t SampleMemory(ZylSProgram&, SampleArg sample, Opt<bool, "LockedMemory"> locked) {
  if (locked.ValueOr(false) && sample->memLocked == 0) return 0;
  const int64_t bytes =
      int64_t{sample->getChannelBytesPS(-1)} * sample->shared().frameCount + kRecordBytes;
  return static_cast<int32_t>(std::min<int64_t>(bytes, INT32_MAX));
}
