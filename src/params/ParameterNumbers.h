// Parameter numbers that code refers to by name: ranges, and the parameters that aren't plain
// fields of a record. All others are in their row (ParameterTable.h).
#pragma once

#include <cstdint>

namespace number {

inline constexpr int32_t kFirstKeygroup = 100;
inline constexpr int32_t kFirstZone = 200;
inline constexpr int32_t kFirstSample = 300;

// Read-only memory figures: locked memory, then total memory. Each is followed by its percentage of
// the memory of all programs, and of the machine's memory.
inline constexpr int32_t kLockedMemory = 90;
inline constexpr int32_t kTotalMemory = 93;
inline constexpr int32_t kLastMemory = 95;

inline constexpr int32_t kKeygroupNumber = 142;  // from 1, read only
inline constexpr int32_t kKeygroupIndex = 199;   // from 0, read only

inline constexpr int32_t kOutOffset = 201;
inline constexpr int32_t kZoneOutput = 230;
inline constexpr int32_t kZoneNumber = 299;  // from 1, read only

// Whether the value is computed from several fields or from none. No row can have such a number.
constexpr bool IsComputed(int32_t number) {
  return (number >= kLockedMemory && number <= kLastMemory) || number == kKeygroupNumber ||
         number == kKeygroupIndex || number == kZoneOutput || number == kZoneNumber;
}

inline constexpr int32_t kLoopStart = 302;
inline constexpr int32_t kLoopEnd = 303;
inline constexpr int32_t kLoopFineLen = 308;
inline constexpr int32_t kPlaybackType = 301;
inline constexpr int32_t kChannel = 306;
inline constexpr int32_t kFileName = 307;
inline constexpr int32_t kFilePath = 312;
inline constexpr int32_t kBits = 313;
inline constexpr int32_t kBytesPerValue = 314;

}  // namespace number
