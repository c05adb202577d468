// The parameters of a program, its keygroups and their zones: one row each, in method table order.
//
//   FIELD(record, field, number, meaning, options...)   a field with a generated method
//   OWN(record, field, number, meaning, options...)     a field with a hand-written method
//   METHOD(name, meaning)                               a method between them that is not a field
//
// `record` is the record that holds the field: PRG, TOLMO, KG, EXT, TOLMO_KG, ZONE, KG_ZONES or
// EXT_ZONES (see ZYL_ROW_* below). `number` is 0 for a field without one. The options are those of
// RowOptions.
#pragma once

#include <array>
#include <iterator>

#include "params/Parameter.h"
#include "params/ParameterNumbers.h"

// How values are shown and parsed. A form without keywords is parsed by MatchText.
namespace text_form {

inline constexpr const char* kPriorityNames[] = {"Low", "Norm", "High", "Hold"};
inline constexpr TextForm kPriority{.names = kPriorityNames};

inline constexpr const char* kWaveformNames[] = {"Triangle", "Sawtooth", "Square", "Random"};
inline constexpr TextForm kWaveform{.names = kWaveformNames};

inline constexpr const char* kModSourceNames[] = {
    "No Mod",    "Modwheel",   "Bend",      "Pressure",  "External1", "Velocity",
    "Key",       "LFO1",       "LFO2",      "Env1",      "Env2",      "!Modwheel",
    "!Bend",     "!External1", "Env3",      "External2", "External3", "External4",
    "External5", "External6",  "External7", "External8", "External9", "External10"};
inline constexpr TextForm kModSource{.names = kModSourceNames};

inline constexpr const char* kPlaybackNames[] = {"As sample", "Loop Rel", "Loop >Rel", "No loops",
                                                 "To end"};
inline constexpr TextForm kPlaybackType{.names = kPlaybackNames};

inline constexpr const char* kFilterNames[] = {"LP2",   "LP2 R", "LP4",   "LP4 R", "LP6",
                                               "LP6 R", "HP2",   "HP2 R", "HP4",   "HP4 R",
                                               "BP2",   "BP2 R", "BP4",   "BP4 R"};
inline constexpr TextForm kFilterType{.names = kFilterNames};

inline constexpr const char* kOldest[] = {"Oldest"};
inline constexpr Keyword kReassignmentKeywords[] = {{"o", 0, "Oldest"}, {"q", 1, "Quietest"}};
inline constexpr TextForm kReassignment{
    .names = kOldest, .otherwise = "Quietest", .keywords = kReassignmentKeywords};

inline constexpr const char* kNormal[] = {"Normal"};
inline constexpr Keyword kPitchBendKeywords[] = {{"h", 1, "Held"}, {"n", 0, "Normal"}};
inline constexpr TextForm kPitchBendMode{
    .names = kNormal, .otherwise = "Held", .keywords = kPitchBendKeywords};

inline constexpr const char* kOff[] = {"Off"};
inline constexpr Keyword kOnOffKeywords[] = {{"of", 0, "Off"}, {"on", 1, "On"}};
inline constexpr TextForm kOnOff{.names = kOff, .otherwise = "On", .keywords = kOnOffKeywords};

inline constexpr const char* kConstantPitchNames[] = {"Track",     "Const",   "Pitch",
                                                      "Ptch/cnst", "Stretch", "Str/cnst"};
inline constexpr Keyword kConstantPitchKeywords[] = {
    {"str", 4, "Stretch", 5}, {"tr", 0, "Track"}, {"co", 1, "Const"}, {"pi", 2, "Pitch", 3}};
inline constexpr TextForm kConstantPitch{
    .names = kConstantPitchNames, .otherwise = "Track", .keywords = kConstantPitchKeywords};

inline constexpr const char* kPitchPlayNames[] = {"Resample", "PitchShift", "Formant", "Robot"};
inline constexpr Keyword kPitchPlayKeywords[] = {
    {"re", 0, "Resample"}, {"pi", 1, "PitchShift"}, {"fo", 2, "Formant"}, {"ro", 3, "Robot"}};
inline constexpr TextForm kPitchPlay{.names = kPitchPlayNames,
                                     .otherwise = "<invalid>",
                                     .keywords = kPitchPlayKeywords,
                                     .unmatched = "<invalid>"};

inline constexpr TextForm kVoices{.numbers = TextForm::Numbers::kFromOne};
inline constexpr TextForm kMuteGroup{.numbers = TextForm::Numbers::kOffAtZero};

}  // namespace text_form

