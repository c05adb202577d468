-- Finds loops that join well and have a steady sound.
--
-- Candidate ends are spread over the sustained part of the sound. For each end, lengths from the
-- longest possible down to the shortest are tried. If the sound has a pitch, lengths are whole
-- numbers of periods and the start is searched over one period around them; otherwise over a fixed
-- time. This range is split, and each part gives one candidate:
--
--   FindStart in the part, FindEnd around the end for this start, then FindStart again nearby
--
-- The search uses 16-bit copies of the channels, because the rating depends on the scale of the
-- values. A candidate is rated by its worst channel, and ranked by
--
--   cost = (1 - quality) / peak + (1 - likeness) / 2 + |step| / 100 + octaves / 50
--
-- where peak is the highest level in the sound (1 is full scale), so that quiet sounds are not
-- favoured; likeness is the correlation of the sound before the start with the sound before the
-- end; step is the difference of their levels in dB; and octaves is how far the loop is below one
-- second. Of candidates near each other only the best is kept.
--
-- The rating compares the start with the frame at the end: in a perfect loop both are the same
-- point of the wave. So a loop is rated up to the frame at which it closes, and its last frame is
-- the one before; otherwise that point of the wave would be played twice.
local samples = require "samples"

local loopsearch = {}

local ENDS, LENGTHS, PARTS = 8, 7, 4
local LENGTH_RATIO = 0.62       -- of successive lengths
local LEVEL_BLOCK, LEVEL_STRIDE = 512, 8
local ATTACK_LEVEL, SUSTAIN_LEVEL = 0.5, 0.1  -- of the loudest block
local LIKENESS_SECONDS, MOST_LOOKS = 0.02, 512
local FULL = samples.FULL

-- 16-bit copies of the channels with one loop each.
local function copies(program, path, channels, frames)
  local list = {}
  for c = 0, channels - 1 do
    local channel = program:ReadTempSample(path, c)
    if not channel then error("channel " .. c .. " cannot be read", 0) end
    local copy = program:CreateTempSample("/zyl loops/copy " .. c .. ".wav", c)
    program:SampleCopyFrom(copy, channel, 0, frames - 1)
    program:DeleteTempSample(channel)
    if program:SampleBits(copy) ~= 16 then program:SampleBits(copy, 16) end
    program:SampleLoopCount(copy, 1)
    list[c + 1] = { sample = copy, bytes = samples.values(program, copy, 0) }
  end
  return list
end

