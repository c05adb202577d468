// The rows. A new parameter is one line here.
#pragma once

#include <array>

#include "params/Parameter.h"

namespace parameter_rows {

template <class T>
constexpr Parameter Row(std::string_view method, Record record, size_t place, int number,
                        TextForm text = TextForm::kNone, Store store = Store::kField) {
  // An array element belongs to each zone; a zone's own field repeats with the zone record.
  const bool array = record == Record::kKeygroupZones || record == Record::kExtensionZones;
  const size_t stride = array                     ? sizeof(std::remove_all_extents_t<T>)
                        : record == Record::kZone ? sizeof(akaiZone)
                                                  : 0;
  const size_t base = record == Record::kZone ? offsetof(akaiKeyGroup, zones) : 0;
  return {method,
          record,
          FieldTypeOf<T>(),
          static_cast<uint16_t>(base + place),
          static_cast<uint16_t>(stride),
          static_cast<int16_t>(number),
          store,
          text};
}
template <class T>
constexpr Parameter Row(std::string_view method, Record record, size_t place, int number,
                        Store store) {
  return Row<T>(method, record, place, number, TextForm::kNone, store);
}
constexpr Parameter TextRow(std::string_view method, size_t place, int number) {
  return {method,
          Record::kProgram,
          FieldType::kText,
          static_cast<uint16_t>(place),
          0,
          static_cast<int16_t>(number)};
}

#define ZYL_ROW(prefix, record, structure, field, number, ...)                       \
  Row<decltype(structure::field)>(prefix #field, record, offsetof(structure, field), \
                                  number __VA_OPT__(, ) __VA_ARGS__)
#define PRG(field, ...) ZYL_ROW("PRG", Record::kProgram, akaiProgramHdrImage, field, __VA_ARGS__)
#define PRG_TEXT(field, number) TextRow("PRG" #field, offsetof(akaiProgramHdrImage, field), number)
#define TOLMO(field) ZYL_ROW("TolmoPRG", Record::kTolmo, TolmoChunk, field, 0)
#define KG(field, ...) ZYL_ROW("KG", Record::kKeygroup, akaiKeyGroup, field, __VA_ARGS__)
#define EXT(field, ...) ZYL_ROW("KG", Record::kExtension, vendlKeyGroupImage, field, __VA_ARGS__)
#define TOLMO_KG(field, number) \
  ZYL_ROW("TolmoKG", Record::kExtension, vendlKeyGroupImage, field, number, Store::kTolmo)
#define ZONE(field, ...) ZYL_ROW("Zone", Record::kZone, akaiZone, field, __VA_ARGS__)
#define KG_ZONES(field, ...) \
  ZYL_ROW("Zone", Record::kKeygroupZones, akaiKeyGroup, field, __VA_ARGS__)
#define EXT_ZONES(field, ...) \
  ZYL_ROW("Zone", Record::kExtensionZones, vendlKeyGroupImage, field, __VA_ARGS__)

inline constexpr Parameter kRows[] = {
    // Program header and program-level fields.
    PRG_TEXT(name, 1),
    PRG(midiProg, 2),
    PRG(midiChannel, 3, Store::kMidiChannel),
    PRG(poly, 4, TextForm::kVoices),
    PRG(prority, 5, TextForm::kPriority),
    PRG(reassignment, 6, TextForm::kReassignment),
    PRG(lowKey, 7),
    PRG(highKey, 8),
    PRG(playOctave, 9),
    PRG(indyOutput, 10, Store::kIndyOutput),
    PRG(indyOutGain, 11),
    PRG(stereoLevel, 12),
    PRG(stereoPan, 13),
    PRG(loudness, 14),
    PRG(loudVel, 15),
    PRG(loudKey, 16),
    PRG(loudPrs, 17),
    PRG(tune, 18),
    PRG(monoLegato, 19),
    PRG(keyGrpCrossFade, 20),
    PRG(keyGroups, 21, Store::kKeyGroups),
    PRG(bendRangeUp, 22),
    PRG(pitchBendDown, 23),
    PRG(pitchBendMode, 24, TextForm::kPitchBendMode),
    PRG(pressurePitchBend, 25),
    PRG(LFOwaveform, 26, TextForm::kWaveform),
    PRG(LFOspeed, 27),
    PRG(LFOdepth, 28),
    PRG(LFOdelay, 29),
    PRG(LFOdepthWheel, 30),
    PRG(LFOdepthPrs, 31),
    PRG(LFOdepthVel, 32),
    PRG(LFOSpeedModGain, 33),
    PRG(LFODepthModGain, 34),
    PRG(LFODelayModGain, 35),
    PRG(LFO1SpeedModSel, 36, TextForm::kModSource),
    PRG(LFO1DepthModSel, 37, TextForm::kModSource),
    PRG(LFO1DelayModSel, 38, TextForm::kModSource),
    PRG(LFOdesync, 39),
    PRG(LFO2speed, 40),
    PRG(LFO2depth, 41),
    PRG(LFO2delay, 42),
    PRG(LFO2waveform, 43, TextForm::kWaveform),
    PRG(panKey, 44),
    PRG_TEXT(masterDetune, 45),  // its first 12 bytes
    PRG(panModWheel, 46),
    PRG(softPedalLoudness, 47),
    PRG(softPedalAttack, 48),
    PRG(softPedalFilter, 49),
    PRG(stereoOutSpace, 50),
    PRG(filterModSel1, 51, TextForm::kModSource),
    PRG(filterModSel2, 52, TextForm::kModSource),
    PRG(filterModSel3, 53, TextForm::kModSource),
    PRG(pitchModSel, 54, TextForm::kModSource),
    PRG(panModGain1, 55),
    PRG(panModGain2, 56),
    PRG(panModGain3, 57),
    PRG(panModSel1, 58, TextForm::kModSource),
    PRG(panModSel2, 59, TextForm::kModSource),
    PRG(panModSel3, 60, TextForm::kModSource),
    PRG(ampModGain2, 61),
    PRG(ampModGain3, 62),
    PRG(ampModSel, 63, TextForm::kModSource),
    PRG(ampModSel2, 64, TextForm::kModSource),
    PRG(ampModSel3, 65, TextForm::kModSource),
    PRG(LFO2retrigger, 66),
    PRG(LFO1Sync2MIDIClk, 67),
    PRG(LFO1MIDIClkMul, 68),
    PRG(LFO1MIDIClkDiv, 69),
    PRG(LFO2Sync2MIDIClk, 70),
    PRG(LFO2MIDIClkMul, 71),
    PRG(LFO2MIDIClkDiv, 72),
    PRG(extTriggerMode, 73),
    PRG(extTriggerNote, 74),
    PRG(extTriggerCtrl, 75),
    PRG(extTriggerThreshold, 76),
    PRG(mute, 80),
    PRG(solo, 81),
    PRG(tmmute, 82),
    // Organ extension of the program.
    TOLMO(reverb),
    TOLMO(chorus),
    TOLMO(echo),
    TOLMO(effect),
    TOLMO(attack),
    TOLMO(sustain),
    TOLMO(release),
    TOLMO(filter),
    TOLMO(reverb_default),
    TOLMO(chorus_default),
    TOLMO(echo_default),
    TOLMO(effect_default),
    TOLMO(attack_default),
    TOLMO(sustain_default),
    TOLMO(release_default),
    TOLMO(filter_default),
    TOLMO(stop_before_run),
    // Keygroup.
    KG(lowKey, 100),
    KG(highKey, 101),
    KG(tune, 102),
    KG(filterFreq, 103),
    KG(filterKey, 104),
    KG(filterVel, 105),
    KG(filterLFO2, 106),
    KG(filterEnv2, 107),
    KG(ampEnvAttack, 108),
    KG(ampEnvDecay, 109),
    KG(ampEnvSustain, 110),
    KG(ampEnvRelease, 111),
    KG(ampVelModAtt, 112),
    KG(ampVelModRel, 113),
    KG(ampVelModOffRel, 114),
    KG(ampKeyModDecRel, 115),
    KG(env2Rate1, 116),
    KG(env2Rate3, 117),
    KG(env2Level3, 118),
    KG(env2Rate4, 119),
    KG(env2VelModRate1, 120),
    KG(env2VelModRate4, 121),
    KG(env2VelModOffRate4, 122),
    KG(env2KeyModRate34, 123),
    KG(velFilterEnv, 124),
    KG(envPitch, 125),
    KG(velZoneCrossFade, 126, TextForm::kOnOff),
    KG(fixedRateDetune, 127),
    KG(attackHoldUntilLoop, 128, TextForm::kOnOff),
    KG(velVolume, 129),
    KG(resonance, 130, Store::kByteResonance),
    KG(pitchModLFO1, 131),
    KG(filterModGain1, 132),
    KG(filterModGain2, 133),
    KG(filterModGain3, 134),
    KG(pitchModGain, 135),
    KG(ampModGain, 136),
    KG(env2Level1, 137),
    KG(env2Rate2, 138),
    KG(env2Level2, 139),
    KG(env2Level4, 140),
    KG(muteGroup, 141, TextForm::kMuteGroup),
    // Keygroup extension.
    EXT(env3Level1, 152),
    EXT(env3Level2, 154),
    EXT(env3Level3, 145),
    EXT(env3Level4, 155),
    EXT(env3Rate1, 143),
    EXT(env3Rate2, 153),
    EXT(env3Rate3, 144),
    EXT(env3Rate4, 146),
    EXT(env3VelModRate1, 147),
    EXT(env3VelModRate4, 148),
    EXT(env3VelModOffRate4, 150),
    EXT(env3KeyModRate34, 151),
    EXT(timeStretchModSel1, 156),
    EXT(timeStretchModSel2, 157),
    EXT(timeStretchModSel3, 158),
    EXT(timeStretchModGain1, 159),
    EXT(timeStretchModGain2, 160),
    EXT(timeStretchModGain3, 161),
    EXT(formantModSel1, 162),
    EXT(formantModSel2, 163),
    EXT(formantModSel3, 164),
    EXT(formantModGain1, 165),
    EXT(formantModGain2, 166),
    EXT(formantModGain3, 167),
    EXT(filterType, 168, TextForm::kFilterType),
    EXT(filterResonanceModSel, 0),
    EXT(filterResonanceModGain, 0),
    EXT(env3VelFilter, 172),
    EXT(filterResonance, 169, Store::kShortResonance),
    TOLMO_KG(reverb, 190),
    TOLMO_KG(echo, 191),
    // Velocity zones.
    ZONE(lowVel, 204),
    ZONE(highVel, 205),
    ZONE(tuneOffset, 206),
    ZONE(loudnessOffset, 207),
    ZONE(filterOffset, 208),
    ZONE(panOffset, 209),
    ZONE(playbacktype, 210, TextForm::kPlaybackType),
    KG_ZONES(constantPitch, 200, TextForm::kConstantPitch),
    KG_ZONES(outOffset, 201),
    KG_ZONES(velStart, 202),
    EXT_ZONES(PitchPlay, 221, TextForm::kPitchPlay),
    EXT_ZONES(FormantOffset, 223),
    EXT_ZONES(TimeStretchOffset, 222),
};

#undef ZYL_ROW
#undef PRG
#undef PRG_TEXT
#undef TOLMO
#undef KG
#undef EXT
#undef TOLMO_KG
#undef ZONE
#undef KG_ZONES
#undef EXT_ZONES

}  // namespace parameter_rows

// The row of a parameter number between `first` and `last`, null when the number names no field
// there.
inline const Parameter* RowOfNumber(int32_t number, int32_t first, int32_t last) {
  static constexpr auto kRowOf = [] {
    std::array<const Parameter*, 300> rows{};
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

// The row of a field method; a name without a row does not compile.
consteval const Parameter& ParameterOf(std::string_view method) {
  for (const Parameter& row : parameter_rows::kRows) {
    if (row.method == method) return row;
  }
  throw "no parameter has this method";
}
