// Files for the tests of sample files: a folder that goes with its test, chunks built by hand,
// values of every width, and libsndfile as the other party.
#pragma once

#include <sndfile.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "riff.h"
#include "riff/ByteOrder.h"

namespace zyltest {

using Octets = std::vector<uint8_t>;
using zyl::ByteOrder;
using zyl::FieldWriter;

// In memory where the system has such a folder: the tests flush thousands of files to disk.
class TempFolder {
 public:
  TempFolder() {
    const std::filesystem::path inMemory = "/dev/shm";
    const auto base =
        std::filesystem::is_directory(inMemory) ? inMemory : std::filesystem::temp_directory_path();
    std::string name = (base / "zylriff-XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr) path_ = name;
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string File(const std::string& name) const { return path_ + "/" + name; }
  size_t EntryCount() const {
    const std::filesystem::directory_iterator entries(path_);
    return static_cast<size_t>(std::distance(begin(entries), end(entries)));
  }

 private:
  std::string path_;
};

inline void Store(const std::string& path, const Octets& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

inline Octets Load(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Octets(std::istreambuf_iterator<char>(in), {});
}

// Chunks of one form, in order.
class FormBuilder {
 public:
  FormBuilder(const char* form, const char* type)
      : order_(std::string(form) == "FORM" ? ByteOrder::kBig : ByteOrder::kLittle), out_(order_) {
    out_.Text(form).U32(0).Text(type);
  }
  FormBuilder& Add(const char* id, const zyl::Bytes& data) {
    return AddLying(id, data, static_cast<uint32_t>(data.size()));
  }
  FormBuilder& AddLying(const char* id, const zyl::Bytes& data, uint32_t size) {
    out_.Text(id).U32(size).Raw(data.data(), data.size());
    if (data.size() % 2 != 0) out_.U8(0);
    return *this;
  }
  Octets Done() const {
    FieldWriter head(order_);
    head.Raw(out_.block.data(), 4).U32(static_cast<uint32_t>(out_.block.size() - 8));
    head.Raw(out_.block.data() + 8, out_.block.size() - 8);
    const auto* first = reinterpret_cast<const uint8_t*>(head.block.data());
    return Octets(first, first + head.block.size());
  }

 private:
  ByteOrder order_;
  FieldWriter out_;
};

inline FieldWriter Little() { return FieldWriter(ByteOrder::kLittle); }
inline FieldWriter Big() { return FieldWriter(ByteOrder::kBig); }

inline zyl::Bytes WavFormatChunk(unsigned channels, unsigned bits, unsigned rateHz = 44100) {
  const unsigned frameBytes = channels * ((bits + 7) / 8);
  return Little()
      .U16(1)
      .U16(channels)
      .U32(rateHz)
      .U32(rateHz * frameBytes)
      .U16(frameBytes)
      .U16(bits)
      .block;
}

inline zyl::Bytes AifFormatChunk(unsigned channels, unsigned frames, unsigned bits) {
  // 44100 Hz as an 80-bit number.
  return Big().U16(channels).U32(frames).U16(bits).U16(0x400E).U32(0xAC440000).U32(0).block;
}

// Values of full 32-bit scale, interleaved; the corners of the range first.
inline std::vector<int32_t> TestValues(size_t count, unsigned seed) {
  std::vector<int32_t> values{INT32_MIN, INT32_MAX, 0, -1, 1 << 24, -(1 << 24)};
  std::mt19937 random(seed);
  while (values.size() < count) values.push_back(static_cast<int32_t>(random()));
  values.resize(count);
  return values;
}

// The top `bytes` bytes of the values of one channel, as a planar buffer.
inline std::vector<std::byte> Planar(const std::vector<int32_t>& values, unsigned channels,
                                     unsigned channel, unsigned bytes) {
  std::vector<std::byte> buffer;
  for (size_t i = channel; i < values.size(); i += channels) {
    const auto value = static_cast<uint32_t>(values[i]);
    for (unsigned b = 4 - bytes; b < 4; ++b) {
      buffer.push_back(static_cast<std::byte>((value >> (8 * b)) & 0xFF));
    }
  }
  return buffer;
}

// A channel of a sample object as full-scale 32-bit values.
inline std::vector<int32_t> ChannelValues(const BasicSample& sample, unsigned channel) {
  const std::byte* bytes = sample.LinBuffer(channel);
  const unsigned width = sample.BytesPerValue();
  std::vector<int32_t> values;
  for (uint64_t i = 0; bytes != nullptr && i < sample.FrameCount(); ++i) {
    uint32_t value = 0;
    for (unsigned b = 0; b < width; ++b) {
      value |= std::to_integer<uint32_t>(bytes[i * width + b]) << (8 * (4 - width + b));
    }
    values.push_back(static_cast<int32_t>(value));
  }
  return values;
}

inline std::unique_ptr<BasicSample> Read(const std::string& path) {
  std::string reason;
  return ReadSampleFile(path, true, reason);
}

inline bool WriteTo(BasicSample& sample, const std::string& path) {
  RiffFile file(path, sample.FormatFlag());
  return sample.Write(file) && file.Close();
}

// Lends 16-bit sound to `sample` and makes it writable; the sound is the caller's.
inline bool Lend(BasicSample& sample, std::vector<int16_t>& sound) {
  sample.SetChannelCount(1);
  sample.SetLinBuffer(sound.data(), 2, static_cast<unsigned>(sound.size()), 0);
  return sample.CreateInterleavedBuffer();
}

}  // namespace zyltest
