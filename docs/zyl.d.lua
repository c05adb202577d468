---@meta zyl
-- Annotations for editors with a Lua language server: completion, argument names, types. Made by
-- `./dev docs`; not a file to run.

---@class ROCAlgo
---@class CSample
---@class GOContainer
---@class host.Plain
---@class host.Null

---A value that a method can change in place.
---@class host.Var
---@field value any

---An algorithm object of the script: its functions are its script methods.
---@class host.Algo: ROCAlgo
---@field name string
---@field [string] any
local Algo = {}
---Add a named pad that holds a value of that type.
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
---@param anchor? "start"|"middle"|"end" what x is of the text; "start" without it
function Picture:text(x, baseline, text, size, colour, anchor) end
---Write the file, whole or not at all. Nothing can be drawn afterwards.
function Picture:write() end

---@class ZylSProgram: ROCAlgo
local ZylSProgram = {}

---Tell whether the program or one of its samples was changed since it was written; sets the flag.
---@param NewDirty? boolean
---@return boolean
function ZylSProgram:Dirty(NewDirty) end

---Attach the program that a program file holds. LoadSmpl 0 leaves the samples on disk (1 without it); MC sets the MIDI channel, -1 Omni.
---@param PrgName string
---@param LoadSmpl? integer
---@param MC? integer
---@return boolean
function ZylSProgram:Read(PrgName, LoadSmpl, MC) end

---Write the program to PrgPath, or to its own file, which is replaced: other hard links to it keep the old content. WriteMode is passed to the file layer (51 without it).
---Needs a program (Create, Read or Find).
---@param PrgPath? string
---@param WriteMode? integer
---@return boolean
function ZylSProgram:Write(PrgPath, WriteMode) end

---Attach a program that is in memory already, by its file name. MC sets the MIDI channel, -1 Omni.
---@param PrgName string
---@param MC? integer
---@return boolean
function ZylSProgram:Find(PrgName, MC) end

---Attach a new program: a copy of ProgramToCopy's, or a default one for a null object. CopySamples false leaves the zones empty.
---@param ProgramToCopy ROCAlgo|host.Null
---@param CopySamples? boolean
---@return boolean
function ZylSProgram:Create(ProgramToCopy, CopySamples) end

---Register an algorithm: its OnProgramParameterChanged is called at every change, its OnDeletingSmpl before a sample object or its data goes, its OnDeletingPrg at the end.
---@param RegisterModule ROCAlgo
function ZylSProgram:Register(RegisterModule) end

---Write the values of the numbered parameters into the slot SlotID of a data pad.
---Needs a program (Create, Read or Find).
---@param Pad RODPad
---@param SlotID integer
---@param ... integer
function ZylSProgram:WriteDataToPad(Pad, SlotID, ...) end

---Set the parameters that the slot SlotID of a data pad holds.
---Needs a program (Create, Read or Find).
---@param Pad RODPad
---@param SlotID integer
function ZylSProgram:ReadDataFromPad(Pad, SlotID) end

---Remove everything from a data pad.
---@param Pad RODPad
function ZylSProgram:EmptyPadData(Pad) end

---Remove the slot SlotID from a data pad.
---Needs a program (Create, Read or Find).
---@param Pad RODPad
---@param SlotID integer
function ZylSProgram:RemoveDataFromPad(Pad, SlotID) end

---Count the channels of a sample file; 0 when it cannot be read. A file with more than 16 channels is refused.
---@param Path string
---@return integer
function ZylSProgram:GetChannelCount(Path) end

---Fill ResultArray with the name of each preset of a preset file, and count the presets.
---@param FilePath string
---@param ResultArray table
---@return integer
function ZylSProgram:GetSFPresetArray(FilePath, ResultArray) end

---Give the temporary sample for a path and channel, made empty by the path's extension (wav, aif, s) when there is none.
---@param SamplePath string
---@param Channel? integer
---@return CSample|nil
function ZylSProgram:CreateTempSample(SamplePath, Channel) end

---Give the temporary sample for a path and channel when the file is in memory. Lock true locks it and gives the lock value, false gives the record's number.
---@param SamplePath string
---@param Channel? integer
---@param Lock? boolean
---@return CSample|nil|integer
function ZylSProgram:GetTempSample(SamplePath, Channel, Lock) end

---Give the temporary sample for a path and channel, loaded from its file when it is not in memory. Lock true locks it and gives the lock value.
---@param SamplePath string
---@param Channel? integer
---@param Lock? boolean
---@return CSample|nil|integer
function ZylSProgram:ReadTempSample(SamplePath, Channel, Lock) end

---Let a temporary sample go; all of them when none is named.
---@param Sample? CSample|host.Null
function ZylSProgram:DeleteTempSample(Sample) end

---Tell the registered algorithms that the program ends (OnDeletingPrg), and drop its sample objects.
function ZylSProgram:PrepareDelete() end

---Set the algorithm whose pad progressUpdate (an integer) hears of pitch jobs: 1 while one runs, 0 at the end; null for none.
---@param CBModule ROCAlgo|host.Null
function ZylSProgram:PitchDataProgressCB(CBModule) end

---Set the algorithm whose pad pitchDataFinished (a string) gets the name of each sample that was analysed; null for none.
---@param CBModule ROCAlgo|host.Null
function ZylSProgram:PitchDataProgressCBFinish(CBModule) end

---Cancel the pitch jobs that run or wait.
function ZylSProgram:PitchDataCalcCancel() end

---Count the pitch jobs that run or wait.
---@return integer
function ZylSProgram:PitchDataCalculating() end

---Estimate how long the pitch jobs still take, in seconds.
---@return integer
function ZylSProgram:PitchDataTimeLeft() end

---Estimate how long the pitch jobs take in all, in seconds.
---@return integer
function ZylSProgram:PitchDataTimeTotal() end

---Tell how far the pitch jobs are, 0 to 2147483647.
---@return integer
function ZylSProgram:PitchDataProgressRatio() end

---Fill SampleArray with the names of the samples that pitch jobs work on, and count them.
---@param SampleArray table
---@return integer
function ZylSProgram:PitchDataCalcSamples(SampleArray) end

---Number of individual outputs; a zone whose output reaches it has none.
---@param NewMaxIndyOut? integer
---@return integer
function ZylSProgram:MaxIndyOut(NewMaxIndyOut) end

---Give the machine's memory in bytes, at most 2147483647.
---@return integer
function ZylSProgram:GetTotalPhysicalMemory() end

---Give the memory that is locked against paging, in bytes, at most 2147483647.
---@return integer
function ZylSProgram:GetLockedMemory() end

