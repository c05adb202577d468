// Program records: their arrays, their zones' samples, their locks.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <utility>

#include "../akai.h"
#include "../base.h"
#include "../platform/Platform.h"
#include "PageLocks.h"
#include "ProgramStore.h"
#include "SampleFile.h"

using zyl::SampleFile;

void akaiKeyGroup::setDefault() {
  *this = akaiKeyGroup();
  highKey = 127;
  filterFreq = 99;
  ampEnvSustain = 99;
  ampEnvRelease = 45;
  env2Level1 = 99;
  env2Level2 = 99;
  env2Level3 = 99;
  env2Rate2 = 50;
  env2Rate3 = 50;
  env2Rate4 = 45;
  for (akaiZone& zone : zones) {
    zone.highVel = 127;
  }
}

vendlKeyGroup::vendlKeyGroup() { setDefault(); }

void vendlKeyGroup::setDefault() {
  static_cast<vendlKeyGroupImage&>(*this) = vendlKeyGroupImage();
  env3Level1 = 99;
  env3Level2 = 99;
  env3Level3 = 99;
  env3Rate2 = 50;
  env3Rate3 = 50;
  env3Rate4 = 45;
  for (std::string& path : paths_) path.clear();
  for (std::string& path : movedPath) path.clear();
  std::fill(std::begin(pathChannel), std::end(pathChannel), 0);
}

const char* vendlKeyGroup::SamplePath(int zone) const {
  const std::string& path = paths_[zone];
  return path.empty() ? nullptr : path.c_str();
}

void vendlKeyGroup::setSamplePath(int zone, const char* path, bool keepChannel) {
  TakeSamplePath(zone, path == nullptr ? "" : path, keepChannel);
}
void vendlKeyGroup::TakeSamplePath(int zone, std::string path, bool keepChannel) noexcept {
  paths_[zone].swap(path);
  movedPath[zone].clear();
  if (!keepChannel) pathChannel[zone] = 0;
}

// The image includes the keygroup's organ bytes, so nothing is allocated; the library byte after
// them marks them as used.
void vendlKeyGroup::EnableTolmoChunk() { library110[0] = 1; }

akaiProgram::akaiProgram() = default;

akaiProgram::~akaiProgram() {
  Unlock();
  for (size_t i = 0; i < sampleStore_.size(); ++i) PutSample(static_cast<int>(i), nullptr);
}

void akaiProgram::BindArrays() noexcept {
  allocated_ = static_cast<int>(keyGroupStore_.size());
  keyGroupArray = keyGroupStore_.empty() ? nullptr : keyGroupStore_.data();
  keyGroupExtensions = extensionStore_.empty() ? nullptr : extensionStore_.data();
  sampleTable = sampleStore_.empty() ? nullptr : sampleStore_.data();
}

void akaiProgram::Rebind() noexcept {
  BindArrays();
  keyGroups = allocated_;
  keyGroupsByte = static_cast<uint8_t>(std::min(allocated_, 255));
}

// Call Unlock before the arrays may move, and Lock at their new addresses.
void akaiProgram::Unlock() noexcept {
  if (lockCount == 0) return;
  zyl::LetGo(this);
  zyl::LetGo(tolmoChunk.get());
  zyl::LetGo(keyGroupArray);
  zyl::LetGo(keyGroupExtensions);
  zyl::LetGo(sampleTable);
}
void akaiProgram::Lock() noexcept {
  if (lockCount == 0) return;
  zyl::HoldResident(this, sizeof(akaiProgram));
  zyl::HoldResident(tolmoChunk.get(), sizeof(TolmoChunk));
  zyl::HoldResident(keyGroupArray, keyGroupStore_.size() * sizeof(akaiKeyGroup));
  zyl::HoldResident(keyGroupExtensions, extensionStore_.size() * sizeof(vendlKeyGroup));
  zyl::HoldResident(sampleTable, sampleStore_.size() * sizeof(void*));
}

bool akaiProgram::Reaches(int keygroup, int zone) const {
  return keygroup >= 0 && keygroup < allocated_ && zone >= 0 && zone < kZones;
}

