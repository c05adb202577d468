// The program library: program and sample records, their files and their memory.
//
// Records are reference-counted: a function here that returns a record adds a use, unless noted
// otherwise. Release it with deleteAkaiProgram or genericSample::deleteSample; the last release
// destroys the record. Only Pin and the pitch data are thread-safe; all other functions must be
// called on the script thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "akaiRecords.h"
#include "akaiSample.h"
#include "export.h"
#include "riff.h"

// A keygroup's extension record with the data stored outside its image.
class ZYLHOST_API vendlKeyGroup : public vendlKeyGroupImage {
 public:
  vendlKeyGroup();
  // The path of a zone's sample, or null.
  const char* SamplePath(int zone) const;
  // Resets pathChannel unless `keepChannel` is true.
  void setSamplePath(int zone, const char* path, bool keepChannel);
  // The same without allocating.
  void TakeSamplePath(int zone, std::string path, bool keepChannel) noexcept;
  void EnableTolmoChunk();
  void setDefault();

  // The channel for each path, used while the zone has no sample.
  int32_t pathChannel[kZones] = {0, 0, 0, 0};
  // For a missing sample: its relative path, resolved against the program file's current folder.
  // The next write stores it again. Empty for other zones.
  std::string movedPath[kZones];

 private:
  std::string paths_[kZones];
};

// A program's header record, and its organ extension, which is stored outside the image.
class ZYLHOST_API akaiProgramHdr : public akaiProgramHdrImage {
 public:
  bool IsTolmoChunk() const { return tolmoChunk != nullptr; }
  // Creates a zero-filled extension if there is none.
  void EnableTolmoChunk();

  std::unique_ptr<TolmoChunk> tolmoChunk;

 protected:
  akaiProgramHdr() : akaiProgramHdrImage() {}
};

class ZYLHOST_API akaiProgram : public akaiProgramHdr {
 public:
  // First elements of the record arrays; null if these are empty.
  akaiKeyGroup* keyGroupArray = nullptr;
  vendlKeyGroup* keyGroupExtensions = nullptr;
  genericSample** sampleTable = nullptr;

  // The number of accessible keygroups: `keyGroups` clamped to the allocated ones.
  int KeyGroupCount() const {
    return keyGroups < 0 ? 0 : keyGroups < allocated_ ? keyGroups : allocated_;
  }
  int AllocatedKeyGroups() const { return allocated_; }

  // The full file path; the image's field may hold a truncated one.
  const std::string& GetFileName() const { return fileName_; }
  void SetFileName(std::string_view path);
  // Sets the path to an unused one in the temporary folder and returns it.
  std::string setUniqueTempName();

  // The functions below throw only std::bad_alloc and have the strong exception guarantee.
  void setDefault();
  void copyFrom(const akaiProgram* source, bool copySamples);

  // Inserts a keygroup at `index` (outside 0..count: at the end), a copy of the source's keygroup
  // with its samples if `source` isn't null. Returns null if the source has no such keygroup.
  akaiKeyGroup* newKeyGroup(int index, akaiProgram* source, int sourceIndex);
  // Moves a keygroup; those between shift by one. No effect if an index is out of range.
  void moveKeyGroup(int from, int to);
  void deleteKeyGroup(int index);

  // Loads the file and assigns its channel to the zone. If the file can't be loaded, returns false
  // and assigns only the path.
  bool setSample(const char* path, int keygroup, int zone, int channel, int reserved);
  // Assigns a loaded record or null.
  void setSample(zyl::SampleUse sample, std::string path, int keygroup, int zone,
                 int channel) noexcept;
  // Assigns a record, or null, and its path to the zone. Takes ownership of one use.
  void setSample(genericSample* sample, int keygroup, int zone);
  // Assigns another channel of the zone's loaded sample file to the zone. Keeps the path. Returns
  // false if the file has no such channel.
  bool setSampleChannel(int keygroup, int zone, int channel);
  bool lockSample(int keygroup, int zone);
  void unlockSample(int keygroup, int zone);

  void setByteResonance(int keygroup, uint8_t value);
  void setUShortResonance(int keygroup, uint16_t value);