---Give the bytes of locked programs and samples, or of all of them with Locked false.
---@param Locked? boolean
---@return integer
function ZylSProgram:GetUsedPhysicalMemory(Locked) end

---Write a sample with its parameters into a data pad.
---@param Pad RODPad
---@param Sample CSample
function ZylSProgram:WriteSampleToPad(Pad, Sample) end

---Make a temporary sample out of what a data pad holds; Path becomes its file path.
---@param Pad RODPad
---@param Path? string
---@return CSample|nil
function ZylSProgram:ReadSampleFromPad(Pad, Path) end

---Draw a keygroup's key range on a keyboard of the editor.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; a negative one none
---@param GO GOContainer|host.Null
---@param ListModule ROCAlgo|host.Null
function ZylSProgram:DrawKeyGroupKB(KeyGroupIndex, GO, ListModule) end

---File path of the program.
---Needs a program (Create, Read or Find).
---@param NewFileName? string
---@return string
function ZylSProgram:FileName(NewFileName) end

---Delete a keygroup.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; a negative one none
function ZylSProgram:KGDelete(KeyGroupIndex) end

---Insert a keygroup at NewIndex, a default one or a copy of keygroup KGToCopy of another program, and give the new count - 1.
---Needs a program (Create, Read or Find).
---@param NewIndex integer
---@param ProgramToCopy? ROCAlgo|host.Null
---@param KGToCopy? integer
---@return integer
function ZylSProgram:KGCreate(NewIndex, ProgramToCopy, KGToCopy) end

---Move the keygroup From to the place To.
---Needs a program (Create, Read or Find).
---@param From integer
---@param To integer
function ZylSProgram:KGMove(From, To) end

---Sort the keygroups by low key (SortByData 100) or high key (101), ascending with Direction 0, else descending.
---Needs a program (Create, Read or Find).
---@param SortByData integer
---@param Direction integer
function ZylSProgram:KGSort(SortByData, Direction) end

---Find the first keygroup at or after StartAt whose key range holds the key; -1 when there is none.
---Needs a program (Create, Read or Find).
---@param KeyToFind integer
---@param StartAt? integer
---@return integer
function ZylSProgram:KGFindByKey(KeyToFind, StartAt) end

---Tell whether a keygroup is selected, before SelectFlag selects it or not.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; a negative one all keygroups
---@param SelectFlag? boolean
---@return boolean
function ZylSProgram:KGSelect(KeyGroupIndex, SelectFlag) end

---Whether registered algorithms are notified of changes. Every call of ZoneIntValue switches it on again.
---@param Enable? boolean
---@return boolean
function ZylSProgram:EnableRegisterCall(Enable) end

---Append a row for each keygroup to the editor's keygroup list; rows that are there stay. Key columns show note names, or numbers with KeyAsValue true.
---Needs a program (Create, Read or Find).
---@param ListModule ROCAlgo|host.Null
---@param KeyAsValue? boolean
function ZylSProgram:ListFillKeygroups(ListModule, KeyAsValue) end

---Fill the first four rows of the editor's zone list with the zones of a keygroup. Key columns show note names, or numbers with KeyAsValue true.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; a negative one none
---@param ListModule ROCAlgo|host.Null
---@param KeyAsValue? boolean
function ZylSProgram:ListFillZones(KeyGroupIndex, ListModule, KeyAsValue) end

---Colour the keyboards of the editor's keygroup list for a selected key.
---Needs a program (Create, Read or Find).
---@param SelKey integer
---@param Color number
---@param ColorBK number
---@param ColorSel number
---@param ColorBKSel number
---@param ListModule ROCAlgo|host.Null
function ZylSProgram:UpdateKeyboardSelection(SelKey, Color, ColorBK, ColorSel, ColorBKSel, ListModule) end

---Copy a sample file whole; the destination is replaced only when the copy is complete.
---@param Source string
---@param Dest string
function ZylSProgram:SampleCopyFile(Source, Dest) end

---Give the program a file path in the temporary folder that no file has yet.
---Needs a program (Create, Read or Find).
---@return string
function ZylSProgram:SetUniqueFilePath() end

---Tell whether a program is attached.
---@return boolean
function ZylSProgram:IsValid() end

---Tell whether the program is locked in memory.
---@return boolean
function ZylSProgram:IsLocked() end

---Name of the program, at most 12 bytes.
---Needs a program (Create, Read or Find).
---@param NewString? string
---@return string
function ZylSProgram:PRGname(NewString) end

---MIDI program number that selects the program.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 2.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGmidiProg(NewValue) end

---MIDI channel, 0 to 31 for channels 1 to 32, -1 Omni; 32 and more change nothing.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGmidiChannel(NewValue) end

---Polyphony less one: 0 is one voice, 15 sixteen.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 4.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpoly(NewValue) end

---Voice priority: 0 low, 1 normal, 2 high, 3 hold.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 5.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGprority(NewValue) end

---Which voice is taken when none is free: 0 the oldest, else the quietest.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 6.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGreassignment(NewValue) end

---Lowest key that plays, a MIDI note 0 to 127.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 7.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGlowKey(NewValue) end

---Highest key that plays, a MIDI note 0 to 127.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 8.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGhighKey(NewValue) end

---Octave shift of what is played, in octaves.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 9.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGplayOctave(NewValue) end

---First individual output of the program, from 0; -1 is off.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGindyOutput(NewValue) end

---Gain of the individual outputs.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 11.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGindyOutGain(NewValue) end

---Level on the stereo outputs, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 12.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGstereoLevel(NewValue) end

---Position on the stereo outputs: 0 the middle, usually -50 left to 50 right.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 13.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGstereoPan(NewValue) end

---Basic loudness, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 14.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGloudness(NewValue) end

---How much velocity adds to the loudness, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 15.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGloudVel(NewValue) end

---How much the key adds to the loudness, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 16.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGloudKey(NewValue) end

---How much pressure adds to the loudness, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 17.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGloudPrs(NewValue) end

---Tuning of the whole program, in 1/256 semitone.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -32768 to 32767; parameter number 18.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGtune(NewValue) end

---Mono legato: 0 off, else on.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 19.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGmonoLegato(NewValue) end

---Crossfade where key ranges overlap: 0 off, else on.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 20.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGkeyGrpCrossFade(NewValue) end

---Number of keygroups as the record counts them. Setting it makes or deletes none: use KGCreate and KGDelete.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGkeyGroups(NewValue) end

---How far the pitch wheel bends up, in semitones.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 22.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGbendRangeUp(NewValue) end

