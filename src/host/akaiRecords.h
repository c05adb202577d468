// The program record's images: packed structs with a named field for everything that is read or
// written, little-endian. Bytes that no field names ("library" and their offset) stay as loaded
// through every read, copy and write. References ("...Reference") take their place in the image
// but live beside it, so that the image is the same on every machine.
#pragma once

#include <cstdint>

#include "export.h"

inline constexpr int kZones = 4;  // velocity zones of a keygroup

#pragma pack(push, 1)

// Program header and program-level fields.
struct akaiProgramHdr {
  uint8_t library0[3];
  char name[12];
  uint8_t midiProg;
  int8_t midiChannel;
  uint8_t poly;
  uint8_t prority;
  uint8_t lowKey;
  uint8_t highKey;
  int8_t playOctave;
  int8_t indyOutput;
  uint8_t stereoLevel;
  int8_t stereoPan;
  uint8_t loudness;
  int8_t loudVel;
  int8_t loudKey;
  int8_t loudPrs;
  uint8_t LFO2speed;
  uint8_t LFO2depth;
  uint8_t LFO2delay;
  int8_t panKey;
  uint8_t LFOspeed;
  uint8_t LFOdepth;
  uint8_t LFOdelay;
  uint8_t LFOdepthWheel;
  uint8_t LFOdepthPrs;
  uint8_t LFOdepthVel;
  uint8_t bendRangeUp;
  int8_t pressurePitchBend;
  uint8_t keyGrpCrossFade;
  uint8_t keyGroupsByte;
  uint8_t library43[1];
  int8_t masterDetune[13];
  int8_t panModWheel;
  uint8_t library58[1];
  uint8_t LFOdesync;
  uint8_t library60[1];
  uint8_t reassignment;
  uint8_t softPedalLoudness;
  uint8_t softPedalAttack;
  uint8_t softPedalFilter;
  int16_t tune;
  int8_t LFOSpeedModGain;
  int8_t LFODepthModGain;
  int8_t LFODelayModGain;
  uint8_t indyOutGain;
  uint8_t stereoOutSpace;
  uint8_t monoLegato;
  uint8_t pitchBendDown;
  uint8_t pitchBendMode;
  uint8_t library75[1];
  uint8_t panModSel1;
  uint8_t panModSel2;
  uint8_t panModSel3;
  uint8_t ampModSel2;
  uint8_t ampModSel3;
  uint8_t LFO1SpeedModSel;
  uint8_t LFO1DepthModSel;
  uint8_t LFO1DelayModSel;
  uint8_t filterModSel1;
  uint8_t filterModSel2;
  uint8_t filterModSel3;
  uint8_t pitchModSel;
  uint8_t ampModSel;
  int8_t panModGain1;
  int8_t panModGain2;
  int8_t panModGain3;
  int8_t ampModGain2;
  int8_t ampModGain3;
  uint8_t library94[3];
  uint8_t LFOwaveform;
  uint8_t LFO2waveform;
  uint8_t library99[3];
  uint8_t LFO2retrigger;
  uint8_t library103[61];
  int32_t keyGroups;
  uint8_t LFO1Sync2MIDIClk;
  uint8_t LFO1MIDIClkMul;
  uint8_t LFO1MIDIClkDiv;
  uint8_t LFO2Sync2MIDIClk;
  uint8_t LFO2MIDIClkMul;
  uint8_t LFO2MIDIClkDiv;
  uint8_t extTriggerMode;
  uint8_t extTriggerNote;
  uint8_t extTriggerCtrl;
  uint8_t extTriggerThreshold;
  uint8_t library178[6];
  uint8_t tolmoChunkReference[4];
  uint8_t library188[4];
  uint8_t keyGroupArrayReference[4];
  uint8_t library196[4];
  uint8_t sampleTableReference[4];
  uint8_t library204[8];
  uint8_t keyGroupExtensionsReference[4];
  uint8_t library216[4];
  char fileName[132];
  uint8_t mute;
  uint8_t solo;
  uint8_t tmmute;
  uint8_t library355[1];
  uint32_t tmMidiChannel;
  uint32_t lockCount;
};

