-- Reads the notes of a standard MIDI file of format 0 or 1.
local disk = require "disk"

local midi = {}

local MOST_BYTES, MOST_EVENTS = 16 << 20, 200000
local DEFAULT_TEMPO = 500000            -- microseconds per quarter note
local DATA_BYTES = { [0x80] = 2, [0x90] = 2, [0xA0] = 2, [0xB0] = 2, [0xC0] = 1, [0xD0] = 1, [0xE0] = 2 }
local META, TEMPO, END_OF_TRACK = 0xFF, 0x51, 0x2F
local SYSEX, ESCAPE = 0xF0, 0xF7

-- A reader of bytes that raises an error at the end of the track.
local function reader(data, what)
  local at = 1
  local self = {}
  function self.more() return at <= #data end
  function self.bytes(count)
    if count > #data - at + 1 then error(what .. " is truncated", 0) end
    at = at + count
    return data:sub(at - count, at - 1)
  end
  function self.byte() return self.bytes(1):byte() end
  function self.variable()
    local value = 0
    for _ = 1, 4 do
      local byte = self.byte()
      value = value << 7 | byte & 0x7F
      if byte < 0x80 then return value end
    end
    error(what .. " has a number of more than four bytes", 0)
  end
  return self
end

-- Adds the tempos and notes of a track to `events`: { tick, tempo } or { tick, key, velocity }.
local function readTrack(data, number, events)
  local what = "track " .. number
  local track, tick, status = reader(data, what), 0, nil
  while track.more() do
    if #events > MOST_EVENTS then error(("has more than %d notes"):format(MOST_EVENTS), 0) end
    tick = tick + track.variable()
    local byte = track.byte()
    if byte == META then
      local type = track.byte()
      local content = track.bytes(track.variable())
      if type == END_OF_TRACK then return end
      if type == TEMPO then
        if #content ~= 3 or content == "\0\0\0" then error(what .. " has an invalid tempo", 0) end
        events[#events + 1] = { tick = tick, tempo = string.unpack(">I3", content) }
      end
    elseif byte == SYSEX or byte == ESCAPE then
      track.bytes(track.variable())
    else
      local first = byte < 0x80 and byte or nil
      if not first then status = byte end
      local count = status and DATA_BYTES[status & 0xF0]
      if not count then error(what .. " has an invalid event", 0) end
      first = first or track.byte()
      local second = count == 2 and track.byte() or 0
      if first >= 0x80 or second >= 0x80 then error(what .. " has an invalid event", 0) end
      if status & 0xF0 == 0x90 and second > 0 then
        events[#events + 1] = { tick = tick, key = first, velocity = second }
      end
    end
  end
end

-- Seconds per tick at a tempo.
local function tickLength(division)
  if division & 0x8000 == 0 then
    if division == 0 then error("the header has no division", 0) end
    return function(tempo) return tempo / 1e6 / division end
  end
  local rate, ticks = 256 - (division >> 8), division & 0xFF
  if rate == 29 then rate = 30000 / 1001 end  -- drop frame
  if ticks == 0 then error("the header has no division", 0) end
  return function() return 1 / (rate * ticks) end
end

-- Parses the content of a file. Returns the notes in order of time, then of key:
-- { time (seconds), key, velocity }. Raises an error if it is damaged.
function midi.parse(data)
  if data:sub(1, 4) ~= "MThd" or #data < 14 then error("is not a standard MIDI file", 0) end
  local length, format, _, division = string.unpack(">I4I2I2I2", data, 5)
  if format > 1 then error(("MIDI files of format %d are not supported"):format(format), 0) end
  local secondsPerTick = tickLength(division)
  local events, at, tracks = {}, 9 + length, 0
  while at + 7 <= #data do
    local id, size = string.unpack(">c4I4", data, at)
    if id == "MTrk" then
      tracks = tracks + 1
      if at + 7 + size > #data then error(("track %d is truncated"):format(tracks), 0) end
      readTrack(data:sub(at + 8, at + 7 + size), tracks, events)
    end
    at = at + 8 + size
  end
  for i, it in ipairs(events) do it.order = i end
  -- A tempo applies to the notes of its tick.
  table.sort(events, function(a, b)
    if a.tick ~= b.tick then return a.tick < b.tick end
    if (a.tempo == nil) ~= (b.tempo == nil) then return a.tempo ~= nil end
    if a.tempo or a.key == b.key then return a.order < b.order end
    return a.key < b.key
  end)
  local list, tempo, time, tick = {}, DEFAULT_TEMPO, 0, 0
  for _, it in ipairs(events) do
    time, tick = time + (it.tick - tick) * secondsPerTick(tempo), it.tick
    if it.tempo then
      tempo = it.tempo
    else
      list[#list + 1] = { time = time, key = it.key, velocity = it.velocity }
    end
  end
  return list
end

-- The content of a file. Raises an error if it cannot be read.
function midi.read(path)
  local file, reason = disk.open(path)
  if not file then error(reason, 0) end
  local data = file:read(MOST_BYTES + 1) or ""
  file:close()
  if #data > MOST_BYTES then error(("has more than %d MB"):format(MOST_BYTES >> 20), 0) end
  return data
end

-- The notes of a file. Raises an error if it cannot be read.
function midi.notes(path) return midi.parse(midi.read(path)) end

return midi
