// Sample files for tests: chunks built by hand, and values of every width.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "SoundOracle.h"
#include "byteOrder.h"
#include "riff.h"
#include "support/Files.h"

namespace zyl::test {

using Octets = std::vector<uint8_t>;

// A chunk of a file to build. `declaredSize`, if set, is written instead of the size of its data.
struct FileChunk {
  std::string id;
  Bytes data;
  std::optional<uint32_t> declaredSize = std::nullopt;
};

inline Octets FileOf(const char* form, const char* type, const std::vector<FileChunk>& chunks) {
  const auto order = std::string(form) == "FORM" ? ByteOrder::kBig : ByteOrder::kLittle;
  FieldWriter body(order);
  for (const FileChunk& chunk : chunks) {
    const auto size = static_cast<uint32_t>(chunk.data.size());
    body.Text(chunk.id).U32(chunk.declaredSize.value_or(size)).Raw(chunk.data.data(), size);
    if (size % 2 != 0) body.U8(0);
  }
  FieldWriter file(order);
  file.Text(form).U32(static_cast<uint32_t>(body.block.size() + 4)).Text(type);
  file.Raw(body.block.data(), body.block.size());
  const auto* first = reinterpret_cast<const uint8_t*>(file.block.data());
  return Octets(first, first + file.block.size());
}

inline FieldWriter Little() { return FieldWriter(ByteOrder::kLittle); }
inline FieldWriter Big() { return FieldWriter(ByteOrder::kBig); }

// Bytes from hexadecimal digits; spaces are ignored.
inline Bytes Hex(std::string digits) {
  std::erase(digits, ' ');
  Bytes bytes;
  for (size_t i = 0; i < digits.size(); i += 2) {
    bytes.push_back(static_cast<std::byte>(std::stoul(digits.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

inline Bytes WavFormatChunk(unsigned channels, unsigned bits) {
  const unsigned frameBytes = channels * ((bits + 7) / 8);
  FieldWriter out = Little();
  out.U16(1).U16(channels).U32(44100).U32(44100 * frameBytes).U16(frameBytes).U16(bits);
  return out.block;
}

inline Bytes AifFormatChunk(unsigned channels, unsigned frames, unsigned bits) {
  // 44100 Hz as an 80-bit number.
  return Big().U16(channels).U32(frames).U16(bits).U16(0x400E).U32(0xAC440000).U32(0).block;
}

// A WAVE file of 16-bit mono sound by default.
inline Octets WaveOf(std::vector<FileChunk> chunks, const Bytes& format = WavFormatChunk(1, 16)) {
  chunks.insert(chunks.begin(), {"fmt ", format});
  return FileOf("RIFF", "WAVE", chunks);
}

// The data of a chunk in the `bytes` of the file at `path`; null if there is none.
inline const uint8_t* Chunk(const std::string& path, const Octets& bytes, const char* id) {
  for (const ChunkInfo& chunk : ListFileChunks(path)) {
    if (chunk.id == id) return bytes.data() + chunk.offset;
  }
  return nullptr;
}

// Values of a width, starting with the limits of its range.
inline Values TestValues(size_t count, unsigned seed, unsigned bytes) {
  const unsigned unused = 32 - 8 * bytes;
  Values values{INT32_MIN >> unused, INT32_MAX >> unused, 0, -1};
  std::mt19937 random(seed);
  while (values.size() < count) values.push_back(static_cast<int>(random()) >> unused);
  return values;
}

inline Values ChannelValues(const BasicSample& sample, unsigned channel) {
  const std::byte* bytes = sample.LinBuffer(channel);
  const unsigned width = sample.BytesPerValue();
  Values values;
  for (uint64_t i = 0; bytes != nullptr && i < sample.FrameCount(); ++i) {
    int value = 0;
    std::memcpy(reinterpret_cast<std::byte*>(&value) + 4 - width, bytes + i * width, width);
    values.push_back(value >> (32 - 8 * width));
  }
  return values;
}

inline std::vector<Values> ChannelsOf(const BasicSample& sample) {
  std::vector<Values> channels;
  for (unsigned c = 0; c < sample.ChannelCount(); ++c) channels.push_back(ChannelValues(sample, c));
  return channels;
}

inline std::unique_ptr<BasicSample> Read(const std::string& path) {
  std::string reason;
  return ReadSampleFile(path, true, reason);
}

inline bool WriteTo(BasicSample& sample, const std::string& path) {
  RiffFile file(path, sample.FormatFlag());
  return sample.Write(file) && file.Close();
}

inline std::unique_ptr<BasicSample> NewSample(bool aif) {
  if (aif) return std::make_unique<AifSample>();
  return std::make_unique<WavSample>();
}

// Lends 16-bit sound to `sample` and makes it writable; the caller keeps ownership.
inline bool Lend(BasicSample& sample, std::vector<int16_t>& sound) {
  sample.SetChannelCount(1);
  sample.SetLinBuffer(sound.data(), 2, static_cast<unsigned>(sound.size()), 0);
  return sample.CreateInterleavedBuffer();
}

}  // namespace zyl::test
