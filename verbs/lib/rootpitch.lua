-- Finds the pitch of a recorded note from its pitch track and its sound.
--
-- The period is the median of the track's blocks that have one. If the fundamental is weak, or
-- outside the tracker's range, this is a multiple or a fraction of the true period. So the sound is
-- checked at some places where the track agrees with the median: the likeness of the sound to
-- itself at lag L,
--
--   s(L) = 2 sum x[j] x[j + L] / (sum x[j]^2 + sum x[j + L]^2)
--
-- is computed at the best lag near each multiple and fraction. The period is the shortest of these
-- with nearly the highest likeness. A parabola through s gives this lag more precisely than the
-- track, so steady notes are tuned by it. For other notes the median of the track is used, because
-- the places show only single moments.
local samples = require "samples"

local rootpitch = {}

local BLOCK, TAIL = 128, 32    -- frames per value of a track; values at its end that repeat one
local FACTORS = { 1 / 8, 1 / 6, 1 / 5, 1 / 4, 1 / 3, 1 / 2, 1, 2, 3, 4 }
local SEMITONE = 2 ^ (1 / 12)
local PLACES = { 0.15, 0.35, 0.55 }
local SHORT_PERIOD = 200       -- frames; longer periods are at most four true ones
local PERIOD_VALUES = 100      -- values that a period is reduced to by averaging
local LOWEST_HZ, HIGHEST_HZ = 16, 4700
local SURE_LIKENESS, SURE_SHARE, CERTAIN_LIKENESS = 0.6, 0.3, 0.95
local STEADY_CENTS = 8         -- spread of a steady note
local SMOOTHINGS = 3           -- passes of (1, 2, 1) / 4
local SHORT_FRAMES = 48        -- longest period searched if the track has none
local UNPACKED = 128           -- values unpacked at a time

