-- Finds the notes in a recording of many, and makes samples of them.
--
-- A slice is { first, last (frames), cut (the note still sounds at `last`) }, and with a song also
-- { key, velocity }.
local slicing = {}

local FADE_SECONDS = 0.008      -- of notes that are cut
local REACH_SECONDS = 0.015     -- between a note and its place in the grid or song
local MATCH_SECONDS = 0.15      -- the same, until the song is aligned
local TRIED = 8                 -- first notes and onsets that are tried to align the song
local TOGETHER_SECONDS = 0.05   -- notes of a chord

-- The notes of a song (see midi.lua) that begin alone or first in a chord, and the number of others.
function slicing.separate(song)
  local list, others = {}, 0
  for _, note in ipairs(song) do
    if #list > 0 and note.time < list[#list].time + TOGETHER_SECONDS then
      others = others + 1
    else
      list[#list + 1] = note
    end
  end
  return list, others
end

-- The differences between onsets (seconds) and the times of the song plus `offset`, of the notes with
-- an onset nearby.
local function deviations(onsets, song, offset)
  local list, at = {}, 1
  for _, note in ipairs(song) do
    local time = note.time + offset
    while onsets[at + 1] and math.abs(onsets[at + 1] - time) <= math.abs(onsets[at] - time) do at = at + 1 end
    if math.abs(onsets[at] - time) <= MATCH_SECONDS then list[#list + 1] = onsets[at] - time end
  end
  return list
end

-- When the song begins in the recording, in seconds. The first note and the first onset coincide,
-- unless another pair of the first ones matches more notes.
local function align(onsets, song)
  local best, offset = {}, 0
  for k = 1, math.min(TRIED, #song) do
    for j = 1, math.min(TRIED, #onsets) do
      local matched = deviations(onsets, song, onsets[j] - song[k].time)
      if #matched > #best then best, offset = matched, onsets[j] - song[k].time end
    end
  end
  if 2 * #best < #song then
    error(("only %d of the %d notes of the song begin where it has them; see --from"):format(#best, #song), 0)
  end
  -- Slow notes are found late, so early ones decide, but a few are found too early.
  table.sort(best)
  return offset + best[(#best + 3) // 4]
end

local function firstOnset(sound)
  local notes = sound:notes()
  return notes[1] and notes[1].onset or error("no note found", 0)
end

-- The frames where notes are expected, by grid or song.
local function places(sound, rate, how)
  local list = {}
  if how.grid then
    local first = how.from and how.from * rate or firstOnset(sound)
    local most = how.count or math.huge
    while #list < most and first + #list * how.grid * rate < sound:frames() do
      list[#list + 1] = math.floor(first + #list * how.grid * rate + 0.5)
    end
    return list
  end
  local offset = how.from and how.from - how.song[1].time
  if not offset then
    local onsets = {}
    for i, note in ipairs(sound:notes()) do onsets[i] = note.onset / rate end
    offset = align(onsets, how.song)
  end
  for i, note in ipairs(how.song) do
    local frame = (note.time + offset) * rate
    if frame >= sound:frames() then break end
    list[i] = math.max(math.floor(frame + 0.5), 0)
  end
  return list
end

-- Finds the notes. `how` has the fields grid and from (seconds), song, count, rise and shortest (see
-- sound:notes), all optional. Returns the slices; raises an error if they do not match.
function slicing.find(sound, rate, how)
  local slices
  if how.grid or how.song then
    local reach = math.min(REACH_SECONDS, how.grid and how.grid / 4 or 1) * rate
    slices = sound:notes { places = places(sound, rate, how), reach = math.floor(reach) }
  else
    slices = sound:notes { count = how.count, rise = how.rise, shortest = how.shortest }
  end
  if #slices == 0 then error("no note found", 0) end
  if how.count and #slices < how.count then
    error(("%d notes found, not %d"):format(#slices, how.count), 0)
  end
  for _, slice in ipairs(slices) do
    local note = how.song and how.song[slice.place]
    if note then slice.key, slice.velocity = note.key, note.velocity end
  end
  return slices
end

-- Fades out the last frames of a channel.
local function fade(program, sample, last, rate)
  local frames = math.min(math.floor(FADE_SECONDS * rate), last)
  for i = 1, frames - 1 do
    program:SampleMultiplyValues(sample, last - i, last - i + 1, i / frames)
  end
  program:SampleValue(sample, last, 0)
end

-- Creates a sample with the sound of a slice: that of the recording, but notes that are cut fade out.
function slicing.sample(program, recording, slice, path)
  local sample = program:CreateTempSample(path, 0)
  local channels, rate = program:SampleChannelCount(recording), program:SampleSampleRate(recording)
  local last = slice.last - slice.first
  if sample then program:SampleChannelCount(sample, channels) end
  for channel = 0, channels - 1 do
    if sample then program:SampleChannel(sample, channel) end
    if not sample or not program:SampleCopyFrom(sample, recording, slice.first, slice.last) then
      error(path .. ": the sample could not be created", 0)
    end
    if slice.cut then fade(program, sample, last, rate) end
  end
  program:SampleChannel(sample, 0)
  program:SampleSampleRate(sample, rate)
  program:SampleStart(sample, 0)
  program:SampleEnd(sample, last)
  return sample
end

return slicing
