-- The recordings that zyl map places: reading their formats and measuring their pitch.
--
-- A batch has the fields
--   program   a program object, for the sample methods
--   list      the recordings, in the order of the files
--   ways      the ways to read columns of numbers in the names (see numbercolumns.lua)
--   a4        the frequency of key 69 in Hz
-- and a recording the fields
--   path, index, name    name as parsed by filenames.read
--   failure              why the file cannot be used
--   right, isRight       the right half of a left one, and whether it is one; both are mono files,
--                        joined after they are opened
--   known, chunk, fileNote, rate, frames, channels
--                        set when the file is opened: the root key in the file, and the note at
--                        which the file plays at its original pitch
--   loudness             in LUFS, set when it is measured
--   measured, pitch, noPitch, uncertainPitch
--                        set when the pitch is measured: a note, or why there is none; a note that
--                        is uncertain
local audio = require "zyl.audio"
local cli = require "cli"
local filenames = require "filenames"
local notes = require "notes"
local progress = require "progress"
local samples = require "samples"
local soundfile = require "soundfile"

local recordings = {}

local SAME_LENGTH = 0.9    -- the halves of a stereo recording have lengths at least in this ratio

function recordings.batch(paths, a4)
  local batch = { program = host.new("ZylSProgram"), list = {}, a4 = a4 }
  local names
  names, batch.ways = filenames.read(paths)
  for i, path in ipairs(paths) do
    batch.list[i] = { path = path, name = names[i], index = i }
  end
  return batch
end

function recordings.fail(it, reason)
  it.failure = reason
  cli.failed(it.path, reason)
end

-- Reads key, tuning and format of an open sample.
local function take(batch, it, sample, found)
  if it.known then return end
  local program = batch.program
  local key = program:Samplekey(sample)
  it.fileNote = key + program:Sampletune(sample) / 256
  it.rate, it.frames = program:SampleSampleRate(sample), program:SampleGetSize(sample)
  it.channels = program:SampleChannelCount(sample)
  -- Programs that do not know the root key write 0 with their loops.
  if soundfile.hasKey(found) and key > 0 and key <= 127 then it.chunk = key end
  it.known = true
end

-- Opens the recordings for which isWanted(recording) is true; calls use(recording, sample).
local function visit(batch, isWanted, use)
  for i, it in ipairs(batch.list) do
    if isWanted(it) and not it.failure then
      progress.show((i - 1) / #batch.list, it.path)
      local sample, found = cli.try(samples.open, batch.program, it.path)
      if sample then
        take(batch, it, sample, found)
        local _, reason = cli.try(use, it, sample)
        samples.close(batch.program, sample)
        if reason then recordings.fail(it, reason) end
      else
        recordings.fail(it, found)
      end
    end
  end
end

local function areHalves(left, right)
  return left.channels == 1 and right.channels == 1 and left.rate == right.rate
         and math.min(left.frames, right.frames) >= SAME_LENGTH * math.max(left.frames, right.frames)
end

-- Opens all recordings that have not been opened, and joins those whose names mark them as left and
-- right.
function recordings.open(batch)
  visit(batch, function(it) return not it.known end, function() end)
  for _, it in ipairs(batch.list) do
    local right = batch.list[it.name.right]
    local isReadable = right and not it.failure and not right.failure
    if isReadable and areHalves(it, right) then
      it.right, right.isRight = right, true
    elseif isReadable then
      cli.note(it.path, "not joined with " .. right.path
               .. ": they are not mono files of the same rate and about the same length")
    end
  end
end

-- Separates the halves of which one could not be read.
function recordings.separate(batch)
  for _, it in ipairs(batch.list) do
    if it.right and (it.failure or it.right.failure) then it.right.isRight, it.right = nil, nil end
  end
end

-- Measures the loudness of the recordings in the set `wanted` that have not been measured.
function recordings.measureLoudness(batch, wanted)
  visit(batch, function(it) return wanted[it] and not it.loudness end, function(it, sample)
    it.loudness = audio.sound(batch.program, sample):loudness()
  end)
end

-- Measures the pitch of the recordings in the set `wanted` that have not been measured.
function recordings.measure(batch, wanted)
  local program, paths, items = batch.program, {}, {}
  for _, it in ipairs(batch.list) do
    if wanted[it] and not it.measured and not it.failure then
      paths[#paths + 1], items[#items + 1] = it.path, it
    end
  end
  if #paths == 0 then return end
  samples.tracks(program, paths, nil, {
    shown = progress.show,
    failed = function(index, reason) recordings.fail(items[index], reason) end,
    done = function(index, sample, track, found, sound)
      local it = items[index]
      take(batch, it, sample, found)
      it.measured = true
      -- Spares opening the file again.
      if not it.name.layer then it.loudness = sound:loudness() end
      local result, reason = sound:root(track)
      if not result or not result.sure then
        it.noPitch = reason or "no steady pitch"
        it.uncertainPitch = result and notes.fromHertz(result.hertz, batch.a4)
      else
        it.pitch = notes.fromHertz(result.hertz, batch.a4)
      end
    end,
  })
end

return recordings
