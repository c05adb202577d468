-- Converts an open sample: channels, trim, rate, level, fades, width, in this order.
local audio = require "zyl.audio"
local cli = require "cli"

local conversion = {}

local FRACTIONS = 4294967296          -- steps of a loop's fraction per frame
local UNTIL_RELEASE = 1               -- the last playback type in which loops play
local SMALLEST_GAIN = 0.01            -- dB; smaller changes are not made
local HEARD_CENTS = 1                 -- detuning that is reported
conversion.TRIM, conversion.LEVELS = -60, { peak = -1, loudness = -18 }  -- default levels in dB

local function round(x) return math.floor(x + 0.5) end

-- The positions of frames after trimming and resampling.
local function mapping(cut, from, to, frames)
  local function scaled(count) return count * to / from end
  local function limited(frame) return math.min(math.max(frame, 0), frames - 1) end
  local map = {}
  function map.marker(frame) return math.min(math.max(round(scaled(frame - cut)), 0), frames) end
  function map.first(frame) return limited(round(scaled(frame - cut))) end
  function map.last(frame) return limited(round(scaled(frame + 1 - cut)) - 1) end
  -- Rounds the start and keeps the exact length, with its fraction: this preserves the pitch of a short
  -- loop and the seam of a long one.
  function map.loop(loop)
    local steps = round(scaled(loop.last - loop.first + 1 + loop.fraction) % 1 * FRACTIONS)
    local length = math.floor(scaled(loop.last - loop.first + 1 + loop.fraction)) + steps // FRACTIONS
    length = math.min(math.max(length, 1), frames)
    local first = math.min(map.first(loop.first), frames - length)
    return { first = first, last = first + length - 1, fraction = steps % FRACTIONS / FRACTIONS, times = loop.times }
  end
  return map
end

local function mono(done, wanted, path)
  local count = done.sound:channels()
  if not wanted or count < 2 then return end
  if count > 2 and wanted ~= "mix" then cli.note(path, ("%d channels: the first two are left and right"):format(count)) end
  done.sound = done.sound:mono(({ left = 0, right = 1 })[wanted])
end

-- Cuts off silence, but no part of a loop.
local function trim(done, level, it, path)
  local first, last = done.sound:sounding(level)
  if not first then return cli.note(path, "silence: not trimmed") end
  for _, loop in ipairs(it.loops) do
    first, last = math.min(first, loop.first), math.max(last, loop.last)
  end
  first, last = math.max(first, 0), math.min(last, it.frames - 1)
  done.cutStart, done.cutEnd = first, it.frames - 1 - last
  if first > 0 or last < it.frames - 1 then done.sound = done.sound:copy(first, last) end
end

-- The loop that starts with the first frame or ends with the last one.
local function edgeLoop(it, cut, frames)
  for _, loop in ipairs(it.playback <= UNTIL_RELEASE and it.loops or {}) do
    local first, last = loop.first - cut, loop.last - cut
    if 0 <= first and first <= last and last < frames and (first == 0 or last == frames - 1) then
      return first, last
    end
  end
end

local function resample(done, rate, it)
  if it.rate <= 0 then error("the file has no sample rate", 0) end
  if rate == it.rate then return end
  done.sound = done.sound:resample(rate, edgeLoop(it, done.cutStart, done.sound:frames()))
  if done.sound:frames() == 0 then error("no frame would be left", 0) end
  done.rate = rate
end

local function normalize(done, wanted, level, path)
  local peak = done.sound:peak()
  if peak == -math.huge then return cli.note(path, "silence: not normalized") end
  local step = 2.0 ^ (1 - done.bits)
  local most = 20 * math.log(1 - step, 10) - peak  -- gain up to full scale
  local now = wanted == "peak" and peak or done.sound:loudness()
  local gain = level - now
  if gain > most then
    if wanted == "loudness" and gain > most + SMALLEST_GAIN then
      cli.note(path, ("%g LUFS would clip: normalized to %.1f LUFS"):format(level, now + most))
    end
    gain = most
  end
  -- Rounding to the width changes the peak by up to one and a half steps.
  if math.abs(gain) <= math.max(SMALLEST_GAIN, 20 * math.log(1 + 1.5 * step / 10 ^ (peak / 20), 10)) then return end
  done.sound:scale(gain)
  done.gain = gain