-- The RMS level of each block of all channels, and the peak; both computed from every 8th frame,
-- with a full scale of 1.
local function levels(channels, frames)
  local list, peak = {}, 0
  for block = 0, frames // LEVEL_BLOCK - 1 do
    local sum = 0
    for _, channel in ipairs(channels) do
      for i = block * LEVEL_BLOCK, (block + 1) * LEVEL_BLOCK - 1, LEVEL_STRIDE do
        local value = string.unpack("<i2", channel.bytes, 2 * i + 1)
        sum = sum + value * value
        if value > peak then peak = value elseif -value > peak then peak = -value end
      end
    end
    list[block + 1] = math.sqrt(sum * LEVEL_STRIDE / LEVEL_BLOCK / #channels) / 32768
  end
  return list, peak / 32768
end

-- First and last frame of the sustained part.
local function sustained(list, frames, shortest)
  local most = 0
  for _, level in ipairs(list) do most = math.max(most, level) end
  local first, last = 1, frames - 1
  for block, level in ipairs(list) do
    if level >= ATTACK_LEVEL * most then
      first = math.max(1, (block - 1) * LEVEL_BLOCK)
      break
    end
  end
  for block = #list, 1, -1 do
    if list[block] >= SUSTAIN_LEVEL * most then
      last = math.min(frames - 1, block * LEVEL_BLOCK)
      break
    end
  end
  if last - first < 2 * shortest then return 1, frames - 1 end
  return first, last
end

-- The median period of a track between two frames; nil if most values have none.
local function periodOf(track, first, last)
  local list, blocks = {}, 0
  for i = first // 128 + 1, math.min(last // 128 + 1, #track - 1) do
    blocks = blocks + 1
    if track[i] > 0 then list[#list + 1] = track[i] end
  end
  if 2 * #list <= blocks then return nil end
  table.sort(list)
  return list[#list // 2 + 1]
end

-- The correlation of the sections before two frames (1: the same wave), and by how many dB the
-- first is louder; of the worst channel.
local function compare(channels, start, close, stretch)
  stretch = math.min(stretch, start)
  local step = math.max(stretch // MOST_LOOKS, 1)
  local likeness, loudest = 1, 0
  for _, channel in ipairs(channels) do
    local aa, ab, bb = 0, 0, 0
    for i = 1, stretch, step do
      local a = string.unpack("<i2", channel.bytes, 2 * (start - i) + 1)
      local b = string.unpack("<i2", channel.bytes, 2 * (close - i) + 1)
      aa, ab, bb = aa + a * a, ab + a * b, bb + b * b
    end
    if aa > 0 and bb > 0 then
      likeness = math.min(likeness, ab / math.sqrt(aa * bb))
      local decibels = 10 * math.log(aa / bb, 10)
      if math.abs(decibels) > math.abs(loudest) then loudest = decibels end
    elseif aa ~= bb then
      likeness, loudest = math.min(likeness, 0), 96
    end
  end
  return likeness, loudest
end

local Search = {}
Search.__index = Search

function Search:qualityAt(channel, start, close)
  self.program:SampleLoopStart(channel.sample, 0, start)
  self.program:SampleLoopEnd(channel.sample, 0, close)
  return self.program:SampleLoopQual(channel.sample, 0)
end

-- Searches the best start from `low` up to `high` for a loop that closes near `close`.
function Search:candidate(channel, low, high, close)
  local program, sample = self.program, channel.sample
  low, high = math.max(low, 1), math.min(high, close - self.shortest + 1)
  if low >= high then return end
  self:qualityAt(channel, low, close)
  local start = program:SampleLoopFindStart(sample, 0, low, high, 0)
  local half = self.reach // 2
  close = program:SampleLoopFindEnd(sample, 0, math.max(close - half, start + self.shortest),
                                    math.min(close + half, self.frames),
                                    program:SampleLoopQual(sample, 0))
  start = program:SampleLoopFindStart(sample, 0, math.max(start - 32, 1),
                                      math.min(start + 32, close - self.shortest + 1),
                                      program:SampleLoopQual(sample, 0))
  self:rate(start, close)
end

function Search:rate(start, close)
  if self.seen[start .. ":" .. close] or close - start < self.shortest then return end
  self.seen[start .. ":" .. close] = true
  local rating = FULL
  for _, channel in ipairs(self.channels) do
    rating = math.min(rating, self:qualityAt(channel, start, close))
  end
  local quality = rating / FULL
  local likeness, decibels = compare(self.channels, start, close, self.stretch)
  local octaves = math.max(math.log(self.rateHz / (close - start), 2), 0)
  self.found[#self.found + 1] = {
    first = start, last = close - 1, length = close - start, rating = rating, quality = quality,
    likeness = likeness, decibels = decibels,
    cost = (1 - quality) / math.max(self.peak, 1e-4) + (1 - likeness) / 2
           + math.abs(decibels) / 100 + octaves / 50,
  }
end

-- Rates the candidates for a loop that closes near `close`.
function Search:near(channel, close)
  local length = close - self.first
  for _ = 1, LENGTHS do
    local want = math.floor(length)
    if self.period then
      want = math.floor(math.max(length // self.period, 1) * self.period + 0.5)
    end
    if want < self.shortest then
      want = self.period and math.ceil(math.ceil(self.shortest / self.period) * self.period)
             or self.shortest
    end
    local middle = close - want
    local part = 2 * self.reach // PARTS + 1
    for k = 0, PARTS - 1 do
      local low = middle - self.reach + k * part
      self:candidate(channel, low, low + part, close)
    end
    if want <= self.shortest then break end
    length = length * LENGTH_RATIO
  end
end

-- The candidates, best first; of those near each other only the best.
function Search:ranked(most)
  table.sort(self.found, function(a, b)
    if a.cost ~= b.cost then return a.cost < b.cost end
    if a.first ~= b.first then return a.first < b.first end
    return a.last < b.last
  end)
  local near = math.max(2 * self.reach, self.rateHz // 50)
  local kept = {}
  for _, loop in ipairs(self.found) do
    local apart = true
    for _, better in ipairs(kept) do
      if math.abs(loop.first - better.first) < near and math.abs(loop.last - better.last) < near then
        apart = false
        break
      end
    end
    if apart then kept[#kept + 1] = loop end
    if #kept == most then break end
  end
  return kept
end

-- Finds the loops of a sample, best first: first and last frame, length, rating (SampleLoopQual up
-- to the frame after the last one), quality (rating / 2147483647), likeness and decibels. Also
-- returns the best quality of all candidates. `track` is the sample's pitch track. wanted: shortest
-- (in frames; nil for 0.2 s, or less in short sounds), most (number of loops), accepts(quality).
function loopsearch.find(program, path, sample, track, wanted)
  local frames, rateHz = program:SampleGetSize(sample), program:SampleSampleRate(sample)
  if frames < 64 then error(frames .. " frames are too few", 0) end
  local channels = copies(program, path, program:SampleChannelCount(sample), frames)
  local list, peak = levels(channels, frames)
  if frames // LEVEL_BLOCK > 0 and peak == 0 then error("silence", 0) end
  local shortest = wanted.shortest or math.min(rateHz // 5, frames // 6)
  shortest = math.max(shortest, 21)
  if shortest > frames - 2 then error("the sound is shorter than the minimum loop length", 0) end
  local first, last = sustained(list, frames, shortest)
  local period = periodOf(track, first, last)
  local search = setmetatable({
    program = program, channels = channels, frames = frames, rateHz = math.max(rateHz, 1),
    shortest = shortest, first = first, peak = peak > 0 and peak or 1, period = period,
    reach = math.ceil(period and 0.6 * period or math.min(shortest / 2, 0.02 * rateHz)),
    stretch = math.ceil(math.max(LIKENESS_SECONDS * rateHz, 2 * (period or 0))),
    found = {}, seen = {},
  }, Search)
  for k = 1, ENDS do
    local close = first + shortest + (last - first - shortest) * k // ENDS
    search:near(channels[(k - 1) % #channels + 1], math.min(close, frames - 1))
  end
  for _, channel in ipairs(channels) do program:DeleteTempSample(channel.sample) end
  local good = {}
  for _, loop in ipairs(search.found) do
    search.best = math.max(search.best or 0, loop.quality)
    if wanted.accepts(loop.quality) then good[#good + 1] = loop end
  end
  search.found = good
  return search:ranked(wanted.most), search.best
end

return loopsearch
