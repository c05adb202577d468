---@meta zyl
-- Annotations for editors with a Lua language server: completion, argument names, types. Generated
-- by `./dev docs`; not to be run.

---@class ROCAlgo
---@class CSample
---@class GOContainer
---@class host.Plain
---@class host.Null

---A value that a method can change in place.
---@class host.Var
---@field value any

---An algorithm object of the script; its functions are its script methods.
---@class host.Algo: ROCAlgo
---@field name string
---@field [string] any
local Algo = {}
---Add a named pad whose value has the type of `initial`.
---@param name string
---@param initial integer|number|boolean|string|host.Null|ROCAlgo
---@return ROCPad
function Algo:addPad(name, initial) end

---@class ROCPad
---@field name string
---@field value any
---@field onSend fun(value: any)?
---@field onUpdate fun(value: any)?

---@class RODPad
---@field bytes string

---A graphic object. Coordinates are pixels, y down.
---@class host.Graphic
---@field name string
---@field fill integer?
---@field text string?
---@field refreshes integer
---@field fillChanges integer
---@field template string?
local Graphic = {}
---@param name string
---@return host.Graphic?
function Graphic:child(name) end
---@return integer left, integer top, integer right, integer bottom
function Graphic:bounds() end
---@return integer x, integer y
function Graphic:origin() end

---@class host.Cell
---@field value integer
---@field object any
---@field go host.Graphic?

---@class host.List
local List = {}
---@return integer
function List:rowCount() end
---@param row integer
---@param column integer
---@return host.Cell?
function List:cell(row, column) end
---@param row integer
function List:remove(row) end
function List:clear() end

---@class host.Editor: ROCAlgo
---@field list host.List

---A picture to draw on. Coordinates are pixels, y down; colours are 0xRRGGBB.
---@class host.Picture
local Picture = {}
---@param x number
---@param y number
---@param width number
---@param height number
---@param colour integer
function Picture:rect(x, y, width, height, colour) end
---@param points number[][] pairs { x, y }
---@param width number
---@param colour integer
function Picture:line(points, width, colour) end
---@param points number[][] pairs { x, y }
---@param colour integer
function Picture:polygon(points, colour) end
---@param x number
---@param baseline number
---@param text string
---@param size number font size in pixels
---@param colour integer
---@param anchor? "start"|"middle"|"end" the part of the text at x; default "start"
function Picture:text(x, baseline, text, size, colour, anchor) end
---Write the file, completely or not at all. Nothing can be drawn afterwards.
function Picture:write() end

---@class ZylSProgram: ROCAlgo
local ZylSProgram = {}

---Whether the program or one of its samples has changed since it was written; sets the flag.
---@param NewDirty? boolean
---@return boolean
function ZylSProgram:Dirty(NewDirty) end

---Attach the program of a program file. LoadSmpl 0 does not load the samples (default 1); MC sets the MIDI channel, -1 is Omni.
---@param PrgName string
---@param LoadSmpl? integer
---@param MC? integer
---@return boolean
function ZylSProgram:Read(PrgName, LoadSmpl, MC) end

---Write the program to PrgPath or to its own file, which is replaced; other hard links to it keep the old content. WriteMode is passed to the file layer (default 51).
---Requires a program (Create, Read or Find).
---@param PrgPath? string
---@param WriteMode? integer
---@return boolean
function ZylSProgram:Write(PrgPath, WriteMode) end

---Attach a program that is already in memory, by file name. MC sets the MIDI channel, -1 is Omni.
---@param PrgName string
---@param MC? integer
---@return boolean
function ZylSProgram:Find(PrgName, MC) end

---Attach a new program: a copy of ProgramToCopy's program, or a default program if it is a null object. With CopySamples false the zones are empty.
---@param ProgramToCopy ROCAlgo|host.Null
---@param CopySamples? boolean
---@return boolean
function ZylSProgram:Create(ProgramToCopy, CopySamples) end

---Register an algorithm. OnProgramParameterChanged is called when a field of the program or a value set by number changes (fields of keygroups and zones do not call it), OnDeletingSmpl before a sample object or its data is deleted, OnDeletingPrg by PrepareDelete.
---@param RegisterModule ROCAlgo
function ZylSProgram:Register(RegisterModule) end

---Write the values of the numbered parameters to slot SlotID of a data pad.
---Requires a program (Create, Read or Find).
---@param Pad RODPad
---@param SlotID integer
---@param ... integer
function ZylSProgram:WriteDataToPad(Pad, SlotID, ...) end

---Set the parameters stored in slot SlotID of a data pad.
---Requires a program (Create, Read or Find).
---@param Pad RODPad
---@param SlotID integer
function ZylSProgram:ReadDataFromPad(Pad, SlotID) end

---Clear a data pad.
---@param Pad RODPad
function ZylSProgram:EmptyPadData(Pad) end

---Remove slot SlotID from a data pad.
---Requires a program (Create, Read or Find).
---@param Pad RODPad
---@param SlotID integer
function ZylSProgram:RemoveDataFromPad(Pad, SlotID) end

---Return the number of channels of a sample file, or 0 if it cannot be read. Files with more than 16 channels are rejected.
---@param Path string
---@return integer
function ZylSProgram:GetChannelCount(Path) end

---Fill ResultArray with the preset names of a preset file; return the number of presets.
---@param FilePath string
---@param ResultArray table
---@return integer
function ZylSProgram:GetSFPresetArray(FilePath, ResultArray) end

---Return the temporary sample for a path and channel. If there is none, create an empty one of the type of the path's extension (wav, aif, s).
---@param SamplePath string
---@param Channel? integer
---@return CSample|nil
function ZylSProgram:CreateTempSample(SamplePath, Channel) end

---Return the temporary sample for a path and channel if the file is in memory. Lock true locks it and returns the lock value, false returns the record number.
---@param SamplePath string
---@param Channel? integer
---@param Lock? boolean
---@return CSample|nil|integer
function ZylSProgram:GetTempSample(SamplePath, Channel, Lock) end

---Return the temporary sample for a path and channel, and load its file if it is not in memory. Lock true locks it and returns the lock value.
---@param SamplePath string
---@param Channel? integer
---@param Lock? boolean
---@return CSample|nil|integer
function ZylSProgram:ReadTempSample(SamplePath, Channel, Lock) end

---Release a temporary sample, or all of them without an argument.
---@param Sample? CSample|host.Null
function ZylSProgram:DeleteTempSample(Sample) end

---Send OnDeletingPrg to the registered algorithms, and release the sample objects of the program.
function ZylSProgram:PrepareDelete() end

---Set the algorithm whose pad progressUpdate (an integer) receives 1 at each step of a pitch job, and no other value. Null for none.
---@param CBModule ROCAlgo|host.Null
function ZylSProgram:PitchDataProgressCB(CBModule) end

---Set the algorithm whose pad pitchDataFinished (a string) receives the name of each analysed sample. Null for none.
---@param CBModule ROCAlgo|host.Null
function ZylSProgram:PitchDataProgressCBFinish(CBModule) end

