// Images of program records: packed little-endian structs with a field for every byte range that is
// read or written. OPAQUE bytes are not interpreted; reads, copies and writes preserve them.
// "...Reference" fields hold a pointer in the 32-bit layout. They aren't used: the data is stored
// outside the image, so that images are the same on every machine.
//
// Each list gives the fields of a record in order: byte offset, type, name. The structs are
// declared from these lists, and the offsets are checked at compile time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "export.h"

inline constexpr int kZones = 4;  // velocity zones of a keygroup

#define ZYL_DECLARE_FIELD(offset, type, name) type name;
#define ZYL_DECLARE_ARRAY(offset, type, name, count) type name[count];
#define ZYL_DECLARE_LIBRARY(offset, count) uint8_t library##offset[count];
#define ZYL_DECLARE_FIELDS(list) list(ZYL_DECLARE_FIELD, ZYL_DECLARE_ARRAY, ZYL_DECLARE_LIBRARY)

#define ZYL_CHECK_FIELD(offset, type, name) static_assert(offsetof(Record, name) == (offset));
#define ZYL_CHECK_ARRAY(offset, type, name, count) ZYL_CHECK_FIELD(offset, type, name)
#define ZYL_CHECK_LIBRARY(offset, count) ZYL_CHECK_FIELD(offset, uint8_t, library##offset)
#define ZYL_CHECK_FIELDS(record, list, size)                  \
  namespace record##Layout {                                  \
    using Record = ::record;                                  \
    static_assert(sizeof(Record) == (size));                  \
    list(ZYL_CHECK_FIELD, ZYL_CHECK_ARRAY, ZYL_CHECK_LIBRARY) \
  }

// clang-format off
#pragma pack(push, 1)

