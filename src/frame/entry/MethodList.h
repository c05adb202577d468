// The script methods in table order, each with a line that describes it, or the value that it reads
// and sets. The body of a METHOD declares its arguments and its result; the methods of parameters
// are generated from their rows.
#pragma once

#include "params/ParameterTable.h"

// clang-format off
#define ZYL_METHOD_LIST(FIELD, OWN, METHOD) \
  METHOD(Dirty, "Whether the program or one of its samples has changed since it was written; sets the flag.") \
  METHOD(Read, "Attach the program of a program file. LoadSmpl 0 does not load the samples (default 1); MC sets the MIDI channel, -1 is Omni.") \
  METHOD(Write, "Write the program to PrgPath or to its own file, which is replaced; other hard links to it keep the old content. WriteMode is passed to the file layer (default 51).") \
  METHOD(Find, "Attach a program that is already in memory, by file name. MC sets the MIDI channel, -1 is Omni.") \
  METHOD(Create, "Attach a new program: a copy of ProgramToCopy's program, or a default program if it is a null object. With CopySamples false the zones are empty.") \
  METHOD(Register, "Register an algorithm. OnProgramParameterChanged is called when a field of the program or a value set by number changes (fields of keygroups and zones do not call it), OnDeletingSmpl before a sample object or its data is deleted, OnDeletingPrg by PrepareDelete.") \
  METHOD(WriteDataToPad, "Write the values of the numbered parameters to slot SlotID of a data pad.") \
  METHOD(ReadDataFromPad, "Set the parameters stored in slot SlotID of a data pad.") \
  METHOD(EmptyPadData, "Clear a data pad.") \
  METHOD(RemoveDataFromPad, "Remove slot SlotID from a data pad.") \
  METHOD(GetChannelCount, "Return the number of channels of a sample file, or 0 if it cannot be read. Files with more than 16 channels are rejected.") \
  METHOD(GetSFPresetArray, "Fill ResultArray with the preset names of a preset file; return the number of presets.") \
  METHOD(CreateTempSample, "Return the temporary sample for a path and channel. If there is none, create an empty one of the type of the path's extension (wav, aif, s).") \
  METHOD(GetTempSample, "Return the temporary sample for a path and channel if the file is in memory. Lock true locks it and returns the lock value, false returns the record number.") \
  METHOD(ReadTempSample, "Return the temporary sample for a path and channel, and load its file if it is not in memory. Lock true locks it and returns the lock value.") \
  METHOD(DeleteTempSample, "Release a temporary sample, or all of them without an argument.") \
  METHOD(PrepareDelete, "Send OnDeletingPrg to the registered algorithms, and release the sample objects of the program.") \
  METHOD(PitchDataProgressCB, "Set the algorithm whose pad progressUpdate (an integer) receives 1 at each step of a pitch job, and no other value. Null for none.") \
  METHOD(PitchDataProgressCBFinish, "Set the algorithm whose pad pitchDataFinished (a string) receives the name of each analysed sample. Null for none.") \
  METHOD(PitchDataCalcCancel, "Cancel the running and waiting pitch jobs.") \
  METHOD(PitchDataCalculating, "Return the number of running and waiting pitch jobs.") \
  METHOD(PitchDataTimeLeft, "Estimate the remaining time of the pitch jobs in seconds.") \
  METHOD(PitchDataTimeTotal, "Estimate the total time of the pitch jobs in seconds.") \
  METHOD(PitchDataProgressRatio, "Return the progress of the pitch jobs, 0 to 2147483647.") \
  METHOD(PitchDataCalcSamples, "Fill SampleArray with the names of the samples that pitch jobs analyse; return their number.") \
  METHOD(MaxIndyOut, "Number of individual outputs. A zone whose output is not below it has none.") \
  METHOD(GetTotalPhysicalMemory, "Return the machine's memory in bytes, at most 2147483647.") \
  METHOD(GetLockedMemory, "Return the memory locked against paging in bytes, at most 2147483647.") \
  METHOD(GetUsedPhysicalMemory, "Return the size of the locked programs and samples in bytes, or of all of them with Locked false.") \
  METHOD(WriteSampleToPad, "Write a sample and its parameters to a data pad.") \
  METHOD(ReadSampleFromPad, "Create a temporary sample from the content of a data pad; Path becomes its file path.") \
  METHOD(DrawKeyGroupKB, "Draw the key range of a keygroup on an editor keyboard.") \
  METHOD(FileName, "File path of the program.") \
  METHOD(KGDelete, "Delete a keygroup.") \
  METHOD(KGCreate, "Insert a keygroup at NewIndex: a default one, or a copy of keygroup KGToCopy of another program. Return the new count - 1.") \
  METHOD(KGMove, "Move a keygroup from index From to index To.") \
  METHOD(KGSort, "Sort the keygroups by low key (SortByData 100) or high key (101), ascending with Direction 0, else descending.") \
  METHOD(KGFindByKey, "Return the index of the first keygroup at or after StartAt whose range contains the key, or -1.") \
  METHOD(KGSelect, "Whether a keygroup is selected; SelectFlag selects or deselects it. Returns the previous state.") \
  METHOD(EnableRegisterCall, "Whether registered algorithms are notified of changes. Every call of ZoneIntValue enables it.") \
  METHOD(ListFillKeygroups, "Append a row for each keygroup to the editor's keygroup list; existing rows are kept. Key columns show note names, or numbers with KeyAsValue true.") \
  METHOD(ListFillZones, "Fill the first four rows of the editor's zone list with the zones of a keygroup. Key columns show note names, or numbers with KeyAsValue true.") \
  METHOD(UpdateKeyboardSelection, "Colour the keyboards in the editor's keygroup list for a selected key.") \
  METHOD(SampleCopyFile, "Copy a sample file; the destination is replaced only when the copy is complete.") \
  METHOD(SetUniqueFilePath, "Set the program's file path to an unused one in the temporary folder.") \
  METHOD(IsValid, "Whether a program is attached.") \
  METHOD(IsLocked, "Whether the program is locked in memory.") \
  ZYL_PROGRAM_PARAMETERS(FIELD, OWN, METHOD) \
  ZYL_KEYGROUP_PARAMETERS(FIELD, OWN, METHOD) \
  ZYL_ZONE_PARAMETERS(FIELD, OWN, METHOD) \
  METHOD(Samplekey, "Root key of the sample, a MIDI note 0 to 127.") \
  METHOD(SampleplaybackType, "Playback of the sample: 0 loop into the release, 1 loop until the release, 2 no loops, 3 to the end.") \
  METHOD(SampleholdLoopTuneOff, "Detuning while the loop plays, -128 to 127.") \
  METHOD(Sampletune, "Tuning of the sample relative to its root key, in 1/256 semitone.") \
  METHOD(SampleRecalcTune, "Return the tuning that plays the sample at its pitch at the host's rate, times 65536. Changes nothing.") \
  METHOD(SampleSampleRate, "Sample rate in Hz; setting it does not change the sound data.") \
  METHOD(SampleGet, "Return the sample object of a zone.") \
  METHOD(SampleGetByName, "Return the sample object of the program's sample with that file name.") \
  METHOD(SampleGetSize, "Return the length of the sample in frames.") \
  METHOD(SampleGetBuffer, "Store a handle of a channel's sound data in Buffer, for host.buffer, and return its length in frames. Without Channel, the sample's own channel.") \
  METHOD(SampleDelete, "Delete the frames from StartIndex up to, but not including, EndIndex.") \
  METHOD(SampleExtract, "Keep only the frames StartIndex to EndIndex, both included.") \
  METHOD(SampleCreate, "Create an empty sample in a zone, of the type of the file extension (wav, aif, s), with 1 to 16 channels (default 1).") \
  METHOD(SampleCopyTo, "Insert CopyToSample into the sample at InsertIndex (default 0).") \
  METHOD(SampleCopyFrom, "Replace the sound of the sample with the frames StartIndex to EndIndex of CopyFromSample, both included.") \
  METHOD(SampleStart, "First frame that plays.") \
  METHOD(SampleEnd, "Last frame that plays.") \
  METHOD(SampleSize, "Length in frames; setting a greater length appends silence.") \
  METHOD(SampleLoopCount, "Number of loops in use, 0 to 16.") \
  METHOD(SampleLoopStart, "First frame of a loop; -1 for an unused loop.") \
  METHOD(SampleLoopEnd, "Last frame of a loop; -1 for an unused loop.") \
  METHOD(SampleLoopFineLen, "Fraction of a frame added to the length of a loop, in 1/4294967296 frame; -1.0 for an unused loop.") \
  METHOD(SampleLoopTimes, "Number of repetitions of a loop; -1 for an unused loop.") \
  METHOD(SampleSetValues, "Set the frames from StartIndex up to, but not including, EndIndex to a 16-bit value.") \
  METHOD(SampleMultiplyValues, "Multiply the frames from StartIndex up to, but not including, EndIndex; the results are clamped to the sample's width.") \
  METHOD(SampleOffsetValues, "Add an offset to the frames from StartIndex up to, but not including, EndIndex; the results are clamped to the sample's width.") \
  METHOD(SampleReverseValues, "Reverse the frames StartIndex to EndIndex, both included.") \
  METHOD(SampleGetRefCount, "Return the number of users of the sample.") \
  METHOD(SampleWrite, "Write the sample to NewPath or to its own file, which is replaced; other hard links to it keep the old content. The bits of ChannelMask select channels, 0 all of them.") \
  METHOD(SampleWriteMerged, "Write channels of several samples to one file, in the order given.") \
  METHOD(SampleChannel, "Channel of the file, from 0; -1 for the whole sample, or for a zone without a sample.") \
  METHOD(SampleChannelCount, "Number of channels of the sample's file.") \
  METHOD(SampleFileName, "Return the file name, without the folder, of a sample or of a zone's sample.") \
  METHOD(SampleFilePath, "File path of the sample; setting it does not move the file.") \
  METHOD(SampleDirty, "Whether a zone's sample has changed since it was written; sets the flag.") \
  METHOD(SampleReload, "Reload a sample file; existing sample objects refer to the new sound.") \
  METHOD(SampleLock, "Whether a sample is locked in memory; true locks it, false unlocks it. With TempSample the script owns the lock of a temporary sample.") \
  METHOD(SampleGetDCOffset, "Return the mean value of the frames from StartIndex up to, but not including, EndIndex.") \
  METHOD(SampleValue, "Value of one frame, at the sample's width.") \
  METHOD(SampleLoopQual, "Rate how well a loop joins: 2147483647 is perfect, 0 is an unused loop.") \
  METHOD(SampleLoopFindStart, "Search StartIndex to LastIndex for the loop start with the best join, better than Treshold on the scale of SampleLoopQual, and set it.") \
  METHOD(SampleLoopFindEnd, "Search StartIndex to LastIndex for the loop end with the best join, better than Treshold on the scale of SampleLoopQual, and set it.") \
  METHOD(SampleBits, "Bits per value, 1 to 32; setting it converts the sound.") \
  METHOD(SampleName, "Name of the sample.") \
  METHOD(SampleMemory, "Return the size of one channel of the sample in bytes. With LockedMemory true, 0 unless it is locked.") \
  METHOD(PRGIntValue, "Value of the program parameter with that number, 1 to 95; -1 for an unknown number.") \
  METHOD(KGIntValue, "Value of the keygroup parameter with that number, 100 to 199; with several keygroups, that of the last one. Setting it sets the dirty flag and notifies only if NewValue differs from that one value.") \
  METHOD(ZoneIntValue, "Value of the zone parameter with that number, 200 to 299; UpdateKG selects the keygroups for which a change is notified. Every call, even a read, enables notifications (EnableRegisterCall).") \
  METHOD(SampleIntValue, "Value of the parameter of a zone's sample with that number, 300 to 315; -1 without a sample.") \
  METHOD(PRGStringValue, "Text of a program parameter as the editor shows it; setting it parses the text and replaces it with the text of the stored value.") \
  METHOD(KGStringValue, "Text of a keygroup parameter as the editor shows it; setting it parses the text and replaces it with the text of the stored value.") \
  METHOD(ZoneStringValue, "Text of a zone parameter as the editor shows it; setting it parses the text and replaces it with the text of the stored value.") \
  METHOD(SampleStringValue, "Text of a parameter of a zone's sample as the editor shows it; setting it parses the text and replaces it with the text of the stored value.") \
  METHOD(ModulationSource, "Return the name of a modulation source 0 to 23, or the number of the source with that name.") \
  METHOD(CalcSamplePitch, "Start the pitch analysis of a sample in the background; false if it already has a pitch track.") \
  METHOD(CalcKeygroupPitch, "Start the pitch analysis of a keygroup's samples in the background, except those with a pitch track.") \
  METHOD(CalcProgramPitch, "Start the pitch analysis of all samples of the program in the background, except those with a pitch track.") \
  METHOD(ClearProgramPitch, "Remove the pitch tracks of all samples of the program.") \
  METHOD(ClearSamplePitch, "Remove the pitch track of a sample.") \
  METHOD(SampleGetPitchData, "Store a handle of the sample's pitch track in Buffer, for host.floats, and return its number of values.") \
  METHOD(SampleCompare, "Whether two sample objects refer to the same sample.") \
  ZYL_ORGAN_PARAMETERS(FIELD, OWN, METHOD)