---Cancel the running and waiting pitch jobs.
function ZylSProgram:PitchDataCalcCancel() end

---Return the number of running and waiting pitch jobs.
---@return integer
function ZylSProgram:PitchDataCalculating() end

---Estimate the remaining time of the pitch jobs in seconds.
---@return integer
function ZylSProgram:PitchDataTimeLeft() end

---Estimate the total time of the pitch jobs in seconds.
---@return integer
function ZylSProgram:PitchDataTimeTotal() end

---Return the progress of the pitch jobs, 0 to 2147483647.
---@return integer
function ZylSProgram:PitchDataProgressRatio() end

---Fill SampleArray with the names of the samples that pitch jobs analyse; return their number.
---@param SampleArray table
---@return integer
function ZylSProgram:PitchDataCalcSamples(SampleArray) end

---Number of individual outputs. A zone whose output is not below it has none.
---@param NewMaxIndyOut? integer
---@return integer
function ZylSProgram:MaxIndyOut(NewMaxIndyOut) end

---Return the machine's memory in bytes, at most 2147483647.
---@return integer
function ZylSProgram:GetTotalPhysicalMemory() end

---Return the memory locked against paging in bytes, at most 2147483647.
---@return integer
function ZylSProgram:GetLockedMemory() end

---Return the size of the locked programs and samples in bytes, or of all of them with Locked false.
---@param Locked? boolean
---@return integer
function ZylSProgram:GetUsedPhysicalMemory(Locked) end

---Write a sample and its parameters to a data pad.
---@param Pad RODPad
---@param Sample CSample
function ZylSProgram:WriteSampleToPad(Pad, Sample) end

---Create a temporary sample from the content of a data pad; Path becomes its file path.
---@param Pad RODPad
---@param Path? string
---@return CSample|nil
function ZylSProgram:ReadSampleFromPad(Pad, Path) end

---Draw the key range of a keygroup on an editor keyboard.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; negative for none
---@param GO GOContainer|host.Null
---@param ListModule ROCAlgo|host.Null
function ZylSProgram:DrawKeyGroupKB(KeyGroupIndex, GO, ListModule) end

---File path of the program.
---Requires a program (Create, Read or Find).
---@param NewFileName? string
---@return string
function ZylSProgram:FileName(NewFileName) end

---Delete a keygroup.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; negative for none
function ZylSProgram:KGDelete(KeyGroupIndex) end

---Insert a keygroup at NewIndex: a default one, or a copy of keygroup KGToCopy of another program. Return the new count - 1.
---Requires a program (Create, Read or Find).
---@param NewIndex integer
---@param ProgramToCopy? ROCAlgo|host.Null
---@param KGToCopy? integer
---@return integer
function ZylSProgram:KGCreate(NewIndex, ProgramToCopy, KGToCopy) end

---Move a keygroup from index From to index To.
---Requires a program (Create, Read or Find).
---@param From integer
---@param To integer
function ZylSProgram:KGMove(From, To) end

---Sort the keygroups by low key (SortByData 100) or high key (101), ascending with Direction 0, else descending.
---Requires a program (Create, Read or Find).
---@param SortByData integer
---@param Direction integer
function ZylSProgram:KGSort(SortByData, Direction) end

---Return the index of the first keygroup at or after StartAt whose range contains the key, or -1.
---Requires a program (Create, Read or Find).
---@param KeyToFind integer
---@param StartAt? integer
---@return integer
function ZylSProgram:KGFindByKey(KeyToFind, StartAt) end

---Whether a keygroup is selected; SelectFlag selects or deselects it. Returns the previous state.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; negative for all keygroups
---@param SelectFlag? boolean
---@return boolean
function ZylSProgram:KGSelect(KeyGroupIndex, SelectFlag) end

---Whether registered algorithms are notified of changes. Every call of ZoneIntValue enables it.
---@param Enable? boolean
---@return boolean
function ZylSProgram:EnableRegisterCall(Enable) end

---Append a row for each keygroup to the editor's keygroup list; existing rows are kept. Key columns show note names, or numbers with KeyAsValue true.
---Requires a program (Create, Read or Find).
---@param ListModule ROCAlgo|host.Null
---@param KeyAsValue? boolean
function ZylSProgram:ListFillKeygroups(ListModule, KeyAsValue) end

---Fill the first four rows of the editor's zone list with the zones of a keygroup. Key columns show note names, or numbers with KeyAsValue true.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; negative for none
---@param ListModule ROCAlgo|host.Null
---@param KeyAsValue? boolean
function ZylSProgram:ListFillZones(KeyGroupIndex, ListModule, KeyAsValue) end

---Colour the keyboards in the editor's keygroup list for a selected key.
---Requires a program (Create, Read or Find).
---@param SelKey integer
---@param Color number
---@param ColorBK number
---@param ColorSel number
---@param ColorBKSel number
---@param ListModule ROCAlgo|host.Null
function ZylSProgram:UpdateKeyboardSelection(SelKey, Color, ColorBK, ColorSel, ColorBKSel, ListModule) end

---Copy a sample file; the destination is replaced only when the copy is complete.
---@param Source string
---@param Dest string
function ZylSProgram:SampleCopyFile(Source, Dest) end

---Set the program's file path to an unused one in the temporary folder.
---Requires a program (Create, Read or Find).
---@return string
function ZylSProgram:SetUniqueFilePath() end

---Whether a program is attached.
---@return boolean
function ZylSProgram:IsValid() end

---Whether the program is locked in memory.
---@return boolean
function ZylSProgram:IsLocked() end

---Name of the program, at most 12 bytes.
---Requires a program (Create, Read or Find).
---@param NewString? string
---@return string
function ZylSProgram:PRGname(NewString) end

---MIDI program number that selects the program.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 2.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGmidiProg(NewValue) end

---MIDI channel, 0 to 31 for channels 1 to 32, -1 Omni; 32 and more change nothing.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGmidiChannel(NewValue) end

---Polyphony minus 1: 0 is one voice, 15 is sixteen.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 4.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpoly(NewValue) end

---Voice priority: 0 low, 1 normal, 2 high, 3 hold.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 5.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGprority(NewValue) end

---Voice that is stolen when none is free: 0 the oldest, else the quietest.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 6.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGreassignment(NewValue) end

---Lowest key that plays, a MIDI note 0 to 127.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 7.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGlowKey(NewValue) end

---Highest key that plays, a MIDI note 0 to 127.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 8.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGhighKey(NewValue) end

---Transposition of played notes, in octaves.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 9.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGplayOctave(NewValue) end

---First individual output of the program, from 0; -1 is off.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGindyOutput(NewValue) end

---Gain of the individual outputs.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 11.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGindyOutGain(NewValue) end

---Level on the stereo outputs, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 12.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGstereoLevel(NewValue) end

---Pan on the stereo outputs: 0 is the centre, usually -50 (left) to 50 (right).
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 13.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGstereoPan(NewValue) end

---Basic loudness, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 14.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGloudness(NewValue) end

---How much velocity adds to the loudness, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 15.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGloudVel(NewValue) end

---How much the key adds to the loudness, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 16.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGloudKey(NewValue) end

