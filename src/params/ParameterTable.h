// The parameters of a program, its keygroups and their zones: one row each, in the order of their
// methods in the method table.
//
//   FIELD(record, field, number, meaning, options...)   a field; its method is made from the row
//   OWN(record, field, number, meaning, options...)     a field whose method has a body of its own
//   METHOD(name, meaning)                               a method between them that is no field
//
// `record` is the record that holds the field: PRG, TOLMO, KG, EXT, TOLMO_KG, ZONE, KG_ZONES or
// EXT_ZONES (see ZYL_ROW_* below). `number` is 0 for a field that has none. The options are those
// of RowOptions.
#pragma once

#include <array>
#include <iterator>

#include "params/Parameter.h"
#include "params/ParameterNumbers.h"

// How values are shown and typed. A form without keywords is typed by the rule of MatchText.
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
  FIELD(PRG, poly, 4, "Polyphony less one: 0 is one voice, 15 sixteen.", .text = &text_form::kVoices) \
  FIELD(PRG, prority, 5, "Voice priority: 0 low, 1 normal, 2 high, 3 hold.", .text = &text_form::kPriority) \
  FIELD(PRG, reassignment, 6, "Which voice is taken when none is free: 0 the oldest, else the quietest.", .text = &text_form::kReassignment) \
  FIELD(PRG, lowKey, 7, "Lowest key that plays, a MIDI note 0 to 127.") \
  FIELD(PRG, highKey, 8, "Highest key that plays, a MIDI note 0 to 127.") \
  FIELD(PRG, playOctave, 9, "Octave shift of what is played, in octaves.") \
  OWN(PRG, indyOutput, 10, "First individual output of the program, from 0; -1 is off.", .store = Store::kIndyOutput) \
  FIELD(PRG, indyOutGain, 11, "Gain of the individual outputs.") \
  FIELD(PRG, stereoLevel, 12, "Level on the stereo outputs, usually 0 to 99.") \
  FIELD(PRG, stereoPan, 13, "Position on the stereo outputs: 0 the middle, usually -50 left to 50 right.") \
  FIELD(PRG, loudness, 14, "Basic loudness, usually 0 to 99.") \
  FIELD(PRG, loudVel, 15, "How much velocity adds to the loudness, usually -50 to 50.") \
  FIELD(PRG, loudKey, 16, "How much the key adds to the loudness, usually -50 to 50.") \
  FIELD(PRG, loudPrs, 17, "How much pressure adds to the loudness, usually -50 to 50.") \
  FIELD(PRG, tune, 18, "Tuning of the whole program, in 1/256 semitone.") \
  FIELD(PRG, monoLegato, 19, "Mono legato: 0 off, else on.") \
  FIELD(PRG, keyGrpCrossFade, 20, "Crossfade where key ranges overlap: 0 off, else on.") \
  OWN(PRG, keyGroups, 21, "Number of keygroups as the record counts them. Setting it makes or deletes none: use KGCreate and KGDelete.", .store = Store::kKeyGroups) \
  FIELD(PRG, bendRangeUp, 22, "How far the pitch wheel bends up, in semitones.") \
  FIELD(PRG, pitchBendDown, 23, "How far the pitch wheel bends down, in semitones.") \
  FIELD(PRG, pitchBendMode, 24, "Which notes bend: 0 all, else those that are held.", .text = &text_form::kPitchBendMode) \
  FIELD(PRG, pressurePitchBend, 25, "How far pressure bends the pitch, in semitones; negative bends down.") \
  FIELD(PRG, LFOwaveform, 26, "Waveform of LFO 1: 0 triangle, 1 sawtooth, 2 square, 3 random.", .text = &text_form::kWaveform) \
  FIELD(PRG, LFOspeed, 27, "Speed of LFO 1, usually 0 to 99.") \
  FIELD(PRG, LFOdepth, 28, "Depth of LFO 1, usually 0 to 99.") \
  FIELD(PRG, LFOdelay, 29, "Time until LFO 1 sets in, usually 0 to 99.") \
  FIELD(PRG, LFOdepthWheel, 30, "How much the modulation wheel adds to the depth of LFO 1, usually 0 to 99.") \
  FIELD(PRG, LFOdepthPrs, 31, "How much pressure adds to the depth of LFO 1, usually 0 to 99.") \
  FIELD(PRG, LFOdepthVel, 32, "How much velocity adds to the depth of LFO 1, usually 0 to 99.") \
  FIELD(PRG, LFOSpeedModGain, 33, "How much the source of PRGLFO1SpeedModSel changes the speed of LFO 1, usually -50 to 50.") \
  FIELD(PRG, LFODepthModGain, 34, "How much the source of PRGLFO1DepthModSel changes the depth of LFO 1, usually -50 to 50.") \
  FIELD(PRG, LFODelayModGain, 35, "How much the source of PRGLFO1DelayModSel changes the delay of LFO 1, usually -50 to 50.") \
  FIELD(PRG, LFO1SpeedModSel, 36, "Source that modulates the speed of LFO 1, 0 to 23; ModulationSource names them.", .text = &text_form::kModSource) \
  FIELD(PRG, LFO1DepthModSel, 37, "Source that modulates the depth of LFO 1, 0 to 23; ModulationSource names them.", .text = &text_form::kModSource) \
  FIELD(PRG, LFO1DelayModSel, 38, "Source that modulates the delay of LFO 1, 0 to 23; ModulationSource names them.", .text = &text_form::kModSource) \
  FIELD(PRG, LFOdesync, 39, "Whether each voice runs an LFO 1 of its own: 0 off, else on.") \
  FIELD(PRG, LFO2speed, 40, "Speed of LFO 2, usually 0 to 99.") \
  FIELD(PRG, LFO2depth, 41, "Depth of LFO 2, usually 0 to 99.") \
  FIELD(PRG, LFO2delay, 42, "Time until LFO 2 sets in, usually 0 to 99.") \
  FIELD(PRG, LFO2waveform, 43, "Waveform of LFO 2: 0 triangle, 1 sawtooth, 2 square, 3 random.", .text = &text_form::kWaveform) \
  FIELD(PRG, panKey, 44, "How much the key moves the stereo position, usually -50 to 50.") \
  OWN(PRG, masterDetune, 45, "Detuning of one of the 13 steps of the program's own scale, -128 to 127.", .type = FieldType::kText) \
  FIELD(PRG, panModWheel, 46, "How much the modulation wheel moves the stereo position, usually -50 to 50.") \
  FIELD(PRG, softPedalLoudness, 47, "How much the soft pedal lowers the loudness, usually 0 to 99.") \
  FIELD(PRG, softPedalAttack, 48, "How much the soft pedal slows the attack, usually 0 to 99.") \
  FIELD(PRG, softPedalFilter, 49, "How much the soft pedal closes the filter, usually 0 to 99.") \
  FIELD(PRG, stereoOutSpace, 50, "Width of the stereo outputs.") \
  FIELD(PRG, filterModSel1, 51, "Source 1 that modulates the filters, 0 to 23; KGfilterModGain1 says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, filterModSel2, 52, "Source 2 that modulates the filters, 0 to 23; KGfilterModGain2 says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, filterModSel3, 53, "Source 3 that modulates the filters, 0 to 23; KGfilterModGain3 says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, pitchModSel, 54, "Source that modulates the pitch, 0 to 23; KGpitchModGain says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, panModGain1, 55, "How much source PRGpanModSel1 moves the stereo position, usually -50 to 50.") \
  FIELD(PRG, panModGain2, 56, "How much source PRGpanModSel2 moves the stereo position, usually -50 to 50.") \
  FIELD(PRG, panModGain3, 57, "How much source PRGpanModSel3 moves the stereo position, usually -50 to 50.") \
  FIELD(PRG, panModSel1, 58, "Source 1 that moves the stereo position, 0 to 23; PRGpanModGain1 says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, panModSel2, 59, "Source 2 that moves the stereo position, 0 to 23; PRGpanModGain2 says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, panModSel3, 60, "Source 3 that moves the stereo position, 0 to 23; PRGpanModGain3 says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, ampModGain2, 61, "How much source PRGampModSel2 changes the loudness, usually -50 to 50.") \
  FIELD(PRG, ampModGain3, 62, "How much source PRGampModSel3 changes the loudness, usually -50 to 50.") \
  FIELD(PRG, ampModSel, 63, "Source 1 that modulates the loudness, 0 to 23; KGampModGain says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, ampModSel2, 64, "Source 2 that modulates the loudness, 0 to 23; PRGampModGain2 says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, ampModSel3, 65, "Source 3 that modulates the loudness, 0 to 23; PRGampModGain3 says how much.", .text = &text_form::kModSource) \
  FIELD(PRG, LFO2retrigger, 66, "Whether each note starts LFO 2 anew: 0 off, else on.") \
  FIELD(PRG, LFO1Sync2MIDIClk, 67, "Whether LFO 1 follows the MIDI clock: 0 off, else on.") \
  FIELD(PRG, LFO1MIDIClkMul, 68, "Multiplier of the MIDI clock for LFO 1.") \
  FIELD(PRG, LFO1MIDIClkDiv, 69, "Divisor of the MIDI clock for LFO 1.") \
  FIELD(PRG, LFO2Sync2MIDIClk, 70, "Whether LFO 2 follows the MIDI clock: 0 off, else on.") \
  FIELD(PRG, LFO2MIDIClkMul, 71, "Multiplier of the MIDI clock for LFO 2.") \
  FIELD(PRG, LFO2MIDIClkDiv, 72, "Divisor of the MIDI clock for LFO 2.") \
  FIELD(PRG, extTriggerMode, 73, "How the external trigger plays the program.") \
  FIELD(PRG, extTriggerNote, 74, "Note that the external trigger plays, a MIDI note 0 to 127.") \
  FIELD(PRG, extTriggerCtrl, 75, "MIDI controller that the external trigger listens to, 0 to 127.") \
  FIELD(PRG, extTriggerThreshold, 76, "Controller value from which the external trigger plays, 0 to 127.") \
  OWN(PRG, mute, 80, "Whether the program is muted, 0 or 1. It is stored in the program file; setting it neither sets the dirty flag nor notifies.") \
  OWN(PRG, solo, 81, "Whether the program plays alone, 0 or 1. It is stored in the program file; setting it neither sets the dirty flag nor notifies.") \
  OWN(PRG, tmmute, 82, "Whether the program is muted by its timbre, 0 or 1. It is stored in the program file; setting it neither sets the dirty flag nor notifies.") \
  METHOD(PRGtmMidiChannel, "Mask of the MIDI channels, bit 0 for channel 1: those of all objects that hold the program. A value set lasts until one of them changes its channel.")

#define ZYL_KEYGROUP_PARAMETERS(FIELD, OWN, METHOD) \
  FIELD(KG, lowKey, 100, "Lowest key of the range, a MIDI note 0 to 127.") \
  FIELD(KG, highKey, 101, "Highest key of the range, a MIDI note 0 to 127.") \
  FIELD(KG, tune, 102, "Tuning, in 1/256 semitone.") \
  FIELD(KG, filterFreq, 103, "Filter cutoff, usually 0 to 99, which is open.") \
  FIELD(KG, filterKey, 104, "How much the key opens the filter, usually -50 to 50.") \
  FIELD(KG, filterVel, 105, "How much velocity opens the filter, usually -50 to 50.") \
  FIELD(KG, filterLFO2, 106, "How much LFO 2 moves the filter, usually -50 to 50.") \
  FIELD(KG, filterEnv2, 107, "How much envelope 2 opens the filter, usually -50 to 50.") \
  FIELD(KG, ampEnvAttack, 108, "Attack of the loudness envelope, usually 0 to 99; higher is slower.") \
  FIELD(KG, ampEnvDecay, 109, "Decay of the loudness envelope, usually 0 to 99; higher is slower.") \
  FIELD(KG, ampEnvSustain, 110, "Level that the loudness envelope holds, usually 0 to 99.") \
  FIELD(KG, ampEnvRelease, 111, "Release of the loudness envelope, usually 0 to 99; higher is slower.") \
  FIELD(KG, ampVelModAtt, 112, "How much velocity changes the attack, usually -50 to 50.") \
  FIELD(KG, ampVelModRel, 113, "How much velocity changes the release, usually -50 to 50.") \
  FIELD(KG, ampVelModOffRel, 114, "How much the release velocity changes the release, usually -50 to 50.") \
  FIELD(KG, ampKeyModDecRel, 115, "How much the key changes decay and release, usually -50 to 50.") \
  FIELD(KG, env2Rate1, 116, "Time of step 1 of envelope 2, usually 0 to 99; higher is slower.") \
  FIELD(KG, env2Rate3, 117, "Time of step 3 of envelope 2, usually 0 to 99; higher is slower.") \
  FIELD(KG, env2Level3, 118, "Level after step 3 of envelope 2, usually 0 to 99; it holds while the key does.") \
  FIELD(KG, env2Rate4, 119, "Time of step 4 of envelope 2, the release, usually 0 to 99; higher is slower.") \
  FIELD(KG, env2VelModRate1, 120, "How much velocity changes step 1 of envelope 2, usually -50 to 50.") \
  FIELD(KG, env2VelModRate4, 121, "How much velocity changes step 4 of envelope 2, usually -50 to 50.") \
  FIELD(KG, env2VelModOffRate4, 122, "How much the release velocity changes step 4 of envelope 2, usually -50 to 50.") \
  FIELD(KG, env2KeyModRate34, 123, "How much the key changes steps 3 and 4 of envelope 2, usually -50 to 50.") \
  FIELD(KG, velFilterEnv, 124, "How much velocity changes what envelope 2 does to the filter, usually -50 to 50.") \
  FIELD(EXT, env3VelFilter, 172, "How much velocity changes what envelope 3 does, usually -50 to 50.") \
  FIELD(KG, envPitch, 125, "How much envelope 2 bends the pitch, usually -50 to 50.") \
  FIELD(KG, velZoneCrossFade, 126, "Crossfade between velocity zones: 0 off, else on.", .text = &text_form::kOnOff) \
  FIELD(KG, fixedRateDetune, 127, "Detuning in Hz rather than in parts of a semitone, so that beats keep their speed on all keys.") \
  FIELD(KG, attackHoldUntilLoop, 128, "Whether the attack lasts until the sample reaches its loop: 0 off, else on.", .text = &text_form::kOnOff) \
  FIELD(KG, velVolume, 129, "How much velocity changes the volume, usually -50 to 50.") \
  FIELD(KG, resonance, 130, "Filter resonance in 8 bits, kept by the program library; does not mark the program dirty.", .store = Store::kByteResonance) \
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
  FIELD(KG, muteGroup, 141, "Mute group: a note of the group ends its other notes; 0 is none.", .text = &text_form::kMuteGroup) \
  FIELD(EXT, env3Level1, 152, "Level after step 1 of envelope 3, usually 0 to 99.") \
  FIELD(EXT, env3Rate2, 153, "Time of step 2 of envelope 3, usually 0 to 99; higher is slower.") \
  FIELD(EXT, env3Level2, 154, "Level after step 2 of envelope 3, usually 0 to 99.") \
  FIELD(EXT, env3Level4, 155, "Level after step 4 of envelope 3, usually 0 to 99.") \
  FIELD(EXT, env3Rate1, 143, "Time of step 1 of envelope 3, usually 0 to 99; higher is slower.") \
  FIELD(EXT, env3Rate3, 144, "Time of step 3 of envelope 3, usually 0 to 99; higher is slower.") \
  FIELD(EXT, env3Level3, 145, "Level after step 3 of envelope 3, usually 0 to 99; it holds while the key does.") \
  FIELD(EXT, env3Rate4, 146, "Time of step 4 of envelope 3, the release, usually 0 to 99; higher is slower.") \
  FIELD(EXT, env3VelModRate1, 147, "How much velocity changes step 1 of envelope 3, usually -50 to 50.") \
  FIELD(EXT, env3VelModRate4, 148, "How much velocity changes step 4 of envelope 3, usually -50 to 50.") \
  FIELD(EXT, env3VelModOffRate4, 150, "How much the release velocity changes step 4 of envelope 3, usually -50 to 50.") \
  FIELD(EXT, env3KeyModRate34, 151, "How much the key changes steps 3 and 4 of envelope 3, usually -50 to 50.") \
  FIELD(EXT, timeStretchModSel1, 156, "Source 1 that modulates the time stretch, 0 to 23; KGtimeStretchModGain1 says how much.") \
  FIELD(EXT, timeStretchModSel2, 157, "Source 2 that modulates the time stretch, 0 to 23; KGtimeStretchModGain2 says how much.") \
  FIELD(EXT, timeStretchModSel3, 158, "Source 3 that modulates the time stretch, 0 to 23; KGtimeStretchModGain3 says how much.") \
  FIELD(EXT, timeStretchModGain1, 159, "How much source KGtimeStretchModSel1 changes the time stretch, usually -50 to 50.") \
  FIELD(EXT, timeStretchModGain2, 160, "How much source KGtimeStretchModSel2 changes the time stretch, usually -50 to 50.") \
  FIELD(EXT, timeStretchModGain3, 161, "How much source KGtimeStretchModSel3 changes the time stretch, usually -50 to 50.") \
  FIELD(EXT, formantModSel1, 162, "Source 1 that modulates the formants, 0 to 23; KGformantModGain1 says how much.") \
  FIELD(EXT, formantModSel2, 163, "Source 2 that modulates the formants, 0 to 23; KGformantModGain2 says how much.") \
  FIELD(EXT, formantModSel3, 164, "Source 3 that modulates the formants, 0 to 23; KGformantModGain3 says how much.") \
  FIELD(EXT, formantModGain1, 165, "How much source KGformantModSel1 moves the formants, usually -50 to 50.") \
  FIELD(EXT, formantModGain2, 166, "How much source KGformantModSel2 moves the formants, usually -50 to 50.") \
  FIELD(EXT, formantModGain3, 167, "How much source KGformantModSel3 moves the formants, usually -50 to 50.") \
  FIELD(EXT, filterType, 168, "Filter type, 0 to 13: low pass, high pass and band pass of 2, 4 or 6 poles; odd ones with resonance.", .text = &text_form::kFilterType) \
  FIELD(EXT, filterResonance, 169, "Filter resonance in 16 bits, kept by the program library; does not mark the program dirty.", .store = Store::kShortResonance) \
  FIELD(EXT, filterResonanceModSel, 0, "Source that modulates the resonance, 0 to 23; KGfilterResonanceModGain says how much.") \
  FIELD(EXT, filterResonanceModGain, 0, "How much source KGfilterResonanceModSel changes the resonance, usually -50 to 50.")

#define ZYL_ZONE_PARAMETERS(FIELD, OWN, METHOD) \
  FIELD(KG_ZONES, constantPitch, 200, "How the pitch follows the key: 0 it tracks, 1 constant, 2 pitch, 3 pitch held constant, 4 stretch, 5 stretch held constant.", .text = &text_form::kConstantPitch) \
  FIELD(KG_ZONES, outOffset, 201, "Individual output of the zone, counted from PRGindyOutput.") \
  FIELD(KG_ZONES, velStart, 202, "How much velocity moves the point where the sample starts.") \
  METHOD(Zonename, "Name of the zone's sample, empty without one; a text given is not used.") \
  FIELD(ZONE, lowVel, 204, "Lowest velocity that plays the zone, 0 to 127.") \
  FIELD(ZONE, highVel, 205, "Highest velocity that plays the zone, 0 to 127.") \
  FIELD(ZONE, tuneOffset, 206, "Tuning added to the keygroup's, in 1/256 semitone.") \
  FIELD(ZONE, loudnessOffset, 207, "Loudness added to the program's, usually -50 to 50.") \
  FIELD(ZONE, filterOffset, 208, "Cutoff added to the keygroup's, usually -50 to 50.") \
  FIELD(ZONE, panOffset, 209, "Stereo position added to the program's, usually -50 to 50.") \
  FIELD(ZONE, playbacktype, 210, "Playback: 0 as the sample says, 1 loop into the release, 2 loop until the release, 3 no loops, 4 to the end.", .text = &text_form::kPlaybackType) \
  METHOD(ZoneSamplePath, "File path of the zone's sample as the program file keeps it; setting it loads nothing.") \
  METHOD(ZoneSampleSet, "Give the zone the sample of a file, or none when NewSample is absent. A file with more than 16 channels is refused.") \
  METHOD(ZoneSampleExists, "Tell whether the zone has a sample.") \
  FIELD(EXT_ZONES, PitchPlay, 221, "How other pitches are made: 0 resampling, 1 pitch shift, 2 formant, 3 robot.", .text = &text_form::kPitchPlay) \
  FIELD(EXT_ZONES, TimeStretchOffset, 222, "Time stretch of the zone, 0 is none.") \
  FIELD(EXT_ZONES, FormantOffset, 223, "Formant shift of the zone, 0 is none.")

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
  FIELD(TOLMO, stop_before_run, 0, "Organ: whether what sounds is stopped before the program starts, 0 or 1.") \
  FIELD(TOLMO, reverb_default, 0, "Organ: value to which the reverb goes back.") \
  FIELD(TOLMO, chorus_default, 0, "Organ: value to which the chorus goes back.") \
  FIELD(TOLMO, echo_default, 0, "Organ: value to which the echo goes back.") \
  FIELD(TOLMO, effect_default, 0, "Organ: value to which the effect goes back.") \
  FIELD(TOLMO, attack_default, 0, "Organ: value to which the change of the attack goes back.") \
  FIELD(TOLMO, sustain_default, 0, "Organ: value to which the change of the sustain goes back.") \
  FIELD(TOLMO, release_default, 0, "Organ: value to which the change of the release goes back.") \
  FIELD(TOLMO, filter_default, 0, "Organ: value to which the change of the filter goes back.")
// clang-format on

namespace parameter_rows {

struct RowOptions {
  const TextForm* text = nullptr;
  Store store = Store::kField;
  FieldType type = FieldType::kNone;  // kNone: as the field is declared
};

template <class T>
constexpr Parameter Row(std::string_view method, Record record, size_t place, int number,
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
          static_cast<uint16_t>(base + place),
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

// A zone's field reached by a program's number would be read from the wrong record.
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