---How far the pitch wheel bends down, in semitones.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 23.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpitchBendDown(NewValue) end

---Which notes bend: 0 all, else those that are held.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 24.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpitchBendMode(NewValue) end

---How far pressure bends the pitch, in semitones; negative bends down.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 25.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpressurePitchBend(NewValue) end

---Waveform of LFO 1: 0 triangle, 1 sawtooth, 2 square, 3 random.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 26.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOwaveform(NewValue) end

---Speed of LFO 1, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 27.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOspeed(NewValue) end

---Depth of LFO 1, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 28.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdepth(NewValue) end

---Time until LFO 1 sets in, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 29.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdelay(NewValue) end

---How much the modulation wheel adds to the depth of LFO 1, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 30.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdepthWheel(NewValue) end

---How much pressure adds to the depth of LFO 1, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 31.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdepthPrs(NewValue) end

---How much velocity adds to the depth of LFO 1, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 32.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdepthVel(NewValue) end

---How much the source of PRGLFO1SpeedModSel changes the speed of LFO 1, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 33.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOSpeedModGain(NewValue) end

---How much the source of PRGLFO1DepthModSel changes the depth of LFO 1, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 34.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFODepthModGain(NewValue) end

---How much the source of PRGLFO1DelayModSel changes the delay of LFO 1, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 35.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFODelayModGain(NewValue) end

---Source that modulates the speed of LFO 1, 0 to 23; ModulationSource names them.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 36.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1SpeedModSel(NewValue) end

---Source that modulates the depth of LFO 1, 0 to 23; ModulationSource names them.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 37.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1DepthModSel(NewValue) end

---Source that modulates the delay of LFO 1, 0 to 23; ModulationSource names them.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 38.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1DelayModSel(NewValue) end

---Whether each voice runs an LFO 1 of its own: 0 off, else on.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 39.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFOdesync(NewValue) end

---Speed of LFO 2, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 40.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2speed(NewValue) end

---Depth of LFO 2, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 41.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2depth(NewValue) end

---Time until LFO 2 sets in, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 42.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2delay(NewValue) end

---Waveform of LFO 2: 0 triangle, 1 sawtooth, 2 square, 3 random.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 43.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2waveform(NewValue) end

---How much the key moves the stereo position, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 44.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanKey(NewValue) end

---Detuning of one of the 13 steps of the program's own scale, -128 to 127.
---Needs a program (Create, Read or Find).
---@param Index integer 0 to 12
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGmasterDetune(Index, NewValue) end

---How much the modulation wheel moves the stereo position, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 46.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModWheel(NewValue) end

---How much the soft pedal lowers the loudness, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 47.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGsoftPedalLoudness(NewValue) end

---How much the soft pedal slows the attack, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 48.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGsoftPedalAttack(NewValue) end

---How much the soft pedal closes the filter, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 49.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGsoftPedalFilter(NewValue) end

---Width of the stereo outputs.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 50.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGstereoOutSpace(NewValue) end

---Source 1 that modulates the filters, 0 to 23; KGfilterModGain1 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 51.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGfilterModSel1(NewValue) end

---Source 2 that modulates the filters, 0 to 23; KGfilterModGain2 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 52.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGfilterModSel2(NewValue) end

---Source 3 that modulates the filters, 0 to 23; KGfilterModGain3 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 53.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGfilterModSel3(NewValue) end

---Source that modulates the pitch, 0 to 23; KGpitchModGain says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 54.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpitchModSel(NewValue) end

---How much source PRGpanModSel1 moves the stereo position, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 55.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModGain1(NewValue) end

---How much source PRGpanModSel2 moves the stereo position, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 56.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModGain2(NewValue) end

---How much source PRGpanModSel3 moves the stereo position, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 57.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModGain3(NewValue) end

---Source 1 that moves the stereo position, 0 to 23; PRGpanModGain1 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 58.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModSel1(NewValue) end

---Source 2 that moves the stereo position, 0 to 23; PRGpanModGain2 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 59.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModSel2(NewValue) end

---Source 3 that moves the stereo position, 0 to 23; PRGpanModGain3 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 60.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGpanModSel3(NewValue) end

---How much source PRGampModSel2 changes the loudness, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 61.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModGain2(NewValue) end

---How much source PRGampModSel3 changes the loudness, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 62.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModGain3(NewValue) end

---Source 1 that modulates the loudness, 0 to 23; KGampModGain says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 63.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModSel(NewValue) end

---Source 2 that modulates the loudness, 0 to 23; PRGampModGain2 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 64.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModSel2(NewValue) end

---Source 3 that modulates the loudness, 0 to 23; PRGampModGain3 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 65.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGampModSel3(NewValue) end

---Whether each note starts LFO 2 anew: 0 off, else on.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 66.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2retrigger(NewValue) end

---Whether LFO 1 follows the MIDI clock: 0 off, else on.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 67.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1Sync2MIDIClk(NewValue) end

---Multiplier of the MIDI clock for LFO 1.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 68.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1MIDIClkMul(NewValue) end

---Divisor of the MIDI clock for LFO 1.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 69.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO1MIDIClkDiv(NewValue) end

---Whether LFO 2 follows the MIDI clock: 0 off, else on.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 70.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2Sync2MIDIClk(NewValue) end

---Multiplier of the MIDI clock for LFO 2.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 71.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2MIDIClkMul(NewValue) end

---Divisor of the MIDI clock for LFO 2.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 72.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGLFO2MIDIClkDiv(NewValue) end

---How the external trigger plays the program.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 73.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGextTriggerMode(NewValue) end

---Note that the external trigger plays, a MIDI note 0 to 127.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 74.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGextTriggerNote(NewValue) end

---MIDI controller that the external trigger listens to, 0 to 127.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 75.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGextTriggerCtrl(NewValue) end

---Controller value from which the external trigger plays, 0 to 127.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 76.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGextTriggerThreshold(NewValue) end

---Whether the program is muted, 0 or 1. It is stored in the program file; setting it neither sets the dirty flag nor notifies.
---Needs a program (Create, Read or Find).
---@param Mute? integer
---@return integer
function ZylSProgram:PRGmute(Mute) end

---Whether the program plays alone, 0 or 1. It is stored in the program file; setting it neither sets the dirty flag nor notifies.
---Needs a program (Create, Read or Find).
---@param Solo? integer
---@return integer
function ZylSProgram:PRGsolo(Solo) end