inline constexpr int32_t kModSources = std::size(text_form::kModSourceNames);

// clang-format off
#define ZYL_PROGRAM_PARAMETERS(FIELD, OWN, METHOD) \
  OWN(PRG, name, 1, "Name of the program, at most 12 bytes.") \
  FIELD(PRG, midiProg, 2, "MIDI program number that selects the program.") \
  OWN(PRG, midiChannel, 3, "MIDI channel, 0 to 31 for channels 1 to 32, -1 Omni; 32 and more change nothing.", .store = Store::kMidiChannel) \
  FIELD(PRG, poly, 4, "Polyphony minus 1: 0 is one voice, 15 is sixteen.", .text = &text_form::kVoices) \
  FIELD(PRG, prority, 5, "Voice priority: 0 low, 1 normal, 2 high, 3 hold.", .text = &text_form::kPriority) \
  FIELD(PRG, reassignment, 6, "Voice that is stolen when none is free: 0 the oldest, else the quietest.", .text = &text_form::kReassignment) \
  FIELD(PRG, lowKey, 7, "Lowest key that plays, a MIDI note 0 to 127.") \
  FIELD(PRG, highKey, 8, "Highest key that plays, a MIDI note 0 to 127.") \
  FIELD(PRG, playOctave, 9, "Transposition of played notes, in octaves.") \
  OWN(PRG, indyOutput, 10, "First individual output of the program, from 0; -1 is off.", .store = Store::kIndyOutput) \
  FIELD(PRG, indyOutGain, 11, "Gain of the individual outputs.") \
  FIELD(PRG, stereoLevel, 12, "Level on the stereo outputs, usually 0 to 99.") \
  FIELD(PRG, stereoPan, 13, "Pan on the stereo outputs: 0 is the centre, usually -50 (left) to 50 (right).") \
  FIELD(PRG, loudness, 14, "Basic loudness, usually 0 to 99.") \
  FIELD(PRG, loudVel, 15, "How much velocity adds to the loudness, usually -50 to 50.") \
  FIELD(PRG, loudKey, 16, "How much the key adds to the loudness, usually -50 to 50.") \
  FIELD(PRG, loudPrs, 17, "How much pressure adds to the loudness, usually -50 to 50.") \
  FIELD(PRG, tune, 18, "Tuning of the whole program, in 1/256 semitone.") \
  FIELD(PRG, monoLegato, 19, "Mono legato: 0 off, else on.") \
  FIELD(PRG, keyGrpCrossFade, 20, "Crossfade where key ranges overlap: 0 off, else on.") \
  OWN(PRG, keyGroups, 21, "Number of keygroups stored in the record. Setting it neither creates nor deletes keygroups: use KGCreate and KGDelete.", .store = Store::kKeyGroups) \
  FIELD(PRG, bendRangeUp, 22, "How far the pitch wheel bends up, in semitones.") \
  FIELD(PRG, pitchBendDown, 23, "How far the pitch wheel bends down, in semitones.") \
  FIELD(PRG, pitchBendMode, 24, "Notes that the pitch wheel bends: 0 all, else only held notes.", .text = &text_form::kPitchBendMode) \
  FIELD(PRG, pressurePitchBend, 25, "How far pressure bends the pitch, in semitones; negative bends down.") \
  FIELD(PRG, LFOwaveform, 26, "LFO 1 waveform: 0 triangle, 1 sawtooth, 2 square, 3 random.", .text = &text_form::kWaveform) \
  FIELD(PRG, LFOspeed, 27, "LFO 1 speed, usually 0 to 99.") \
  FIELD(PRG, LFOdepth, 28, "LFO 1 depth, usually 0 to 99.") \
  FIELD(PRG, LFOdelay, 29, "Delay before LFO 1 starts, usually 0 to 99.") \
  FIELD(PRG, LFOdepthWheel, 30, "How much the modulation wheel adds to the LFO 1 depth, usually 0 to 99.") \
  FIELD(PRG, LFOdepthPrs, 31, "How much pressure adds to the LFO 1 depth, usually 0 to 99.") \
  FIELD(PRG, LFOdepthVel, 32, "How much velocity adds to the LFO 1 depth, usually 0 to 99.") \
  FIELD(PRG, LFOSpeedModGain, 33, "How much source PRGLFO1SpeedModSel changes the LFO 1 speed, usually -50 to 50.") \
  FIELD(PRG, LFODepthModGain, 34, "How much source PRGLFO1DepthModSel changes the LFO 1 depth, usually -50 to 50.") \
  FIELD(PRG, LFODelayModGain, 35, "How much source PRGLFO1DelayModSel changes the LFO 1 delay, usually -50 to 50.") \
  FIELD(PRG, LFO1SpeedModSel, 36, "Modulation source of the LFO 1 speed, 0 to 23; see ModulationSource.", .text = &text_form::kModSource) \
  FIELD(PRG, LFO1DepthModSel, 37, "Modulation source of the LFO 1 depth, 0 to 23; see ModulationSource.", .text = &text_form::kModSource) \
  FIELD(PRG, LFO1DelayModSel, 38, "Modulation source of the LFO 1 delay, 0 to 23; see ModulationSource.", .text = &text_form::kModSource) \
  FIELD(PRG, LFOdesync, 39, "Whether each voice has its own LFO 1: 0 off, else on.") \
  FIELD(PRG, LFO2speed, 40, "LFO 2 speed, usually 0 to 99.") \
  FIELD(PRG, LFO2depth, 41, "LFO 2 depth, usually 0 to 99.") \
  FIELD(PRG, LFO2delay, 42, "Delay before LFO 2 starts, usually 0 to 99.") \
  FIELD(PRG, LFO2waveform, 43, "LFO 2 waveform: 0 triangle, 1 sawtooth, 2 square, 3 random.", .text = &text_form::kWaveform) \
  FIELD(PRG, panKey, 44, "How much the key moves the pan, usually -50 to 50.") \
  OWN(PRG, masterDetune, 45, "Detuning of one of the 13 steps of the program's scale, -128 to 127.", .type = FieldType::kText) \
  FIELD(PRG, panModWheel, 46, "How much the modulation wheel moves the pan, usually -50 to 50.") \
  FIELD(PRG, softPedalLoudness, 47, "How much the soft pedal lowers the loudness, usually 0 to 99.") \
  FIELD(PRG, softPedalAttack, 48, "How much the soft pedal slows the attack, usually 0 to 99.") \
  FIELD(PRG, softPedalFilter, 49, "How much the soft pedal closes the filter, usually 0 to 99.") \
  FIELD(PRG, stereoOutSpace, 50, "Width of the stereo outputs.") \
  FIELD(PRG, filterModSel1, 51, "Modulation source 1 of the filters, 0 to 23; its amount is KGfilterModGain1.", .text = &text_form::kModSource) \
  FIELD(PRG, filterModSel2, 52, "Modulation source 2 of the filters, 0 to 23; its amount is KGfilterModGain2.", .text = &text_form::kModSource) \
  FIELD(PRG, filterModSel3, 53, "Modulation source 3 of the filters, 0 to 23; its amount is KGfilterModGain3.", .text = &text_form::kModSource) \
  FIELD(PRG, pitchModSel, 54, "Modulation source of the pitch, 0 to 23; its amount is KGpitchModGain.", .text = &text_form::kModSource) \
  FIELD(PRG, panModGain1, 55, "How much source PRGpanModSel1 moves the pan, usually -50 to 50.") \
  FIELD(PRG, panModGain2, 56, "How much source PRGpanModSel2 moves the pan, usually -50 to 50.") \
  FIELD(PRG, panModGain3, 57, "How much source PRGpanModSel3 moves the pan, usually -50 to 50.") \
  FIELD(PRG, panModSel1, 58, "Modulation source 1 of the pan, 0 to 23; its amount is PRGpanModGain1.", .text = &text_form::kModSource) \
  FIELD(PRG, panModSel2, 59, "Modulation source 2 of the pan, 0 to 23; its amount is PRGpanModGain2.", .text = &text_form::kModSource) \
  FIELD(PRG, panModSel3, 60, "Modulation source 3 of the pan, 0 to 23; its amount is PRGpanModGain3.", .text = &text_form::kModSource) \
  FIELD(PRG, ampModGain2, 61, "How much source PRGampModSel2 changes the loudness, usually -50 to 50.") \
  FIELD(PRG, ampModGain3, 62, "How much source PRGampModSel3 changes the loudness, usually -50 to 50.") \
  FIELD(PRG, ampModSel, 63, "Modulation source 1 of the loudness, 0 to 23; its amount is KGampModGain.", .text = &text_form::kModSource) \
  FIELD(PRG, ampModSel2, 64, "Modulation source 2 of the loudness, 0 to 23; its amount is PRGampModGain2.", .text = &text_form::kModSource) \
  FIELD(PRG, ampModSel3, 65, "Modulation source 3 of the loudness, 0 to 23; its amount is PRGampModGain3.", .text = &text_form::kModSource) \
  FIELD(PRG, LFO2retrigger, 66, "Whether each note restarts LFO 2: 0 off, else on.") \
  FIELD(PRG, LFO1Sync2MIDIClk, 67, "Whether LFO 1 syncs to the MIDI clock: 0 off, else on.") \
  FIELD(PRG, LFO1MIDIClkMul, 68, "MIDI clock multiplier for LFO 1.") \
  FIELD(PRG, LFO1MIDIClkDiv, 69, "MIDI clock divisor for LFO 1.") \
  FIELD(PRG, LFO2Sync2MIDIClk, 70, "Whether LFO 2 syncs to the MIDI clock: 0 off, else on.") \
  FIELD(PRG, LFO2MIDIClkMul, 71, "MIDI clock multiplier for LFO 2.") \
  FIELD(PRG, LFO2MIDIClkDiv, 72, "MIDI clock divisor for LFO 2.") \
  FIELD(PRG, extTriggerMode, 73, "How the external trigger plays the program.") \
  FIELD(PRG, extTriggerNote, 74, "Note that the external trigger plays, a MIDI note 0 to 127.") \
  FIELD(PRG, extTriggerCtrl, 75, "MIDI controller of the external trigger, 0 to 127.") \
  FIELD(PRG, extTriggerThreshold, 76, "Controller value at which the external trigger plays, 0 to 127.") \
  OWN(PRG, mute, 80, "Whether the program is muted, 0 or 1. Stored in the program file; setting it neither sets the dirty flag nor notifies.") \
  OWN(PRG, solo, 81, "Whether the program is soloed, 0 or 1. Stored in the program file; setting it neither sets the dirty flag nor notifies.") \
  OWN(PRG, tmmute, 82, "Whether the program is muted by its timbre, 0 or 1. Stored in the program file; setting it neither sets the dirty flag nor notifies.") \
  METHOD(PRGtmMidiChannel, "Mask of the MIDI channels of all objects with this program, bit 0 for channel 1. A value that is set lasts until one of these objects changes its channel.")