-- The settings of the tracker for a note of any pitch and level: the gate is 40 dB below the level
-- of the sound.
function rootpitch.settings(program, sample)
  local bytes, format, width = samples.values(program, sample, 0)
  local frames = #bytes // width
  local sum, count = 0, 0
  for i = 0, frames - 1, math.max(frames // 500, 1) do
    local value = string.unpack(format, bytes, i * width + 1) / 2 ^ (8 * width - 1)
    sum, count = sum + value * value, count + 1
  end
  local gate = count > 0 and 1e-4 * sum / count or 0
  return { 2000, 25, 0, 10, math.min(math.max(gate, 1e-9), 1e-5) }
end

-- The percentile of a sorted list; `part` is 0 to 1.
function rootpitch.percentile(sorted, part)
  local place = 1 + part * (#sorted - 1)
  local below = math.floor(place)
  local low, high = sorted[below], sorted[math.min(below + 1, #sorted)]
  return low + (high - low) * (place - below)
end

-- `count` values from frame `first` on, each the mean of `step` frames. With a step of 1 the values
-- are smoothed instead, so that lags between two frames are found.
local function excerpt(sound, first, count, step)
  local values, frame, last = {}, first, first + count * step
  local sum, added = 0, 0
  local order, code = sound.format:sub(1, 1), sound.format:sub(2)
  local most = order .. code:rep(UNPACKED)
  while frame < last do
    local now = math.min(UNPACKED, last - frame)
    local read = { string.unpack(now == UNPACKED and most or order .. code:rep(now), sound.bytes,
                                 frame * sound.width + 1) }
    for i = 1, now do
      sum, added = sum + read[i], added + 1
      if added == step then
        values[#values + 1] = sum / step
        sum, added = 0, 0
      end
    end
    frame = frame + now
  end
  if step == 1 then
    for _ = 1, SMOOTHINGS do
      local before = values[1] or 0
      for i = 2, #values - 1 do
        local value = values[i]
        values[i] = 0.25 * (before + values[i + 1]) + 0.5 * value
        before = value
      end
    end
  end
  local mean = 0
  for _, value in ipairs(values) do mean = mean + value end
  mean = mean / math.max(#values, 1)
  for i, value in ipairs(values) do values[i] = value - mean end
  return values
end

-- Running sums of squares: element i is the sum before value i.
local function energies(x)
  local sums, sum = { 0 }, 0
  for i, value in ipairs(x) do
    sum = sum + value * value
    sums[i + 1] = sum
  end
  return sums
end

-- s(lag) over the first `length` values.
local function likeness(x, sums, lag, length)
  local cross = 0
  for j = 1, length do cross = cross + x[j] * x[j + lag] end
  local energy = sums[length + 1] + sums[length + lag + 1] - sums[lag + 1]
  return energy > 0 and 2 * cross / energy or 0
end

-- The lag with the highest likeness near `lag`, and that likeness; nil if the excerpt is too short.
local function peakNear(look, lag, reach)
  local x, sums, length = look.x, look.sums, look.length
  local from, to = math.max(math.floor(lag - reach), 2), math.ceil(lag + reach)
  if to + 1 + length > #x then return nil end
  local at, best = from, -1
  local known = {}
  for l = from, to do
    known[l] = likeness(x, sums, l, length)
    if known[l] > best then at, best = l, known[l] end
  end
  local below = known[at - 1] or likeness(x, sums, at - 1, length)
  local above = known[at + 1] or likeness(x, sums, at + 1, length)
  local bend = 2 * best - below - above
  local shift = bend > 0 and math.min(math.max((above - below) / (2 * bend), -1), 1) or 0
  return at + shift, best + (above - below) * shift / 4
end

-- The lag and likeness of each factor at one place, with the excerpt.
local function lookAt(sound, frame, period)
  local step = math.ceil(period / PERIOD_VALUES)
  local lag = period / step
  local length = math.max(math.ceil(2.2 * lag), 200)
  local count = math.min(length + math.ceil(4.3 * lag) + 8, (sound.frames - frame) // step)
  length = math.min(length, count - math.ceil(1.3 * lag) - 8)
  if length < lag then return nil end
  local x = excerpt(sound, frame, count, step)
  local look = { x = x, sums = energies(x), length = length, step = step, lags = {}, alike = {} }
  for i, factor in ipairs(FACTORS) do
    local wanted = lag * factor
    local hertz = sound.rate / (wanted * step)
    local likely = factor >= 1 / 4 or period < SHORT_PERIOD
    if likely and wanted >= 2.5 and hertz >= LOWEST_HZ and hertz <= HIGHEST_HZ then
      look.lags[i], look.alike[i] = peakNear(look, wanted, math.max(1.5, 0.012 * wanted))
    end
  end
  return look
end

-- The period in frames at one place from the lag of a factor, refined with later repetitions of the
-- period.
local function refined(look, i)
  local lag, times = look.lags[i], 1
  while times < 8 do
    local further = peakNear(look, 2 * times * lag, 1.5)
    if not further or math.abs(further / (2 * times * look.lags[i]) - 1) > 0.02 then break end
    times = 2 * times
    lag = further / times
  end
  return lag * look.step
end

-- The places to check: early and later blocks among those that agree with the median.
local function places(track, count, period)
  local agreeing = {}
  local least, most = period / SEMITONE, period * SEMITONE
  for i = 2, count do
    local value = track[i]
    if value < most and value > least then
      agreeing[#agreeing + 1] = i
    end
  end
  local list = {}
  for _, part in ipairs(PLACES) do
    local i = agreeing[math.floor(part * (#agreeing - 1)) + 1]
    if i and i ~= list[#list] then list[#list + 1] = i end
  end
  return list, #agreeing
end

-- The shortest period up to SHORT_FRAMES with which the sound repeats itself, or nil. Used if the
-- track has no period: the pitch may be above the tracker's range.
local function shortPeriod(sound, frame)
  local x = excerpt(sound, frame, math.min(SHORT_FRAMES * 12, sound.frames - frame), 1)
  local sums = energies(x)
  local best, at = 0.9, nil
  local length = #x - SHORT_FRAMES - 2
  for lag = math.max(sound.rate // HIGHEST_HZ, 4), length > 0 and SHORT_FRAMES or 0 do
    local alike = likeness(x, sums, lag, length)
    if alike > best + 0.02 then best, at = alike, lag elseif at and alike < best - 0.2 then break end
  end
  return at
end

local function median(list)
  table.sort(list)
  return rootpitch.percentile(list, 0.5)
end

-- The factor that the places agree on, its likeness, and the period at these places.
local function chosen(looks)
  local best, means = 0, {}
  for i in ipairs(FACTORS) do
    local sum = 0
    for _, look in ipairs(looks) do sum = sum + (look.alike[i] or -1) end
    means[i] = sum / #looks
    best = math.max(best, means[i])
  end
  for i, mean in ipairs(means) do
    if mean > 0 and 1 - mean <= 0.02 + 1.3 * (1 - best) then
      local periods = {}
      for j, look in ipairs(looks) do periods[j] = refined(look, i) end
      return FACTORS[i], mean, median(periods)
    end
  end
end

-- The pitch of a sample with that track: hertz, voiced (the share of the track that has a pitch),
-- spread in cents, and sure (whether the sound repeats well and steadily enough for the pitch to be
-- reliable). Returns nil and the reason if there is no pitch.
function rootpitch.of(program, sample, track)
  local rate, frames = program:SampleSampleRate(sample), program:SampleGetSize(sample)
  if rate <= 0 then return nil, "the file has no sample rate" end
  if frames < 4096 then return nil, ("%d frames are too few for a pitch"):format(frames) end
  local sounds = {}
  for channel = 1, math.min(program:SampleChannelCount(sample), 2) do
    local bytes, format, width = samples.values(program, sample, channel - 1)
    sounds[channel] = { bytes = bytes, format = format, width = width, frames = #bytes // width,
                        rate = rate }
  end
  local count = #track > 2 * TAIL and #track - TAIL or math.max(#track - 1, 1)
  local periods = {}
  for i = math.min(2, count), count do
    if track[i] > 0 then periods[#periods + 1] = track[i] end
  end
  local period, spread, at, agreeing
  if #periods > 0 then
    period = median(periods)
    spread = 600 * math.log(rootpitch.percentile(periods, 0.84)
                            / rootpitch.percentile(periods, 0.16), 2)
    at, agreeing = places(track, count, period)
  else
    at = { math.ceil(0.1 * count), math.ceil(0.2 * count), math.ceil(0.4 * count) }
    period = shortPeriod(sounds[1], (at[1] - 1) * BLOCK)
    if not period then return nil, "no pitch" end
    spread, agreeing = 0, 0
  end
  local looks = {}
  for _, sound in ipairs(sounds) do
    for _, block in ipairs(at) do
      looks[#looks + 1] = lookAt(sound, (block - 1) * BLOCK, period)
    end
  end
  local result = { voiced = #periods / count, spread = spread, sure = false }
  local factor, alike, steadyPeriod = 1, 0, nil
  if #looks > 0 then factor, alike, steadyPeriod = chosen(looks) end
  local middle = period * (factor or 1)
  local apart = steadyPeriod and 1200 * math.abs(math.log(steadyPeriod / middle, 2)) or 0
  if steadyPeriod and (spread < STEADY_CENTS or apart > 40) then middle = steadyPeriod end
  result.hertz = rate / middle
  result.alike = alike or 0
  result.sure = result.alike >= CERTAIN_LIKENESS
                or result.alike >= SURE_LIKENESS and agreeing >= SURE_SHARE * #periods
                   and #periods >= 0.1 * count
  return result
end

return rootpitch