---Whether the program is muted by its timbre, 0 or 1. It is stored in the program file; setting it neither sets the dirty flag nor notifies.
---Needs a program (Create, Read or Find).
---@param Mute? integer
---@return integer
function ZylSProgram:PRGtmmute(Mute) end

---Mask of the MIDI channels, bit 0 for channel 1: those of all objects that hold the program. A value set lasts until one of them changes its channel.
---Needs a program (Create, Read or Find).
---@param MidiChannel? integer
---@return integer
function ZylSProgram:PRGtmMidiChannel(MidiChannel) end

---Lowest key of the range, a MIDI note 0 to 127.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 100.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGlowKey(KeyGroupIndex, NewValue) end

---Highest key of the range, a MIDI note 0 to 127.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 101.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGhighKey(KeyGroupIndex, NewValue) end

---Tuning, in 1/256 semitone.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -32768 to 32767; parameter number 102.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtune(KeyGroupIndex, NewValue) end

---Filter cutoff, usually 0 to 99, which is open.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 103.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterFreq(KeyGroupIndex, NewValue) end

---How much the key opens the filter, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 104.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterKey(KeyGroupIndex, NewValue) end

---How much velocity opens the filter, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 105.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterVel(KeyGroupIndex, NewValue) end

---How much LFO 2 moves the filter, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 106.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterLFO2(KeyGroupIndex, NewValue) end

---How much envelope 2 opens the filter, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 107.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterEnv2(KeyGroupIndex, NewValue) end

---Attack of the loudness envelope, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 108.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampEnvAttack(KeyGroupIndex, NewValue) end

---Decay of the loudness envelope, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 109.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampEnvDecay(KeyGroupIndex, NewValue) end

---Level that the loudness envelope holds, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 110.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampEnvSustain(KeyGroupIndex, NewValue) end

---Release of the loudness envelope, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 111.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampEnvRelease(KeyGroupIndex, NewValue) end

---How much velocity changes the attack, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 112.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampVelModAtt(KeyGroupIndex, NewValue) end

---How much velocity changes the release, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 113.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampVelModRel(KeyGroupIndex, NewValue) end

---How much the release velocity changes the release, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 114.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampVelModOffRel(KeyGroupIndex, NewValue) end

---How much the key changes decay and release, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 115.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampKeyModDecRel(KeyGroupIndex, NewValue) end

---Time of step 1 of envelope 2, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 116.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Rate1(KeyGroupIndex, NewValue) end

---Time of step 3 of envelope 2, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 117.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Rate3(KeyGroupIndex, NewValue) end

---Level after step 3 of envelope 2, usually 0 to 99; it holds while the key does.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 118.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Level3(KeyGroupIndex, NewValue) end

---Time of step 4 of envelope 2, the release, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 119.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Rate4(KeyGroupIndex, NewValue) end

---How much velocity changes step 1 of envelope 2, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 120.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2VelModRate1(KeyGroupIndex, NewValue) end

---How much velocity changes step 4 of envelope 2, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 121.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2VelModRate4(KeyGroupIndex, NewValue) end

---How much the release velocity changes step 4 of envelope 2, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 122.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2VelModOffRate4(KeyGroupIndex, NewValue) end

---How much the key changes steps 3 and 4 of envelope 2, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 123.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2KeyModRate34(KeyGroupIndex, NewValue) end

---How much velocity changes what envelope 2 does to the filter, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 124.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGvelFilterEnv(KeyGroupIndex, NewValue) end

---How much velocity changes what envelope 3 does, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 172.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3VelFilter(KeyGroupIndex, NewValue) end

---How much envelope 2 bends the pitch, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 125.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenvPitch(KeyGroupIndex, NewValue) end

---Crossfade between velocity zones: 0 off, else on.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 126.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGvelZoneCrossFade(KeyGroupIndex, NewValue) end

---Detuning in Hz rather than in parts of a semitone, so that beats keep their speed on all keys.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 127.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfixedRateDetune(KeyGroupIndex, NewValue) end

---Whether the attack lasts until the sample reaches its loop: 0 off, else on.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 128.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGattackHoldUntilLoop(KeyGroupIndex, NewValue) end

---How much velocity changes the volume, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 129.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGvelVolume(KeyGroupIndex, NewValue) end

---Filter resonance in 8 bits, kept by the program library; does not mark the program dirty.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 130.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGresonance(KeyGroupIndex, NewValue) end

---How much LFO 1 moves the pitch, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 131.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGpitchModLFO1(KeyGroupIndex, NewValue) end

---How much source PRGfilterModSel1 moves the filter, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 132.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterModGain1(KeyGroupIndex, NewValue) end

---How much source PRGfilterModSel2 moves the filter, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 133.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterModGain2(KeyGroupIndex, NewValue) end

---How much source PRGfilterModSel3 moves the filter, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 134.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterModGain3(KeyGroupIndex, NewValue) end

---How much source PRGpitchModSel moves the pitch, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 135.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGpitchModGain(KeyGroupIndex, NewValue) end

---How much source PRGampModSel changes the loudness, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 136.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGampModGain(KeyGroupIndex, NewValue) end

---Level after step 1 of envelope 2, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 137.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Level1(KeyGroupIndex, NewValue) end

---Time of step 2 of envelope 2, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 138.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Rate2(KeyGroupIndex, NewValue) end

---Level after step 2 of envelope 2, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 139.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Level2(KeyGroupIndex, NewValue) end

---Level after step 4 of envelope 2, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 140.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv2Level4(KeyGroupIndex, NewValue) end

---Mute group: a note of the group ends its other notes; 0 is none.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 141.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGmuteGroup(KeyGroupIndex, NewValue) end

---Level after step 1 of envelope 3, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 152.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Level1(KeyGroupIndex, NewValue) end

---Time of step 2 of envelope 3, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 153.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Rate2(KeyGroupIndex, NewValue) end

---Level after step 2 of envelope 3, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 154.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Level2(KeyGroupIndex, NewValue) end

---Level after step 4 of envelope 3, usually 0 to 99.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 155.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Level4(KeyGroupIndex, NewValue) end

---Time of step 1 of envelope 3, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 143.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Rate1(KeyGroupIndex, NewValue) end

---Time of step 3 of envelope 3, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 144.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Rate3(KeyGroupIndex, NewValue) end

---Level after step 3 of envelope 3, usually 0 to 99; it holds while the key does.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 145.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Level3(KeyGroupIndex, NewValue) end

---Time of step 4 of envelope 3, the release, usually 0 to 99; higher is slower.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 146.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3Rate4(KeyGroupIndex, NewValue) end