#define ZYL_KEYGROUP_PARAMETERS(FIELD, OWN, METHOD) \
  FIELD(KG, lowKey, 100, "Lowest key of the range, a MIDI note 0 to 127.") \
  FIELD(KG, highKey, 101, "Highest key of the range, a MIDI note 0 to 127.") \
  FIELD(KG, tune, 102, "Tuning, in 1/256 semitone.") \
  FIELD(KG, filterFreq, 103, "Filter cutoff, usually 0 to 99 (open).") \
  FIELD(KG, filterKey, 104, "How much the key opens the filter, usually -50 to 50.") \
  FIELD(KG, filterVel, 105, "How much velocity opens the filter, usually -50 to 50.") \
  FIELD(KG, filterLFO2, 106, "How much LFO 2 moves the filter, usually -50 to 50.") \
  FIELD(KG, filterEnv2, 107, "How much envelope 2 opens the filter, usually -50 to 50.") \
  FIELD(KG, ampEnvAttack, 108, "Attack time of the loudness envelope, usually 0 to 99; higher is slower.") \
  FIELD(KG, ampEnvDecay, 109, "Decay time of the loudness envelope, usually 0 to 99; higher is slower.") \
  FIELD(KG, ampEnvSustain, 110, "Sustain level of the loudness envelope, usually 0 to 99.") \
  FIELD(KG, ampEnvRelease, 111, "Release time of the loudness envelope, usually 0 to 99; higher is slower.") \
  FIELD(KG, ampVelModAtt, 112, "How much velocity changes the attack, usually -50 to 50.") \
  FIELD(KG, ampVelModRel, 113, "How much velocity changes the release, usually -50 to 50.") \
  FIELD(KG, ampVelModOffRel, 114, "How much the release velocity changes the release, usually -50 to 50.") \
  FIELD(KG, ampKeyModDecRel, 115, "How much the key changes decay and release, usually -50 to 50.") \
  FIELD(KG, env2Rate1, 116, "Time of step 1 of envelope 2, usually 0 to 99; higher is slower.") \
  FIELD(KG, env2Rate3, 117, "Time of step 3 of envelope 2, usually 0 to 99; higher is slower.") \
  FIELD(KG, env2Level3, 118, "Level after step 3 of envelope 2, usually 0 to 99; sustained while the key is held.") \
  FIELD(KG, env2Rate4, 119, "Time of step 4 of envelope 2, the release, usually 0 to 99; higher is slower.") \
  FIELD(KG, env2VelModRate1, 120, "How much velocity changes step 1 of envelope 2, usually -50 to 50.") \
  FIELD(KG, env2VelModRate4, 121, "How much velocity changes step 4 of envelope 2, usually -50 to 50.") \
  FIELD(KG, env2VelModOffRate4, 122, "How much the release velocity changes step 4 of envelope 2, usually -50 to 50.") \
  FIELD(KG, env2KeyModRate34, 123, "How much the key changes steps 3 and 4 of envelope 2, usually -50 to 50.") \
  FIELD(KG, velFilterEnv, 124, "How much velocity changes the effect of envelope 2 on the filter, usually -50 to 50.") \
  FIELD(EXT, env3VelFilter, 172, "How much velocity changes the effect of envelope 3, usually -50 to 50.") \
  FIELD(KG, envPitch, 125, "How much envelope 2 bends the pitch, usually -50 to 50.") \
  FIELD(KG, velZoneCrossFade, 126, "Crossfade between velocity zones: 0 off, else on.", .text = &text_form::kOnOff) \
  FIELD(KG, fixedRateDetune, 127, "Detuning in Hz instead of semitones, so that the beat rate is the same on all keys.") \
  FIELD(KG, attackHoldUntilLoop, 128, "Whether the attack holds until the sample reaches its loop: 0 off, else on.", .text = &text_form::kOnOff) \
  FIELD(KG, velVolume, 129, "How much velocity changes the volume, usually -50 to 50.") \
  FIELD(KG, resonance, 130, "Filter resonance in 8 bits, stored by the program library; setting it does not set the dirty flag.", .store = Store::kByteResonance) \
  FIELD(KG, pitchModLFO1, 131, "How much LFO 1 moves the pitch, usually -50 to 50.") \
  FIELD(KG, filterModGain1, 132, "How much source PRGfilterModSel1 moves the filter, usually -50 to 50.") \
  FIELD(KG, filterModGain2, 133, "How much source PRGfilterModSel2 moves the filter, usually -50 to 50.") \
  FIELD(KG, filterModGain3, 134, "How much source PRGfilterModSel3 moves the filter, usually -50 to 50.") \
  FIELD(KG, pitchModGain, 135, "How much source PRGpitchModSel moves the pitch, usually -50 to 50.") \
  FIELD(KG, ampModGain, 136, "How much source PRGampModSel changes the loudness, usually -50 to 50.") \
  FIELD(KG, env2Level1, 137, "Level after step 1 of envelope 2, usually 0 to 99.") \
  FIELD(KG, env2Rate2, 138, "Time of step 2 of envelope 2, usually 0 to 99; higher is slower.") \
  FIELD(KG, env2Level2, 139, "Level after step 2 of envelope 2, usually 0 to 99.") \
  FIELD(KG, env2Level4, 140, "Level after step 4 of envelope 2, usually 0 to 99.") \
  FIELD(KG, muteGroup, 141, "Mute group: a note stops the other notes of its group; 0 is none.", .text = &text_form::kMuteGroup) \
  FIELD(EXT, env3Level1, 152, "Level after step 1 of envelope 3, usually 0 to 99.") \
  FIELD(EXT, env3Rate2, 153, "Time of step 2 of envelope 3, usually 0 to 99; higher is slower.") \
  FIELD(EXT, env3Level2, 154, "Level after step 2 of envelope 3, usually 0 to 99.") \
  FIELD(EXT, env3Level4, 155, "Level after step 4 of envelope 3, usually 0 to 99.") \
  FIELD(EXT, env3Rate1, 143, "Time of step 1 of envelope 3, usually 0 to 99; higher is slower.") \
  FIELD(EXT, env3Rate3, 144, "Time of step 3 of envelope 3, usually 0 to 99; higher is slower.") \
  FIELD(EXT, env3Level3, 145, "Level after step 3 of envelope 3, usually 0 to 99; sustained while the key is held.") \
  FIELD(EXT, env3Rate4, 146, "Time of step 4 of envelope 3, the release, usually 0 to 99; higher is slower.") \
  FIELD(EXT, env3VelModRate1, 147, "How much velocity changes step 1 of envelope 3, usually -50 to 50.") \
  FIELD(EXT, env3VelModRate4, 148, "How much velocity changes step 4 of envelope 3, usually -50 to 50.") \
  FIELD(EXT, env3VelModOffRate4, 150, "How much the release velocity changes step 4 of envelope 3, usually -50 to 50.") \
  FIELD(EXT, env3KeyModRate34, 151, "How much the key changes steps 3 and 4 of envelope 3, usually -50 to 50.") \
  FIELD(EXT, timeStretchModSel1, 156, "Modulation source 1 of the time stretch, 0 to 23; its amount is KGtimeStretchModGain1.") \
  FIELD(EXT, timeStretchModSel2, 157, "Modulation source 2 of the time stretch, 0 to 23; its amount is KGtimeStretchModGain2.") \
  FIELD(EXT, timeStretchModSel3, 158, "Modulation source 3 of the time stretch, 0 to 23; its amount is KGtimeStretchModGain3.") \
  FIELD(EXT, timeStretchModGain1, 159, "How much source KGtimeStretchModSel1 changes the time stretch, usually -50 to 50.") \
  FIELD(EXT, timeStretchModGain2, 160, "How much source KGtimeStretchModSel2 changes the time stretch, usually -50 to 50.") \
  FIELD(EXT, timeStretchModGain3, 161, "How much source KGtimeStretchModSel3 changes the time stretch, usually -50 to 50.") \
  FIELD(EXT, formantModSel1, 162, "Modulation source 1 of the formants, 0 to 23; its amount is KGformantModGain1.") \
  FIELD(EXT, formantModSel2, 163, "Modulation source 2 of the formants, 0 to 23; its amount is KGformantModGain2.") \
  FIELD(EXT, formantModSel3, 164, "Modulation source 3 of the formants, 0 to 23; its amount is KGformantModGain3.") \
  FIELD(EXT, formantModGain1, 165, "How much source KGformantModSel1 moves the formants, usually -50 to 50.") \
  FIELD(EXT, formantModGain2, 166, "How much source KGformantModSel2 moves the formants, usually -50 to 50.") \
  FIELD(EXT, formantModGain3, 167, "How much source KGformantModSel3 moves the formants, usually -50 to 50.") \
  FIELD(EXT, filterType, 168, "Filter type, 0 to 13: low pass, high pass and band pass of 2, 4 or 6 poles; odd numbers have resonance.", .text = &text_form::kFilterType) \
  FIELD(EXT, filterResonance, 169, "Filter resonance in 16 bits, stored by the program library; setting it does not set the dirty flag.", .store = Store::kShortResonance) \
  FIELD(EXT, filterResonanceModSel, 0, "Modulation source of the resonance, 0 to 23; its amount is KGfilterResonanceModGain.") \
  FIELD(EXT, filterResonanceModGain, 0, "How much source KGfilterResonanceModSel changes the resonance, usually -50 to 50.")

