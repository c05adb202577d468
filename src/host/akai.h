// The program library: program and sample records, their files and their memory.
//
// Records are counted. Whoever gets one from a function here has one use of it and gives it back
// with deleteAkaiProgram or genericSample::deleteSample; a record goes with its last use. All
// records belong to the script thread, but for pitch data and pinned sound, which workers share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
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

// Told of every sample record that is about to go away, while it is still whole.
class ZYLHOST_API AkaiInfoDispatcher {
 public:
  virtual void OnSampleDeleting(genericSample* sample) = 0;

 protected:
  ~AkaiInfoDispatcher() = default;
};
extern ZYLHOST_API AkaiInfoDispatcher* g_pInfoDispatcher;

// ---- Samples ----

// One of the 16 loops of a sample.
struct ZYLHOST_API genericLoop {
  int32_t loopStart = 0;     // first position
  int32_t loopEnd = 0;       // last position
  uint32_t loopFineLen = 0;  // fine part, in units of 1/4294967295 position
  int32_t loopTimes = 0;     // repeats, 0 endless
  uint32_t loopType = 0;     // as the file has it: 0 forward, 1 alternating, 2 backward

  void Init();
};

// What all records of one file share: an edit through one of them is seen through every other.
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

// A channel's sound: signed little-endian values, never shared between two channels. Someone who
// holds a block (a worker) sees it unchanged: an edit then works on a copy.
using SampleBlock = std::shared_ptr<std::byte[]>;
ZYLHOST_API SampleBlock NewSampleBlock(size_t bytes);  // its bytes are not set

// A sample or one channel of it. The records of one file are linked (channel order) and share
// parameters and sound; a file goes when none of its records is used any more.
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
  int32_t copyCount = 1;  // the file's number among loaded ones of its name, from 1
  int32_t channel = 0;    // -1 for a whole sample
  const char* filePath = nullptr;
  const char* name = nullptr;
  std::byte* buffer = nullptr;              // of this channel; of channel 0 for a whole sample
  uint32_t sourceId = 0;                    // the same in all records of a file
  const int32_t recordId = NextRecordId();  // of this record alone, never 0
  genericSample* prevChannel = nullptr;
  genericSample* nextChannel = nullptr;

  // Makes the record an empty sample of a type (1 "s", 2 WAVE, 3 AIFF) with `channels` channels,
  // held to 1..16. With one channel the record stands for it, with more for the whole.
  void create(int type, int channels);
  // Gives one use back; the record may be gone afterwards.
  void deleteSample();
  // The record of a channel of this file, with one more use; null when there is no such channel.
  genericSample* createChannelRef(int channelIndex);
  void setFilePath(std::string_view path);
  void setName(std::string_view text);
  // Makes what was changed in the shared parameters known to all records of the file.
  void updateChannels();

  int getChannelCount() const;
  // New channels are silent; a channel in use cannot be dropped: false, nothing changed.
  bool setChannelCount(int count);
  // Makes this record stand for another channel of its file; other records stay what they are.
  bool setChannel(int channelIndex);
  // Bytes of one value; the same for all channels (-1 is the record's own).
  int getChannelBytesPS(int channelIndex) const;
  int getChannelSize(int channelIndex) const;
  // Null when there is no such channel or no sound.
  std::byte* getChannelBuffer(int channelIndex) const;
  // The handle of the sound of a channel (-1: the record's own) for scripts, 0 for none.
  int32_t getBufferAdr(int channelIndex) const;
  // The channels that an edit through this record changes: its own, or all for a whole sample.
  std::vector<int> EditedChannels() const;
  // The channel's sound for an edit in place: a block that a worker holds is copied first.
  std::byte* WritableChannel(int channelIndex);
  // Keeps the channels' sound of this moment for a worker, in channel order.
  std::vector<SampleBlock> PinChannels() const;

  // Replaces the sound of this record's channel (channel 0 for a whole sample) by `positions`
  // values of `bytesPerValue` bytes; the other channels are cut or filled with silence, and
  // converted, to fit. `block` may be longer.
  void setBuffer(SampleBlock block, int bytesPerValue, int positions);
  // Replaces the sound of every channel; an empty entry keeps that channel, made to fit.
  void setBuffers(std::vector<SampleBlock> blocks, int bytesPerValue, int positions);
  // Converts the values: fewer bits drop the lowest, more bits add zeros. 1 to 32 bits;
  // other numbers change nothing.
  void setBitsPerSample(int bits);

  // A reader and a writer of single values, by the width of the record.
  using GetMethod = int32_t (genericSample::*)(int32_t position) const;
  using SetMethod = void (genericSample::*)(int32_t position, int32_t value);
  GetMethod GetBufferGetMethod() const;
  SetMethod GetBufferSetMethod(int reserved) const;

  // Takes the file object over: its sound, parameters and kept chunks. With several channels the
  // record of a first channel then stands for the whole.
  void setWavSample(BasicSample* file, unsigned reserved);
  void writeValuesToWav(WavSample* file) const;
  void writeValuesToAif(AifSample* file) const;

  // The pitch track, shared by the file's records; from any thread.
  bool hasPitchData() const;
  void clearPitchData();
  void setPitchData(std::vector<float> track);
  std::shared_ptr<const std::vector<float>> pitchTrack() const;
  // The number of values, and the handle of the track for scripts; both 0 when there is none.
  int32_t PitchTrackHandle(int32_t& handle) const;

  // Bytes that the record's file really takes, sound and records.
  int64_t FileMemory() const;

 private:
  friend class zyl::SampleFile;
  explicit genericSample(zyl::SampleFile* file) : useCount(0), file_(file) {}
  ~genericSample();
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
// One use of a record.
using SampleUse = std::unique_ptr<genericSample, ReleaseSampleUse>;
}  // namespace zyl