void akaiProgram::PutSample(int index, genericSample* sample) noexcept {
  genericSample*& place = sampleStore_[static_cast<size_t>(index)];
  genericSample* old = place;
  if (lockCount != 0) {
    if (sample != nullptr) ::lockSample(sample);
    if (old != nullptr) ::unlockSample(old);
  }
  place = sample;
  if (old != nullptr) old->deleteSample();
}

void akaiProgram::SetFileName(std::string_view path) {
  fileName_ = path;
  // Truncate at a UTF-8 character boundary.
  size_t length = std::min(path.size(), sizeof(fileName) - 1);
  while (length > 0 && length < path.size() && (path[length] & 0xC0) == 0x80) --length;
  std::memset(fileName, 0, sizeof(fileName));
  std::memcpy(fileName, path.data(), length);
}

std::string akaiProgram::setUniqueTempName() {
  static unsigned last = 0;
  const std::string stem =
      zyl::TemporaryFolder() + "/zyl-program-" + std::to_string(zyl::ProcessNumber()) + "-";
  std::string path;
  do {
    path = stem + std::to_string(++last) + ".zprg";
  } while (zyl::FileExists(path));
  SetFileName(path);
  return path;
}

void akaiProgram::Replace(Contents next) noexcept {
  Unlock();
  for (genericSample* sample : next.samples) {
    if (sample == nullptr) continue;
    ++sample->useCount;
    if (lockCount != 0) ::lockSample(sample);
  }
  const uint32_t locks = lockCount;
  static_cast<akaiProgramHdrImage&>(*this) = next.header;
  lockCount = locks;
  keyGroupStore_.swap(next.keygroups);
  extensionStore_.swap(next.extensions);
  sampleStore_.swap(next.samples);
  tolmoChunk.swap(next.tolmo);
  otherChunks_.swap(next.otherChunks);
  SetFileName("");
  Rebind();
  Lock();
  // Releasing a sample calls the dispatcher: only when the record is whole again.
  for (genericSample* sample : next.samples) {
    if (sample == nullptr) continue;
    if (lockCount != 0) ::unlockSample(sample);
    sample->deleteSample();
  }
}

void akaiProgram::setDefault() {
  Contents next;
  next.keygroups.resize(1);
  next.keygroups[0].setDefault();
  next.extensions.resize(1);
  next.samples.assign(kZones, nullptr);
  akaiProgramHdrImage& header = next.header;
  std::memcpy(header.name, "New Program", 12);
  header.poly = 15;
  header.prority = 1;
  header.highKey = 127;
  header.indyOutput = -1;
  header.stereoLevel = 99;
  header.loudness = 80;
  header.loudVel = 20;
  header.bendRangeUp = 2;
  header.pitchBendDown = 2;
  header.LFOspeed = 50;
  header.LFOdepthWheel = 30;
  header.LFO2speed = 50;
  Replace(std::move(next));
}

// Doesn't copy the file name: the first write of the copy would overwrite the original's file.
void akaiProgram::copyFrom(const akaiProgram* source, bool copySamples) {
  if (source == this) return;
  Contents next;
  next.header = *source;
  next.keygroups = source->keyGroupStore_;
  next.extensions = source->extensionStore_;
  next.otherChunks = source->otherChunks_;
  if (source->tolmoChunk != nullptr) next.tolmo = std::make_unique<TolmoChunk>(*source->tolmoChunk);
  if (copySamples) {
    next.samples = source->sampleStore_;
  } else {
    next.samples.assign(source->sampleStore_.size(), nullptr);
    for (vendlKeyGroup& extension : next.extensions) {
      for (int z = 0; z < kZones; ++z) extension.TakeSamplePath(z, {}, false);
    }
  }
  Replace(std::move(next));
}