#define ZYL_ZONE_PARAMETERS(FIELD, OWN, METHOD) \
  FIELD(KG_ZONES, constantPitch, 200, "How the pitch follows the key: 0 track, 1 constant, 2 pitch, 3 pitch and constant, 4 stretch, 5 stretch and constant.", .text = &text_form::kConstantPitch) \
  FIELD(KG_ZONES, outOffset, 201, "Individual output of the zone, counted from PRGindyOutput.") \
  FIELD(KG_ZONES, velStart, 202, "How much velocity moves the sample start.") \
  METHOD(Zonename, "Name of the zone's sample, or an empty string; a new name is ignored.") \
  FIELD(ZONE, lowVel, 204, "Lowest velocity that plays the zone, 0 to 127.") \
  FIELD(ZONE, highVel, 205, "Highest velocity that plays the zone, 0 to 127.") \
  FIELD(ZONE, tuneOffset, 206, "Tuning added to the keygroup's, in 1/256 semitone.") \
  FIELD(ZONE, loudnessOffset, 207, "Loudness added to the program's, usually -50 to 50.") \
  FIELD(ZONE, filterOffset, 208, "Cutoff added to the keygroup's, usually -50 to 50.") \
  FIELD(ZONE, panOffset, 209, "Pan added to the program's, usually -50 to 50.") \
  FIELD(ZONE, playbacktype, 210, "Playback: 0 as set in the sample, 1 loop into the release, 2 loop until the release, 3 no loops, 4 to the end.", .text = &text_form::kPlaybackType) \
  METHOD(ZoneSamplePath, "File path of the zone's sample as stored in the program file; setting it does not load the file.") \
  METHOD(ZoneSampleSet, "Load a sample file into the zone, or remove the zone's sample when NewSample is absent. Files with more than 16 channels are rejected.") \
  METHOD(ZoneSampleExists, "Whether the zone has a sample.") \
  FIELD(EXT_ZONES, PitchPlay, 221, "Transposition method: 0 resampling, 1 pitch shift, 2 formant, 3 robot.", .text = &text_form::kPitchPlay) \
  FIELD(EXT_ZONES, TimeStretchOffset, 222, "Time stretch of the zone; 0 is none.") \
  FIELD(EXT_ZONES, FormantOffset, 223, "Formant shift of the zone; 0 is none.")