// Program header and program-level fields.
#define ZYL_PROGRAM_HEADER_FIELDS(FIELD, ARRAY, OPAQUE) \
  OPAQUE(0, 3) \
  ARRAY(3, char, name, 12) \
  FIELD(15, uint8_t, midiProg) \
  FIELD(16, int8_t, midiChannel) \
  FIELD(17, uint8_t, poly) \
  FIELD(18, uint8_t, prority) \
  FIELD(19, uint8_t, lowKey) \
  FIELD(20, uint8_t, highKey) \
  FIELD(21, int8_t, playOctave) \
  FIELD(22, int8_t, indyOutput) \
  FIELD(23, uint8_t, stereoLevel) \
  FIELD(24, int8_t, stereoPan) \
  FIELD(25, uint8_t, loudness) \
  FIELD(26, int8_t, loudVel) \
  FIELD(27, int8_t, loudKey) \
  FIELD(28, int8_t, loudPrs) \
  FIELD(29, uint8_t, LFO2speed) \
  FIELD(30, uint8_t, LFO2depth) \
  FIELD(31, uint8_t, LFO2delay) \
  FIELD(32, int8_t, panKey) \
  FIELD(33, uint8_t, LFOspeed) \
  FIELD(34, uint8_t, LFOdepth) \
  FIELD(35, uint8_t, LFOdelay) \
  FIELD(36, uint8_t, LFOdepthWheel) \
  FIELD(37, uint8_t, LFOdepthPrs) \
  FIELD(38, uint8_t, LFOdepthVel) \
  FIELD(39, uint8_t, bendRangeUp) \
  FIELD(40, int8_t, pressurePitchBend) \
  FIELD(41, uint8_t, keyGrpCrossFade) \
  FIELD(42, uint8_t, keyGroupsByte) \
  OPAQUE(43, 1) \
  ARRAY(44, int8_t, masterDetune, 13) \
  FIELD(57, int8_t, panModWheel) \
  OPAQUE(58, 1) \
  FIELD(59, uint8_t, LFOdesync) \
  OPAQUE(60, 1) \
  FIELD(61, uint8_t, reassignment) \
  FIELD(62, uint8_t, softPedalLoudness) \
  FIELD(63, uint8_t, softPedalAttack) \
  FIELD(64, uint8_t, softPedalFilter) \
  FIELD(65, int16_t, tune) \
  FIELD(67, int8_t, LFOSpeedModGain) \
  FIELD(68, int8_t, LFODepthModGain) \
  FIELD(69, int8_t, LFODelayModGain) \
  FIELD(70, uint8_t, indyOutGain) \
  FIELD(71, uint8_t, stereoOutSpace) \
  FIELD(72, uint8_t, monoLegato) \
  FIELD(73, uint8_t, pitchBendDown) \
  FIELD(74, uint8_t, pitchBendMode) \
  OPAQUE(75, 1) \
  FIELD(76, uint8_t, panModSel1) \
  FIELD(77, uint8_t, panModSel2) \
  FIELD(78, uint8_t, panModSel3) \
  FIELD(79, uint8_t, ampModSel2) \
  FIELD(80, uint8_t, ampModSel3) \
  FIELD(81, uint8_t, LFO1SpeedModSel) \
  FIELD(82, uint8_t, LFO1DepthModSel) \
  FIELD(83, uint8_t, LFO1DelayModSel) \
  FIELD(84, uint8_t, filterModSel1) \
  FIELD(85, uint8_t, filterModSel2) \
  FIELD(86, uint8_t, filterModSel3) \
  FIELD(87, uint8_t, pitchModSel) \
  FIELD(88, uint8_t, ampModSel) \
  FIELD(89, int8_t, panModGain1) \
  FIELD(90, int8_t, panModGain2) \
  FIELD(91, int8_t, panModGain3) \
  FIELD(92, int8_t, ampModGain2) \
  FIELD(93, int8_t, ampModGain3) \
  OPAQUE(94, 3) \
  FIELD(97, uint8_t, LFOwaveform) \
  FIELD(98, uint8_t, LFO2waveform) \
  OPAQUE(99, 3) \
  FIELD(102, uint8_t, LFO2retrigger) \
  OPAQUE(103, 61) \
  FIELD(164, int32_t, keyGroups) \
  FIELD(168, uint8_t, LFO1Sync2MIDIClk) \
  FIELD(169, uint8_t, LFO1MIDIClkMul) \
  FIELD(170, uint8_t, LFO1MIDIClkDiv) \
  FIELD(171, uint8_t, LFO2Sync2MIDIClk) \
  FIELD(172, uint8_t, LFO2MIDIClkMul) \
  FIELD(173, uint8_t, LFO2MIDIClkDiv) \
  FIELD(174, uint8_t, extTriggerMode) \
  FIELD(175, uint8_t, extTriggerNote) \
  FIELD(176, uint8_t, extTriggerCtrl) \
  FIELD(177, uint8_t, extTriggerThreshold) \
  OPAQUE(178, 6) \
  ARRAY(184, uint8_t, tolmoChunkReference, 4) \
  OPAQUE(188, 4) \
  ARRAY(192, uint8_t, keyGroupArrayReference, 4) \
  OPAQUE(196, 4) \
  ARRAY(200, uint8_t, sampleTableReference, 4) \
  OPAQUE(204, 8) \
  ARRAY(212, uint8_t, keyGroupExtensionsReference, 4) \
  OPAQUE(216, 4) \
  ARRAY(220, char, fileName, 132) \
  FIELD(352, uint8_t, mute) \
  FIELD(353, uint8_t, solo) \
  FIELD(354, uint8_t, tmmute) \
  OPAQUE(355, 1) \
  FIELD(356, uint32_t, tmMidiChannel) \
  FIELD(360, uint32_t, lockCount)
struct akaiProgramHdrImage {
  ZYL_DECLARE_FIELDS(ZYL_PROGRAM_HEADER_FIELDS)
};
ZYL_CHECK_FIELDS(akaiProgramHdrImage, ZYL_PROGRAM_HEADER_FIELDS, 364)

// A velocity zone of a keygroup.
#define ZYL_ZONE_FIELDS(FIELD, ARRAY, OPAQUE) \
  OPAQUE(0, 12) \
  FIELD(12, uint8_t, lowVel) \
  FIELD(13, uint8_t, highVel) \
  FIELD(14, int16_t, tuneOffset) \
  FIELD(16, int8_t, loudnessOffset) \
  FIELD(17, int8_t, filterOffset) \
  FIELD(18, int8_t, panOffset) \
  FIELD(19, uint8_t, playbacktype) \
  OPAQUE(20, 4)