---How much pressure adds to the loudness, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 17.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGloudPrs(NewValue) end

---Tuning of the whole program, in 1/256 semitone.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -32768 to 32767; parameter number 18.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGtune(NewValue) end

---Mono legato: 0 off, else on.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 19.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGmonoLegato(NewValue) end

---Crossfade where key ranges overlap: 0 off, else on.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 20.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGkeyGrpCrossFade(NewValue) end

---Number of keygroups stored in the record. Setting it neither creates nor deletes keygroups: use KGCreate and KGDelete.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGkeyGroups(NewValue) end

---How far the pitch wheel bends up, in semitones.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 22.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGbendRangeUp(NewValue) end

---How far the pitch wheel bends down, in semitones.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 23.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpitchBendDown(NewValue) end

---Notes that the pitch wheel bends: 0 all, else only held notes.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 24.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpitchBendMode(NewValue) end

---How far pressure bends the pitch, in semitones; negative bends down.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 25.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpressurePitchBend(NewValue) end

---LFO 1 waveform: 0 triangle, 1 sawtooth, 2 square, 3 random.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 26.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOwaveform(NewValue) end

---LFO 1 speed, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 27.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOspeed(NewValue) end

---LFO 1 depth, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 28.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdepth(NewValue) end

---Delay before LFO 1 starts, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 29.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdelay(NewValue) end

---How much the modulation wheel adds to the LFO 1 depth, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 30.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdepthWheel(NewValue) end

---How much pressure adds to the LFO 1 depth, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 31.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdepthPrs(NewValue) end

---How much velocity adds to the LFO 1 depth, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 32.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdepthVel(NewValue) end

---How much source PRGLFO1SpeedModSel changes the LFO 1 speed, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 33.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOSpeedModGain(NewValue) end

---How much source PRGLFO1DepthModSel changes the LFO 1 depth, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 34.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFODepthModGain(NewValue) end

---How much source PRGLFO1DelayModSel changes the LFO 1 delay, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 35.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFODelayModGain(NewValue) end

---Modulation source of the LFO 1 speed, 0 to 23; see ModulationSource.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 36.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1SpeedModSel(NewValue) end

---Modulation source of the LFO 1 depth, 0 to 23; see ModulationSource.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 37.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1DepthModSel(NewValue) end

---Modulation source of the LFO 1 delay, 0 to 23; see ModulationSource.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 38.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1DelayModSel(NewValue) end

---Whether each voice has its own LFO 1: 0 off, else on.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 39.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdesync(NewValue) end

---LFO 2 speed, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 40.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2speed(NewValue) end

---LFO 2 depth, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 41.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2depth(NewValue) end

---Delay before LFO 2 starts, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 42.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2delay(NewValue) end

---LFO 2 waveform: 0 triangle, 1 sawtooth, 2 square, 3 random.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 43.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2waveform(NewValue) end

---How much the key moves the pan, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 44.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanKey(NewValue) end

---Detuning of one of the 13 steps of the program's scale, -128 to 127.
---Requires a program (Create, Read or Find).
---@param Index integer 0 to 12
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGmasterDetune(Index, NewValue) end

---How much the modulation wheel moves the pan, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 46.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModWheel(NewValue) end

---How much the soft pedal lowers the loudness, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 47.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGsoftPedalLoudness(NewValue) end

---How much the soft pedal slows the attack, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 48.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGsoftPedalAttack(NewValue) end

---How much the soft pedal closes the filter, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 49.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGsoftPedalFilter(NewValue) end

---Width of the stereo outputs.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 50.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGstereoOutSpace(NewValue) end

---Modulation source 1 of the filters, 0 to 23; its amount is KGfilterModGain1.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 51.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGfilterModSel1(NewValue) end

---Modulation source 2 of the filters, 0 to 23; its amount is KGfilterModGain2.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 52.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGfilterModSel2(NewValue) end

---Modulation source 3 of the filters, 0 to 23; its amount is KGfilterModGain3.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 53.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGfilterModSel3(NewValue) end

---Modulation source of the pitch, 0 to 23; its amount is KGpitchModGain.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 54.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpitchModSel(NewValue) end

---How much source PRGpanModSel1 moves the pan, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 55.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModGain1(NewValue) end

---How much source PRGpanModSel2 moves the pan, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 56.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModGain2(NewValue) end

---How much source PRGpanModSel3 moves the pan, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 57.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModGain3(NewValue) end

---Modulation source 1 of the pan, 0 to 23; its amount is PRGpanModGain1.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 58.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModSel1(NewValue) end

---Modulation source 2 of the pan, 0 to 23; its amount is PRGpanModGain2.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 59.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModSel2(NewValue) end

---Modulation source 3 of the pan, 0 to 23; its amount is PRGpanModGain3.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 60.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModSel3(NewValue) end

---How much source PRGampModSel2 changes the loudness, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 61.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModGain2(NewValue) end

---How much source PRGampModSel3 changes the loudness, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 62.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModGain3(NewValue) end

---Modulation source 1 of the loudness, 0 to 23; its amount is KGampModGain.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 63.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModSel(NewValue) end

---Modulation source 2 of the loudness, 0 to 23; its amount is PRGampModGain2.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 64.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModSel2(NewValue) end

---Modulation source 3 of the loudness, 0 to 23; its amount is PRGampModGain3.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 65.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModSel3(NewValue) end

---Whether each note restarts LFO 2: 0 off, else on.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 66.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2retrigger(NewValue) end

---Whether LFO 1 syncs to the MIDI clock: 0 off, else on.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 67.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1Sync2MIDIClk(NewValue) end

---MIDI clock multiplier for LFO 1.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 68.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1MIDIClkMul(NewValue) end

---MIDI clock divisor for LFO 1.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 69.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1MIDIClkDiv(NewValue) end

---Whether LFO 2 syncs to the MIDI clock: 0 off, else on.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 70.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2Sync2MIDIClk(NewValue) end

---MIDI clock multiplier for LFO 2.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 71.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2MIDIClkMul(NewValue) end

---MIDI clock divisor for LFO 2.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 72.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2MIDIClkDiv(NewValue) end

---How the external trigger plays the program.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 73.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGextTriggerMode(NewValue) end

---Note that the external trigger plays, a MIDI note 0 to 127.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 74.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGextTriggerNote(NewValue) end

---MIDI controller of the external trigger, 0 to 127.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 75.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGextTriggerCtrl(NewValue) end

---Controller value at which the external trigger plays, 0 to 127.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 76.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGextTriggerThreshold(NewValue) end

---Whether the program is muted, 0 or 1. Stored in the program file; setting it neither sets the dirty flag nor notifies.
---Requires a program (Create, Read or Find).
---@param Mute? integer
---@return integer
function ZylSProgram:PRGmute(Mute) end

---Whether the program is soloed, 0 or 1. Stored in the program file; setting it neither sets the dirty flag nor notifies.
---Requires a program (Create, Read or Find).
---@param Solo? integer
---@return integer
function ZylSProgram:PRGsolo(Solo) end

