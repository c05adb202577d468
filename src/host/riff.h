// Sample files: WAVE and AIFF objects over their chunks.
//
// A file object (WavSample, AifSample) holds the contents of one file: its format, its sampler
// parameters, its sound data as per-channel ("linear") buffers, and every unknown chunk byte for
// byte, so that reading a file and writing it back loses nothing.
//
// Sound data in memory is planar: one buffer per channel, signed little-endian values of
// BytesPerValue() bytes, regardless of the file's byte order and sign convention. Positions count
// frames from 0; loop ends are inclusive. Format conventions (unsigned 8-bit values, big-endian
// values, markers between frames) are converted only when the file is read or written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "export.h"

inline constexpr int kMaxLoops = 16;
inline constexpr int kMaxChannels = 16;

// One unmodified chunk: its four-character ID and its data without the padding byte.
struct ListChunk {
  char id[5] = "";
  std::vector<std::byte> data;
};

// A loop in frames. `fineLen` is a fraction of a frame in units of 1/2^32; `times` 0 loops forever.
struct RiffLoop {
  uint32_t start = 0;
  uint32_t end = 0;  // inclusive
  uint32_t fineLen = 0;
  uint32_t times = 0;
  uint32_t type = 0;  // 0 forward, 1 alternating, 2 backward; others are file-specific

  bool operator==(const RiffLoop&) const = default;
};

// The sampler parameters of a file.
struct RiffParameters {
  int32_t rateHz = 44100;
  int32_t key = 60;          // root key, MIDI number
  int32_t tune = 0;          // playback tuning in 1/256 semitone
  int32_t playbackType = 2;  // 0 loop in release, 1 loop until release, 2 no loops, 3 to end
  int8_t holdLoopTuneOff = 0;
  int32_t start = 0;            // first frame played
  int32_t end = -1;             // last frame played; -1 = last frame of the file
  std::vector<RiffLoop> loops;  // at most kMaxLoops

  bool operator==(const RiffParameters&) const = default;
};

// An output file that replaces its target atomically: Write appends to a temporary file in the
// target's folder; Close flushes it to disk and renames it over the target. Destroying the object
// without a successful Close leaves the target unchanged. `formatFlag` is the flag of the sample
// object to be written; this class only stores it.
class ZYLHOST_API RiffFile {
 public:
  explicit RiffFile(const std::string& path, uint8_t formatFlag = 0);
  ~RiffFile();
  RiffFile(const RiffFile&) = delete;
  RiffFile& operator=(const RiffFile&) = delete;

  bool Write(const void* bytes, size_t count);
  // Returns true if the target now holds everything that was written.
  bool Close();
  // Deletes the temporary file; Close then returns false. BasicSample::Write calls this on failure.
  void Abandon();
  bool Good() const;
  uint8_t FormatFlag() const;
  // Why Good or Close returned false, as one line with the path; empty if there was no error.
  const std::string& Error() const;

 private:
  struct Inside;
  std::unique_ptr<Inside> inside_;
};

namespace zyl {
struct FileOrigin;    // non-parameter contents of the file read, needed to write it back
struct SampleAccess;  // gives readers and writers access to private members
}  // namespace zyl

class ZYLHOST_API BasicSample {
 public:
  BasicSample();
  virtual ~BasicSample();
  BasicSample(const BasicSample&) = delete;
  BasicSample& operator=(const BasicSample&) = delete;

  // Removes all buffers lent through SetLinBuffer; the caller still owns them. If the object is
  // writable (CreateInterleavedBuffer) and has not been written yet, it copies the sound data first
  // so that it can still be written; DeleteInterleavedBuffer frees that copy.
  virtual void DetachLinBuffers();
  // Uses the caller's buffer of `size` values of `bytesPerSample` bytes as channel `channelIndex`.
  // The caller keeps ownership.
  virtual void SetLinBuffer(void* buffer, unsigned bytesPerSample, unsigned size,
                            unsigned channelIndex);
  // Makes the object writable with all channels at the longest channel's length (shorter ones are
  // padded with silence) and the widest channel's width. Returns false and leaves the object
  // invalid if the file would exceed 4 GiB or a channel has no buffer. Copies nothing: Write
  // interleaves block by block, so lent buffers must outlive it (or be removed with
  // DetachLinBuffers).
  virtual bool CreateInterleavedBuffer();
  // Returns true if the object can be written: it has a format and sound data for every channel.
  virtual bool IsValid() const;
  // Sets the title. An empty title isn't written and removes the title that was read.
  virtual void SetName(const char* name);
  // Writes the whole file. Returns false and abandons the file if the object is invalid or a write
  // fails.
  virtual bool Write(RiffFile& file) = 0;
  // Frees the sound data and resizes to `count` channels (at most kMaxChannels) without buffers.
  virtual void SetChannelCount(unsigned count);