---How much velocity changes step 1 of envelope 3, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 147.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3VelModRate1(KeyGroupIndex, NewValue) end

---How much velocity changes step 4 of envelope 3, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 148.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3VelModRate4(KeyGroupIndex, NewValue) end

---How much the release velocity changes step 4 of envelope 3, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 150.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3VelModOffRate4(KeyGroupIndex, NewValue) end

---How much the key changes steps 3 and 4 of envelope 3, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 151.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGenv3KeyModRate34(KeyGroupIndex, NewValue) end

---Source 1 that modulates the time stretch, 0 to 23; KGtimeStretchModGain1 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 156.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModSel1(KeyGroupIndex, NewValue) end

---Source 2 that modulates the time stretch, 0 to 23; KGtimeStretchModGain2 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 157.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModSel2(KeyGroupIndex, NewValue) end

---Source 3 that modulates the time stretch, 0 to 23; KGtimeStretchModGain3 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 158.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModSel3(KeyGroupIndex, NewValue) end

---How much source KGtimeStretchModSel1 changes the time stretch, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 159.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModGain1(KeyGroupIndex, NewValue) end

---How much source KGtimeStretchModSel2 changes the time stretch, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 160.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModGain2(KeyGroupIndex, NewValue) end

---How much source KGtimeStretchModSel3 changes the time stretch, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 161.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGtimeStretchModGain3(KeyGroupIndex, NewValue) end

---Source 1 that modulates the formants, 0 to 23; KGformantModGain1 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 162.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModSel1(KeyGroupIndex, NewValue) end

---Source 2 that modulates the formants, 0 to 23; KGformantModGain2 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 163.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModSel2(KeyGroupIndex, NewValue) end

---Source 3 that modulates the formants, 0 to 23; KGformantModGain3 says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 164.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModSel3(KeyGroupIndex, NewValue) end

---How much source KGformantModSel1 moves the formants, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 165.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModGain1(KeyGroupIndex, NewValue) end

---How much source KGformantModSel2 moves the formants, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 166.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModGain2(KeyGroupIndex, NewValue) end

---How much source KGformantModSel3 moves the formants, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 167.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGformantModGain3(KeyGroupIndex, NewValue) end

---Filter type, 0 to 13: low pass, high pass and band pass of 2, 4 or 6 poles; odd ones with resonance.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 168.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterType(KeyGroupIndex, NewValue) end

---Filter resonance in 16 bits, kept by the program library; does not mark the program dirty.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 65535; parameter number 169.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterResonance(KeyGroupIndex, NewValue) end

---Source that modulates the resonance, 0 to 23; KGfilterResonanceModGain says how much.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterResonanceModSel(KeyGroupIndex, NewValue) end

---How much source KGfilterResonanceModSel changes the resonance, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:KGfilterResonanceModGain(KeyGroupIndex, NewValue) end

---How the pitch follows the key: 0 it tracks, 1 constant, 2 pitch, 3 pitch held constant, 4 stretch, 5 stretch held constant.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 200.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZoneconstantPitch(KeyGroupIndex, ZoneIndex, NewValue) end

---Individual output of the zone, counted from PRGindyOutput.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 201.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZoneoutOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---How much velocity moves the point where the sample starts.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -32768 to 32767; parameter number 202.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonevelStart(KeyGroupIndex, ZoneIndex, NewValue) end

---Name of the zone's sample, empty without one; a text given is not used.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewString? string
---@return string
function ZylSProgram:Zonename(KeyGroupIndex, ZoneIndex, NewString) end

---Lowest velocity that plays the zone, 0 to 127.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 204.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonelowVel(KeyGroupIndex, ZoneIndex, NewValue) end

---Highest velocity that plays the zone, 0 to 127.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 205.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonehighVel(KeyGroupIndex, ZoneIndex, NewValue) end

---Tuning added to the keygroup's, in 1/256 semitone.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -32768 to 32767; parameter number 206.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonetuneOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Loudness added to the program's, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 207.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZoneloudnessOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Cutoff added to the keygroup's, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 208.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonefilterOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Stereo position added to the program's, usually -50 to 50.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 209.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonepanOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Playback: 0 as the sample says, 1 loop into the release, 2 loop until the release, 3 no loops, 4 to the end.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 210.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:Zoneplaybacktype(KeyGroupIndex, ZoneIndex, NewValue) end

---File path of the zone's sample as the program file keeps it; setting it loads nothing.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewPath? string
---@return string
function ZylSProgram:ZoneSamplePath(KeyGroupIndex, ZoneIndex, NewPath) end

---Give the zone the sample of a file, or none when NewSample is absent. A file with more than 16 channels is refused.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewSample? string
function ZylSProgram:ZoneSampleSet(KeyGroupIndex, ZoneIndex, NewSample) end

---Tell whether the zone has a sample.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@return boolean
function ZylSProgram:ZoneSampleExists(KeyGroupIndex, ZoneIndex) end

---How other pitches are made: 0 resampling, 1 pitch shift, 2 formant, 3 robot.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 221.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZonePitchPlay(KeyGroupIndex, ZoneIndex, NewValue) end

---Time stretch of the zone, 0 is none.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -32768 to 32767; parameter number 222.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? integer
---@return integer
function ZylSProgram:ZoneTimeStretchOffset(KeyGroupIndex, ZoneIndex, NewValue) end

---Formant shift of the zone, 0 is none.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127; parameter number 223.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
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

---Detuning while the loop is held, -128 to 127.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleholdLoopTuneOff(Sample, NewValue) end

---Tuning of the sample above its root key, in 1/256 semitone.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:Sampletune(Sample, NewValue) end

---Work out the tuning that plays the sample at its pitch at the host's rate, times 65536; changes nothing.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleRecalcTune(Sample, NewValue) end

---Sample rate in Hz; setting it changes no sound data.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleSampleRate(Sample, NewValue) end

---Give the sample object of a zone.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@return CSample|nil
function ZylSProgram:SampleGet(KeyGroupIndex, ZoneIndex) end

---Give the sample object of the program's sample of that file name.
---Needs a program (Create, Read or Find).
---@param Name string
---@return CSample|nil
function ZylSProgram:SampleGetByName(Name) end

---Give the length of the sample in frames.
---@param Sample CSample
---@return integer
function ZylSProgram:SampleGetSize(Sample) end

---Put a handle of a channel's sound data into Buffer, for host.buffer, and give its length in frames; without Channel the sample's own.
---@param Sample CSample
---@param Buffer integer|host.Var
---@param Channel? integer
---@return integer
function ZylSProgram:SampleGetBuffer(Sample, Buffer, Channel) end