---Whether the program is muted by its timbre, 0 or 1. Stored in the program file; setting it neither sets the dirty flag nor notifies.
---Requires a program (Create, Read or Find).
---@param Mute? integer
---@return integer
function ZylSProgram:PRGtmmute(Mute) end

---Mask of the MIDI channels of all objects with this program, bit 0 for channel 1. A value that is set lasts until one of these objects changes its channel.
---Requires a program (Create, Read or Find).
---@param MidiChannel? integer
---@return integer
function ZylSProgram:PRGtmMidiChannel(MidiChannel) end

---Lowest key of the range, a MIDI note 0 to 127.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 100.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGlowKey(KeyGroupIndex, NewValue) end

---Highest key of the range, a MIDI note 0 to 127.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 101.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGhighKey(KeyGroupIndex, NewValue) end

---Tuning, in 1/256 semitone.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -32768 to 32767; parameter number 102.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtune(KeyGroupIndex, NewValue) end

---Filter cutoff, usually 0 to 99 (open).
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 103.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterFreq(KeyGroupIndex, NewValue) end

---How much the key opens the filter, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 104.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterKey(KeyGroupIndex, NewValue) end

---How much velocity opens the filter, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 105.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterVel(KeyGroupIndex, NewValue) end

---How much LFO 2 moves the filter, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 106.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterLFO2(KeyGroupIndex, NewValue) end

---How much envelope 2 opens the filter, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 107.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterEnv2(KeyGroupIndex, NewValue) end

---Attack time of the loudness envelope, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 108.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampEnvAttack(KeyGroupIndex, NewValue) end

---Decay time of the loudness envelope, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 109.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampEnvDecay(KeyGroupIndex, NewValue) end

---Sustain level of the loudness envelope, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 110.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampEnvSustain(KeyGroupIndex, NewValue) end

---Release time of the loudness envelope, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 111.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampEnvRelease(KeyGroupIndex, NewValue) end

---How much velocity changes the attack, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 112.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampVelModAtt(KeyGroupIndex, NewValue) end

---How much velocity changes the release, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 113.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampVelModRel(KeyGroupIndex, NewValue) end

---How much the release velocity changes the release, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 114.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampVelModOffRel(KeyGroupIndex, NewValue) end

---How much the key changes decay and release, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 115.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampKeyModDecRel(KeyGroupIndex, NewValue) end

---Time of step 1 of envelope 2, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 116.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Rate1(KeyGroupIndex, NewValue) end

---Time of step 3 of envelope 2, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 117.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Rate3(KeyGroupIndex, NewValue) end

---Level after step 3 of envelope 2, usually 0 to 99; sustained while the key is held.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 118.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Level3(KeyGroupIndex, NewValue) end

---Time of step 4 of envelope 2, the release, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 119.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Rate4(KeyGroupIndex, NewValue) end

---How much velocity changes step 1 of envelope 2, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 120.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2VelModRate1(KeyGroupIndex, NewValue) end

---How much velocity changes step 4 of envelope 2, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 121.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2VelModRate4(KeyGroupIndex, NewValue) end

---How much the release velocity changes step 4 of envelope 2, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 122.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2VelModOffRate4(KeyGroupIndex, NewValue) end

---How much the key changes steps 3 and 4 of envelope 2, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 123.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2KeyModRate34(KeyGroupIndex, NewValue) end

---How much velocity changes the effect of envelope 2 on the filter, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 124.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGvelFilterEnv(KeyGroupIndex, NewValue) end

---How much velocity changes the effect of envelope 3, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 172.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3VelFilter(KeyGroupIndex, NewValue) end

---How much envelope 2 bends the pitch, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 125.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenvPitch(KeyGroupIndex, NewValue) end

---Crossfade between velocity zones: 0 off, else on.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 126.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGvelZoneCrossFade(KeyGroupIndex, NewValue) end

---Detuning in Hz instead of semitones, so that the beat rate is the same on all keys.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 127.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfixedRateDetune(KeyGroupIndex, NewValue) end

---Whether the attack holds until the sample reaches its loop: 0 off, else on.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 128.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGattackHoldUntilLoop(KeyGroupIndex, NewValue) end

---How much velocity changes the volume, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 129.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGvelVolume(KeyGroupIndex, NewValue) end

---Filter resonance in 8 bits, stored by the program library; setting it does not set the dirty flag.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 130.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGresonance(KeyGroupIndex, NewValue) end

---How much LFO 1 moves the pitch, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 131.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGpitchModLFO1(KeyGroupIndex, NewValue) end

---How much source PRGfilterModSel1 moves the filter, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 132.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterModGain1(KeyGroupIndex, NewValue) end

---How much source PRGfilterModSel2 moves the filter, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 133.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterModGain2(KeyGroupIndex, NewValue) end

---How much source PRGfilterModSel3 moves the filter, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 134.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterModGain3(KeyGroupIndex, NewValue) end

---How much source PRGpitchModSel moves the pitch, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 135.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGpitchModGain(KeyGroupIndex, NewValue) end

---How much source PRGampModSel changes the loudness, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 136.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampModGain(KeyGroupIndex, NewValue) end

---Level after step 1 of envelope 2, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 137.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Level1(KeyGroupIndex, NewValue) end

---Time of step 2 of envelope 2, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 138.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Rate2(KeyGroupIndex, NewValue) end

---Level after step 2 of envelope 2, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 139.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Level2(KeyGroupIndex, NewValue) end

---Level after step 4 of envelope 2, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 140.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Level4(KeyGroupIndex, NewValue) end

---Mute group: a note stops the other notes of its group; 0 is none.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 141.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGmuteGroup(KeyGroupIndex, NewValue) end

---Level after step 1 of envelope 3, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 152.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Level1(KeyGroupIndex, NewValue) end

---Time of step 2 of envelope 3, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 153.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Rate2(KeyGroupIndex, NewValue) end

---Level after step 2 of envelope 3, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 154.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Level2(KeyGroupIndex, NewValue) end

---Level after step 4 of envelope 3, usually 0 to 99.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 155.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Level4(KeyGroupIndex, NewValue) end

---Time of step 1 of envelope 3, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 143.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Rate1(KeyGroupIndex, NewValue) end

---Time of step 3 of envelope 3, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 144.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Rate3(KeyGroupIndex, NewValue) end

---Level after step 3 of envelope 3, usually 0 to 99; sustained while the key is held.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 145.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Level3(KeyGroupIndex, NewValue) end

---Time of step 4 of envelope 3, the release, usually 0 to 99; higher is slower.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 146.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Rate4(KeyGroupIndex, NewValue) end

---How much velocity changes step 1 of envelope 3, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 147.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3VelModRate1(KeyGroupIndex, NewValue) end

---How much velocity changes step 4 of envelope 3, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 148.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3VelModRate4(KeyGroupIndex, NewValue) end

---How much the release velocity changes step 4 of envelope 3, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 150.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3VelModOffRate4(KeyGroupIndex, NewValue) end

---How much the key changes steps 3 and 4 of envelope 3, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 151.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3KeyModRate34(KeyGroupIndex, NewValue) end

