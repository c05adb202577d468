// What the records of one sample file share: the sound of its channels, the parameters, the pitch
// track, and the file object whose unknown chunks a later write keeps.
//
// It owns its records. There is one main record for each channel, linked in channel order, the
// record of the whole sample, and any further records that were made to stand for a channel. A
// record that nobody uses stays until the file goes, which is when no record of it is used.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "../akai.h"

namespace zyl {

// Whether the name's extension is of a kind of sample file that can be written.
bool CanStoreAs(const std::string& path);

class SampleFile {
 public:
  // A file of which `first` is the only record, standing for its one empty channel.
  explicit SampleFile(genericSample* first);
  ~SampleFile();
  SampleFile(const SampleFile&) = delete;
  SampleFile& operator=(const SampleFile&) = delete;

  static SampleFile* Of(const genericSample* sample) { return sample->file_; }
  // A new file around the contents of a file object, with no record used yet.
  static SampleFile* Make(std::unique_ptr<BasicSample> file, const std::string& path);
  // The file loaded from `path`, null when there is none.
  static SampleFile* Find(const std::string& path);
  // All files, oldest first.
  static const std::vector<SampleFile*>& All();

  void Create(genericSample* first, int type, int channels);
  void Adopt(std::unique_ptr<BasicSample> file);

  // The record of a channel, -1 for the whole sample; null when there is no such channel.
  genericSample* Record(int channel);
  int ChannelCount() const { return static_cast<int>(mains_.size()); }
  bool SetChannelCount(int count);
  void StandFor(genericSample* record, int channel);
  // Gives one use back; the file and the record may be gone afterwards.
  void DropUse(genericSample* record);
  bool IsUsed() const;

  const std::string& Path() const { return path_; }
  // Changes of path, name and channels either happen whole or throw and change nothing.
  void SetPath(std::string path);
  void SetName(std::string name);
  const std::string& Name() const { return name_; }
  bool HasTitle() const { return titled_; }
  // Takes the path from all records: the file was replaced by a newer reading of it.
  void ForgetPath() noexcept;
  // Out of Find's sight: a reading of a header alone, or one that is not finished.
  bool hidden = false;

  int BytesPerValue() const { return (parameters.bits + 7) / 8; }
  size_t ChannelBytes() const {
    return static_cast<size_t>(parameters.frameCount) * static_cast<size_t>(BytesPerValue());
  }
  const std::vector<SampleBlock>& Blocks() const { return blocks_; }
  std::byte* Writable(int channel);
  // An empty entry keeps that channel's sound, cut or filled and converted to fit.
  void SetBlocks(std::vector<SampleBlock> blocks, int bytesPerValue, int positions);
  void SetBits(int bits);

  // Counts one lock of the record up (+1) or down (-1).
  void HoldLock(genericSample* record, int step) noexcept;
  int64_t Memory() const;
  int64_t LockedMemory() const;

  // Lends sound and parameters to the file object that is to be written to `path`, calls `write`
  // and takes them back; the object that the file was read from, where the kind fits. False with
  // one line that names the path.
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
  OwnedRecord NewRecord(int channel);
  void LockChannels(const genericSample& record, int step) noexcept;
  void Link() noexcept;
  void RenewRecord(genericSample* record) const noexcept;
  int FreeCopyNumber(const std::string& fileName, const std::string& absolutePath) const;

  std::vector<genericSample*> mains_;
  std::vector<genericSample*> others_;  // the whole sample's record and further channel records
  std::vector<SampleBlock> blocks_;     // by channel; empty pointers while there is no sound
  std::vector<int> locks_;              // by channel
  std::unique_ptr<BasicSample> container_;
  std::string path_;
  std::string absolutePath_;
  std::string fileName_;
  std::string name_;
  bool titled_ = false;  // the name was set or read; otherwise it comes from the path
  uint32_t sourceId_ = 0;
  int copyNumber_ = 1;
  int type_ = 0;
};

}  // namespace zyl