// A velocity zone inside its keygroup.
struct akaiZone {
  uint8_t library0[12];
  uint8_t lowVel;
  uint8_t highVel;
  int16_t tuneOffset;
  int8_t loudnessOffset;
  int8_t filterOffset;
  int8_t panOffset;
  uint8_t playbacktype;
  uint8_t library20[4];
};

struct akaiKeyGroup {
  uint8_t library0[3];
  uint8_t lowKey;
  uint8_t highKey;
  int16_t tune;
  uint8_t filterFreq;
  int8_t filterKey;
  int8_t filterVel;
  int8_t filterLFO2;
  int8_t filterEnv2;
  uint8_t ampEnvAttack;
  uint8_t ampEnvDecay;
  uint8_t ampEnvSustain;
  uint8_t ampEnvRelease;
  int8_t ampVelModAtt;
  int8_t ampVelModRel;
  int8_t ampVelModOffRel;
  int8_t ampKeyModDecRel;
  uint8_t env2Rate1;
  uint8_t env2Rate3;
  uint8_t env2Level3;
  uint8_t env2Rate4;
  int8_t env2VelModRate1;
  int8_t env2VelModRate4;
  int8_t env2VelModOffRate4;
  int8_t env2KeyModRate34;
  int8_t velFilterEnv;
  int8_t envPitch;
  uint8_t velZoneCrossFade;
  uint8_t library31[3];
  akaiZone zones[kZones];
  int8_t fixedRateDetune;
  uint8_t attackHoldUntilLoop;
  uint8_t constantPitch[4];
  uint8_t outOffset[4];
  int16_t velStart[4];
  int8_t velVolume;
  uint8_t resonance;
  int8_t pitchModLFO1;
  int8_t filterModGain1;
  int8_t filterModGain2;
  int8_t filterModGain3;
  int8_t pitchModGain;
  int8_t ampModGain;
  uint8_t env2Level1;
  uint8_t env2Rate2;
  uint8_t env2Level2;
  uint8_t env2Level4;
  uint8_t muteGroup;
  uint8_t library161[31];

  // The keygroup of a new program: all keys, filter open, all four zones over all velocities.
  ZYLHOST_API void setDefault();
};

// The keygroup extension, one for each keygroup in the same order.
struct vendlKeyGroupImage {
  uint8_t library0[2];
  uint8_t SamplePathReference[16];
  uint8_t library18[8];
  uint8_t PitchPlay[4];
  int8_t FormantOffset[4];
  uint8_t env3Level1;
  uint8_t env3Level2;
  uint8_t env3Level3;
  uint8_t env3Level4;
  uint8_t env3Rate1;
  uint8_t env3Rate2;
  uint8_t env3Rate3;
  uint8_t env3Rate4;
  int8_t env3VelModRate1;
  int8_t env3VelModRate4;
  int8_t env3VelModOffRate4;
  int8_t env3KeyModRate34;
  uint8_t timeStretchModSel1;
  uint8_t timeStretchModSel2;
  uint8_t timeStretchModSel3;
  int8_t timeStretchModGain1;
  int8_t timeStretchModGain2;
  int8_t timeStretchModGain3;
  uint8_t formantModSel1;
  uint8_t formantModSel2;
  uint8_t formantModSel3;
  int8_t formantModGain1;
  int8_t formantModGain2;
  int8_t formantModGain3;
  uint8_t filterType;
  uint8_t filterResonanceModSel;
  int8_t filterResonanceModGain;
  int8_t env3VelFilter;
  uint16_t filterResonance;
  int16_t TimeStretchOffset[4];
  uint8_t library72[36];
  uint8_t reverb;
  uint8_t echo;
  uint8_t library110[30];
  uint8_t selected;
};

// The organ extension of a program.
struct TolmoChunk {
  uint8_t reverb;
  uint8_t chorus;
  uint8_t echo;
  uint8_t effect;
  int8_t attack;
  int8_t sustain;
  int8_t release;
  int8_t filter;
  uint8_t reverb_default;
  uint8_t chorus_default;
  uint8_t echo_default;
  uint8_t effect_default;
  int8_t attack_default;
  int8_t sustain_default;
  int8_t release_default;
  int8_t filter_default;
  uint8_t stop_before_run;
};

#pragma pack(pop)