---Modulation source 1 of the time stretch, 0 to 23; its amount is KGtimeStretchModGain1.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 156.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModSel1(KeyGroupIndex, NewValue) end

---Modulation source 2 of the time stretch, 0 to 23; its amount is KGtimeStretchModGain2.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 157.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModSel2(KeyGroupIndex, NewValue) end

---Modulation source 3 of the time stretch, 0 to 23; its amount is KGtimeStretchModGain3.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 158.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModSel3(KeyGroupIndex, NewValue) end

---How much source KGtimeStretchModSel1 changes the time stretch, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 159.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModGain1(KeyGroupIndex, NewValue) end

---How much source KGtimeStretchModSel2 changes the time stretch, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 160.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModGain2(KeyGroupIndex, NewValue) end

---How much source KGtimeStretchModSel3 changes the time stretch, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 161.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModGain3(KeyGroupIndex, NewValue) end

---Modulation source 1 of the formants, 0 to 23; its amount is KGformantModGain1.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 162.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModSel1(KeyGroupIndex, NewValue) end

---Modulation source 2 of the formants, 0 to 23; its amount is KGformantModGain2.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 163.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModSel2(KeyGroupIndex, NewValue) end

---Modulation source 3 of the formants, 0 to 23; its amount is KGformantModGain3.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 164.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModSel3(KeyGroupIndex, NewValue) end

---How much source KGformantModSel1 moves the formants, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 165.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModGain1(KeyGroupIndex, NewValue) end

---How much source KGformantModSel2 moves the formants, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 166.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModGain2(KeyGroupIndex, NewValue) end

---How much source KGformantModSel3 moves the formants, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 167.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModGain3(KeyGroupIndex, NewValue) end

---Filter type, 0 to 13: low pass, high pass and band pass of 2, 4 or 6 poles; odd numbers have resonance.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 168.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterType(KeyGroupIndex, NewValue) end

---Filter resonance in 16 bits, stored by the program library; setting it does not set the dirty flag.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 65535; parameter number 169.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterResonance(KeyGroupIndex, NewValue) end

---Modulation source of the resonance, 0 to 23; its amount is KGfilterResonanceModGain.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterResonanceModSel(KeyGroupIndex, NewValue) end

---How much source KGfilterResonanceModSel changes the resonance, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterResonanceModGain(KeyGroupIndex, NewValue) end

---How the pitch follows the key: 0 track, 1 constant, 2 pitch, 3 pitch and constant, 4 stretch, 5 stretch and constant.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 200.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZoneconstantPitch(KeyGroupIndex, ZoneIndex, NewValue) end

---Individual output of the zone, counted from PRGindyOutput.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 201.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZoneoutOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---How much velocity moves the sample start.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -32768 to 32767; parameter number 202.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonevelStart(KeyGroupIndex, ZoneIndex, NewValue) end

---Name of the zone's sample, or an empty string; a new name is ignored.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewString? string
---@return string
function ZylSProgram:Zonename(KeyGroupIndex, ZoneIndex, NewString) end

---Lowest velocity that plays the zone, 0 to 127.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 204.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonelowVel(KeyGroupIndex, ZoneIndex, NewValue) end

---Highest velocity that plays the zone, 0 to 127.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 205.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonehighVel(KeyGroupIndex, ZoneIndex, NewValue) end

---Tuning added to the keygroup's, in 1/256 semitone.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -32768 to 32767; parameter number 206.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonetuneOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Loudness added to the program's, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 207.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZoneloudnessOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Cutoff added to the keygroup's, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 208.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonefilterOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Pan added to the program's, usually -50 to 50.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 209.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonepanOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Playback: 0 as set in the sample, 1 loop into the release, 2 loop until the release, 3 no loops, 4 to the end.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 210.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:Zoneplaybacktype(KeyGroupIndex, ZoneIndex, NewValue) end

---File path of the zone's sample as stored in the program file; setting it does not load the file.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewPath? string
---@return string
function ZylSProgram:ZoneSamplePath(KeyGroupIndex, ZoneIndex, NewPath) end

---Load a sample file into the zone, or remove the zone's sample when NewSample is absent. Files with more than 16 channels are rejected.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewSample? string
function ZylSProgram:ZoneSampleSet(KeyGroupIndex, ZoneIndex, NewSample) end

---Whether the zone has a sample.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@return boolean
function ZylSProgram:ZoneSampleExists(KeyGroupIndex, ZoneIndex) end

---Transposition method: 0 resampling, 1 pitch shift, 2 formant, 3 robot.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 221.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonePitchPlay(KeyGroupIndex, ZoneIndex, NewValue) end

---Time stretch of the zone; 0 is none.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -32768 to 32767; parameter number 222.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZoneTimeStretchOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Formant shift of the zone; 0 is none.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127; parameter number 223.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZoneFormantOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Root key of the sample, a MIDI note 0 to 127.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:Samplekey(Sample, NewValue) end

---Playback of the sample: 0 loop into the release, 1 loop until the release, 2 no loops, 3 to the end.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleplaybackType(Sample, NewValue) end

---Detuning while the loop plays, -128 to 127.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleholdLoopTuneOff(Sample, NewValue) end

---Tuning of the sample relative to its root key, in 1/256 semitone.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:Sampletune(Sample, NewValue) end

---Return the tuning that plays the sample at its pitch at the host's rate, times 65536. Changes nothing.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleRecalcTune(Sample, NewValue) end

---Sample rate in Hz; setting it does not change the sound data.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleSampleRate(Sample, NewValue) end

---Return the sample object of a zone.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@return CSample|nil
function ZylSProgram:SampleGet(KeyGroupIndex, ZoneIndex) end

---Return the sample object of the program's sample with that file name.
---Requires a program (Create, Read or Find).
---@param Name string
---@return CSample|nil
function ZylSProgram:SampleGetByName(Name) end

---Return the length of the sample in frames.
---@param Sample CSample
---@return integer
function ZylSProgram:SampleGetSize(Sample) end

---Store a handle of a channel's sound data in Buffer, for host.buffer, and return its length in frames. Without Channel, the sample's own channel.
---@param Sample CSample
---@param Buffer integer|host.Var
---@param Channel? integer
---@return integer
function ZylSProgram:SampleGetBuffer(Sample, Buffer, Channel) end

---Delete the frames from StartIndex up to, but not including, EndIndex.
---@param Sample CSample
---@param StartIndex integer
---@param EndIndex integer
---@return boolean
function ZylSProgram:SampleDelete(Sample, StartIndex, EndIndex) end

---Keep only the frames StartIndex to EndIndex, both included.
---@param Sample CSample
---@param StartIndex integer
---@param EndIndex integer
---@return boolean
function ZylSProgram:SampleExtract(Sample, StartIndex, EndIndex) end

---Create an empty sample in a zone, of the type of the file extension (wav, aif, s), with 1 to 16 channels (default 1).
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param Extension string
---@param Channels? integer 1 to 16
---@return boolean
function ZylSProgram:SampleCreate(KeyGroupIndex, ZoneIndex, Extension, Channels) end