// A record of a sample file: the one already loaded (one more use), else from disk. Channel -1 is
// the whole sample. `data` false reads only what a header says, and keeps such a record apart from
// the loaded ones. Null, with a diagnostic, when the file or the channel is not to be had.
ZYLHOST_API genericSample* loadSample(const char* path, int data, int reserved, int channel);
// A loaded record by file and channel (-1: the whole sample); no use is added.
ZYLHOST_API genericSample* findSampleFN(const char* path, int reserved, int channel);
// A program's zone sample by path, file name or base name; channel -1 is any. No use is added.
ZYLHOST_API genericSample* findSampleInPrgFN(const char* fileName, akaiProgram* program,
                                             int channel);
// Reads a loaded file anew: zones get the new records, replaced ones lose their filePath. False
// when the file cannot be read; nothing has changed then.
ZYLHOST_API bool reloadSample(const char* path);
// Ends what was loaded from `path` when nobody has taken a use of it since.
ZYLHOST_API void dropUnusedSample(const char* path);
// Keeps the record's sound resident; returns the new lock value, never 0.
ZYLHOST_API int lockSample(genericSample* sample);
ZYLHOST_API void unlockSample(genericSample* sample);
// Stores the sample's file at `path` as its extension says (wav, aif, aiff, aifc). `channelMask`
// selects channels by bit, 0 is all. A file stored to its own path is clean afterwards.
ZYLHOST_API bool writeSample(genericSample* sample, const char* path, int channelMask);
// 1 "s", 2 "wav", 3 "aif", in any case; 0 for everything else.
ZYLHOST_API int getTypeFromExtension(const char* extension);

// ---- Programs ----

// A keygroup's extension record with what lives beside its image.
class ZYLHOST_API vendlKeyGroup : public vendlKeyGroupImage {
 public:
  vendlKeyGroup();
  // The path of a zone's sample, null for none.
  const char* SamplePath(int zone) const;
  // `keepChannel` true keeps the channel that the zone will play.
  void setSamplePath(int zone, const char* path, bool keepChannel);
  // The same without an allocation.
  void TakeSamplePath(int zone, std::string path, bool keepChannel) noexcept;
  void EnableTolmoChunk();
  void setDefault();

  // The channel that goes with each path; it counts while the zone has no sample.
  int32_t pathChannel[kZones] = {0, 0, 0, 0};
  // Of a missing sample, where it would lie had its folder moved along with the program file; the
  // next write names that place too. Empty for every other zone.
  std::string movedPath[kZones];

 private:
  std::string paths_[kZones];
};

// A program's header record and its organ extension, which lives beside the image.
class ZYLHOST_API akaiProgramHdr : public akaiProgramHdrImage {
 public:
  bool IsTolmoChunk() const { return tolmoChunk != nullptr; }
  // Creates the extension, filled with zeros, when there is none.
  void EnableTolmoChunk();

  std::unique_ptr<TolmoChunk> tolmoChunk;

 protected:
  akaiProgramHdr() : akaiProgramHdrImage() {}
};

class ZYLHOST_API akaiProgram : public akaiProgramHdr {
 public:
  // First elements of the allocated records; null while there are none.
  akaiKeyGroup* keyGroupArray = nullptr;
  vendlKeyGroup* keyGroupExtensions = nullptr;
  genericSample** sampleTable = nullptr;

  // How many keygroups can be reached: what `keyGroups` says, held to what is allocated.
  int KeyGroupCount() const {
    return keyGroups < 0 ? 0 : keyGroups < allocated_ ? keyGroups : allocated_;
  }
  int AllocatedKeyGroups() const { return allocated_; }

  // The record's file path, whole; the image's field carries what fits.
  const std::string& GetFileName() const { return fileName_; }
  void SetFileName(std::string_view path);
  // Gives the record a path in the temporary folder that no file has, and returns it.
  std::string setUniqueTempName();

