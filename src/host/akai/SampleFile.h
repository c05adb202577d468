// State shared by the records of one sample file: the sound data, the parameters, the pitch track,
// and the file object whose unknown chunks a later write preserves.
//
// Owns its records: one main record per channel, linked in channel order, the record of the whole
// sample, and additional records that were assigned to a channel. The file destroys itself, with
// all records, when none of them is in use.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "../akai.h"

namespace zyl {

// Whether the extension of the path is that of a sample format that can be written.
bool CanStoreAs(const std::string& path);

class SampleFile {
 public:
  // Creates a file whose only record `first` represents its one empty channel.
  explicit SampleFile(genericSample* first);
  ~SampleFile();
  SampleFile(const SampleFile&) = delete;
  SampleFile& operator=(const SampleFile&) = delete;

  static SampleFile* Of(const genericSample* sample) { return sample->file_; }
  // Creates a file from a file object. None of its records is used yet.
  static SampleFile* Make(std::unique_ptr<BasicSample> file, const std::string& path);
  // The file loaded from `path`, or null.
  static SampleFile* Find(const std::string& path);
  // All files, oldest first.
  static const std::vector<SampleFile*>& All();

  void Create(genericSample* first, int channels);
  void Adopt(std::unique_ptr<BasicSample> file);

  // The record of a channel, -1 for the whole sample; null if the channel doesn't exist.
  genericSample* Record(int channel);
  int ChannelCount() const { return static_cast<int>(mains_.size()); }
  bool SetChannelCount(int count);
  void AssignChannel(genericSample* record, int channel);
  // Releases one use. May destroy the record and this file.
  void DropUse(genericSample* record);
  bool IsUsed() const;

  const std::string& Path() const { return path_; }
  // Changes of path, name and channels have the strong exception guarantee.
  void SetPath(std::string path);
  void SetName(std::string name);
  const std::string& Name() const { return name_; }
  // Clears the path of all records after a reload has replaced this file.
  void ClearPath() noexcept;
  // Find ignores the file: only its header was read, or a reload isn't committed.
  bool hidden = false;

  int BytesPerValue() const { return (parameters.bits + 7) / 8; }
  size_t ChannelBytes() const {
    return static_cast<size_t>(parameters.frameCount) * static_cast<size_t>(BytesPerValue());
  }
  const std::vector<SampleBlock>& Blocks() const { return blocks_; }
  WritableSound Writable(const std::vector<int>& channels);
  PinnedSound Pin() const;
  void PublishRate();
  // A null entry keeps that channel's sound, resized and converted.
  void SetBlocks(std::vector<SampleBlock> blocks, int bytesPerValue, int positions);
  void SetBits(int bits);

  // Counts one lock of the record up (+1) or down (-1).
  void CountLock(genericSample* record, int step) noexcept;
  int64_t Memory() const;
  int64_t LockedMemory() const;

  // Writes the file to `path`. If the file object that was read has the same format, writes through
  // it to preserve unknown chunks. On failure returns false and sets `reason` to one line with the
  // path.
  bool WriteTo(const std::string& path, int channelMask, std::string& reason);
  void CopyParametersTo(BasicSample& file) const;

  SampleParameters parameters;

  std::mutex pitchMutex;
  std::shared_ptr<const std::vector<float>> pitchTrack;

 private:
  SampleFile();
  struct DeleteRecord {
    void operator()(genericSample* record) const { delete record; }
  };
  using OwnedRecord = std::unique_ptr<genericSample, DeleteRecord>;
  void Rename(std::string name) noexcept;
  OwnedRecord NewRecord(int channel);
  void LockChannels(const genericSample& record, int step) noexcept;
  void Link() noexcept;
  void RenewRecord(genericSample* record) const noexcept;
  int FreeCopyNumber(const std::string& fileName, const std::string& absolutePath) const;

  std::vector<genericSample*> mains_;
  std::vector<genericSample*> others_;  // the whole sample's record and further channel records
  // Guards what Pin reads: the blocks with their width and length, the name and the published rate.
  // Only the script thread changes these, so it reads them without the mutex.
  mutable std::mutex soundMutex_;
  std::vector<SampleBlock> blocks_;  // by channel; empty pointers while there is no sound
  std::vector<int> locks_;           // by channel
  std::unique_ptr<BasicSample> container_;
  std::string path_;
  std::string absolutePath_;
  std::string fileName_;
  std::string name_;
  bool titled_ = false;  // the name was set or read; otherwise it comes from the path
  int32_t rateHz_ = SampleParameters().sampleRate;  // as published for workers
  uint32_t sourceId_ = 0;
  int copyNumber_ = 1;
};

}  // namespace zyl