#define ZYL_ORGAN_PARAMETERS(FIELD, OWN, METHOD) \
  FIELD(TOLMO_KG, reverb, 190, "Organ: reverb of the keygroup.", .store = Store::kTolmo) \
  FIELD(TOLMO_KG, echo, 191, "Organ: echo of the keygroup.", .store = Store::kTolmo) \
  FIELD(TOLMO, reverb, 0, "Organ: reverb of the program.") \
  FIELD(TOLMO, chorus, 0, "Organ: chorus of the program.") \
  FIELD(TOLMO, echo, 0, "Organ: echo of the program.") \
  FIELD(TOLMO, effect, 0, "Organ: effect of the program.") \
  FIELD(TOLMO, attack, 0, "Organ: change of the attack.") \
  FIELD(TOLMO, sustain, 0, "Organ: change of the sustain.") \
  FIELD(TOLMO, release, 0, "Organ: change of the release.") \
  FIELD(TOLMO, filter, 0, "Organ: change of the filter.") \
  FIELD(TOLMO, stop_before_run, 0, "Organ: whether sounding notes stop before the program starts, 0 or 1.") \
  FIELD(TOLMO, reverb_default, 0, "Organ: default reverb.") \
  FIELD(TOLMO, chorus_default, 0, "Organ: default chorus.") \
  FIELD(TOLMO, echo_default, 0, "Organ: default echo.") \
  FIELD(TOLMO, effect_default, 0, "Organ: default effect.") \
  FIELD(TOLMO, attack_default, 0, "Organ: default change of the attack.") \
  FIELD(TOLMO, sustain_default, 0, "Organ: default change of the sustain.") \
  FIELD(TOLMO, release_default, 0, "Organ: default change of the release.") \
  FIELD(TOLMO, filter_default, 0, "Organ: default change of the filter.")
