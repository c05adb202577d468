// Program records: their arrays, their zones' samples, their locks.
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "../akai.h"
#include "../base.h"
#include "../platform/Platform.h"
#include "PageLocks.h"

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

// The organ bytes are part of the image, so nothing is allocated. The following library byte marks
// them as used.
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
  zyl::UnlockRange(this);
  zyl::UnlockRange(tolmoChunk.get());
  zyl::UnlockRange(keyGroupArray);
  zyl::UnlockRange(keyGroupExtensions);
  zyl::UnlockRange(sampleTable);
}
void akaiProgram::Lock() noexcept {
  if (lockCount == 0) return;
  zyl::LockRange(this, sizeof(akaiProgram));
  zyl::LockRange(tolmoChunk.get(), sizeof(TolmoChunk));
  zyl::LockRange(keyGroupArray, keyGroupStore_.size() * sizeof(akaiKeyGroup));
  zyl::LockRange(keyGroupExtensions, extensionStore_.size() * sizeof(vendlKeyGroup));
  zyl::LockRange(sampleTable, sampleStore_.size() * sizeof(void*));
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

void akaiProgram::LockSamples() noexcept {
  for (genericSample* sample : sampleStore_) {
    if (sample != nullptr) ::lockSample(sample);
  }
}
void akaiProgram::UnlockSamples() noexcept {
  for (genericSample* sample : sampleStore_) {
    if (sample != nullptr) ::unlockSample(sample);
  }
}

void akaiProgram::SwapContents(akaiProgram& unlocked) noexcept {
  Unlock();
  if (lockCount != 0) {
    unlocked.LockSamples();
    UnlockSamples();
  }
  const uint32_t locks = lockCount;
  std::swap<akaiProgramHdrImage>(*this, unlocked);
  lockCount = locks;
  unlocked.lockCount = 0;
  keyGroupStore_.swap(unlocked.keyGroupStore_);
  extensionStore_.swap(unlocked.extensionStore_);
  sampleStore_.swap(unlocked.sampleStore_);
  tolmoChunk.swap(unlocked.tolmoChunk);
  otherChunks_.swap(unlocked.otherChunks_);
  fileName_.swap(unlocked.fileName_);
  BindArrays();
  unlocked.BindArrays();
  Lock();
}

void akaiProgram::CopyContents(const akaiProgram& source) {
  static_cast<akaiProgramHdrImage&>(*this) = source;
  lockCount = 0;
  keyGroupStore_ = source.keyGroupStore_;
  extensionStore_ = source.extensionStore_;
  otherChunks_ = source.otherChunks_;
  fileName_ = source.fileName_;
  if (source.tolmoChunk != nullptr) tolmoChunk = std::make_unique<TolmoChunk>(*source.tolmoChunk);
  sampleStore_ = source.sampleStore_;
  for (genericSample* sample : sampleStore_) {
    if (sample != nullptr) ++sample->useCount;
  }
  BindArrays();
}

// The functions below swap in the contents of a temporary record. Its destructor then releases the
// previous samples, which calls the dispatcher.
void akaiProgram::setDefault() {
  akaiProgram next;
  next.keyGroupStore_.resize(1);
  next.keyGroupStore_[0].setDefault();
  next.extensionStore_.resize(1);
  next.sampleStore_.assign(kZones, nullptr);
  next.Rebind();
  std::memcpy(next.name, "New Program", 12);
  next.poly = 15;
  next.prority = 1;
  next.highKey = 127;
  next.indyOutput = -1;
  next.stereoLevel = 99;
  next.loudness = 80;
  next.loudVel = 20;
  next.bendRangeUp = 2;
  next.pitchBendDown = 2;
  next.LFOspeed = 50;
  next.LFOdepthWheel = 30;
  next.LFO2speed = 50;
  SwapContents(next);
}

// Doesn't copy the file name: the first write of the copy would overwrite the original's file.
void akaiProgram::copyFrom(const akaiProgram* source, bool copySamples) {
  if (source == this) return;
  akaiProgram next;
  next.CopyContents(*source);
  next.SetFileName("");
  next.Rebind();
  if (!copySamples) {
    for (int k = 0; k < next.allocated_; ++k) {
      for (int z = 0; z < kZones; ++z) next.PutZone(k, z, nullptr, {}, 0);
    }
  }
  SwapContents(next);
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

// Reserves all memory before the arrays change. A failed reservation may follow one that moved its
// array, so the pointers are updated either way.
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
  // Releasing a sample calls the dispatcher, so the record must be consistent.
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
  if (lockCount != 0) zyl::LockRange(chunk.get(), sizeof(TolmoChunk));
  tolmoChunk = std::move(chunk);
}
// Nothing to do: readers of the record access the chunk directly.
void akaiProgram::updateLockedTolmo() {}