---Insert CopyToSample into the sample at InsertIndex (default 0).
---@param Sample CSample
---@param CopyToSample CSample
---@param InsertIndex? integer
---@return boolean
function ZylSProgram:SampleCopyTo(Sample, CopyToSample, InsertIndex) end

---Replace the sound of the sample with the frames StartIndex to EndIndex of CopyFromSample, both included.
---@param Sample CSample
---@param CopyFromSample CSample
---@param StartIndex? integer
---@param EndIndex? integer
---@return boolean
function ZylSProgram:SampleCopyFrom(Sample, CopyFromSample, StartIndex, EndIndex) end

---First frame that plays.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleStart(Sample, NewValue) end

---Last frame that plays.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleEnd(Sample, NewValue) end

---Length in frames; setting a greater length appends silence.
---@param Sample CSample
---@param NewSize? integer
---@return integer
function ZylSProgram:SampleSize(Sample, NewSize) end

---Number of loops in use, 0 to 16.
---@param Sample CSample
---@param NewValue? integer 0 to 16
---@return integer
function ZylSProgram:SampleLoopCount(Sample, NewValue) end

---First frame of a loop; -1 for an unused loop.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleLoopStart(Sample, LoopIndex, NewValue) end

---Last frame of a loop; -1 for an unused loop.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleLoopEnd(Sample, LoopIndex, NewValue) end

---Fraction of a frame added to the length of a loop, in 1/4294967296 frame; -1.0 for an unused loop.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param NewValue? number
---@return number
function ZylSProgram:SampleLoopFineLen(Sample, LoopIndex, NewValue) end

---Number of repetitions of a loop; -1 for an unused loop.
---@param Sample CSample
---@param LoopIndex integer 0 to 7
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleLoopTimes(Sample, LoopIndex, NewValue) end

---Set the frames from StartIndex up to, but not including, EndIndex to a 16-bit value.
---@param Sample CSample
---@param StartIndex integer
---@param EndIndex integer
---@param Value integer
function ZylSProgram:SampleSetValues(Sample, StartIndex, EndIndex, Value) end

---Multiply the frames from StartIndex up to, but not including, EndIndex; the results are clamped to the sample's width.
---@param Sample CSample
---@param StartIndex integer
---@param EndIndex integer
---@param Value number
function ZylSProgram:SampleMultiplyValues(Sample, StartIndex, EndIndex, Value) end

---Add an offset to the frames from StartIndex up to, but not including, EndIndex; the results are clamped to the sample's width.
---@param Sample CSample
---@param StartIndex integer
---@param EndIndex integer
---@param Value integer
function ZylSProgram:SampleOffsetValues(Sample, StartIndex, EndIndex, Value) end

---Reverse the frames StartIndex to EndIndex, both included.
---@param Sample CSample
---@param StartIndex integer
---@param EndIndex integer
function ZylSProgram:SampleReverseValues(Sample, StartIndex, EndIndex) end

---Return the number of users of the sample.
---@param Sample CSample
---@return integer
function ZylSProgram:SampleGetRefCount(Sample) end

---Write the sample to NewPath or to its own file, which is replaced; other hard links to it keep the old content. The bits of ChannelMask select channels, 0 all of them.
---@param Sample CSample
---@param NewPath? string
---@param ChannelMask? integer
---@return boolean
function ZylSProgram:SampleWrite(Sample, NewPath, ChannelMask) end

---Write channels of several samples to one file, in the order given.
---@param NewPath string
---@param ... CSample|host.Null|integer
---@return boolean
function ZylSProgram:SampleWriteMerged(NewPath, ...) end

---Channel of the file, from 0; -1 for the whole sample, or for a zone without a sample.
---With KeyGroupIndex, requires a program (Create, Read or Find).
---@overload fun(self: ZylSProgram, KeyGroupIndex: integer, ZoneIndex: integer, NewValue?: integer): integer
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleChannel(Sample, NewValue) end

---Number of channels of the sample's file.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleChannelCount(Sample, NewValue) end

---Return the file name, without the folder, of a sample or of a zone's sample.
---With KeyGroupIndex, requires a program (Create, Read or Find).
---@overload fun(self: ZylSProgram, KeyGroupIndex: integer, ZoneIndex: integer, NewValue?: string): string
---@overload fun(self: ZylSProgram, SampleOrKeyGroup?: any, NewValue?: string): string
---@param SampleOrKeyGroup CSample
---@param NewValue? string
---@return string
function ZylSProgram:SampleFileName(SampleOrKeyGroup, NewValue) end

---File path of the sample; setting it does not move the file.
---@param Sample CSample
---@param NewValue? string
---@return string
function ZylSProgram:SampleFilePath(Sample, NewValue) end

---Whether a zone's sample has changed since it was written; sets the flag.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? boolean
---@return boolean
function ZylSProgram:SampleDirty(KeyGroupIndex, ZoneIndex, NewValue) end

---Reload a sample file; existing sample objects refer to the new sound.
---@param SamplePath string
function ZylSProgram:SampleReload(SamplePath) end

---Whether a sample is locked in memory; true locks it, false unlocks it. With TempSample the script owns the lock of a temporary sample.
---With KeyGroupIndex, requires a program (Create, Read or Find).
---@overload fun(self: ZylSProgram, KeyGroupIndex: integer, ZoneIndex: integer, NewValue?: boolean): boolean
---@param Sample CSample
---@param NewValue? boolean
---@param TempSample? integer
---@return boolean
function ZylSProgram:SampleLock(Sample, NewValue, TempSample) end

---Return the mean value of the frames from StartIndex up to, but not including, EndIndex.
---@param Sample CSample
---@param StartIndex integer
---@param EndIndex integer
---@return integer
function ZylSProgram:SampleGetDCOffset(Sample, StartIndex, EndIndex) end

---Value of one frame, at the sample's width.
---@param Sample CSample
---@param Index integer
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleValue(Sample, Index, NewValue) end

---Rate how well a loop joins: 2147483647 is perfect, 0 is an unused loop.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@return integer
function ZylSProgram:SampleLoopQual(Sample, LoopIndex) end

---Search StartIndex to LastIndex for the loop start with the best join, better than Treshold on the scale of SampleLoopQual, and set it.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param StartIndex integer
---@param LastIndex integer
---@param Treshold integer
---@return integer
function ZylSProgram:SampleLoopFindStart(Sample, LoopIndex, StartIndex, LastIndex, Treshold) end

---Search StartIndex to LastIndex for the loop end with the best join, better than Treshold on the scale of SampleLoopQual, and set it.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param StartIndex integer
---@param LastIndex integer
---@param Treshold integer
---@return integer
function ZylSProgram:SampleLoopFindEnd(Sample, LoopIndex, StartIndex, LastIndex, Treshold) end

---Bits per value, 1 to 32; setting it converts the sound.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleBits(Sample, NewValue) end

---Name of the sample.
---@param Sample CSample
---@param NewName? string
---@return string
function ZylSProgram:SampleName(Sample, NewName) end