---Cut the frames from StartIndex up to, but not including, EndIndex out of the sample.
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

---Put a new empty sample into a zone, its format by the file extension (wav, aif, s), with 1 to 16 channels (1 without it).
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param Extension string
---@param Channels? integer
---@return boolean
function ZylSProgram:SampleCreate(KeyGroupIndex, ZoneIndex, Extension, Channels) end

---Insert the whole of CopyToSample into the sample at InsertIndex (0 without it).
---@param Sample CSample
---@param CopyToSample CSample
---@param InsertIndex? integer
---@return boolean
function ZylSProgram:SampleCopyTo(Sample, CopyToSample, InsertIndex) end

---Replace the sound of the sample by the frames StartIndex to EndIndex of CopyFromSample, both included.
---@param Sample CSample
---@param CopyFromSample CSample
---@param StartIndex? integer
---@param EndIndex? integer
---@return boolean
function ZylSProgram:SampleCopyFrom(Sample, CopyFromSample, StartIndex, EndIndex) end

---First frame that is played.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleStart(Sample, NewValue) end

---Last frame that is played.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleEnd(Sample, NewValue) end

---Length in frames; a longer one is filled with silence.
---@param Sample CSample
---@param NewSize? integer
---@return integer
function ZylSProgram:SampleSize(Sample, NewSize) end

---Number of loops in use, 0 to 16.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleLoopCount(Sample, NewValue) end

---First frame of a loop; -1 for a loop that is not in use.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleLoopStart(Sample, LoopIndex, NewValue) end

---Last frame of a loop; -1 for a loop that is not in use.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleLoopEnd(Sample, LoopIndex, NewValue) end

---Part of a frame that lengthens a loop, in 1/4294967296 frame; -1.0 for a loop that is not in use.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param NewValue? number
---@return number
function ZylSProgram:SampleLoopFineLen(Sample, LoopIndex, NewValue) end

---How often a loop is repeated; -1 for a loop that is not in use.
---@param Sample CSample
---@param LoopIndex integer 0 to 7
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleLoopTimes(Sample, LoopIndex, NewValue) end

---Set the frames from StartIndex up to, but not including, EndIndex to a value of 16 bits.
---@param Sample CSample
---@param StartIndex integer
---@param EndIndex integer
---@param Value integer
function ZylSProgram:SampleSetValues(Sample, StartIndex, EndIndex, Value) end

---Multiply the frames from StartIndex up to, but not including, EndIndex; the results are not limited.
---@param Sample CSample
---@param StartIndex integer
---@param EndIndex integer
---@param Value number
function ZylSProgram:SampleMultiplyValues(Sample, StartIndex, EndIndex, Value) end

---Add to the frames from StartIndex up to, but not including, EndIndex, held within the sample's width.
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

---Count the users of the sample.
---@param Sample CSample
---@return integer
function ZylSProgram:SampleGetRefCount(Sample) end

---Write the sample to NewPath, or to its own file, which is replaced: other hard links to it keep the old content; the bits of ChannelMask choose channels, 0 all of them.
---@param Sample CSample
---@param NewPath? string
---@param ChannelMask? integer
---@return boolean
function ZylSProgram:SampleWrite(Sample, NewPath, ChannelMask) end

---Write channels of several samples into one file, in the order given.
---@param NewPath string
---@param ... CSample|host.Null|integer
---@return boolean
function ZylSProgram:SampleWriteMerged(NewPath, ...) end

---Channel of the file that the sample is, from 0; -1 the whole sample, or a zone without one.
---With KeyGroupIndex it needs a program (Create, Read or Find).
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

---Give the file name of a sample or of a zone's sample, without its folder.
---With KeyGroupIndex it needs a program (Create, Read or Find).
---@overload fun(self: ZylSProgram, KeyGroupIndex: integer, ZoneIndex: integer, NewValue?: string): string
---@overload fun(self: ZylSProgram, SampleOrKeyGroup?: any, NewValue?: string): string
---@param SampleOrKeyGroup CSample
---@param NewValue? string
---@return string
function ZylSProgram:SampleFileName(SampleOrKeyGroup, NewValue) end

---File path of the sample; setting it moves no file.
---@param Sample CSample
---@param NewValue? string
---@return string
function ZylSProgram:SampleFilePath(Sample, NewValue) end

---Tell whether a zone's sample was changed since it was written; sets the flag.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param NewValue? boolean
---@return boolean
function ZylSProgram:SampleDirty(KeyGroupIndex, ZoneIndex, NewValue) end

---Load a sample file again; the objects of its samples stand for the new sound.
---@param SamplePath string
function ZylSProgram:SampleReload(SamplePath) end

---Tell whether a sample is locked in memory; true locks it, false lets it go. TempSample makes the script answer for the lock of a temporary one.
---With KeyGroupIndex it needs a program (Create, Read or Find).
---@overload fun(self: ZylSProgram, KeyGroupIndex: integer, ZoneIndex: integer, NewValue?: boolean): boolean
---@param Sample CSample
---@param NewValue? boolean
---@param TempSample? integer
---@return boolean
function ZylSProgram:SampleLock(Sample, NewValue, TempSample) end

---Give the mean value of the frames from StartIndex up to, but not including, EndIndex.
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

---Rate how well a loop joins: 2147483647 is perfect, 0 a loop that is not in use.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@return integer
function ZylSProgram:SampleLoopQual(Sample, LoopIndex) end

---Search StartIndex to LastIndex for the loop start that joins best, better than Treshold on the scale of SampleLoopQual, and set it.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param StartIndex integer
---@param LastIndex integer
---@param Treshold integer
---@return integer
function ZylSProgram:SampleLoopFindStart(Sample, LoopIndex, StartIndex, LastIndex, Treshold) end

---Search StartIndex to LastIndex for the loop end that joins best, better than Treshold on the scale of SampleLoopQual, and set it.
---@param Sample CSample
---@param LoopIndex integer 0 to 15
---@param StartIndex integer
---@param LastIndex integer
---@param Treshold integer
---@return integer
function ZylSProgram:SampleLoopFindEnd(Sample, LoopIndex, StartIndex, LastIndex, Treshold) end

---Width of a value in bits, 1 to 32; setting it converts the sound.
---@param Sample CSample
---@param NewValue? integer
---@return integer
function ZylSProgram:SampleBits(Sample, NewValue) end

---Name of the sample.
---@param Sample CSample
---@param NewName? string
---@return string
function ZylSProgram:SampleName(Sample, NewName) end

