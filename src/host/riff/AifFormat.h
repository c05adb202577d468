// What an AIFF file's "COMM" chunk says.
#pragma once

#include <cstdint>
#include <string>

#include "ByteOrder.h"

namespace zyl {

// The compression types of AIFC that are plain PCM.
struct AifPcmType {
  const char* id;
  bool bigEndian;
  unsigned bytesPerValue;  // 0: as the bit depth says
};
// Null for any other.
const AifPcmType* FindAifPcmType(const std::string& compression);

struct AifFormat {
  unsigned channels = 0;
  uint32_t frames = 0;
  unsigned bits = 0;
  double rateHz = 0;
  Bytes rate;               // the ten bytes of the rate as stored
  std::string compression;  // "NONE" for a plain AIFF file
  Bytes compressionName;
};

// False when the chunk is too short.
bool ReadAifFormat(const Bytes& bytes, bool isAifc, AifFormat& format);

// 80-bit floating point: sign and exponent (bias 16383) in 16 bits, a 64-bit mantissa whose top bit
// is the integer part.
double RateFromExtended(const std::byte* tenBytes);
Bytes ExtendedFromRate(uint32_t rateHz);

}  // namespace zyl