  // Drops channels beyond `maxChannels` and ensures that the object owns the buffers of the others:
  // keeps those that were read, copies lent ones, fills missing ones with silence.
  void CreateLinBuffers(int maxChannels);
  // Makes the object unwritable until the next CreateInterleavedBuffer; keeps channel buffers.
  void DeleteInterleavedBuffer();
  // Transfers an owned channel buffer to the caller (free with delete[] as std::byte*); null if the
  // channel owns none.
  std::byte* TakeLinBuffer(unsigned channelIndex);
  const std::byte* LinBuffer(unsigned channelIndex) const;

  unsigned ChannelCount() const;
  // Frames of the file as read or to be written; valid even if the sound data wasn't loaded.
  uint64_t FrameCount() const;
  unsigned BytesPerValue() const;
  // As declared by the file; BytesPerValue is this rounded up to whole bytes.
  unsigned BitsPerValue() const { return bits_; }
  void SetBitsPerValue(unsigned bits);
  const std::string& Name() const { return name_; }
  uint8_t FormatFlag() const { return formatFlag_; }

  RiffParameters parameters;
  // Unknown chunks in file order.
  std::vector<ListChunk> otherChunks;
  // Human-readable storage format: "PCM 16 bit", "FLAC", ...
  std::string encoding;

 protected:
  friend struct zyl::SampleAccess;
  struct Channel;
  // Length of the whole file if it holds `soundBytes` of sound data.
  virtual uint64_t PlannedFileBytes(uint64_t soundBytes) const;

  std::vector<Channel> channels_;
  std::unique_ptr<zyl::FileOrigin> origin_;
  std::string name_;
  uint64_t frameCount_ = 0;
  unsigned bits_ = 16;
  unsigned bytesPerValue_ = 2;
  uint8_t formatFlag_ = 0;  // WAVE: 1 extensible header. AIFF: 1 AIFC
  bool writable_ = false;
  bool written_ = false;
};

class ZYLHOST_API WavSample : public BasicSample {
 public:
  WavSample();
  explicit WavSample(ListChunk* list);
  ~WavSample() override;
  bool Write(RiffFile& file) override;
  // Stores the file image in a new[] buffer that the caller owns. Returns its length, 0 on failure.
  int WriteToMem(char** image);
  bool ReadFromMem(const char* image, int length);

 protected:
  uint64_t PlannedFileBytes(uint64_t soundBytes) const override;
};

class ZYLHOST_API AifSample : public BasicSample {
 public:
  AifSample();
  ~AifSample() override;
  bool Write(RiffFile& file) override;

 protected:
  uint64_t PlannedFileBytes(uint64_t soundBytes) const override;
};

// Reads a WAVE, AIFF or AIFC file with our own chunk code (PCM of 8, 16, 24 or 32 bits), and any
// other sound file through libsndfile, which yields a WavSample. If `withData` is false, reads only
// format and parameters; such an object can't be written. Returns null if the file isn't a sound
// file or has no usable data, with the cause in `reason`. `reason` also lists the repairs when a
// damaged file was read. It doesn't contain the path.
ZYLHOST_API std::unique_ptr<BasicSample> ReadSampleFile(const std::string& path, bool withData,
                                                        std::string& reason);

// Lists every chunk of a file in order: ID, declared size, offset of its data.
struct ChunkInfo {
  std::string id;
  uint64_t size = 0;
  uint64_t offset = 0;
};
ZYLHOST_API std::vector<ChunkInfo> ListFileChunks(const std::string& path);