---Give the bytes of one channel of the sample; with LockedMemory true, 0 while they are not locked.
---@param Sample CSample
---@param LockedMemory? boolean
---@return integer
function ZylSProgram:SampleMemory(Sample, LockedMemory) end

---Value of the program parameter with that number, 1 to 95; -1 for a number that names nothing.
---Needs a program (Create, Read or Find).
---@param Index integer
---@param NewValue? integer
---@return integer
function ZylSProgram:PRGIntValue(Index, NewValue) end

---Value of the keygroup parameter with that number, 100 to 199: of the last keygroup when several are addressed. Setting it sets the dirty flag and notifies only if NewValue differs from that one value.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param Index integer
---@param NewValue? integer
---@return integer
function ZylSProgram:KGIntValue(KeyGroupIndex, Index, NewValue) end

---Value of the zone parameter with that number, 200 to 299; UpdateKG says for which keygroups the change is notified. Every call, also one that only reads, switches notifications on again (EnableRegisterCall).
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param ZoneIndex integer 0 to 3
---@param Index integer
---@param NewValue? integer
---@param UpdateKG? integer
---@return integer
function ZylSProgram:ZoneIntValue(KeyGroupIndex, ZoneIndex, Index, NewValue, UpdateKG) end

---Value of the parameter of a zone's sample with that number, 300 to 315; -1 without a sample.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param Index integer
---@param NewValue? integer|host.Var
---@return integer
function ZylSProgram:SampleIntValue(KeyGroupIndex, ZoneIndex, Index, NewValue) end

---Text of a program parameter as an editor shows it; sets the value from a typed text, which becomes the text that was stored.
---Needs a program (Create, Read or Find).
---@param Index integer
---@param NewString? string|host.Var
---@return string
function ZylSProgram:PRGStringValue(Index, NewString) end

---Text of a keygroup parameter as an editor shows it; sets the value from a typed text, which becomes the text that was stored.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param Index integer
---@param NewString? string|host.Var
---@return string
function ZylSProgram:KGStringValue(KeyGroupIndex, Index, NewString) end

---Text of a zone parameter as an editor shows it; sets the value from a typed text, which becomes the text that was stored.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param ZoneIndex integer 0 to 3
---@param Index integer
---@param NewString? string|host.Var
---@return string
function ZylSProgram:ZoneStringValue(KeyGroupIndex, ZoneIndex, Index, NewString) end

---Text of a parameter of a zone's sample as an editor shows it; sets the value from a typed text, which becomes the text that was stored.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1
---@param ZoneIndex integer 0 to 3
---@param Index integer
---@param NewString? string|host.Var
---@return string
function ZylSProgram:SampleStringValue(KeyGroupIndex, ZoneIndex, Index, NewString) end

---Give the name of a modulation source 0 to 23, or the number of the source with that name.
---@overload fun(self: ZylSProgram, InValue: integer): string
---@param InValue string|host.Var
---@return integer
function ZylSProgram:ModulationSource(InValue) end

---Start the pitch analysis of a sample in the background; false when it has a pitch track already.
---@param Sample CSample|host.Null
---@param MinPeriod? integer
---@param MaxPeriod? integer
---@param SmoothLength? integer
---@param findPitchLen? integer
---@param RMSthres? number
---@return boolean
function ZylSProgram:CalcSamplePitch(Sample, MinPeriod, MaxPeriod, SmoothLength, findPitchLen, RMSthres) end

---Start the pitch analysis of a keygroup's samples in the background; those that have a pitch track are left out.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; a negative one none
---@param MinPeriod? integer
---@param MaxPeriod? integer
---@param SmoothLength? integer
---@param findPitchLen? integer
---@param RMSthres? number
---@return boolean
function ZylSProgram:CalcKeygroupPitch(KeyGroupIndex, MinPeriod, MaxPeriod, SmoothLength, findPitchLen, RMSthres) end

---Start the pitch analysis of all samples of the program in the background; those that have a pitch track are left out.
---Needs a program (Create, Read or Find).
---@param MinPeriod? integer
---@param MaxPeriod? integer
---@param SmoothLength? integer
---@param findPitchLen? integer
---@param RMSthres? number
---@return boolean
function ZylSProgram:CalcProgramPitch(MinPeriod, MaxPeriod, SmoothLength, findPitchLen, RMSthres) end

---Remove the pitch tracks of all samples of the program.
---Needs a program (Create, Read or Find).
---@return boolean
function ZylSProgram:ClearProgramPitch() end

---Remove the pitch track of a sample.
---@param Sample CSample|host.Null
---@return boolean
function ZylSProgram:ClearSamplePitch(Sample) end

---Put a handle of the sample's pitch track into Buffer, for host.floats, and give its number of values.
---@param Sample CSample
---@param Buffer integer|host.Var
---@return integer
function ZylSProgram:SampleGetPitchData(Sample, Buffer) end

---Tell whether two sample objects stand for one sample.
---@param Sample1 CSample|host.Null
---@param Sample2 CSample|host.Null
---@return boolean
function ZylSProgram:SampleCompare(Sample1, Sample2) end

---Organ: reverb of the keygroup.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 190.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoKGreverb(KeyGroupIndex, NewValue) end

---Organ: echo of the keygroup.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255; parameter number 191.
---Needs a program (Create, Read or Find).
---@param KeyGroupIndex integer 0 to the count - 1; -1 all keygroups, -2 the selected ones
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoKGecho(KeyGroupIndex, NewValue) end

---Organ: reverb of the program.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGreverb(NewValue) end

---Organ: chorus of the program.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGchorus(NewValue) end

---Organ: echo of the program.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGecho(NewValue) end

---Organ: effect of the program.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGeffect(NewValue) end

---Organ: change of the attack.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGattack(NewValue) end

---Organ: change of the sustain.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGsustain(NewValue) end

---Organ: change of the release.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGrelease(NewValue) end

---Organ: change of the filter.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGfilter(NewValue) end

---Organ: whether what sounds is stopped before the program starts, 0 or 1.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGstop_before_run(NewValue) end

---Organ: value to which the reverb goes back.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGreverb_default(NewValue) end

---Organ: value to which the chorus goes back.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGchorus_default(NewValue) end

---Organ: value to which the echo goes back.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGecho_default(NewValue) end

---Organ: value to which the effect goes back.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as 0 to 255.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGeffect_default(NewValue) end

---Organ: value to which the change of the attack goes back.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGattack_default(NewValue) end

---Organ: value to which the change of the sustain goes back.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGsustain_default(NewValue) end