// clang-format on

namespace parameter_rows {

struct RowOptions {
  const TextForm* text = nullptr;
  Store store = Store::kField;
  FieldType type = FieldType::kNone;  // kNone: as the field is declared
};

template <class T>
constexpr Parameter Row(std::string_view method, Record record, size_t offset, int number,
                        RowOptions options) {
  // Arrays have an element for each zone; a field of a zone repeats with the zone record.
  const bool array = record == Record::kKeygroupZones || record == Record::kExtensionZones;
  const size_t stride = array                     ? sizeof(std::remove_all_extents_t<T>)
                        : record == Record::kZone ? sizeof(akaiZone)
                                                  : 0;
  const size_t base = record == Record::kZone ? offsetof(akaiKeyGroup, zones) : 0;
  return {method,
          record,
          options.type == FieldType::kNone ? FieldTypeOf<T>() : options.type,
          static_cast<uint16_t>(base + offset),
          static_cast<uint16_t>(stride),
          static_cast<int16_t>(number),
          options.store,
          options.text};
}

#define ZYL_ROW(name, record, image, field, number, ...)                             \
  Row<decltype(image::field)>(#name, Record::record, offsetof(image, field), number, \
                              RowOptions{__VA_ARGS__}),
#define ZYL_ROW_PRG(field, ...) \
  ZYL_ROW(PRG##field, kProgram, akaiProgramHdrImage, field, __VA_ARGS__)
#define ZYL_ROW_TOLMO(field, ...) ZYL_ROW(TolmoPRG##field, kTolmo, TolmoChunk, field, __VA_ARGS__)
#define ZYL_ROW_KG(field, ...) ZYL_ROW(KG##field, kKeygroup, akaiKeyGroup, field, __VA_ARGS__)
#define ZYL_ROW_EXT(field, ...) \
  ZYL_ROW(KG##field, kExtension, vendlKeyGroupImage, field, __VA_ARGS__)
#define ZYL_ROW_TOLMO_KG(field, ...) \
  ZYL_ROW(TolmoKG##field, kExtension, vendlKeyGroupImage, field, __VA_ARGS__)
#define ZYL_ROW_ZONE(field, ...) ZYL_ROW(Zone##field, kZone, akaiZone, field, __VA_ARGS__)
#define ZYL_ROW_KG_ZONES(field, ...) \
  ZYL_ROW(Zone##field, kKeygroupZones, akaiKeyGroup, field, __VA_ARGS__)
#define ZYL_ROW_EXT_ZONES(field, ...) \
  ZYL_ROW(Zone##field, kExtensionZones, vendlKeyGroupImage, field, __VA_ARGS__)
#define ZYL_FIELD_ROW(record, field, number, meaning, ...) \
  ZYL_ROW_##record(field, number, __VA_ARGS__)
#define ZYL_NO_ROW(name, meaning)

inline constexpr Parameter kRows[] = {
    ZYL_PROGRAM_PARAMETERS(ZYL_FIELD_ROW, ZYL_FIELD_ROW, ZYL_NO_ROW)
        ZYL_KEYGROUP_PARAMETERS(ZYL_FIELD_ROW, ZYL_FIELD_ROW, ZYL_NO_ROW)
            ZYL_ZONE_PARAMETERS(ZYL_FIELD_ROW, ZYL_FIELD_ROW, ZYL_NO_ROW)
                ZYL_ORGAN_PARAMETERS(ZYL_FIELD_ROW, ZYL_FIELD_ROW, ZYL_NO_ROW)};

#undef ZYL_ROW
#undef ZYL_ROW_PRG
#undef ZYL_ROW_TOLMO
#undef ZYL_ROW_KG
#undef ZYL_ROW_EXT
#undef ZYL_ROW_TOLMO_KG
#undef ZYL_ROW_ZONE
#undef ZYL_ROW_KG_ZONES
#undef ZYL_ROW_EXT_ZONES
#undef ZYL_FIELD_ROW
#undef ZYL_NO_ROW

// A zone's field with a program's number would be read from the wrong record.
consteval bool NumbersFitTheirLevels() {
  for (const Parameter& row : kRows) {
    int first = 1;
    int end = number::kFirstKeygroup;
    if (row.record == Record::kKeygroup || row.record == Record::kExtension) {
      first = number::kFirstKeygroup;
      end = number::kFirstZone;
    } else if (row.record != Record::kProgram && row.record != Record::kTolmo) {
      first = number::kFirstZone;
      end = number::kFirstSample;
    }
    if (row.number != 0 && (row.number < first || row.number >= end)) return false;
    if (number::IsComputed(row.number)) return false;
  }
  return true;
}
static_assert(NumbersFitTheirLevels());

}  // namespace parameter_rows

// The method of a row in the lists above.
#define ZYL_METHOD_NAME(record, field) ZYL_METHOD_NAME_##record(field)
#define ZYL_METHOD_NAME_PRG(field) PRG##field
#define ZYL_METHOD_NAME_TOLMO(field) TolmoPRG##field
#define ZYL_METHOD_NAME_KG(field) KG##field
#define ZYL_METHOD_NAME_EXT(field) KG##field
#define ZYL_METHOD_NAME_TOLMO_KG(field) TolmoKG##field
#define ZYL_METHOD_NAME_ZONE(field) Zone##field
#define ZYL_METHOD_NAME_KG_ZONES(field) Zone##field
#define ZYL_METHOD_NAME_EXT_ZONES(field) Zone##field

// The row of a parameter number between `first` and `last`; null when no field has the number.
inline const Parameter* RowOfNumber(int32_t number, int32_t first, int32_t last) {
  static constexpr auto kRowOf = [] {
    std::array<const Parameter*, number::kFirstSample> rows{};
    for (const Parameter& row : parameter_rows::kRows) {
      const auto at = static_cast<size_t>(row.number);
      if (at == 0) continue;
      if (rows[at] != nullptr) throw "two parameters have one number";
      rows[at] = &row;
    }
    return rows;
  }();
  return number < first || number > last ? nullptr : kRowOf[static_cast<size_t>(number)];
}

// The row of a method. A name without a row does not compile.
consteval const Parameter& ParameterOf(std::string_view method) {
  for (const Parameter& row : parameter_rows::kRows) {
    if (row.method == method) return row;
  }
  throw "no parameter has this method";
}
