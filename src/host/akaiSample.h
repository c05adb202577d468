// The sample half of the program library: sample records, their files and their memory. akai.h
// describes ownership and threads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "akaiRecords.h"
#include "export.h"
#include "riff.h"

class genericSample;
class akaiProgram;
namespace zyl {
class SampleFile;
}

// Notified before a sample record is destroyed.
class ZYLHOST_API AkaiInfoDispatcher {
 public:
  virtual void OnSampleDeleting(genericSample* sample) = 0;

 protected:
  ~AkaiInfoDispatcher() = default;
};
extern ZYLHOST_API AkaiInfoDispatcher* g_pInfoDispatcher;

// One of the 16 loops of a sample.
struct ZYLHOST_API genericLoop {
  int32_t loopStart = 0;     // first position
  int32_t loopEnd = 0;       // last position
  uint32_t loopFineLen = 0;  // fine part, in units of 1/4294967295 position
  int32_t loopTimes = 0;     // repeats; 0 loops forever
  uint32_t loopType = 0;     // as in the file: 0 forward, 1 alternating, 2 backward

  void Init();
};

// Parameters shared by all records of one file.
struct SampleParameters {
  bool dirty = false;
  int32_t sampleRate = 44100;
  uint16_t bits = 16;
  int32_t key = 60;
  int32_t tune = 0;  // 1/256 semitone
  int32_t playbackType = 2;
  int32_t frameCount = 0;
  int8_t holdLoopTuneOff = 0;
  int32_t start = 0;
  int32_t end = 0;
  uint32_t loopCount = 0;
  genericLoop loops[kMaxLoops];
};

// A channel's sound data: signed little-endian values, never shared between two channels. Edits
// copy a block first if a worker refers to it (Writable).
using SampleBlock = std::shared_ptr<std::byte[]>;
ZYLHOST_API SampleBlock NewSampleBlock(size_t bytes);  // uninitialised

// A snapshot of a sample for analysis. The blocks are immutable while referenced from here.
struct PinnedSound {
  std::vector<SampleBlock> channels;  // in channel order; null pointers when there is no sound
  int bytesPerValue = 0;
  int32_t frameCount = 0;
  int32_t rateHz = 0;
  std::string name;  // empty for none
};

// The values of some channels, to be edited in place. Pin() waits until this object is
// destroyed.
struct WritableSound {
  std::vector<std::byte*> channels;
  std::unique_lock<std::mutex> unpinned;
};

// A sample or one channel of it. The records of one file are linked (channel order) and share
// parameters and sound. A file is destroyed when none of its records is in use.
class ZYLHOST_API genericSample {
 public:
  genericSample();  // one use, one empty channel, no file
  genericSample(const genericSample&) = delete;
  genericSample& operator=(const genericSample&) = delete;

  // The parameters shared with the file's other records.
  SampleParameters& shared() const;

  int32_t lockValue = 0;  // what lockSample returned; 0 = not locked
  int32_t memLocked = 0;
  int32_t useCount = 1;
  int32_t copyCount = 1;  // number among loaded files of the same name, from 1
  int32_t channel = 0;    // -1 for a whole sample
  const char* filePath = nullptr;
  const char* name = nullptr;
  std::byte* buffer = nullptr;              // of this channel, or of channel 0 for a whole sample
  uint32_t sourceId = 0;                    // the same in all records of a file
  const int32_t recordId = NextRecordId();  // unique to this record, never 0
  genericSample* prevChannel = nullptr;
  genericSample* nextChannel = nullptr;

  // Makes the record an empty sample of a type (1 "s", 2 WAVE, 3 AIFF) with `channels` channels,
  // clamped to 1..16. The record represents the channel if there is one, otherwise the whole
  // sample.
  void create(int type, int channels);
  // Releases one use; may destroy the record.
  void deleteSample();
  // The record of a channel of this file; null if the channel doesn't exist. Adds a use.
  genericSample* createChannelRef(int channelIndex);
  void setFilePath(std::string_view path);
  void setName(std::string_view text);
  // Publishes changes of the shared parameters to Pin.
  void updateChannels();

  int getChannelCount() const;
  // New channels are silent. Returns false and changes nothing if a channel to be removed is in
  // use.
  bool setChannelCount(int count);
  // Makes this record represent another channel of its file. Other records are unchanged.
  bool setChannel(int channelIndex);
  // Bytes per value; the same for all channels (-1: the record's own).
  int getChannelBytesPS(int channelIndex) const;
  int getChannelSize(int channelIndex) const;
  // Null if the channel doesn't exist or has no sound data.
  std::byte* getChannelBuffer(int channelIndex) const;
  // A script handle for the sound data of a channel (-1: the record's own); 0 without data.
  int32_t getBufferAdr(int channelIndex) const;
  // The channels that edits through this record change: its own, or all for a whole sample.
  std::vector<int> EditedChannels() const;
  // The sound of these channels, for an edit in place. Copies blocks that a worker references. At
  // most one such object may exist per file.
  WritableSound WritableChannels(const std::vector<int>& channelIndexes);
  // The current sound. Thread-safe.
  PinnedSound Pin() const;