---Return the size of one channel of the sample in bytes. With LockedMemory true, 0 unless it is locked.
---@param Sample CSample
---@param LockedMemory? boolean
---@return integer
function ZylSProgram:SampleMemory(Sample, LockedMemory) end

---Value of the program parameter with that number, 1 to 95; -1 for an unknown number.
---Requires a program (Create, Read or Find).
---@param Index integer
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGIntValue(Index, NewValue) end

---Value of the keygroup parameter with that number, 100 to 199; with several keygroups, that of the last one. Setting it sets the dirty flag and notifies only if NewValue differs from that one value.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param Index integer
---@param NewValue? integer
---@return integer
function ZylSProgram:KGIntValue(KeyGroupIndex, Index, NewValue) end

---Value of the zone parameter with that number, 200 to 299; UpdateKG selects the keygroups for which a change is notified. Every call, even a read, enables notifications (EnableRegisterCall).
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param ZoneIndex integer 0 to 3
---@param Index integer
---@param NewValue? integer
---@param UpdateKG? integer
---@return integer
function ZylSProgram:ZoneIntValue(KeyGroupIndex, ZoneIndex, Index, NewValue, UpdateKG) end

---Value of the parameter of a zone's sample with that number, 300 to 315; -1 without a sample.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param Index integer
---@param NewValue? integer|host.Var
---@return integer
function ZylSProgram:SampleIntValue(KeyGroupIndex, ZoneIndex, Index, NewValue) end

---Text of a program parameter as the editor shows it; setting it parses the text and replaces it with the text of the stored value.
---Requires a program (Create, Read or Find).
---@param Index integer
---@param NewString? string|host.Var
---@return string
function ZylSProgram:PRGStringValue(Index, NewString) end

---Text of a keygroup parameter as the editor shows it; setting it parses the text and replaces it with the text of the stored value.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param Index integer
---@param NewString? string|host.Var
---@return string
function ZylSProgram:KGStringValue(KeyGroupIndex, Index, NewString) end

---Text of a zone parameter as the editor shows it; setting it parses the text and replaces it with the text of the stored value.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param ZoneIndex integer 0 to 3
---@param Index integer
---@param NewString? string|host.Var
---@return string
function ZylSProgram:ZoneStringValue(KeyGroupIndex, ZoneIndex, Index, NewString) end

---Text of a parameter of a zone's sample as the editor shows it; setting it parses the text and replaces it with the text of the stored value.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1
---@param ZoneIndex integer 0 to 3
---@param Index integer
---@param NewString? string|host.Var
---@return string
function ZylSProgram:SampleStringValue(KeyGroupIndex, ZoneIndex, Index, NewString) end

---Return the name of a modulation source 0 to 23, or the number of the source with that name.
---@overload fun(self: ZylSProgram, InValue: integer): string
---@param InValue string|host.Var
---@return integer
function ZylSProgram:ModulationSource(InValue) end

---Start the pitch analysis of a sample in the background; false if it already has a pitch track.
---@param Sample CSample|host.Null
---@param MinPeriod? integer
---@param MaxPeriod? integer
---@param SmoothLength? integer
---@param findPitchLen? integer
---@param RMSthres? number
---@return boolean
function ZylSProgram:CalcSamplePitch(Sample, MinPeriod, MaxPeriod, SmoothLength, findPitchLen, RMSthres) end

---Start the pitch analysis of a keygroup's samples in the background, except those with a pitch track.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; negative for none
---@param MinPeriod? integer
---@param MaxPeriod? integer
---@param SmoothLength? integer
---@param findPitchLen? integer
---@param RMSthres? number
---@return boolean
function ZylSProgram:CalcKeygroupPitch(KeyGroupIndex, MinPeriod, MaxPeriod, SmoothLength, findPitchLen, RMSthres) end

---Start the pitch analysis of all samples of the program in the background, except those with a pitch track.
---Requires a program (Create, Read or Find).
---@param MinPeriod? integer
---@param MaxPeriod? integer
---@param SmoothLength? integer
---@param findPitchLen? integer
---@param RMSthres? number
---@return boolean
function ZylSProgram:CalcProgramPitch(MinPeriod, MaxPeriod, SmoothLength, findPitchLen, RMSthres) end

---Remove the pitch tracks of all samples of the program.
---Requires a program (Create, Read or Find).
---@return boolean
function ZylSProgram:ClearProgramPitch() end

---Remove the pitch track of a sample.
---@param Sample CSample|host.Null
---@return boolean
function ZylSProgram:ClearSamplePitch(Sample) end

---Store a handle of the sample's pitch track in Buffer, for host.floats, and return its number of values.
---@param Sample CSample
---@param Buffer integer|host.Var
---@return integer
function ZylSProgram:SampleGetPitchData(Sample, Buffer) end

---Whether two sample objects refer to the same sample.
---@param Sample1 CSample|host.Null
---@param Sample2 CSample|host.Null
---@return boolean
function ZylSProgram:SampleCompare(Sample1, Sample2) end

---Organ: reverb of the keygroup.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 190.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoKGreverb(KeyGroupIndex, NewValue) end

---Organ: echo of the keygroup.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255; parameter number 191.
---Requires a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to count - 1; -1 for all keygroups, -2 for the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoKGecho(KeyGroupIndex, NewValue) end

---Organ: reverb of the program.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGreverb(NewValue) end

---Organ: chorus of the program.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGchorus(NewValue) end

---Organ: echo of the program.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGecho(NewValue) end

---Organ: effect of the program.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGeffect(NewValue) end

---Organ: change of the attack.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGattack(NewValue) end

---Organ: change of the sustain.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGsustain(NewValue) end

---Organ: change of the release.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGrelease(NewValue) end

---Organ: change of the filter.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGfilter(NewValue) end

---Organ: whether sounding notes stop before the program starts, 0 or 1.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGstop_before_run(NewValue) end

---Organ: default reverb.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGreverb_default(NewValue) end

---Organ: default chorus.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGchorus_default(NewValue) end

---Organ: default echo.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGecho_default(NewValue) end

---Organ: default effect.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as 0 to 255.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGeffect_default(NewValue) end

---Organ: default change of the attack.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGattack_default(NewValue) end

---Organ: default change of the sustain.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGsustain_default(NewValue) end

---Organ: default change of the release.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGrelease_default(NewValue) end

---Organ: default change of the filter.
---Returns the value; with NewValue, sets it and returns the previous value.
---Stored as -128 to 127.
---Requires a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGfilter_default(NewValue) end

-- ---- With require "zyl" ----

---@class zyl.Zone a zone; has the methods whose first arguments are KeyGroupIndex and ZoneIndex
---@field program ZylSProgram
---@field keygroup integer
---@field index integer
---@field [string] function

---@class zyl.Keygroup a keygroup; has the methods whose first argument is KeyGroupIndex
---@field program ZylSProgram
---@field index integer
---@field zone fun(self: zyl.Keygroup, index: integer): zyl.Zone
---@field zones fun(self: zyl.Keygroup): fun(): zyl.Zone?
---@field [string] function