---Organ: value to which the change of the release goes back.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGrelease_default(NewValue) end

---Organ: value to which the change of the filter goes back.
---Gives the value; NewValue sets it, and the value before is given.
---Stored as -128 to 127.
---Needs a program (Create, Read or Find).
---@param NewValue? integer
---@return integer
function ZylSProgram:TolmoPRGfilter_default(NewValue) end

-- ---- With require "zyl" ----

---@class zyl.Zone one zone; has the methods that begin with KeyGroupIndex and ZoneIndex
---@field program ZylSProgram
---@field keygroup integer
---@field index integer
---@field [string] function

---@class zyl.Keygroup one keygroup; has the methods that begin with KeyGroupIndex
---@field program ZylSProgram
---@field index integer
---@field zone fun(self: zyl.Keygroup, index: integer): zyl.Zone
---@field zones fun(self: zyl.Keygroup): fun(): zyl.Zone?
---@field [string] function

---@class zyl.Wanted
---@field [integer] integer one of these keygroups
---@field key? integer its range holds the key
---@field keys? integer[] its range meets the keys from the first to the second
---@field sample? string a zone's sample has this in its name
---@field where? fun(keygroup: zyl.Keygroup): boolean
---@field all? boolean
---@field add? boolean keep those that are selected

local zyl = {}

---Loop over the keygroups: for kg in prg:keygroups() do ... end.
---@return fun(): zyl.Keygroup?
function ZylSProgram:keygroups() end

---Loop over the keygroups: for kg in prg:keygroups() do ... end.
---@param program ZylSProgram
---@return fun(): zyl.Keygroup?
function zyl.keygroups(program) end

---Loop over the zones of all keygroups: for zone in prg:zones() do ... end.
---@return fun(): zyl.Zone?
function ZylSProgram:zones() end

---Loop over the zones of all keygroups: for zone in prg:zones() do ... end.
---@param program ZylSProgram
---@return fun(): zyl.Zone?
function zyl.zones(program) end

---Select the keygroups that have everything that is asked for, and no others; gives their indexes.
---@param wanted zyl.Wanted indexes, key, keys, sample, where, all, add
---@return integer[]
function ZylSProgram:select(wanted) end

---Select the keygroups that have everything that is asked for, and no others; gives their indexes.
---@param program ZylSProgram
---@param wanted zyl.Wanted indexes, key, keys, sample, where, all, add
---@return integer[]
function zyl.select(program, wanted) end

---Call body(program) and give its results; when it fails, put the program back as it was and raise the error again.
---@param body fun(program: ZylSProgram): any
---@return any
function ZylSProgram:transaction(body) end

---Call body(program) and give its results; when it fails, put the program back as it was and raise the error again.
---@param program ZylSProgram
---@param body fun(program: ZylSProgram): any
---@return any
function zyl.transaction(program, body) end

---@class host
---@field null host.Null an object that is null
---@field sampleRate number the processing rate in Hz, to read and to set
---@field module string the path of the module's library
host = {}

---Make a script object of a class of the module.
---@param class "ZylSProgram" the name of the class
---@return ZylSProgram
function host.new(class) end

---Destroy an object that the script made, at once.
---@param object ROCAlgo|RODPad|host.Plain
function host.delete(object) end

---Add functions to the methods of a class, by name.
---@param class string
---@param methods table<string, function>
function host.extend(class, methods) end

---List the names of a class's methods in table order.
---@param class? string ZylSProgram without it
---@return string[]
function host.methods(class) end

---Give the type name of an object: "ROCAlgo", "CSample", "RODPad" and so on.
---@param object ROCAlgo|ROCPad|RODPad|CSample|host.Plain
---@return string
function host.typeof(object) end

---Make a plain object of that type name, for trying wrong arguments.
---@param typeName string
---@return host.Plain
function host.object(typeName) end

---Give bytes of a buffer whose handle a method gave, as SampleGetBuffer does.
---@param handle integer
---@param bytes integer
---@return string
function host.buffer(handle, bytes) end

---Give floats of a buffer whose handle a method gave, as SampleGetPitchData does.
---@param handle integer
---@param count integer
---@return number[]
function host.floats(handle, count) end

---Make a value that a method can change in place; its field `value` reads and sets it.
---@param value integer|number|boolean|string|table|host.Null|ROCAlgo|ROCPad|RODPad|CSample|host.Plain
---@return host.Var
function host.var(value) end

---Make an algorithm object whose script methods are the functions of the table.
---@param fields? table name, dispatch, and the methods by name
---@return host.Algo
function host.algo(fields) end

---Make a data pad that holds a byte string; its field `bytes` reads and sets it.
---@param bytes? string empty without it
---@return RODPad
function host.pad(bytes) end

---Deliver what other threads have sent to pads, and give how many calls were made.
---@param seconds? number how long to wait for the first one
---@return integer
function host.pump(seconds) end

---Give '; did you mean "NAME"?' with those of the names that come near, or an empty text.
---@param name string
---@param names string[]
---@return string
function host.suggestion(name, names) end

---Tell what a path leads to: "file", "folder" or "other", such as a pipe, which can block when it is opened. Gives nil and the reason where nothing is.
---@param path string
---@return string|nil
function host.fileType(path) end

---Make a file hold these bytes, whole: until then, and on any failure, it stays as it was. Gives true, or nil and the reason.
---@param path string
---@param bytes string
---@return boolean|nil
function host.writeFile(path, bytes) end

---List the presets of a SoundFont bank in file order, each with name, bank and program. Gives nil and the reason when the file is no whole bank.
---@param path string
---@return table[]|nil
function host.presets(path) end

---Make a keyboard picture with the children KBSelector, KBBKSel and KBBKSelClip.
---@param place? table x, y, width and height in pixels (0, 0, 378, 24)
---@return host.Graphic
function host.keyboard(place) end

---Make a list module: an algorithm with the method GetList and a list of these columns.
---@param form table name, rowHeight and columns
---@return host.Editor
function host.editor(form) end

---Draw graphic objects, lists and headings, one below the other.
---@param what host.Graphic|host.Editor|host.List|table one, or a list of them and of texts
---@param path string ends in .png or .svg
---@param options? table dark = true, scale = 2
function host.render(what, path, options) end

---Make a white picture to draw on; its method write makes the file.
---@param path string ends in .png or .svg
---@param size? table width = 640, height = 480 in pixels, scale = 1
---@return host.Picture
function host.picture(path, size) end

---Print help on a method, a function of host, or all methods with that part of a name.
---@param what? string|function
function help(what) end

return zyl