namespace {

// Reserves room for `more` elements. Doubling gives insertions constant amortised cost.
template <class T>
void Grow(std::vector<T>& store, size_t more) {
  const size_t needed = store.size() + more;
  if (needed > store.capacity()) store.reserve(std::max(needed, 2 * store.capacity()));
}

// Inserts an element without allocating: Grow has reserved the room.
template <class T>
void Insert(std::vector<T>& store, size_t at, T value) noexcept {
  store.push_back(std::move(value));
  std::rotate(store.begin() + static_cast<ptrdiff_t>(at), store.end() - 1, store.end());
}

}  // namespace

// Reserves all memory before the arrays change. If a reservation fails, an earlier one may have
// moved its array, so the record's pointers are updated in any case.
void akaiProgram::ReserveKeyGroup() {
  Unlock();
  const auto renew = [this] {
    BindArrays();
    Lock();
  };
  try {
    Grow(keyGroupStore_, 1);
    Grow(extensionStore_, 1);
    Grow(sampleStore_, kZones);
  } catch (...) {
    renew();
    throw;
  }
  renew();
}

akaiKeyGroup* akaiProgram::newKeyGroup(int index, akaiProgram* source, int sourceIndex) {
  akaiKeyGroup keygroup{};
  vendlKeyGroup extension;
  genericSample* samples[kZones] = {};
  if (source != nullptr) {
    if (sourceIndex < 0 || sourceIndex >= source->KeyGroupCount()) return nullptr;
    keygroup = source->keyGroupArray[sourceIndex];
    extension = source->keyGroupExtensions[sourceIndex];
    std::copy_n(source->sampleTable + kZones * sourceIndex, kZones, samples);
  }
  ReserveKeyGroup();
  Unlock();
  const int at = index < 0 || index > allocated_ ? allocated_ : index;
  const auto place = static_cast<size_t>(at);
  Insert(keyGroupStore_, place, keygroup);
  Insert(extensionStore_, place, std::move(extension));
  for (size_t z = 0; z < kZones; ++z) {
    Insert<genericSample*>(sampleStore_, kZones * place + z, nullptr);
  }
  for (int z = 0; z < kZones; ++z) {
    if (samples[z] == nullptr) continue;
    ++samples[z]->useCount;
    PutSample(kZones * at + z, samples[z]);
  }
  Rebind();
  Lock();
  return keyGroupArray + at;
}

void akaiProgram::moveKeyGroup(int from, int to) {
  if (!Reaches(from, 0) || !Reaches(to, 0) || from == to) return;
  const auto move = [&](auto& store, int width) {
    const auto first = store.begin();
    if (from < to) {
      std::rotate(first + width * from, first + width * (from + 1), first + width * (to + 1));
    } else {
      std::rotate(first + width * to, first + width * from, first + width * (from + 1));
    }
  };
  move(keyGroupStore_, 1);
  move(extensionStore_, 1);
  move(sampleStore_, kZones);
}

void akaiProgram::deleteKeyGroup(int index) {
  if (!Reaches(index, 0)) return;
  Unlock();
  const auto first = sampleStore_.begin() + kZones * index;
  genericSample* samples[kZones];
  std::copy_n(first, kZones, samples);
  sampleStore_.erase(first, first + kZones);
  keyGroupStore_.erase(keyGroupStore_.begin() + index);
  extensionStore_.erase(extensionStore_.begin() + index);
  Rebind();
  Lock();
  // Releasing a sample calls the dispatcher: only when the record is whole again.
  for (genericSample* sample : samples) {
    if (sample == nullptr) continue;
    if (lockCount != 0) ::unlockSample(sample);
    sample->deleteSample();
  }
}

bool akaiProgram::setSample(const char* path, int keygroup, int zone, int channel, int) {
  if (!Reaches(keygroup, zone)) return false;
  // Copy `path`: it may belong to the record that is replaced here.
  std::string kept = path == nullptr ? "" : path;
  zyl::SampleUse sample = zyl::LoadSampleOrThrow(kept.c_str(), true, channel);
  const bool loaded = sample != nullptr;
  setSample(std::move(sample), std::move(kept), keygroup, zone, channel);
  return loaded;
}