---@class zyl.Wanted
---@field [integer] integer one of these keygroups
---@field key? integer the range contains the key
---@field keys? integer[] the range overlaps the keys from the first to the second
---@field sample? string the name of a zone's sample contains this
---@field where? fun(keygroup: zyl.Keygroup): boolean
---@field all? boolean
---@field add? boolean selected keygroups stay selected

local zyl = {}

---Iterate over the keygroups: for kg in prg:keygroups() do ... end.
---@return fun(): zyl.Keygroup?
function ZylSProgram:keygroups() end

---Iterate over the keygroups: for kg in prg:keygroups() do ... end.
---@param program ZylSProgram
---@return fun(): zyl.Keygroup?
function zyl.keygroups(program) end

---Iterate over the zones of all keygroups: for zone in prg:zones() do ... end.
---@return fun(): zyl.Zone?
function ZylSProgram:zones() end

---Iterate over the zones of all keygroups: for zone in prg:zones() do ... end.
---@param program ZylSProgram
---@return fun(): zyl.Zone?
function zyl.zones(program) end

---Select exactly the keygroups that match all criteria; returns their indexes.
---@param wanted zyl.Wanted indexes, key, keys, sample, where, all, add
---@return integer[]
function ZylSProgram:select(wanted) end

---Select exactly the keygroups that match all criteria; returns their indexes.
---@param program ZylSProgram
---@param wanted zyl.Wanted indexes, key, keys, sample, where, all, add
---@return integer[]
function zyl.select(program, wanted) end

---Call body(program) and return its results; if it fails, restore the program and raise the error again.
---@param body fun(program: ZylSProgram): any
---@return any
function ZylSProgram:transaction(body) end

---Call body(program) and return its results; if it fails, restore the program and raise the error again.
---@param program ZylSProgram
---@param body fun(program: ZylSProgram): any
---@return any
function zyl.transaction(program, body) end

---@class host
---@field null host.Null a null object
---@field sampleRate number the processing rate in Hz, writable
---@field module string the path of the module's library
host = {}

---Create a script object of a class of the module.
---@param class "ZylSProgram" the name of the class
---@return ZylSProgram
function host.new(class) end

---Destroy an object that the script created, immediately.
---@param object ROCAlgo|RODPad|host.Plain
function host.delete(object) end

---Add functions to the methods of a class, by name.
---@param class string
---@param methods table<string, function>
function host.extend(class, methods) end

---List the names of a class's methods in table order.
---@param class? string default ZylSProgram
---@return string[]
function host.methods(class) end

---Return the type name of an object: "ROCAlgo", "CSample", "RODPad" and so on.
---@param object ROCAlgo|ROCPad|RODPad|CSample|host.Plain
---@return string
function host.typeof(object) end

---Create a plain object with that type name, for testing wrong arguments.
---@param typeName string
---@return host.Plain
function host.object(typeName) end

---Copy the state of a program object, to roll back changes with restoreState.
---@param object ZylSProgram
---@return host.Plain
function host.saveState(object) end

---Restore a saved state. Returns false if the object has been deleted or the state was restored before.
---@param state host.Plain from saveState
---@return boolean
function host.restoreState(state) end

---Return bytes of a buffer, given its handle from a method such as SampleGetBuffer.
---@param handle integer
---@param bytes integer
---@return string
function host.buffer(handle, bytes) end

---Return floats of a buffer, given its handle from a method such as SampleGetPitchData.
---@param handle integer
---@param count integer
---@return number[]
function host.floats(handle, count) end

---Create a value that a method can change in place; its field `value` reads and sets it.
---@param value integer|number|boolean|string|table|host.Null|ROCAlgo|ROCPad|RODPad|CSample|host.Plain
---@return host.Var
function host.var(value) end

---Create an algorithm object whose script methods are the functions of the table.
---@param fields? table name, dispatch, and the methods by name
---@return host.Algo
function host.algo(fields) end

---Create a data pad that holds a byte string; its field `bytes` reads and sets it.
---@param bytes? string default empty
---@return RODPad
function host.pad(bytes) end

---Deliver the values that other threads have sent to pads, and return the number of callbacks called.
---@param seconds? number how long to wait for the first one
---@return integer
function host.pump(seconds) end

---Return '; did you mean "NAME"?' with the most similar of the names, or an empty string.
---@param name string
---@param names string[]
---@return string
function host.suggestion(name, names) end

---Return the type of a path: "file", "folder" or "other", such as a pipe, which can block when it is opened. Returns nil and the reason if it does not exist.
---@param path string
---@return string|nil
function host.fileType(path) end

---Replace the content of a file atomically; on any failure it is unchanged. Returns true, or nil and the reason.
---@param path string
---@param bytes string
---@return boolean|nil
function host.writeFile(path, bytes) end

---Return type (as fileType), size in bytes, mode (permission bits) and modified (nanoseconds since 1970) of a path, or nil and the reason.
---@param path string
---@return table|nil
function host.fileInfo(path) end

---Return the path from the root, with symbolic links resolved; the file need not exist. Returns nil and the reason on failure.
---@param path string
---@return string|nil
function host.absolutePath(path) end

---Append to a file, or create it, and flush it to disk. Returns true, or nil and the reason.
---@param path string
---@param bytes string
---@return boolean|nil
function host.appendFile(path, bytes) end

---Copy a file with its mode and modification time. The destination is replaced atomically. Returns true, or nil and the reason.
---@param from string
---@param to string
---@param link? boolean true creates a hard link if possible: the file must have no other link
---@return boolean|nil
function host.copyFile(from, to, link) end

---Replace the content of a file atomically with what `write` stores at the path of a temporary file. If it returns a false value, with a reason, or raises an error, the old file is unchanged. Returns true, or nil and the reason.
---@param path string
---@param write function
---@return boolean|nil
function host.replaceFile(path, write) end

---Return a 64-bit checksum of a file's content in hexadecimal, or nil and the reason. It detects changes, but not forgeries.
---@param path string
---@return string|nil
function host.digest(path) end

---List the presets of a SoundFont bank in file order, each with name, bank and program. Returns nil and the reason if the file is not a complete bank.
---@param path string
---@return table[]|nil
function host.presets(path) end

---Create a keyboard picture with the children KBSelector, KBBKSel and KBBKSelClip.
---@param place? table x, y, width and height in pixels (0, 0, 378, 24)
---@return host.Graphic
function host.keyboard(place) end

---Create a list module: an algorithm with the method GetList and a list of these columns.
---@param form table name, rowHeight and columns
---@return host.Editor
function host.editor(form) end

---Draw graphic objects, lists and headings, one below the other.
---@param what host.Graphic|host.Editor|host.List|table one, or a list of them and of texts
---@param path string ends in .png or .svg
---@param options? table dark = true, scale = 2, octave = 3 (of key 60)
function host.render(what, path, options) end

---Create a white picture to draw on; its method write writes the file.
---@param path string ends in .png or .svg
---@param size? table width = 640, height = 480 in pixels, scale = 1
---@return host.Picture
function host.picture(path, size) end

---Print help on a method or a function of host, or list the methods with that part of a name.
---@param what? string|function
function help(what) end

return zyl