  // Replaces the sound data of this record's channel (channel 0 for a whole sample) by `positions`
  // values of `bytesPerValue` bytes. Truncates or pads other channels to the same length and
  // converts them to the same width. `block` may be longer.
  void setBuffer(SampleBlock block, int bytesPerValue, int positions);
  // Replaces the sound data of all channels. A null entry keeps that channel, resized and
  // converted.
  void setBuffers(std::vector<SampleBlock> blocks, int bytesPerValue, int positions);
  // Converts the values: drops the lowest bits or appends zeros. No effect unless `bits` is 1
  // to 32.
  void setBitsPerSample(int bits);

  // Accessors of single values for the record's width.
  using GetMethod = int32_t (genericSample::*)(int32_t position) const;
  using SetMethod = void (genericSample::*)(int32_t position, int32_t value);
  GetMethod GetBufferGetMethod() const;
  SetMethod GetBufferSetMethod(int reserved) const;

  // Takes ownership of the file object with its sound data, parameters and unknown chunks. If it
  // has several channels, a record of the first channel then represents the whole sample.
  void setWavSample(BasicSample* file, unsigned reserved);
  void writeValuesToWav(WavSample* file) const;
  void writeValuesToAif(AifSample* file) const;

  // The pitch track, shared by the file's records. Thread-safe.
  bool hasPitchData() const;
  void clearPitchData();
  void setPitchData(std::vector<float> track);
  std::shared_ptr<const std::vector<float>> pitchTrack() const;
  // Returns the number of values and a script handle for the track; both 0 without a track.
  int32_t PitchTrackHandle(int32_t& handle) const;

 private:
  friend class zyl::SampleFile;
  explicit genericSample(zyl::SampleFile* file) : useCount(0), file_(file) {}
  ~genericSample() = default;
  static int32_t NextRecordId();
  template <int kBytes>
  int32_t GetValue(int32_t position) const;
  template <int kBytes>
  void SetValue(int32_t position, int32_t value);

  zyl::SampleFile* file_ = nullptr;
  int lockCount_ = 0;
};

ZYLHOST_API genericSample* newSample();
namespace zyl {
struct ReleaseSampleUse {
  void operator()(genericSample* sample) const { sample->deleteSample(); }
};
// Owns one use of a record.
using SampleUse = std::unique_ptr<genericSample, ReleaseSampleUse>;
// Adds a use of a record, or returns null for null.
inline SampleUse AddUse(genericSample* record) {
  if (record != nullptr) ++record->useCount;
  return SampleUse(record);
}
}  // namespace zyl

// Returns a record of a sample file, which is loaded from disk if it isn't in memory; channel -1 is
// the whole sample. With `data` 0 reads only the header, and the record isn't found by later calls.
// Returns null, with a diagnostic, if the file can't be read, if it has no such channel, or if
// memory runs out.
ZYLHOST_API genericSample* loadSample(const char* path, int data, int reserved, int channel);
namespace zyl {
// The same, but throws std::bad_alloc if memory runs out.
ZYLHOST_API SampleUse LoadSampleOrThrow(const char* path, bool data, int channel);
}  // namespace zyl
// Finds a loaded record by file and channel (-1: the whole sample). Doesn't add a use.
ZYLHOST_API genericSample* findSampleFN(const char* path, int reserved, int channel);
// Finds a sample of a program's zones by path, file name or base name; channel -1 matches any.
// Doesn't add a use.
ZYLHOST_API genericSample* findSampleInPrgFN(const char* fileName, akaiProgram* program,
                                             int channel);
namespace zyl {
// Reloads a loaded sample file in two steps. The constructor and Record may throw and have no
// visible effect; Commit replaces the file and doesn't throw. If no record of the new file is in
// use at the end, it is deleted.
class ZYLHOST_API FileReload {
 public:
  // Reads the file that is loaded from `path`.
  explicit FileReload(const char* path);
  FileReload(const FileReload&) = delete;
  FileReload& operator=(const FileReload&) = delete;

  // Whether Commit replaces the record's file.
  bool Replaces(const genericSample& sample) const;
  // The record of a channel (-1: the whole sample) that findSampleFN finds after Commit, with one
  // more use. Null if the channel doesn't exist.
  SampleUse Record(int channel) const;
  // Assigns the new records to the zones and clears filePath in the old ones. No effect if the file
  // couldn't be read.
  void Commit() noexcept;

 private:
  struct Zone {
    akaiProgram* program;
    genericSample** place;
    SampleUse record;
  };
  SampleUse loaded_;  // a record of the loaded file; null if none is loaded
  SampleUse fresh_;   // a record of the new file; null if it couldn't be read
  std::vector<Zone> zones_;
};
}  // namespace zyl
// Keeps the record's sound resident; returns the new lock value, never 0.
ZYLHOST_API int lockSample(genericSample* sample);
ZYLHOST_API void unlockSample(genericSample* sample);
// Stores the sample's file at `path` in the format of its extension (wav, aif, aiff, aifc).
// `channelMask` selects channels by bit; 0 selects all. Storing a whole file to its own path clears
// its dirty flag.
ZYLHOST_API bool writeSample(genericSample* sample, const char* path, int channelMask);
// 1 "s", 2 "wav", 3 "aif", ignoring case; 0 for other extensions.
ZYLHOST_API int getTypeFromExtension(const char* extension);
