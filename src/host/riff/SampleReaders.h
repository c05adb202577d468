// Readers for WAVE and AIFF, parsed chunk by chunk here, and for all other containers.
//
// Each fills a new sample object. Returns false if the source holds nothing usable, with the cause
// in `reason`. On success `reason` lists the repairs made, if any.
#pragma once

#include <cmath>
#include <memory>
#include <string>

#include "../riff.h"
#include "ByteSource.h"
#include "SampleAccess.h"

namespace zyl {

bool ReadWav(const ByteSource& source, WavSample& sample, bool withData, std::string& reason);
bool ReadAif(const ByteSource& source, AifSample& sample, bool withData, std::string& reason);

// Reads a FLAC file and, if present, the chunks of its source WAVE file (see FlacChunks.h).
bool ReadFlac(const ByteSource& source, WavSample& sample, bool withData, std::string& reason);

// Decodes with libsndfile: integer formats at their native width, floating point as 24 bits and
// lossy formats as 16 bits, both clamped.
bool DecodeSound(const ByteSource& source, BasicSample& sample, bool withData, std::string& reason);

// Reads with the reader that matches the source. Null on failure; throws only std::bad_alloc.
std::unique_ptr<BasicSample> ReadSampleSource(const ByteSource& source, bool withData,
                                              std::string& reason);

// ReadSampleFile without its handling of short memory: throws std::bad_alloc.
std::unique_ptr<BasicSample> ReadSampleOrThrow(const std::string& path, bool withData,
                                               std::string& reason);

// Helpers shared by the readers.

inline bool Refuse(std::string& reason, const std::string& why) {
  AddReason(reason, why);
  return false;
}

inline bool ChannelsFit(unsigned channels, std::string& reason) {
  if (channels >= 1 && channels <= kMaxChannels) return true;
  return Refuse(reason, channels == 0 ? "the file has no channels"
                                      : std::to_string(channels) + " channels; at most " +
                                            std::to_string(kMaxChannels) + " are supported");
}

inline int32_t RateOrDefault(double rateHz, std::string& reason) {
  if (rateHz >= 1 && rateHz <= INT32_MAX) return static_cast<int32_t>(std::lround(rateHz));
  AddReason(reason, "the sample rate is invalid; 44100 Hz is used");
  return 44100;
}

}  // namespace zyl
