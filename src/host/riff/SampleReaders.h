// Readers of the containers that this layer knows chunk by chunk, and of all others.
//
// Each fills a fresh sample object. False when nothing usable is in the source; `reason` then says
// why. After true it says what was mended, or nothing.
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

// A FLAC file, and the chunks of the WAVE file that it was made from where it carries them (see
// FlacChunks.h).
bool ReadFlac(const ByteSource& source, WavSample& sample, bool withData, std::string& reason);

// Sound that libsndfile decodes: integer formats at their own width, floating point as 24 bits and
// lossy formats as 16 bits, both held at the limits.
bool DecodeSound(const ByteSource& source, BasicSample& sample, bool withData, std::string& reason);

// Whichever of them the source asks for. Null instead of false; throws std::bad_alloc only.
std::unique_ptr<BasicSample> ReadSampleSource(const ByteSource& source, bool withData,
                                              std::string& reason);

// Small steps that the readers share.

inline bool Refuse(std::string& reason, const std::string& why) {
  AddReason(reason, why);
  return false;
}

inline bool ChannelsFit(unsigned channels, std::string& reason) {
  if (channels >= 1 && channels <= kMaxChannels) return true;
  return Refuse(reason, channels == 0 ? "the file has no channels"
                                      : std::to_string(channels) + " channels; at most " +
                                            std::to_string(kMaxChannels) + " are handled");
}

inline int32_t SettleRate(double rateHz, std::string& reason) {
  if (rateHz >= 1 && rateHz <= INT32_MAX) return static_cast<int32_t>(std::lround(rateHz));
  AddReason(reason, "the sample rate makes no sense and is taken as 44100 Hz");
  return 44100;
}

}  // namespace zyl