end

-- Fades at the ends of the range that is played, outside the loops that play.
local function fade(done, options, it, path)
  local whole = done.last - done.first + 1
  local before, after = whole, whole
  for _, loop in ipairs(it.playback <= UNTIL_RELEASE and done.loops or {}) do
    before = math.min(before, math.max(loop.first - done.first, 0))
    after = math.min(after, math.max(done.last - loop.last, 0))
  end
  local function frames(name, room)
    local wanted = math.min(round((options[name] or 0) / 1000 * done.rate), whole)
    if wanted <= room then return wanted end
    cli.note(path, ("--%s %s: a loop plays there"):format(name, room == 0 and "left out"
             or ("shortened to %.1f ms"):format(1000 * room / done.rate)))
    return room
  end
  done.fadeIn, done.fadeOut = frames("fade-in", before), frames("fade-out", after)
  if done.fadeIn > 0 then done.sound:fadeIn(done.first, done.first + done.fadeIn - 1) end
  if done.fadeOut > 0 then done.sound:fadeOut(done.last - done.fadeOut + 1, done.last) end
end

-- Some players ignore the fraction of a loop.
local function noteDetuned(loop, it, number, path)
  local cents = 1200 * math.log(1 + loop.fraction / (loop.last - loop.first + 1), 2)
  if cents > HEARD_CENTS and loop.fraction ~= it.loops[number].fraction then
    cli.note(path, ("loop %d is %.1f ct sharp in players that ignore its fraction of a frame"):format(number, cents))
  end
end

-- Converts the sound of an open sample, whose facts are `it`, in memory. Returns sound, rate, bits,
-- channels, frames, first, last, loops, marker (a function that moves a frame), cutStart, cutEnd, fadeIn
-- and fadeOut (frames), gain (dB), and changed.
function conversion.of(program, sample, it, options, path)
  local done = { sound = audio.sound(program, sample), rate = it.rate, bits = options.bits or it.bits,
                 cutStart = 0, cutEnd = 0, gain = 0, fadeIn = 0, fadeOut = 0 }
  if it.frames == 0 then error("the file has no sound", 0) end
  mono(done, options.mono, path)
  if options.trim then trim(done, options.trimLevel or conversion.TRIM, it, path) end
  if options.rate then resample(done, options.rate, it) end
  if options.normalize then
    normalize(done, options.normalize, options.level or conversion.LEVELS[options.normalize], path)
  end
  done.frames, done.channels = done.sound:frames(), done.sound:channels()
  local map = mapping(done.cutStart, it.rate, done.rate, done.frames)
  done.marker, done.first, done.last, done.loops = map.marker, map.first(it.first), map.last(it.last), {}
  for i, loop in ipairs(it.loops) do
    done.loops[i] = map.loop(loop)
    noteDetuned(done.loops[i], it, i, path)
  end
  if done.first <= done.last then fade(done, options, it, path) end
  done.moved = done.cutStart > 0 or done.cutEnd > 0 or done.rate ~= it.rate
  done.changed = done.moved or done.channels ~= it.channels or done.bits ~= it.bits or done.gain ~= 0
                 or done.fadeIn > 0 or done.fadeOut > 0
  return done
end

-- Stores the result in the sample. Returns the number of clipped values.
function conversion.store(program, sample, done, dither)
  local image, clipped = done.sound:wave(done.bits, dither)
  local new = program:ReadSampleFromPad(host.pad(image), "converted.wav")
  if not new or not program:SampleCopyFrom(sample, new, 0, done.frames - 1) then
    error("the sound could not be stored", 0)
  end
  program:DeleteTempSample(new)
  program:SampleChannelCount(sample, done.channels)
  program:SampleBits(sample, done.bits)
  program:SampleSampleRate(sample, done.rate)
  if done.moved then
    program:SampleStart(sample, done.first)
    program:SampleEnd(sample, done.last)
    for i, loop in ipairs(done.loops) do
      program:SampleLoopStart(sample, i - 1, loop.first)
      program:SampleLoopEnd(sample, i - 1, loop.last)
      program:SampleLoopFineLen(sample, i - 1, loop.fraction * FRACTIONS)
    end
  end
  return clipped
end

return conversion