void akaiProgram::setSample(zyl::SampleUse sample, std::string path, int keygroup, int zone,
                            int channel) noexcept {
  if (Reaches(keygroup, zone)) {
    PutZone(keygroup, zone, sample.release(), std::move(path), channel);
  }
}

void akaiProgram::setSample(genericSample* sample, int keygroup, int zone) {
  zyl::SampleUse use(sample);
  if (!Reaches(keygroup, zone)) return;
  std::string path = sample == nullptr || sample->filePath == nullptr ? "" : sample->filePath;
  PutZone(keygroup, zone, use.release(), std::move(path), sample == nullptr ? 0 : sample->channel);
}

void akaiProgram::PutZone(int keygroup, int zone, genericSample* sample, std::string path,
                          int channel) noexcept {
  vendlKeyGroup& extension = keyGroupExtensions[keygroup];
  extension.TakeSamplePath(zone, std::move(path), true);
  extension.pathChannel[zone] = channel;
  PutSample(kZones * keygroup + zone, sample);
}

bool akaiProgram::setSampleChannel(int keygroup, int zone, int channel) {
  if (!Reaches(keygroup, zone)) return false;
  const int index = kZones * keygroup + zone;
  genericSample* old = sampleTable[index];
  if (old == nullptr || channel < 0 || channel >= old->getChannelCount()) return false;
  genericSample* sample = old->createChannelRef(channel);
  if (sample == nullptr) return false;
  PutSample(index, sample);
  keyGroupExtensions[keygroup].pathChannel[zone] = channel;
  return true;
}

bool akaiProgram::lockSample(int keygroup, int zone) {
  if (!Reaches(keygroup, zone)) return false;
  genericSample* sample = sampleTable[kZones * keygroup + zone];
  return sample != nullptr && ::lockSample(sample) != 0;
}

void akaiProgram::unlockSample(int keygroup, int zone) {
  if (!Reaches(keygroup, zone)) return;
  genericSample* sample = sampleTable[kZones * keygroup + zone];
  if (sample != nullptr) ::unlockSample(sample);
}

void akaiProgram::setByteResonance(int keygroup, uint8_t value) {
  if (Reaches(keygroup, 0)) keyGroupArray[keygroup].resonance = value;
}
void akaiProgram::setUShortResonance(int keygroup, uint16_t value) {
  if (Reaches(keygroup, 0)) keyGroupExtensions[keygroup].filterResonance = value;
}

void akaiProgramHdr::EnableTolmoChunk() {
  if (tolmoChunk != nullptr) return;
  auto chunk = std::make_unique<TolmoChunk>();
  if (lockCount != 0) zyl::HoldResident(chunk.get(), sizeof(TolmoChunk));
  tolmoChunk = std::move(chunk);
}
// There is no copy to update: readers of the record access the chunk directly.
void akaiProgram::updateLockedTolmo() {}

int64_t akaiProgram::RecordMemory() const {
  return static_cast<int64_t>(
      sizeof(akaiProgram) + (tolmoChunk == nullptr ? 0 : sizeof(TolmoChunk)) +
      keyGroupStore_.size() * (sizeof(akaiKeyGroup) + sizeof(vendlKeyGroup)) +
      sampleStore_.size() * sizeof(void*));
}

namespace {

int ClampToInt(int64_t bytes) { return static_cast<int>(std::min<int64_t>(bytes, INT32_MAX)); }

// Sums a measure over the sample files of the programs' zones, each file once.
template <class Measure>
int64_t SampleMemory(const std::vector<const akaiProgram*>& programs, Measure measure) {
  std::set<const SampleFile*> files;
  for (const akaiProgram* program : programs) {
    for (int i = 0; i < kZones * program->AllocatedKeyGroups(); ++i) {
      if (program->sampleTable[i] != nullptr) files.insert(SampleFile::Of(program->sampleTable[i]));
    }
  }
  int64_t sum = 0;
  for (const SampleFile* file : files) sum += (file->*measure)();
  return sum;
}

std::vector<const akaiProgram*> Programs() {
  return {zyl::AllPrograms().begin(), zyl::AllPrograms().end()};
}

}  // namespace

