#pragma once

// clang-format off
// The script methods in table order, each with its meaning for people: what it does, or what the
// value is that it reads and sets. Arguments and result are declared by the body. METHOD has a body
// of its own, FIELD is described by a parameter row.
#define ZYL_METHOD_LIST(METHOD, FIELD) \
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
  METHOD(PRGname, "Name of the program, at most 12 bytes.") \
  FIELD(PRGmidiProg, "MIDI program number that selects the program.") \
  METHOD(PRGmidiChannel, "MIDI channel, 0 to 31 for channels 1 to 32, -1 Omni; 32 and more change nothing.") \
  FIELD(PRGpoly, "Polyphony less one: 0 is one voice, 15 sixteen.") \
  FIELD(PRGprority, "Voice priority: 0 low, 1 normal, 2 high, 3 hold.") \
  FIELD(PRGreassignment, "Which voice is taken when none is free: 0 the oldest, else the quietest.") \
  FIELD(PRGlowKey, "Lowest key that plays, a MIDI note 0 to 127.") \
  FIELD(PRGhighKey, "Highest key that plays, a MIDI note 0 to 127.") \
  FIELD(PRGplayOctave, "Octave shift of what is played, in octaves.") \
  METHOD(PRGindyOutput, "First individual output of the program, from 0; -1 is off.") \
  FIELD(PRGindyOutGain, "Gain of the individual outputs.") \
  FIELD(PRGstereoLevel, "Level on the stereo outputs, usually 0 to 99.") \
  FIELD(PRGstereoPan, "Position on the stereo outputs: 0 the middle, usually -50 left to 50 right.") \
  FIELD(PRGloudness, "Basic loudness, usually 0 to 99.") \
  FIELD(PRGloudVel, "How much velocity adds to the loudness, usually -50 to 50.") \
  FIELD(PRGloudKey, "How much the key adds to the loudness, usually -50 to 50.") \
  FIELD(PRGloudPrs, "How much pressure adds to the loudness, usually -50 to 50.") \
  FIELD(PRGtune, "Tuning of the whole program, in 1/256 semitone.") \
  FIELD(PRGmonoLegato, "Mono legato: 0 off, else on.") \
  FIELD(PRGkeyGrpCrossFade, "Crossfade where key ranges overlap: 0 off, else on.") \
  METHOD(PRGkeyGroups, "Number of keygroups as the record counts them. Setting it makes or deletes none: use KGCreate and KGDelete.") \
  FIELD(PRGbendRangeUp, "How far the pitch wheel bends up, in semitones.") \
  FIELD(PRGpitchBendDown, "How far the pitch wheel bends down, in semitones.") \
  FIELD(PRGpitchBendMode, "Which notes bend: 0 all, else those that are held.") \
  FIELD(PRGpressurePitchBend, "How far pressure bends the pitch, in semitones; negative bends down.") \
  FIELD(PRGLFOwaveform, "Waveform of LFO 1: 0 triangle, 1 sawtooth, 2 square, 3 random.") \
  FIELD(PRGLFOspeed, "Speed of LFO 1, usually 0 to 99.") \
  FIELD(PRGLFOdepth, "Depth of LFO 1, usually 0 to 99.") \
  FIELD(PRGLFOdelay, "Time until LFO 1 sets in, usually 0 to 99.") \
  FIELD(PRGLFOdepthWheel, "How much the modulation wheel adds to the depth of LFO 1, usually 0 to 99.") \
  FIELD(PRGLFOdepthPrs, "How much pressure adds to the depth of LFO 1, usually 0 to 99.") \
  FIELD(PRGLFOdepthVel, "How much velocity adds to the depth of LFO 1, usually 0 to 99.") \
  FIELD(PRGLFOSpeedModGain, "How much the source of PRGLFO1SpeedModSel changes the speed of LFO 1, usually -50 to 50.") \
  FIELD(PRGLFODepthModGain, "How much the source of PRGLFO1DepthModSel changes the depth of LFO 1, usually -50 to 50.") \
  FIELD(PRGLFODelayModGain, "How much the source of PRGLFO1DelayModSel changes the delay of LFO 1, usually -50 to 50.") \
  FIELD(PRGLFO1SpeedModSel, "Source that modulates the speed of LFO 1, 0 to 23; ModulationSource names them.") \
  FIELD(PRGLFO1DepthModSel, "Source that modulates the depth of LFO 1, 0 to 23; ModulationSource names them.") \
  FIELD(PRGLFO1DelayModSel, "Source that modulates the delay of LFO 1, 0 to 23; ModulationSource names them.") \
  FIELD(PRGLFOdesync, "Whether each voice runs an LFO 1 of its own: 0 off, else on.") \
  FIELD(PRGLFO2speed, "Speed of LFO 2, usually 0 to 99.") \
  FIELD(PRGLFO2depth, "Depth of LFO 2, usually 0 to 99.") \
  FIELD(PRGLFO2delay, "Time until LFO 2 sets in, usually 0 to 99.") \
  FIELD(PRGLFO2waveform, "Waveform of LFO 2: 0 triangle, 1 sawtooth, 2 square, 3 random.") \
  FIELD(PRGpanKey, "How much the key moves the stereo position, usually -50 to 50.") \
  METHOD(PRGmasterDetune, "Detuning of one of the 13 steps of the program's own scale, -128 to 127.") \
  FIELD(PRGpanModWheel, "How much the modulation wheel moves the stereo position, usually -50 to 50.") \
  FIELD(PRGsoftPedalLoudness, "How much the soft pedal lowers the loudness, usually 0 to 99.") \
  FIELD(PRGsoftPedalAttack, "How much the soft pedal slows the attack, usually 0 to 99.") \
  FIELD(PRGsoftPedalFilter, "How much the soft pedal closes the filter, usually 0 to 99.") \
  FIELD(PRGstereoOutSpace, "Width of the stereo outputs.") \
  FIELD(PRGfilterModSel1, "Source 1 that modulates the filters, 0 to 23; KGfilterModGain1 says how much.") \
  FIELD(PRGfilterModSel2, "Source 2 that modulates the filters, 0 to 23; KGfilterModGain2 says how much.") \
  FIELD(PRGfilterModSel3, "Source 3 that modulates the filters, 0 to 23; KGfilterModGain3 says how much.") \
  FIELD(PRGpitchModSel, "Source that modulates the pitch, 0 to 23; KGpitchModGain says how much.") \
  FIELD(PRGpanModGain1, "How much source PRGpanModSel1 moves the stereo position, usually -50 to 50.") \
  FIELD(PRGpanModGain2, "How much source PRGpanModSel2 moves the stereo position, usually -50 to 50.") \
  FIELD(PRGpanModGain3, "How much source PRGpanModSel3 moves the stereo position, usually -50 to 50.") \
  FIELD(PRGpanModSel1, "Source 1 that moves the stereo position, 0 to 23; PRGpanModGain1 says how much.") \
  FIELD(PRGpanModSel2, "Source 2 that moves the stereo position, 0 to 23; PRGpanModGain2 says how much.") \
  FIELD(PRGpanModSel3, "Source 3 that moves the stereo position, 0 to 23; PRGpanModGain3 says how much.") \
  FIELD(PRGampModGain2, "How much source PRGampModSel2 changes the loudness, usually -50 to 50.") \
  FIELD(PRGampModGain3, "How much source PRGampModSel3 changes the loudness, usually -50 to 50.") \
  FIELD(PRGampModSel, "Source 1 that modulates the loudness, 0 to 23; KGampModGain says how much.") \
  FIELD(PRGampModSel2, "Source 2 that modulates the loudness, 0 to 23; PRGampModGain2 says how much.") \
  FIELD(PRGampModSel3, "Source 3 that modulates the loudness, 0 to 23; PRGampModGain3 says how much.") \
  FIELD(PRGLFO2retrigger, "Whether each note starts LFO 2 anew: 0 off, else on.") \
  FIELD(PRGLFO1Sync2MIDIClk, "Whether LFO 1 follows the MIDI clock: 0 off, else on.") \
  FIELD(PRGLFO1MIDIClkMul, "Multiplier of the MIDI clock for LFO 1.") \
  FIELD(PRGLFO1MIDIClkDiv, "Divisor of the MIDI clock for LFO 1.") \
  FIELD(PRGLFO2Sync2MIDIClk, "Whether LFO 2 follows the MIDI clock: 0 off, else on.") \
  FIELD(PRGLFO2MIDIClkMul, "Multiplier of the MIDI clock for LFO 2.") \
  FIELD(PRGLFO2MIDIClkDiv, "Divisor of the MIDI clock for LFO 2.") \
  FIELD(PRGextTriggerMode, "How the external trigger plays the program.") \
  FIELD(PRGextTriggerNote, "Note that the external trigger plays, a MIDI note 0 to 127.") \
  FIELD(PRGextTriggerCtrl, "MIDI controller that the external trigger listens to, 0 to 127.") \
  FIELD(PRGextTriggerThreshold, "Controller value from which the external trigger plays, 0 to 127.") \
  METHOD(PRGmute, "Whether the program is muted, 0 or 1. It is stored in the program file; setting it neither sets the dirty flag nor notifies.") \
  METHOD(PRGsolo, "Whether the program plays alone, 0 or 1. It is stored in the program file; setting it neither sets the dirty flag nor notifies.") \
  METHOD(PRGtmmute, "Whether the program is muted by its timbre, 0 or 1. It is stored in the program file; setting it neither sets the dirty flag nor notifies.") \
  METHOD(PRGtmMidiChannel, "Mask of the MIDI channels, bit 0 for channel 1: those of all objects that hold the program. A value set lasts until one of them changes its channel.") \
  FIELD(KGlowKey, "Lowest key of the range, a MIDI note 0 to 127.") \
  FIELD(KGhighKey, "Highest key of the range, a MIDI note 0 to 127.") \
  FIELD(KGtune, "Tuning, in 1/256 semitone.") \
  FIELD(KGfilterFreq, "Filter cutoff, usually 0 to 99, which is open.") \
  FIELD(KGfilterKey, "How much the key opens the filter, usually -50 to 50.") \
  FIELD(KGfilterVel, "How much velocity opens the filter, usually -50 to 50.") \
  FIELD(KGfilterLFO2, "How much LFO 2 moves the filter, usually -50 to 50.") \
  FIELD(KGfilterEnv2, "How much envelope 2 opens the filter, usually -50 to 50.") \
  FIELD(KGampEnvAttack, "Attack of the loudness envelope, usually 0 to 99; higher is slower.") \
  FIELD(KGampEnvDecay, "Decay of the loudness envelope, usually 0 to 99; higher is slower.") \
  FIELD(KGampEnvSustain, "Level that the loudness envelope holds, usually 0 to 99.") \
  FIELD(KGampEnvRelease, "Release of the loudness envelope, usually 0 to 99; higher is slower.") \
  FIELD(KGampVelModAtt, "How much velocity changes the attack, usually -50 to 50.") \
  FIELD(KGampVelModRel, "How much velocity changes the release, usually -50 to 50.") \
  FIELD(KGampVelModOffRel, "How much the release velocity changes the release, usually -50 to 50.") \
  FIELD(KGampKeyModDecRel, "How much the key changes decay and release, usually -50 to 50.") \
  FIELD(KGenv2Rate1, "Time of step 1 of envelope 2, usually 0 to 99; higher is slower.") \
  FIELD(KGenv2Rate3, "Time of step 3 of envelope 2, usually 0 to 99; higher is slower.") \
  FIELD(KGenv2Level3, "Level after step 3 of envelope 2, usually 0 to 99; it holds while the key does.") \
  FIELD(KGenv2Rate4, "Time of step 4 of envelope 2, the release, usually 0 to 99; higher is slower.") \
  FIELD(KGenv2VelModRate1, "How much velocity changes step 1 of envelope 2, usually -50 to 50.") \
  FIELD(KGenv2VelModRate4, "How much velocity changes step 4 of envelope 2, usually -50 to 50.") \
  FIELD(KGenv2VelModOffRate4, "How much the release velocity changes step 4 of envelope 2, usually -50 to 50.") \
  FIELD(KGenv2KeyModRate34, "How much the key changes steps 3 and 4 of envelope 2, usually -50 to 50.") \
  FIELD(KGvelFilterEnv, "How much velocity changes what envelope 2 does to the filter, usually -50 to 50.") \
  FIELD(KGenv3VelFilter, "How much velocity changes what envelope 3 does, usually -50 to 50.") \
  FIELD(KGenvPitch, "How much envelope 2 bends the pitch, usually -50 to 50.") \
  FIELD(KGvelZoneCrossFade, "Crossfade between velocity zones: 0 off, else on.") \
  FIELD(KGfixedRateDetune, "Detuning in Hz rather than in parts of a semitone, so that beats keep their speed on all keys.") \
  FIELD(KGattackHoldUntilLoop, "Whether the attack lasts until the sample reaches its loop: 0 off, else on.") \
  FIELD(KGvelVolume, "How much velocity changes the volume, usually -50 to 50.") \
  FIELD(KGresonance, "Filter resonance in 8 bits, kept by the program library; does not mark the program dirty.") \
  FIELD(KGpitchModLFO1, "How much LFO 1 moves the pitch, usually -50 to 50.") \
  FIELD(KGfilterModGain1, "How much source PRGfilterModSel1 moves the filter, usually -50 to 50.") \
  FIELD(KGfilterModGain2, "How much source PRGfilterModSel2 moves the filter, usually -50 to 50.") \
  FIELD(KGfilterModGain3, "How much source PRGfilterModSel3 moves the filter, usually -50 to 50.") \
  FIELD(KGpitchModGain, "How much source PRGpitchModSel moves the pitch, usually -50 to 50.") \
  FIELD(KGampModGain, "How much source PRGampModSel changes the loudness, usually -50 to 50.") \
  FIELD(KGenv2Level1, "Level after step 1 of envelope 2, usually 0 to 99.") \
  FIELD(KGenv2Rate2, "Time of step 2 of envelope 2, usually 0 to 99; higher is slower.") \
  FIELD(KGenv2Level2, "Level after step 2 of envelope 2, usually 0 to 99.") \
  FIELD(KGenv2Level4, "Level after step 4 of envelope 2, usually 0 to 99.") \
  FIELD(KGmuteGroup, "Mute group: a note of the group ends its other notes; 0 is none.") \
  FIELD(KGenv3Level1, "Level after step 1 of envelope 3, usually 0 to 99.") \
  FIELD(KGenv3Rate2, "Time of step 2 of envelope 3, usually 0 to 99; higher is slower.") \
  FIELD(KGenv3Level2, "Level after step 2 of envelope 3, usually 0 to 99.") \
  FIELD(KGenv3Level4, "Level after step 4 of envelope 3, usually 0 to 99.") \
  FIELD(KGenv3Rate1, "Time of step 1 of envelope 3, usually 0 to 99; higher is slower.") \
  FIELD(KGenv3Rate3, "Time of step 3 of envelope 3, usually 0 to 99; higher is slower.") \
  FIELD(KGenv3Level3, "Level after step 3 of envelope 3, usually 0 to 99; it holds while the key does.") \
  FIELD(KGenv3Rate4, "Time of step 4 of envelope 3, the release, usually 0 to 99; higher is slower.") \
  FIELD(KGenv3VelModRate1, "How much velocity changes step 1 of envelope 3, usually -50 to 50.") \
  FIELD(KGenv3VelModRate4, "How much velocity changes step 4 of envelope 3, usually -50 to 50.") \
  FIELD(KGenv3VelModOffRate4, "How much the release velocity changes step 4 of envelope 3, usually -50 to 50.") \
  FIELD(KGenv3KeyModRate34, "How much the key changes steps 3 and 4 of envelope 3, usually -50 to 50.") \
  FIELD(KGtimeStretchModSel1, "Source 1 that modulates the time stretch, 0 to 23; KGtimeStretchModGain1 says how much.") \
  FIELD(KGtimeStretchModSel2, "Source 2 that modulates the time stretch, 0 to 23; KGtimeStretchModGain2 says how much.") \
  FIELD(KGtimeStretchModSel3, "Source 3 that modulates the time stretch, 0 to 23; KGtimeStretchModGain3 says how much.") \
  FIELD(KGtimeStretchModGain1, "How much source KGtimeStretchModSel1 changes the time stretch, usually -50 to 50.") \
  FIELD(KGtimeStretchModGain2, "How much source KGtimeStretchModSel2 changes the time stretch, usually -50 to 50.") \
  FIELD(KGtimeStretchModGain3, "How much source KGtimeStretchModSel3 changes the time stretch, usually -50 to 50.") \
  FIELD(KGformantModSel1, "Source 1 that modulates the formants, 0 to 23; KGformantModGain1 says how much.") \
  FIELD(KGformantModSel2, "Source 2 that modulates the formants, 0 to 23; KGformantModGain2 says how much.") \
  FIELD(KGformantModSel3, "Source 3 that modulates the formants, 0 to 23; KGformantModGain3 says how much.") \
  FIELD(KGformantModGain1, "How much source KGformantModSel1 moves the formants, usually -50 to 50.") \
  FIELD(KGformantModGain2, "How much source KGformantModSel2 moves the formants, usually -50 to 50.") \
  FIELD(KGformantModGain3, "How much source KGformantModSel3 moves the formants, usually -50 to 50.") \
  FIELD(KGfilterType, "Filter type, 0 to 13: low pass, high pass and band pass of 2, 4 or 6 poles; odd ones with resonance.") \
  FIELD(KGfilterResonance, "Filter resonance in 16 bits, kept by the program library; does not mark the program dirty.") \
  FIELD(KGfilterResonanceModSel, "Source that modulates the resonance, 0 to 23; KGfilterResonanceModGain says how much.") \
  FIELD(KGfilterResonanceModGain, "How much source KGfilterResonanceModSel changes the resonance, usually -50 to 50.") \
  FIELD(ZoneconstantPitch, "How the pitch follows the key: 0 it tracks, 1 constant, 2 pitch, 3 pitch held constant, 4 stretch, 5 stretch held constant.") \
  FIELD(ZoneoutOffset, "Individual output of the zone, counted from PRGindyOutput.") \
  FIELD(ZonevelStart, "How much velocity moves the point where the sample starts.") \
  METHOD(Zonename, "Name of the zone's sample, empty without one; a text given is not used.") \
  FIELD(ZonelowVel, "Lowest velocity that plays the zone, 0 to 127.") \
  FIELD(ZonehighVel, "Highest velocity that plays the zone, 0 to 127.") \
  FIELD(ZonetuneOffset, "Tuning added to the keygroup's, in 1/256 semitone.") \
  FIELD(ZoneloudnessOffset, "Loudness added to the program's, usually -50 to 50.") \
  FIELD(ZonefilterOffset, "Cutoff added to the keygroup's, usually -50 to 50.") \
  FIELD(ZonepanOffset, "Stereo position added to the program's, usually -50 to 50.") \
  FIELD(Zoneplaybacktype, "Playback: 0 as the sample says, 1 loop into the release, 2 loop until the release, 3 no loops, 4 to the end.") \
  METHOD(ZoneSamplePath, "File path of the zone's sample as the program file keeps it; setting it loads nothing.") \
  METHOD(ZoneSampleSet, "Give the zone the sample of a file, or none when NewSample is absent. A file with more than 16 channels is refused.") \
  METHOD(ZoneSampleExists, "Tell whether the zone has a sample.") \
  FIELD(ZonePitchPlay, "How other pitches are made: 0 resampling, 1 pitch shift, 2 formant, 3 robot.") \
  FIELD(ZoneTimeStretchOffset, "Time stretch of the zone, 0 is none.") \
  FIELD(ZoneFormantOffset, "Formant shift of the zone, 0 is none.") \
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
  FIELD(TolmoKGreverb, "Organ: reverb of the keygroup.") \
  FIELD(TolmoKGecho, "Organ: echo of the keygroup.") \
  FIELD(TolmoPRGreverb, "Organ: reverb of the program.") \
  FIELD(TolmoPRGchorus, "Organ: chorus of the program.") \
  FIELD(TolmoPRGecho, "Organ: echo of the program.") \
  FIELD(TolmoPRGeffect, "Organ: effect of the program.") \
  FIELD(TolmoPRGattack, "Organ: change of the attack.") \
  FIELD(TolmoPRGsustain, "Organ: change of the sustain.") \
  FIELD(TolmoPRGrelease, "Organ: change of the release.") \
  FIELD(TolmoPRGfilter, "Organ: change of the filter.") \
  FIELD(TolmoPRGstop_before_run, "Organ: whether what sounds is stopped before the program starts, 0 or 1.") \
  FIELD(TolmoPRGreverb_default, "Organ: value to which the reverb goes back.") \
  FIELD(TolmoPRGchorus_default, "Organ: value to which the chorus goes back.") \
  FIELD(TolmoPRGecho_default, "Organ: value to which the echo goes back.") \
  FIELD(TolmoPRGeffect_default, "Organ: value to which the effect goes back.") \
  FIELD(TolmoPRGattack_default, "Organ: value to which the change of the attack goes back.") \
  FIELD(TolmoPRGsustain_default, "Organ: value to which the change of the sustain goes back.") \
  FIELD(TolmoPRGrelease_default, "Organ: value to which the change of the release goes back.") \
  FIELD(TolmoPRGfilter_default, "Organ: value to which the change of the filter goes back.")
