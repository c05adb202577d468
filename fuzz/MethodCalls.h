// Representative valid calls of every script method, for passes that try each method in turn.
//
// A call is written as its arguments, separated by spaces: 5, 0.5, 'text', T and F for booleans, -
// for an absent argument, and a letter for each object of AllocationWorld:
//   S mono zone sample   Z zone sample, one channel of a stereo file   W whole temporary sample
//   V mono temporary sample   O this program   P another program   N null object
//   R algorithm with pads   D data pad with slots   I data pad with a sample   A array
//   G keyboard container   L list module
#pragma once

#include <string_view>

namespace zyl::test {

struct MethodCalls {
  std::string_view method;
  std::string_view calls;  // separated by "|"
};

// Field methods by the prefix of their name.
inline constexpr MethodCalls kFieldCalls[] = {
    {"KG", "0|1 7|-1 7|-2 7"}, {"TolmoKG", "0|1 1|-1 7"}, {"Zone", "0 1|1 3 1"}, {"PRG", "|3"},
    {"TolmoPRG", "|3"},
};

inline constexpr MethodCalls kMethodCalls[] = {
    {"Dirty", "|T"},
    {"Read", "'full.zprg'|'full.zprg' 0 3|'absent.zprg'"},
    {"Write", "'new.zprg'|'new.zprg' 1|'new.zprg' 51|'a/path/with/no/folder.zprg'"},
    {"Find", "'full.zprg'|'full.zprg' 7|'nothing'"},
    {"Create", "N|P|P F|O"},
    {"Register", "R"},
    {"WriteDataToPad", "D 7 3 4 5|D 9 3 4|D 7 3"},
    {"ReadDataFromPad", "D 7"},
    {"EmptyPadData", "D"},
    {"RemoveDataFromPad", "D 7"},
    {"GetChannelCount", "'both.wav'|'absent.wav'"},
    {"GetSFPresetArray", "'two.sf2' A|'absent.sf2' A"},
    {"CreateTempSample", "'made-by-the-fuzzer.wav'|'made-by-the-fuzzer.aif' 0|'left.wav' 0"},
    {"GetTempSample", "'left.wav'|'left.wav' 0 T|'both.wav' 0|'both.wav' -1 F"},
    {"ReadTempSample", "'other.wav'|'other.aif' -1|'left.wav' 0 T|'both.wav' 0|'absent.wav'"},
    {"DeleteTempSample", "|W"},
    {"PrepareDelete", ""},
    {"PitchDataProgressCB", "R|N"},
    {"PitchDataProgressCBFinish", "R|N"},
    {"PitchDataCalcCancel", ""},
    {"PitchDataCalculating", ""},
    {"PitchDataTimeLeft", ""},
    {"PitchDataTimeTotal", ""},
    {"PitchDataProgressRatio", ""},
    {"PitchDataCalcSamples", "A"},
    {"MaxIndyOut", "|3"},
    {"GetTotalPhysicalMemory", ""},
    {"GetLockedMemory", ""},
    {"GetUsedPhysicalMemory", "|F"},
    {"WriteSampleToPad", "D S|D W"},
    {"ReadSampleFromPad", "I|I 'a-sample-read-from-a-pad.wav'"},
    {"DrawKeyGroupKB", "1 G L"},
    {"FileName", "|'a-file-name-that-is-long.zprg'"},
    {"KGDelete", "0|1"},
    {"KGCreate", "1|0 P 0|9 O 1"},
    {"KGMove", "0 2"},
    {"KGSort", "100 1|101 0"},
    {"KGFindByKey", "60|60 1"},
    {"KGSelect", "1|1 T|-1 T"},
    {"EnableRegisterCall", "|F"},
    {"ListFillKeygroups", "L|L T"},
    {"ListFillZones", "0 L|1 L T"},
    {"UpdateKeyboardSelection", "60 1.0 2.0 3.0 4.0 L"},
    {"SampleCopyFile", "'left.wav' 'copied.wav'"},
    {"SetUniqueFilePath", ""},
    {"IsValid", ""},
    {"IsLocked", ""},
    {"PRGname", "|'Twelve chars'"},
    {"PRGmidiChannel", "|5"},
    {"PRGindyOutput", "|2"},
    {"PRGkeyGroups", "|2"},
    {"PRGmasterDetune", "3|3 9"},
    {"PRGmute", "|1"},
    {"PRGsolo", "|1"},
    {"PRGtmmute", "|1"},
    {"PRGtmMidiChannel", "|5"},
    {"Zonename", "0 0"},
    {"ZoneSamplePath", "0 0|0 0 'a/long/path/of/a/sample.wav'"},
    {"ZoneSampleSet",
     "0 0|0 0 'both.wav'|2 1 'other.wav'|2 1 'both.aif'|0 0 'a/long/absent/path.wav'"},
    {"ZoneSampleExists", "0 0"},
    {"Samplekey", "S|S 50"},
    {"SampleplaybackType", "S|S 1"},
    {"SampleholdLoopTuneOff", "S|S 5"},
    {"Sampletune", "S|S 50"},
    {"SampleRecalcTune", "S"},
    {"SampleSampleRate", "S|S 22050"},
    {"SampleGet", "0 0|2 0|1 3"},
    {"SampleGetByName", "'left.wav'|'both.aif'|'absent.wav'"},
    {"SampleGetSize", "S"},
    {"SampleGetBuffer", "S 0|W 0 1"},
    {"SampleDelete", "S 3 90|W 3 90"},
    {"SampleExtract", "S 3 90|W 3 90"},
    {"SampleCreate", "0 0 'wav'|2 1 'aif' 2|2 1 's' 1|0 1 'wav' 16"},
    {"SampleCopyTo", "S W|W S 20|W W 20"},
    {"SampleCopyFrom", "S W 3 90|W S 3 90|W W 3 90"},
    {"SampleStart", "S|S 3"},
    {"SampleEnd", "S|S 90"},
    {"SampleSize", "S|S 90|W 900|W 0"},
    {"SampleLoopCount", "S|S 5"},
    {"SampleLoopStart", "S 0|S 0 5"},
    {"SampleLoopEnd", "S 0|S 0 50"},
    {"SampleLoopFineLen", "S 0|S 0 7.0"},
    {"SampleLoopTimes", "S 0|S 0 5"},
    {"SampleSetValues", "S 3 90 7|W 3 90 7|Z 3 90 7"},
    {"SampleMultiplyValues", "S 3 90 0.5|W 3 90 0.5"},
    {"SampleOffsetValues", "S 3 90 7|W 3 90 7"},
    {"SampleReverseValues", "S 3 90|W 3 90"},
    {"SampleGetRefCount", "S"},
    {"SampleWrite", "S 'new.wav'|W 'new.aif'|S|W 'new.wav' 2"},
    {"SampleWriteMerged", "'new.wav' S 0 W 1|'new.aif' S 0"},
    {"SampleChannel", "S|Z 0|W 0|0 1|0 1 0"},
    {"SampleChannelCount", "S|S 3|V 2|W 5"},
    {"SampleFileName", "S|0 0|-"},
    {"SampleFilePath", "S|S 'a/long/path/of/a/sample.wav'"},
    {"SampleDirty", "0 0|0 0 T"},
    {"SampleReload", "'left.wav'|'both.wav'|'absent.wav'"},
    {"SampleLock", "S|S T|W T|W T 1|0 0 T"},
    {"SampleGetDCOffset", "S 3 90"},
    {"SampleValue", "S 3|S 3 7|W 3 7"},
    {"SampleLoopQual", "S 0"},
    {"SampleLoopFindStart", "S 0 2 90 0"},
    {"SampleLoopFindEnd", "S 0 90 150 0"},
    {"SampleBits", "S|S 8|S 24|W 12|Z 8"},
    {"SampleName", "S|S 'a long name of a sample'"},
    {"SampleMemory", "S|S T"},
    {"PRGIntValue", "4|4 9|3 5|9 1|90|91|10 5|21 2|77 5"},
    {"KGIntValue", "0 100|1 100 9|-1 100 9|-2 169 300"},
    {"ZoneIntValue", "0 1 200|0 1 200 9|-1 1 200 9|0 1 200 9 -1|0 1 209 3|0 1 230 5|-1 1 230 5 -1"},
    {"SampleIntValue",
     "0 0 300|0 0 300 9|0 0 301 1|0 0 305 3|0 1 306 0|0 0 307 50|0 0 312 8|0 1 315 1|1 3 315 1|1 3 "
     "315 0|0 1 313 12|0 1 314 1|0 1 314 9|0 0 302 5|0 0 303 50"},
    {"PRGStringValue",
     "1|1 'Twelve chars'|3 'Omni'|3 '7'|5 'High'|9 '2'|90|91|36 'Vel'|10 '12'|10 'off'|26 'sq'|6 "
     "'q'|"
     "45 'abc'"},
    {"KGStringValue", "0 100|-1 126 'on'|0 128 'of'|-2 168 'hp4'"},
    {"ZoneStringValue",
     "0 1 200|0 1 209 '3'|-1 1 210 'to'|0 1 200 'str/'|-2 0 221 'zzz'|0 1 230 '3'|-1 1 230 '99'|-1 "
     "1 "
     "230 'off'"},
    {"SampleStringValue",
     "0 0 300|0 0 300 '9'|0 0 301 'No looping'|0 1 306 '2'|0 1 306 'le'|0 0 307|0 0 312|0 1 313 "
     "'8'|0 1 314 '32'"},
    {"ModulationSource", "'Velocity'|5"},
    {"CalcSamplePitch", "S|S 1000 60 3 5 0.5"},
    {"CalcKeygroupPitch", "0|0 1000 60 3 5 0.5"},
    {"CalcProgramPitch", "|1000 60 3 5 0.5"},
    {"ClearProgramPitch", ""},
    {"ClearSamplePitch", "S|V"},
    {"SampleGetPitchData", "S 0|V 0"},
    {"SampleCompare", "S W|S S"},
};

}  // namespace zyl::test
