// Parser for the "COMM" chunk of AIFF files.
#pragma once

#include <cstdint>
#include <string>

#include "../byteOrder.h"

namespace zyl {

// An AIFC compression type that is plain PCM.
struct AifPcmType {
  const char* id;
  bool bigEndian;
  unsigned bytesPerValue;  // 0: derived from the bit depth
};
// Null for other compression types.
const AifPcmType* FindAifPcmType(const std::string& compression);

struct AifFormat {
  unsigned channels = 0;
  uint32_t frames = 0;
  unsigned bits = 0;
  double rateHz = 0;
  Bytes rate;               // as stored, ten bytes
  std::string compression;  // "NONE" for a plain AIFF file
  Bytes compressionName;
};

// Returns false if the chunk is too short.
bool ReadAifFormat(const Bytes& bytes, bool isAifc, AifFormat& format);

// Conversion of 80-bit floating point: 16 bits for sign and exponent (bias 16383), then a 64-bit
// mantissa whose top bit is the integer part.
double RateFromExtended(const std::byte* tenBytes);
Bytes ExtendedFromRate(uint32_t rateHz);

}  // namespace zyl