  // Publishes a change of the organ extension to readers of the locked record.
  void updateLockedTolmo();

  // Bytes used by this record and, if `samples` is true, by the sample files of its zones, each
  // counted once.
  int getTotalMem(bool samples) const;
  int getTotalLockedMem(bool samples) const;

 private:
  friend struct ProgramStore;
  akaiProgram();
  ~akaiProgram();
  // Swaps everything except locks and uses. `unlocked` isn't locked.
  void SwapContents(akaiProgram& unlocked) noexcept;
  // Fills this new record.
  void CopyContents(const akaiProgram& source);
  void ReserveKeyGroup();
  // BindArrays updates the pointers to the arrays; Rebind also sets the keygroup counts.
  void BindArrays() noexcept;
  void Rebind() noexcept;
  void Unlock() noexcept;
  void Lock() noexcept;
  void LockSamples() noexcept;
  void UnlockSamples() noexcept;
  bool Reaches(int keygroup, int zone) const;
  // Takes ownership of one use of the sample and releases the previous sample.
  void PutSample(int index, genericSample* sample) noexcept;
  void PutZone(int keygroup, int zone, genericSample* sample, std::string path,
               int channel) noexcept;
  int64_t RecordMemory() const;

  // Unknown chunks of the program file, preserved by the next write.
  std::vector<ListChunk> otherChunks_;
  std::vector<akaiKeyGroup> keyGroupStore_;
  std::vector<vendlKeyGroup> extensionStore_;
  std::vector<genericSample*> sampleStore_;
  int allocated_ = 0;
  std::string fileName_;
  int useCount_ = 1;
  bool isSnapshot_ = false;
};

// Returns null if memory runs out.
ZYLHOST_API akaiProgram* newAkaiProgram();
ZYLHOST_API void deleteAkaiProgram(akaiProgram* program);
ZYLHOST_API void lockAkaiProgram(akaiProgram* program);
ZYLHOST_API void unlockAkaiProgram(akaiProgram* program);
// Reads a program file. If `loadSamples` is 0, zones get only their paths. Returns null and writes
// a diagnostic if the file can't be read or is damaged.
ZYLHOST_API akaiProgram* readAkaiProgram(int reserved, const char* path, int loadSamples);
// Finds a program in use by its path, otherwise by its name. Adds a use.
ZYLHOST_API akaiProgram* findAkaiProgram(int reserved, const char* name);
namespace zyl {
// A copy of a program record, with its samples and file name, to roll back changes. Owns one use of
// the record. A sample that is reloaded or gets another path changes in the copy, too.
class ZYLHOST_API ProgramSnapshot {
 public:
  // Throws std::bad_alloc without memory.
  explicit ProgramSnapshot(akaiProgram* program);
  ~ProgramSnapshot();
  ProgramSnapshot(const ProgramSnapshot&) = delete;
  ProgramSnapshot& operator=(const ProgramSnapshot&) = delete;

  // Restores the record, except its locks, and returns it with one more use. Call it at most once:
  // it swaps the record and the copy, so that it allocates nothing.
  akaiProgram* Restore() noexcept;

 private:
  akaiProgram* record_;
  akaiProgram* copy_;
};
}  // namespace zyl

// Write modes, a sum of: 2 the changed samples as well, 16 sample paths relative to the program
// file, 32 absolute sample paths. Other bits have no effect.
inline constexpr int kWriteSamples = 2;
inline constexpr int kWriteRelativePaths = 16;
inline constexpr int kWriteAbsolutePaths = 32;
// Writes the program to `path`. Returns 0, with a diagnostic, if anything couldn't be written.
// Writes nothing if `path` is the file of one of the program's samples.
ZYLHOST_API int writeAkaiProgram(akaiProgram* program, int reserved, const char* path, int mode);

// Bytes used by all programs and their sample files, each counted once; and the locked part.
ZYLHOST_API int getTotalMem();
ZYLHOST_API int getTotalLockedMem();

// Returns the preset names of a SoundFont 2 file: `count` names of 21 bytes each, including a
// terminator, in a block to be freed with delete. Null if the file can't be read or is damaged.
ZYLHOST_API char* createPresetArray(const char* path, int& count);