int akaiProgram::getTotalMem(bool samples) const {
  const int64_t sound = samples ? SampleMemory({this}, &SampleFile::Memory) : 0;
  return ClampToInt(RecordMemory() + sound);
}

int akaiProgram::getTotalLockedMem(bool samples) const {
  const int64_t sound = samples ? SampleMemory({this}, &SampleFile::LockedMemory) : 0;
  return ClampToInt((lockCount != 0 ? RecordMemory() : 0) + sound);
}

int getTotalMem() {
  int64_t sum = SampleMemory(Programs(), &SampleFile::Memory);
  for (const akaiProgram* program : Programs()) sum += program->getTotalMem(false);
  return ClampToInt(sum);
}

int getTotalLockedMem() {
  int64_t sum = SampleMemory(Programs(), &SampleFile::LockedMemory);
  for (const akaiProgram* program : Programs()) sum += program->getTotalLockedMem(false);
  return ClampToInt(sum);
}

// ---- Programs in use ----

namespace {

// Never destroyed: programs may be released during static destruction.
std::vector<akaiProgram*>& LivePrograms() {
  static auto& programs = *new std::vector<akaiProgram*>;
  return programs;
}

}  // namespace

namespace zyl {
const std::vector<akaiProgram*>& AllPrograms() { return LivePrograms(); }
}  // namespace zyl

akaiProgram* ProgramStore::Make() {
  struct Deleter {
    void operator()(akaiProgram* program) const { delete program; }
  };
  std::unique_ptr<akaiProgram, Deleter> program(new akaiProgram);
  LivePrograms().push_back(program.get());
  return program.release();
}
void ProgramStore::Destroy(akaiProgram* program) {
  std::erase(LivePrograms(), program);
  delete program;
}

void ProgramStore::Fill(akaiProgram* program, std::vector<akaiKeyGroup> keygroups,
                        std::vector<vendlKeyGroup> extensions, std::vector<ListChunk> otherChunks) {
  program->sampleStore_.assign(kZones * keygroups.size(), nullptr);
  program->keyGroupStore_ = std::move(keygroups);
  program->extensionStore_ = std::move(extensions);
  program->otherChunks_ = std::move(otherChunks);
  program->Rebind();
}

akaiProgram* newAkaiProgram() {
  try {
    return ProgramStore::Make();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void deleteAkaiProgram(akaiProgram* program) {
  if (program != nullptr && --ProgramStore::Uses(program) == 0) ProgramStore::Destroy(program);
}

void lockAkaiProgram(akaiProgram* program) {
  if (++program->lockCount > 1) return;
  ProgramStore::LockArrays(program);
  for (int i = 0; i < kZones * program->AllocatedKeyGroups(); ++i) {
    if (program->sampleTable[i] != nullptr) lockSample(program->sampleTable[i]);
  }
}

void unlockAkaiProgram(akaiProgram* program) {
  if (program->lockCount == 0) return;
  if (program->lockCount == 1) {
    ProgramStore::UnlockArrays(program);
    for (int i = 0; i < kZones * program->AllocatedKeyGroups(); ++i) {
      if (program->sampleTable[i] != nullptr) unlockSample(program->sampleTable[i]);
    }
  }
  --program->lockCount;
}

akaiProgram* findAkaiProgram(int, const char* name) {
  if (name == nullptr || *name == '\0') return nullptr;
  const std::string path = zyl::AbsolutePath(name);
  akaiProgram* found = nullptr;
  for (akaiProgram* program : LivePrograms()) {
    const std::string& own = program->GetFileName();
    if (found == nullptr && !own.empty() && zyl::AbsolutePath(own) == path) found = program;
  }
  for (akaiProgram* program : LivePrograms()) {
    if (found != nullptr) break;
    const std::string_view own(program->name, strnlen(program->name, sizeof(program->name)));
    if (own == name || FileString(program->GetFileName()).BaseName() == name) found = program;
  }
  if (found != nullptr) ++ProgramStore::Uses(found);
  return found;
}