  // Each of the changes below either happens whole or throws std::bad_alloc and changes nothing.
  void setDefault();
  void copyFrom(const akaiProgram* source, bool copySamples);

  // Adds a keygroup at `index` (outside 0..count: at the end), copied with its samples from the
  // source's when there is one. Null when the source has no such keygroup.
  akaiKeyGroup* newKeyGroup(int index, akaiProgram* source, int sourceIndex);
  // The keygroup at `from` ends at `to`, those between shift by one. Other indexes change nothing.
  void moveKeyGroup(int from, int to);
  void deleteKeyGroup(int index);

  // Loads the file and puts its channel into the zone. The path stays with the zone also when the
  // file is not to be had; false then.
  bool setSample(const char* path, int keygroup, int zone, int channel, int reserved);
  // Puts a record (one use of it is taken over) or nothing into the zone, and its path with it.
  void setSample(genericSample* sample, int keygroup, int zone);
  // Puts another channel of the zone's sample file into the zone, which keeps its path. False
  // when the file has no such channel. The loaded file is used and never read again.
  bool setSampleChannel(int keygroup, int zone, int channel);
  bool lockSample(int keygroup, int zone);
  void unlockSample(int keygroup, int zone);

  void setByteResonance(int keygroup, uint8_t value);
  void setUShortResonance(int keygroup, uint16_t value);

  // Makes a program level change known where the locked record is read.
  void updateLockedTolmo();

  // Bytes in use by this record, with the samples of its zones (each file once).
  int getTotalMem(bool samples) const;
  int getTotalLockedMem(bool samples) const;

 private:
  friend struct ProgramStore;
  akaiProgram();
  ~akaiProgram();
  // Everything but the locks and the file name, built aside before it replaces what there is.
  struct Contents {
    akaiProgramHdrImage header{};
    std::vector<akaiKeyGroup> keygroups;
    std::vector<vendlKeyGroup> extensions;
    std::vector<genericSample*> samples;  // their uses are counted by Replace
    std::unique_ptr<TolmoChunk> tolmo;
    std::vector<ListChunk> otherChunks;
  };
  void Replace(Contents next) noexcept;
  void ReserveKeyGroup();
  // Points the record at its arrays, and with Rebind also takes their count over.
  void BindArrays() noexcept;
  void Rebind() noexcept;
  void Unlock() noexcept;
  void Lock() noexcept;
  bool Reaches(int keygroup, int zone) const;
  // Takes one use of the sample over and releases the one that was there.
  void PutSample(int index, genericSample* sample) noexcept;
  void PutZone(int keygroup, int zone, genericSample* sample, std::string path,
               int channel) noexcept;
  int64_t RecordMemory() const;

  // Chunks of a program file that this version does not know, kept for the next write.
  std::vector<ListChunk> otherChunks_;
  std::vector<akaiKeyGroup> keyGroupStore_;
  std::vector<vendlKeyGroup> extensionStore_;
  std::vector<genericSample*> sampleStore_;
  int allocated_ = 0;
  std::string fileName_;
  int useCount_ = 1;
};

// Null without memory.
ZYLHOST_API akaiProgram* newAkaiProgram();
ZYLHOST_API void deleteAkaiProgram(akaiProgram* program);
ZYLHOST_API void lockAkaiProgram(akaiProgram* program);
ZYLHOST_API void unlockAkaiProgram(akaiProgram* program);
// Reads a program file; `loadSamples` 0 leaves the zones with their paths and no samples. Null,
// with a diagnostic, when the file is not whole.
ZYLHOST_API akaiProgram* readAkaiProgram(int reserved, const char* path, int loadSamples);
// A held record by its file's path, else by its program name; one use is added.
ZYLHOST_API akaiProgram* findAkaiProgram(int reserved, const char* name);

// Write modes, a sum of: 2 the changed samples as well, 16 sample paths relative to the program
// file, 32 absolute sample paths. Other bits have no effect.
inline constexpr int kWriteSamples = 2;
inline constexpr int kWriteRelativePaths = 16;
inline constexpr int kWriteAbsolutePaths = 32;
// Stores the program at `path`. Returns 0, with a diagnostic, when something could not be stored,
// and writes nothing when `path` is the file of one of the program's samples.
ZYLHOST_API int writeAkaiProgram(akaiProgram* program, int reserved, const char* path, int mode);

// Bytes in use by all programs and their samples (each file once), and by what of it is locked.
ZYLHOST_API int getTotalMem();
ZYLHOST_API int getTotalLockedMem();

// The preset names of a SoundFont 2 file: `count` names of 21 bytes each (20 and a terminator), in
// a block that the caller frees with delete. Null, with a diagnostic, for a damaged file.
ZYLHOST_API char* createPresetArray(const char* path, int& count);