struct akaiZone {
  ZYL_DECLARE_FIELDS(ZYL_ZONE_FIELDS)
};
ZYL_CHECK_FIELDS(akaiZone, ZYL_ZONE_FIELDS, 24)

#define ZYL_KEYGROUP_FIELDS(FIELD, ARRAY, OPAQUE) \
  OPAQUE(0, 3) \
  FIELD(3, uint8_t, lowKey) \
  FIELD(4, uint8_t, highKey) \
  FIELD(5, int16_t, tune) \
  FIELD(7, uint8_t, filterFreq) \
  FIELD(8, int8_t, filterKey) \
  FIELD(9, int8_t, filterVel) \
  FIELD(10, int8_t, filterLFO2) \
  FIELD(11, int8_t, filterEnv2) \
  FIELD(12, uint8_t, ampEnvAttack) \
  FIELD(13, uint8_t, ampEnvDecay) \
  FIELD(14, uint8_t, ampEnvSustain) \
  FIELD(15, uint8_t, ampEnvRelease) \
  FIELD(16, int8_t, ampVelModAtt) \
  FIELD(17, int8_t, ampVelModRel) \
  FIELD(18, int8_t, ampVelModOffRel) \
  FIELD(19, int8_t, ampKeyModDecRel) \
  FIELD(20, uint8_t, env2Rate1) \
  FIELD(21, uint8_t, env2Rate3) \
  FIELD(22, uint8_t, env2Level3) \
  FIELD(23, uint8_t, env2Rate4) \
  FIELD(24, int8_t, env2VelModRate1) \
  FIELD(25, int8_t, env2VelModRate4) \
  FIELD(26, int8_t, env2VelModOffRate4) \
  FIELD(27, int8_t, env2KeyModRate34) \
  FIELD(28, int8_t, velFilterEnv) \
  FIELD(29, int8_t, envPitch) \
  FIELD(30, uint8_t, velZoneCrossFade) \
  OPAQUE(31, 3) \
  ARRAY(34, akaiZone, zones, kZones) \
  FIELD(130, int8_t, fixedRateDetune) \
  FIELD(131, uint8_t, attackHoldUntilLoop) \
  ARRAY(132, uint8_t, constantPitch, 4) \
  ARRAY(136, uint8_t, outOffset, 4) \
  ARRAY(140, int16_t, velStart, 4) \
  FIELD(148, int8_t, velVolume) \
  FIELD(149, uint8_t, resonance) \
  FIELD(150, int8_t, pitchModLFO1) \
  FIELD(151, int8_t, filterModGain1) \
  FIELD(152, int8_t, filterModGain2) \
  FIELD(153, int8_t, filterModGain3) \
  FIELD(154, int8_t, pitchModGain) \
  FIELD(155, int8_t, ampModGain) \
  FIELD(156, uint8_t, env2Level1) \
  FIELD(157, uint8_t, env2Rate2) \
  FIELD(158, uint8_t, env2Level2) \
  FIELD(159, uint8_t, env2Level4) \
  FIELD(160, uint8_t, muteGroup) \
  OPAQUE(161, 31)
struct akaiKeyGroup {
  ZYL_DECLARE_FIELDS(ZYL_KEYGROUP_FIELDS)

  // Resets to the keygroup of a new program: all keys, filter open, four zones with all velocities.
  ZYLHOST_API void setDefault();
};
ZYL_CHECK_FIELDS(akaiKeyGroup, ZYL_KEYGROUP_FIELDS, 192)

