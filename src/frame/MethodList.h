// The script methods in table order, each with its line of meaning: what it does, or what the value
// is that it reads and sets. The body of a METHOD declares its arguments and its result; the
// methods of parameters come from their rows.
#pragma once

#include "params/ParameterTable.h"

// clang-format off
#define ZYL_METHOD_LIST(FIELD, OWN, METHOD) \
  METHOD(Dirty, "Tell whether the program or one of its samples was changed since it was written; sets the flag.") \
  METHOD(Read, "Attach the program that a program file holds. LoadSmpl 0 leaves the samples on disk (1 without it); MC sets the MIDI channel, -1 Omni.") \
  METHOD(Write, "Write the program to PrgPath, or to its own file, which is replaced: other hard links to it keep the old content. WriteMode is passed to the file layer (51 without it).") \
  METHOD(Find, "Attach a program that is in memory already, by its file name. MC sets the MIDI channel, -1 Omni.") \
  METHOD(Create, "Attach a new program: a copy of ProgramToCopy's, or a default one for a null object. CopySamples false leaves the zones empty.") \
  METHOD(Register, "Register an algorithm: its OnProgramParameterChanged is called at every change, its OnDeletingSmpl before a sample object or its data goes, its OnDeletingPrg at the end.") \
  METHOD(WriteDataToPad, "Write the values of the numbered parameters into the slot SlotID of a data pad.") \
  METHOD(ReadDataFromPad, "Set the parameters that the slot SlotID of a data pad holds.") \
  METHOD(EmptyPadData, "Remove everything from a data pad.") \
  METHOD(RemoveDataFromPad, "Remove the slot SlotID from a data pad.") \
  METHOD(GetChannelCount, "Count the channels of a sample file; 0 when it cannot be read. A file with more than 16 channels is refused.") \
  METHOD(GetSFPresetArray, "Fill ResultArray with the name of each preset of a preset file, and count the presets.") \
  METHOD(CreateTempSample, "Give the temporary sample for a path and channel, made empty by the path's extension (wav, aif, s) when there is none.") \
  METHOD(GetTempSample, "Give the temporary sample for a path and channel when the file is in memory. Lock true locks it and gives the lock value, false gives the record's number.") \
  METHOD(ReadTempSample, "Give the temporary sample for a path and channel, loaded from its file when it is not in memory. Lock true locks it and gives the lock value.") \
  METHOD(DeleteTempSample, "Let a temporary sample go; all of them when none is named.") \
  METHOD(PrepareDelete, "Tell the registered algorithms that the program ends (OnDeletingPrg), and drop its sample objects.") \
  METHOD(PitchDataProgressCB, "Set the algorithm whose pad progressUpdate (an integer) hears of pitch jobs: 1 while one runs, 0 at the end; null for none.") \
  METHOD(PitchDataProgressCBFinish, "Set the algorithm whose pad pitchDataFinished (a string) gets the name of each sample that was analysed; null for none.") \
  METHOD(PitchDataCalcCancel, "Cancel the pitch jobs that run or wait.") \
  METHOD(PitchDataCalculating, "Count the pitch jobs that run or wait.") \
  METHOD(PitchDataTimeLeft, "Estimate how long the pitch jobs still take, in seconds.") \
  METHOD(PitchDataTimeTotal, "Estimate how long the pitch jobs take in all, in seconds.") \
  METHOD(PitchDataProgressRatio, "Tell how far the pitch jobs are, 0 to 2147483647.") \
  METHOD(PitchDataCalcSamples, "Fill SampleArray with the names of the samples that pitch jobs work on, and count them.") \
  METHOD(MaxIndyOut, "Number of individual outputs; a zone whose output reaches it has none.") \
  METHOD(GetTotalPhysicalMemory, "Give the machine's memory in bytes, at most 2147483647.") \
  METHOD(GetLockedMemory, "Give the memory that is locked against paging, in bytes, at most 2147483647.") \
  METHOD(GetUsedPhysicalMemory, "Give the bytes of locked programs and samples, or of all of them with Locked false.") \
  METHOD(WriteSampleToPad, "Write a sample with its parameters into a data pad.") \
  METHOD(ReadSampleFromPad, "Make a temporary sample out of what a data pad holds; Path becomes its file path.") \
  METHOD(DrawKeyGroupKB, "Draw a keygroup's key range on a keyboard of the editor.") \
  METHOD(FileName, "File path of the program.") \
  METHOD(KGDelete, "Delete a keygroup.") \
  METHOD(KGCreate, "Insert a keygroup at NewIndex, a default one or a copy of keygroup KGToCopy of another program, and give the new count - 1.") \
  METHOD(KGMove, "Move the keygroup From to the place To.") \
  METHOD(KGSort, "Sort the keygroups by low key (SortByData 100) or high key (101), ascending with Direction 0, else descending.") \
  METHOD(KGFindByKey, "Find the first keygroup at or after StartAt whose key range holds the key; -1 when there is none.") \
  METHOD(KGSelect, "Tell whether a keygroup is selected, before SelectFlag selects it or not.") \
  METHOD(EnableRegisterCall, "Whether registered algorithms are notified of changes. Every call of ZoneIntValue switches it on again.") \
  METHOD(ListFillKeygroups, "Append a row for each keygroup to the editor's keygroup list; rows that are there stay. Key columns show note names, or numbers with KeyAsValue true.") \
  METHOD(ListFillZones, "Fill the first four rows of the editor's zone list with the zones of a keygroup. Key columns show note names, or numbers with KeyAsValue true.") \
  METHOD(UpdateKeyboardSelection, "Colour the keyboards of the editor's keygroup list for a selected key.") \
  METHOD(SampleCopyFile, "Copy a sample file whole; the destination is replaced only when the copy is complete.") \
  METHOD(SetUniqueFilePath, "Give the program a file path in the temporary folder that no file has yet.") \
  METHOD(IsValid, "Tell whether a program is attached.") \
  METHOD(IsLocked, "Tell whether the program is locked in memory.") \
  ZYL_PROGRAM_PARAMETERS(FIELD, OWN, METHOD) \
  ZYL_KEYGROUP_PARAMETERS(FIELD, OWN, METHOD) \
  ZYL_ZONE_PARAMETERS(FIELD, OWN, METHOD) \
  METHOD(Samplekey, "Root key of the sample, a MIDI note 0 to 127.") \
  METHOD(SampleplaybackType, "Playback of the sample: 0 loop into the release, 1 loop until the release, 2 no loops, 3 to the end.") \
  METHOD(SampleholdLoopTuneOff, "Detuning while the loop is held, -128 to 127.") \
  METHOD(Sampletune, "Tuning of the sample above its root key, in 1/256 semitone.") \
  METHOD(SampleRecalcTune, "Work out the tuning that plays the sample at its pitch at the host's rate, times 65536; changes nothing.") \
  METHOD(SampleSampleRate, "Sample rate in Hz; setting it changes no sound data.") \
  METHOD(SampleGet, "Give the sample object of a zone.") \
  METHOD(SampleGetByName, "Give the sample object of the program's sample of that file name.") \
  METHOD(SampleGetSize, "Give the length of the sample in frames.") \
  METHOD(SampleGetBuffer, "Put a handle of a channel's sound data into Buffer, for host.buffer, and give its length in frames; without Channel the sample's own.") \
  METHOD(SampleDelete, "Cut the frames from StartIndex up to, but not including, EndIndex out of the sample.") \
  METHOD(SampleExtract, "Keep only the frames StartIndex to EndIndex, both included.") \
  METHOD(SampleCreate, "Put a new empty sample into a zone, its format by the file extension (wav, aif, s), with 1 to 16 channels (1 without it).") \
  METHOD(SampleCopyTo, "Insert the whole of CopyToSample into the sample at InsertIndex (0 without it).") \
  METHOD(SampleCopyFrom, "Replace the sound of the sample by the frames StartIndex to EndIndex of CopyFromSample, both included.") \
  METHOD(SampleStart, "First frame that is played.") \
  METHOD(SampleEnd, "Last frame that is played.") \
  METHOD(SampleSize, "Length in frames; a longer one is filled with silence.") \
  METHOD(SampleLoopCount, "Number of loops in use, 0 to 16.") \
  METHOD(SampleLoopStart, "First frame of a loop; -1 for a loop that is not in use.") \
  METHOD(SampleLoopEnd, "Last frame of a loop; -1 for a loop that is not in use.") \
  METHOD(SampleLoopFineLen, "Part of a frame that lengthens a loop, in 1/4294967296 frame; -1.0 for a loop that is not in use.") \
  METHOD(SampleLoopTimes, "How often a loop is repeated; -1 for a loop that is not in use.") \
  METHOD(SampleSetValues, "Set the frames from StartIndex up to, but not including, EndIndex to a value of 16 bits.") \
  METHOD(SampleMultiplyValues, "Multiply the frames from StartIndex up to, but not including, EndIndex; the results are not limited.") \
  METHOD(SampleOffsetValues, "Add to the frames from StartIndex up to, but not including, EndIndex, held within the sample's width.") \
  METHOD(SampleReverseValues, "Reverse the frames StartIndex to EndIndex, both included.") \
  METHOD(SampleGetRefCount, "Count the users of the sample.") \
  METHOD(SampleWrite, "Write the sample to NewPath, or to its own file, which is replaced: other hard links to it keep the old content; the bits of ChannelMask choose channels, 0 all of them.") \
  METHOD(SampleWriteMerged, "Write channels of several samples into one file, in the order given.") \
  METHOD(SampleChannel, "Channel of the file that the sample is, from 0; -1 the whole sample, or a zone without one.") \
  METHOD(SampleChannelCount, "Number of channels of the sample's file.") \
  METHOD(SampleFileName, "Give the file name of a sample or of a zone's sample, without its folder.") \
  METHOD(SampleFilePath, "File path of the sample; setting it moves no file.") \
  METHOD(SampleDirty, "Tell whether a zone's sample was changed since it was written; sets the flag.") \
  METHOD(SampleReload, "Load a sample file again; the objects of its samples stand for the new sound.") \
  METHOD(SampleLock, "Tell whether a sample is locked in memory; true locks it, false lets it go. TempSample makes the script answer for the lock of a temporary one.") \
  METHOD(SampleGetDCOffset, "Give the mean value of the frames from StartIndex up to, but not including, EndIndex.") \
  METHOD(SampleValue, "Value of one frame, at the sample's width.") \
  METHOD(SampleLoopQual, "Rate how well a loop joins: 2147483647 is perfect, 0 a loop that is not in use.") \
  METHOD(SampleLoopFindStart, "Search StartIndex to LastIndex for the loop start that joins best, better than Treshold on the scale of SampleLoopQual, and set it.") \
  METHOD(SampleLoopFindEnd, "Search StartIndex to LastIndex for the loop end that joins best, better than Treshold on the scale of SampleLoopQual, and set it.") \
  METHOD(SampleBits, "Width of a value in bits, 1 to 32; setting it converts the sound.") \
  METHOD(SampleName, "Name of the sample.") \
  METHOD(SampleMemory, "Give the bytes of one channel of the sample; with LockedMemory true, 0 while they are not locked.") \
  METHOD(PRGIntValue, "Value of the program parameter with that number, 1 to 95; -1 for a number that names nothing.") \
  METHOD(KGIntValue, "Value of the keygroup parameter with that number, 100 to 199: of the last keygroup when several are addressed. Setting it sets the dirty flag and notifies only if NewValue differs from that one value.") \
  METHOD(ZoneIntValue, "Value of the zone parameter with that number, 200 to 299; UpdateKG says for which keygroups the change is notified. Every call, also one that only reads, switches notifications on again (EnableRegisterCall).") \
  METHOD(SampleIntValue, "Value of the parameter of a zone's sample with that number, 300 to 315; -1 without a sample.") \
  METHOD(PRGStringValue, "Text of a program parameter as an editor shows it; sets the value from a typed text, which becomes the text that was stored.") \
  METHOD(KGStringValue, "Text of a keygroup parameter as an editor shows it; sets the value from a typed text, which becomes the text that was stored.") \
  METHOD(ZoneStringValue, "Text of a zone parameter as an editor shows it; sets the value from a typed text, which becomes the text that was stored.") \
  METHOD(SampleStringValue, "Text of a parameter of a zone's sample as an editor shows it; sets the value from a typed text, which becomes the text that was stored.") \
  METHOD(ModulationSource, "Give the name of a modulation source 0 to 23, or the number of the source with that name.") \
  METHOD(CalcSamplePitch, "Start the pitch analysis of a sample in the background; false when it has a pitch track already.") \
  METHOD(CalcKeygroupPitch, "Start the pitch analysis of a keygroup's samples in the background; those that have a pitch track are left out.") \
  METHOD(CalcProgramPitch, "Start the pitch analysis of all samples of the program in the background; those that have a pitch track are left out.") \
  METHOD(ClearProgramPitch, "Remove the pitch tracks of all samples of the program.") \
  METHOD(ClearSamplePitch, "Remove the pitch track of a sample.") \
  METHOD(SampleGetPitchData, "Put a handle of the sample's pitch track into Buffer, for host.floats, and give its number of values.") \
  METHOD(SampleCompare, "Tell whether two sample objects stand for one sample.") \
  ZYL_ORGAN_PARAMETERS(FIELD, OWN, METHOD)
