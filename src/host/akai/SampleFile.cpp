#include "SampleFile.h"

#include <algorithm>
#include <cstring>

#include "../base.h"
#include "../platform/LargeBlock.h"
#include "../platform/Platform.h"
#include "../qx.h"
#include "../valueAccess.h"
#include "PageLocks.h"

SampleBlock NewSampleBlock(size_t bytes) {
  SampleBlock block(new std::byte[bytes]);
  zyl::AdviseLargeBlock(block.get(), bytes);
  return block;
}

namespace zyl {
namespace {

// Never destroyed: a module may release records during static destruction.
std::vector<SampleFile*>& Files() {
  static auto& files = *new std::vector<SampleFile*>;
  return files;
}
uint32_t lastSourceId = 0;

// Converts values to `bytes` bytes each, and truncates or pads them with silence to `positions`.
SampleBlock ConvertBlock(const std::byte* from, int fromBytes, int fromPositions, int bytes,
                         int positions) {
  const auto width = static_cast<size_t>(bytes);
  const int kept = std::min(fromPositions, positions);
  SampleBlock block = NewSampleBlock(static_cast<size_t>(positions) * width);
  ConvertValues(from, fromBytes, block.get(), bytes, kept);
  std::memset(block.get() + static_cast<size_t>(kept) * width, 0,
              static_cast<size_t>(positions - kept) * width);
  return block;
}

}  // namespace

SampleFile::SampleFile() : sourceId_(++lastSourceId) { Files().push_back(this); }

SampleFile::SampleFile(genericSample* first) : SampleFile() {
  blocks_.resize(1);
  locks_.resize(1, 0);
  // Last: the destructor deletes listed records, but must not delete the caller's on an exception.
  mains_.push_back(first);
  first->file_ = this;
  Link();
}

SampleFile::~SampleFile() {
  std::erase(Files(), this);
  for (size_t c = 0; c < blocks_.size(); ++c) {
    if (blocks_[c] == nullptr) continue;
    for (; locks_[c] > 0; --locks_[c]) UnlockRange(blocks_[c].get());
    qxWithdrawBuffer(blocks_[c].get());
  }
  if (pitchTrack != nullptr) qxWithdrawBuffer(pitchTrack->data());
  for (genericSample* record : mains_) delete record;
  for (genericSample* record : others_) delete record;
}

SampleFile* SampleFile::Make(std::unique_ptr<BasicSample> file, const std::string& path) {
  std::unique_ptr<SampleFile> made(new SampleFile);
  made->Adopt(std::move(file));
  made->SetPath(path);
  return made.release();
}

const std::vector<SampleFile*>& SampleFile::All() { return Files(); }

SampleFile* SampleFile::Find(const std::string& path) {
  if (path.empty()) return nullptr;
  const std::string absolute = AbsolutePath(path);
  for (SampleFile* file : Files()) {
    if (!file->hidden && file->absolutePath_ == absolute) return file;
  }
  return nullptr;
}

SampleFile::OwnedRecord SampleFile::NewRecord(int channel) {
  OwnedRecord record(new genericSample(this));
  record->channel = channel;
  return record;
}

void SampleFile::Create(genericSample* first, int channels) {
  const int count = std::clamp(channels, 1, kMaxChannels);
  SetChannelCount(count);
  if (count > 1 && first->channel == 0) {
    // The record represents the whole sample; the first channel gets a new record.
    AssignChannel(first, -1);
  }
}

void SampleFile::Link() noexcept {
  for (size_t c = 0; c < mains_.size(); ++c) mains_[c]->channel = static_cast<int32_t>(c);
  for (genericSample* record : mains_) RenewRecord(record);
  for (genericSample* record : others_) RenewRecord(record);
}

// Links every record to its channel's neighbours, so that iterating from any record visits every
// channel once. The record of the whole sample has the links of the first channel.
void SampleFile::RenewRecord(genericSample* record) const noexcept {
  const auto place = static_cast<size_t>(std::max(record->channel, 0));
  record->prevChannel = place > 0 ? mains_[place - 1] : nullptr;
  record->nextChannel = place + 1 < mains_.size() ? mains_[place + 1] : nullptr;
  record->buffer = blocks_[place].get();
  record->sourceId = sourceId_;
  record->copyCount = copyNumber_;
  record->filePath = path_.empty() ? nullptr : path_.c_str();
  record->name = name_.empty() ? nullptr : name_.c_str();
}

genericSample* SampleFile::Record(int channel) {
  if (channel >= 0) {
    return channel < ChannelCount() ? mains_[static_cast<size_t>(channel)] : nullptr;
  }
  if (channel != -1) return nullptr;
  for (genericSample* record : others_) {
    if (record->channel == -1) return record;
  }
  OwnedRecord whole = NewRecord(-1);
  RenewRecord(whole.get());
  others_.push_back(whole.get());
  return whole.release();
}

bool SampleFile::SetChannelCount(int count) {
  if (count < 1 || count > kMaxChannels) return false;
  const auto wanted = static_cast<size_t>(count);
  for (size_t c = wanted; c < mains_.size(); ++c) {
    if (mains_[c]->useCount > 0) return false;
  }
  for (const genericSample* record : others_) {
    if (record->useCount > 0 && record->channel >= count) return false;
  }
  std::vector<OwnedRecord> addedRecords;
  std::vector<SampleBlock> blocks = blocks_;
  blocks.resize(wanted);
  const bool sound = !blocks_.empty() && blocks_[0] != nullptr;
  for (size_t c = mains_.size(); c < wanted; ++c) {
    addedRecords.push_back(NewRecord(static_cast<int>(c)));
    if (sound) {
      blocks[c] = ConvertBlock(nullptr, BytesPerValue(), 0, BytesPerValue(), parameters.frameCount);
    }
  }
  mains_.reserve(wanted);
  locks_.reserve(wanted);
  // Nothing below throws.
  std::erase_if(others_, [&](genericSample* record) {
    if (record->channel < count) return false;
    delete record;
    return true;
  });
  // Locks of the whole sample apply to all channels: unlock the old ones, then lock the new ones.
  for (const genericSample* record : others_) {
    if (record->channel < 0) LockChannels(*record, -record->lockCount_);
  }
  while (mains_.size() > wanted) {
    const size_t last = mains_.size() - 1;
    if (blocks_[last] != nullptr) qxWithdrawBuffer(blocks_[last].get());
    delete mains_[last];
    mains_.pop_back();
  }
  locks_.resize(mains_.size(), 0);
  {
    const std::lock_guard<std::mutex> hold(soundMutex_);
    blocks_.swap(blocks);
  }
  for (OwnedRecord& record : addedRecords) {
    mains_.push_back(record.release());
    locks_.push_back(0);
  }
  for (const genericSample* record : others_) {
    if (record->channel < 0) LockChannels(*record, record->lockCount_);
  }
  Link();
  return true;
}

void SampleFile::AssignChannel(genericSample* record, int channel) {
  if (record->channel == channel) return;
  const auto main = std::find(mains_.begin(), mains_.end(), record);
  OwnedRecord successor;
  if (main != mains_.end()) {
    successor = NewRecord(record->channel);
    others_.push_back(record);
  }
  LockChannels(*record, -record->lockCount_);
  if (successor != nullptr) *main = successor.release();
  record->channel = channel;
  LockChannels(*record, record->lockCount_);
  Link();
}

bool SampleFile::IsUsed() const {
  const auto used = [](const genericSample* record) { return record->useCount > 0; };
  return std::any_of(mains_.begin(), mains_.end(), used) ||
         std::any_of(others_.begin(), others_.end(), used);
}

void SampleFile::DropUse(genericSample* record) {
  if (record->useCount > 1) {
    --record->useCount;
    return;
  }
  // Dispatchers may still access the record, so keep its last use until they have returned.
  if (g_pInfoDispatcher != nullptr) g_pInfoDispatcher->OnSampleDeleting(record);
  record->useCount = 0;
  while (record->lockCount_ > 0) unlockSample(record);
  if (!IsUsed()) delete this;
}

void SampleFile::SetPath(std::string path) {
  std::string name = titled_ ? name_ : FileString(path).BaseName();
  std::string absolutePath = path.empty() ? path : AbsolutePath(path);
  std::string fileName = FileString(path).FileName();
  copyNumber_ = FreeCopyNumber(fileName, absolutePath);
  Rename(std::move(name));
  path_.swap(path);
  absolutePath_.swap(absolutePath);
  fileName_.swap(fileName);
  Link();
}

// The lowest number that isn't used by another file of the same name, from a different folder.
int SampleFile::FreeCopyNumber(const std::string& fileName, const std::string& absolutePath) const {
  if (fileName.empty()) return 1;
  std::vector<int> taken;
  for (const SampleFile* file : Files()) {
    // A reload of the same file keeps its number.
    const bool other = file != this && !file->hidden && file->absolutePath_ != absolutePath;
    if (other && file->fileName_ == fileName) taken.push_back(file->copyNumber_);
  }
  int number = 1;
  while (std::find(taken.begin(), taken.end(), number) != taken.end()) ++number;
  return number;
}

void SampleFile::ClearPath() noexcept {
  path_.clear();
  absolutePath_.clear();
  fileName_.clear();
  Link();
}

void SampleFile::SetName(std::string name) {
  titled_ = !name.empty();
  Rename(std::move(name));
  Link();
}

void SampleFile::Rename(std::string name) noexcept {
  const std::lock_guard<std::mutex> hold(soundMutex_);
  name_.swap(name);
}

PinnedSound SampleFile::Pin() const {
  const std::lock_guard<std::mutex> hold(soundMutex_);
  return {blocks_, BytesPerValue(), parameters.frameCount, rateHz_, name_};
}

void SampleFile::PublishRate() {
  const std::lock_guard<std::mutex> hold(soundMutex_);
  rateHz_ = parameters.sampleRate;
}

WritableSound SampleFile::Writable(const std::vector<int>& channels) {
  WritableSound sound;
  sound.channels.resize(channels.size());
  sound.unpinned = std::unique_lock<std::mutex>(soundMutex_);
  const auto at = [&](int channel) -> SampleBlock& {
    return blocks_[static_cast<size_t>(channel)];
  };
  while (std::ranges::any_of(channels, [&](int c) { return at(c).use_count() > 1; })) {
    sound.unpinned.unlock();
    std::vector<SampleBlock> copies(blocks_.size());
    for (const int c : channels) {
      copies[static_cast<size_t>(c)] =
          ConvertBlock(at(c).get(), BytesPerValue(), parameters.frameCount, BytesPerValue(),
                       parameters.frameCount);
    }
    SetBlocks(std::move(copies), BytesPerValue(), parameters.frameCount);
    sound.unpinned.lock();
  }
  for (size_t i = 0; i < channels.size(); ++i) {
    // use_count() is a relaxed load: it does not order the edit after the last read of a worker
    // that has just released the block. Releasing a reference does (acquire and release).
    SampleBlock(at(channels[i])).reset();
    sound.channels[i] = at(channels[i]).get();
  }
  return sound;
}

void SampleFile::SetBlocks(std::vector<SampleBlock> blocks, int bytesPerValue, int positions) {
  blocks.resize(blocks_.size());
  const size_t newBytes = static_cast<size_t>(positions) * static_cast<size_t>(bytesPerValue);
  const bool fits = bytesPerValue == BytesPerValue() && positions == parameters.frameCount;
  // Allocate everything before changing anything.
  for (size_t c = 0; c < blocks_.size(); ++c) {
    if (positions == 0) {
      blocks[c].reset();
    } else if (blocks[c] == nullptr && fits && blocks_[c] != nullptr) {
      blocks[c] = blocks_[c];
    } else if (blocks[c] == nullptr) {
      const int kept = blocks_[c] == nullptr ? 0 : parameters.frameCount;
      blocks[c] = ConvertBlock(blocks_[c].get(), BytesPerValue(), kept, bytesPerValue, positions);
    }
  }
  {
    const std::lock_guard<std::mutex> hold(soundMutex_);
    blocks_.swap(blocks);
    if (bytesPerValue != BytesPerValue()) {
      parameters.bits = static_cast<uint16_t>(8 * bytesPerValue);
    }
    parameters.frameCount = positions;
  }
  for (size_t c = 0; c < blocks_.size(); ++c) {
    const SampleBlock& before = blocks[c];
    if (before == blocks_[c]) continue;
    if (before != nullptr) {
      for (int i = 0; i < locks_[c]; ++i) UnlockRange(before.get());
      qxWithdrawBuffer(before.get());
    }
    for (int i = 0; i < locks_[c]; ++i) LockRange(blocks_[c].get(), newBytes);
  }
  Link();
}

void SampleFile::SetBits(int bits) {
  if (bits < 1 || bits > 32) return;
  const int bytesPerValue = (bits + 7) / 8;
  const int unusedBits = 8 * bytesPerValue - bits;
  std::vector<SampleBlock> masked;
  if (bits < parameters.bits && unusedBits > 0) {
    for (const SampleBlock& block : blocks_) {
      if (block == nullptr) break;
      masked.push_back(ConvertBlock(block.get(), BytesPerValue(), parameters.frameCount,
                                    bytesPerValue, parameters.frameCount));
      VisitWidth(bytesPerValue, [&](auto access) {
        for (int i = 0; i < parameters.frameCount; ++i) {
          const int32_t value = access.Read(masked.back().get(), i);
          access.Store(masked.back().get(), i,
                       value & static_cast<int32_t>(~uint32_t{0} << unusedBits));
        }
      });
    }
  }
  SetBlocks(std::move(masked), bytesPerValue, parameters.frameCount);
  const std::lock_guard<std::mutex> hold(soundMutex_);
  parameters.bits = static_cast<uint16_t>(bits);
}

void SampleFile::CountLock(genericSample* record, int step) noexcept {
  record->lockCount_ += step;
  LockChannels(*record, step);
}

void SampleFile::LockChannels(const genericSample& record, int step) noexcept {
  for (size_t c = 0; c < blocks_.size(); ++c) {
    if (record.channel >= 0 && record.channel != static_cast<int>(c)) continue;
    for (int i = 0; i < step; ++i) LockRange(blocks_[c].get(), ChannelBytes());
    for (int i = 0; i > step; --i) UnlockRange(blocks_[c].get());
    locks_[c] += step;
  }
}

int64_t SampleFile::Memory() const {
  const auto records =
      static_cast<int64_t>((mains_.size() + others_.size()) * sizeof(genericSample));
  int64_t sound = 0;
  for (const SampleBlock& block : blocks_) {
    if (block != nullptr) sound += static_cast<int64_t>(ChannelBytes());
  }
  return records + static_cast<int64_t>(sizeof(SampleFile)) + sound;
}

int64_t SampleFile::LockedMemory() const {
  int64_t sound = 0;
  for (size_t c = 0; c < blocks_.size(); ++c) {
    if (blocks_[c] != nullptr && locks_[c] > 0) sound += static_cast<int64_t>(ChannelBytes());
  }
  return sound;
}

}  // namespace zyl
