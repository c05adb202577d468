// Sample files: WAVE and AIFF objects over their chunks.
//
// A file object (WavSample, AifSample) holds what one file says: its format, its sampler
// parameters, its sound as per-channel ("linear") buffers, and every chunk that it does not know,
// byte for byte, so that a file read and written again loses nothing.
//
// Sound in memory is planar: one buffer per channel, signed little-endian values of
// BytesPerValue() bytes, whatever the file's own byte order and sign convention are. Positions
// count frames from 0; loop ends are inclusive. Each format's own conventions (unsigned 8-bit,
// big-endian values, markers that lie between frames) are converted where the file is read or
// written and nowhere else.
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

// One chunk kept as it was read: four characters and the bytes after the size word, padding aside.
struct ListChunk {
  char id[5] = "";
  std::vector<std::byte> data;
};

// A loop in frames. `fineLen` is the fraction of a frame in units of 1/2^32; `times` 0 is endless.
struct RiffLoop {
  uint32_t start = 0;
  uint32_t end = 0;  // inclusive
  uint32_t fineLen = 0;
  uint32_t times = 0;
  uint32_t type = 0;  // 0 forward, 1 alternating, 2 backward, else the file's own

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
  int32_t end = -1;             // last frame played; -1 = the last of the file
  std::vector<RiffLoop> loops;  // at most kMaxLoops

  bool operator==(const RiffParameters&) const = default;
};

// An open file that replaces its target only when Close() has stored every byte: what is written
// goes to a temporary file in the target's folder, is flushed to disk and renamed. An object that
// is destroyed without a successful Close leaves the target as it was. `formatFlag` is the flag of
// the sample object that will be written; it is only carried.
class ZYLHOST_API RiffFile {
 public:
  explicit RiffFile(const std::string& path, uint8_t formatFlag = 0);
  ~RiffFile();
  RiffFile(const RiffFile&) = delete;
  RiffFile& operator=(const RiffFile&) = delete;

  bool Write(const void* bytes, size_t count);
  // True when all went well and the target now holds what was written.
  bool Close();
  // Gives up: the temporary file goes, Close answers false. A sample's failed Write does this.
  void Abandon();
  bool Good() const;
  uint8_t FormatFlag() const;
  // Why Good or Close answers false, in one line that names the path; else empty.
  const std::string& Error() const;

 private:
  struct Inside;
  std::unique_ptr<Inside> inside_;
};

namespace zyl {
struct FileOrigin;    // what the file said that is no parameter, for writing it again
struct SampleAccess;  // the way of readers and writers into a sample object
}  // namespace zyl

class ZYLHOST_API BasicSample {
 public:
  BasicSample();
  virtual ~BasicSample();
  BasicSample(const BasicSample&) = delete;
  BasicSample& operator=(const BasicSample&) = delete;

  // Takes all buffers back that SetLinBuffer handed in; their owner keeps them. An object made
  // writable by CreateInterleavedBuffer and not written since keeps a copy of the sound of its own,
  // so that it can be written afterwards; DeleteInterleavedBuffer drops that copy.
  virtual void DetachLinBuffers();
  // Lends the caller's buffer of `size` values of `bytesPerSample` bytes as channel `channelIndex`.
  virtual void SetLinBuffer(void* buffer, unsigned bytesPerSample, unsigned size,
                            unsigned channelIndex);
  // Brings the channels to one length (the longest, the rest silence) and one width (the widest)
  // and makes the object writable. False, and the object stays invalid, when the file would pass
  // 4 GiB or a channel has no buffer. Nothing is copied here: Write interleaves block by block, so
  // lent buffers must live until then (or until DetachLinBuffers).
  virtual bool CreateInterleavedBuffer();
  // The object holds a whole file image: a known format and sound for all its channels.
  virtual bool IsValid() const;
  // The title. An empty one is not written, and removes the one that the file came with.
  virtual void SetName(const char* name);
  // Writes the file's bytes. False when the object is not valid or the file refuses them; the file
  // is then abandoned.
  virtual bool Write(RiffFile& file) = 0;
  // Empties the object of sound and gives it `count` channels (at most kMaxChannels) without
  // buffers.
  virtual void SetChannelCount(unsigned count);

  // Gives the object per-channel buffers of its own, for at most `maxChannels` channels: what it
  // read is kept, lent buffers are copied, channels without sound get silence. Further channels go.
  void CreateLinBuffers(int maxChannels);
  // The object can no longer be written until CreateInterleavedBuffer; channel buffers stay.
  void DeleteInterleavedBuffer();
  // Hands a channel's own buffer to the caller (delete[] as std::byte*); null when there is none.
  std::byte* TakeLinBuffer(unsigned channelIndex);
  const std::byte* LinBuffer(unsigned channelIndex) const;

  unsigned ChannelCount() const;
  // Frames of the file as read or planned, also when its sound was not loaded.
  uint64_t FrameCount() const;
  unsigned BytesPerValue() const;
  // As the file declares; rounded up to whole bytes it is BytesPerValue.
  unsigned BitsPerValue() const { return bits_; }
  void SetBitsPerValue(unsigned bits);
  const std::string& Name() const { return name_; }
  uint8_t FormatFlag() const { return formatFlag_; }

  RiffParameters parameters;
  // Chunks that the format does not know, in file order.
  std::vector<ListChunk> otherChunks;
  // How the data was stored, for people: "PCM 16 bit", "FLAC", ...
  std::string encoding;

 protected:
  friend struct zyl::SampleAccess;
  struct Channel;
  // Length of the whole file with `soundBytes` of sound.
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
  // The image in a new[] buffer that the caller owns; returns its length, 0 when invalid.
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
// other sound file through libsndfile. `withData` false reads format and parameters only. Null when
// the file is no sound file or nothing whole is in it; `reason` then says why. It is also set, to
// say what was mended, when a damaged file gave a usable object. The reason does not name the path.
// An object read without data knows its length and parameters but is not valid for writing. Files
// of other containers come as a WavSample.
ZYLHOST_API std::unique_ptr<BasicSample> ReadSampleFile(const std::string& path, bool withData,
                                                        std::string& reason);

// Every chunk of a file in order, known or not: id, size as declared, offset of its data.
struct ChunkInfo {
  std::string id;
  uint64_t size = 0;
  uint64_t offset = 0;
};
ZYLHOST_API std::vector<ChunkInfo> ListFileChunks(const std::string& path);
