// Reads and writes sound files through libsndfile: one list of values per channel, at the file's
// width.
#pragma once

#include <gtest/gtest.h>
#include <sndfile.h>

#include <string>
#include <vector>

namespace zyl::test {

using Values = std::vector<int>;

// `format` is a container, optionally with a byte order.
inline void StoreSound(const std::string& path, int format, int bits,
                       const std::vector<Values>& channels) {
  const bool fromZero = (format & SF_FORMAT_TYPEMASK) == SF_FORMAT_WAV ||
                        (format & SF_FORMAT_TYPEMASK) == SF_FORMAT_WAVEX;
  const int subtypes[] = {fromZero ? SF_FORMAT_PCM_U8 : SF_FORMAT_PCM_S8, SF_FORMAT_PCM_16,
                          SF_FORMAT_PCM_24, SF_FORMAT_PCM_32};
  SF_INFO info{};
  info.samplerate = 48000;
  info.channels = static_cast<int>(channels.size());
  info.format = format | subtypes[bits / 8 - 1];
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
  Values frames;
  for (size_t i = 0; i < channels[0].size(); ++i) {
    for (const Values& channel : channels) {
      frames.push_back(static_cast<int>(static_cast<unsigned>(channel[i]) << (32 - bits)));
    }
  }
  const auto count = static_cast<sf_count_t>(frames.size());
  EXPECT_EQ(sf_write_int(file, frames.data(), count), count);
  sf_close(file);
}

// The sound of a file as libsndfile reads it.
struct Sound {
  explicit Sound(const std::string& path) {
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr) return;
    const int subtype = info.format & SF_FORMAT_SUBMASK;
    bits = subtype >= SF_FORMAT_PCM_16 && subtype <= SF_FORMAT_PCM_32 ? 8 * subtype : 8;
    const auto count = static_cast<size_t>(info.channels);
    Values frames(static_cast<size_t>(info.frames) * count);
    sf_read_int(file, frames.data(), static_cast<sf_count_t>(frames.size()));
    sf_close(file);
    channels.resize(count);
    for (size_t i = 0; i < frames.size(); ++i) {
      channels[i % count].push_back(frames[i] >> (32 - bits));
    }
  }

  SF_INFO info{};
  int bits = 0;
  std::vector<Values> channels;
};

}  // namespace zyl::test