// A keygroup extension. A program has one per keygroup, in the same order.
#define ZYL_KEYGROUP_EXTENSION_FIELDS(FIELD, ARRAY, OPAQUE) \
  OPAQUE(0, 2) \
  ARRAY(2, uint8_t, SamplePathReference, 16) \
  OPAQUE(18, 8) \
  ARRAY(26, uint8_t, PitchPlay, 4) \
  ARRAY(30, int8_t, FormantOffset, 4) \
  FIELD(34, uint8_t, env3Level1) \
  FIELD(35, uint8_t, env3Level2) \
  FIELD(36, uint8_t, env3Level3) \
  FIELD(37, uint8_t, env3Level4) \
  FIELD(38, uint8_t, env3Rate1) \
  FIELD(39, uint8_t, env3Rate2) \
  FIELD(40, uint8_t, env3Rate3) \
  FIELD(41, uint8_t, env3Rate4) \
  FIELD(42, int8_t, env3VelModRate1) \
  FIELD(43, int8_t, env3VelModRate4) \
  FIELD(44, int8_t, env3VelModOffRate4) \
  FIELD(45, int8_t, env3KeyModRate34) \
  FIELD(46, uint8_t, timeStretchModSel1) \
  FIELD(47, uint8_t, timeStretchModSel2) \
  FIELD(48, uint8_t, timeStretchModSel3) \
  FIELD(49, int8_t, timeStretchModGain1) \
  FIELD(50, int8_t, timeStretchModGain2) \
  FIELD(51, int8_t, timeStretchModGain3) \
  FIELD(52, uint8_t, formantModSel1) \
  FIELD(53, uint8_t, formantModSel2) \
  FIELD(54, uint8_t, formantModSel3) \
  FIELD(55, int8_t, formantModGain1) \
  FIELD(56, int8_t, formantModGain2) \
  FIELD(57, int8_t, formantModGain3) \
  FIELD(58, uint8_t, filterType) \
  FIELD(59, uint8_t, filterResonanceModSel) \
  FIELD(60, int8_t, filterResonanceModGain) \
  FIELD(61, int8_t, env3VelFilter) \
  FIELD(62, uint16_t, filterResonance) \
  ARRAY(64, int16_t, TimeStretchOffset, 4) \
  OPAQUE(72, 36) \
  FIELD(108, uint8_t, reverb) \
  FIELD(109, uint8_t, echo) \
  OPAQUE(110, 30) \
  FIELD(140, uint8_t, selected)
struct vendlKeyGroupImage {
  ZYL_DECLARE_FIELDS(ZYL_KEYGROUP_EXTENSION_FIELDS)
};
ZYL_CHECK_FIELDS(vendlKeyGroupImage, ZYL_KEYGROUP_EXTENSION_FIELDS, 141)

// The organ extension of a program.
#define ZYL_ORGAN_FIELDS(FIELD, ARRAY, OPAQUE) \
  FIELD(0, uint8_t, reverb) \
  FIELD(1, uint8_t, chorus) \
  FIELD(2, uint8_t, echo) \
  FIELD(3, uint8_t, effect) \
  FIELD(4, int8_t, attack) \
  FIELD(5, int8_t, sustain) \
  FIELD(6, int8_t, release) \
  FIELD(7, int8_t, filter) \
  FIELD(8, uint8_t, reverb_default) \
  FIELD(9, uint8_t, chorus_default) \
  FIELD(10, uint8_t, echo_default) \
  FIELD(11, uint8_t, effect_default) \
  FIELD(12, int8_t, attack_default) \
  FIELD(13, int8_t, sustain_default) \
  FIELD(14, int8_t, release_default) \
  FIELD(15, int8_t, filter_default) \
  FIELD(16, uint8_t, stop_before_run)
struct TolmoChunk {
  ZYL_DECLARE_FIELDS(ZYL_ORGAN_FIELDS)
};
ZYL_CHECK_FIELDS(TolmoChunk, ZYL_ORGAN_FIELDS, 17)

#pragma pack(pop)
// clang-format on

#undef ZYL_DECLARE_FIELD
#undef ZYL_DECLARE_ARRAY
#undef ZYL_DECLARE_LIBRARY
#undef ZYL_DECLARE_FIELDS
#undef ZYL_CHECK_FIELD
#undef ZYL_CHECK_ARRAY
#undef ZYL_CHECK_LIBRARY
#undef ZYL_CHECK_FIELDS
