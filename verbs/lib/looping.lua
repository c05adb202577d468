-- Loops of sample files: the best ones of a sound, with a crossfade where they click, and storing
-- one in the file. Quality is the negated seam in dB: 0 if the jump is like any other moment of the
-- sound, below CLICKS if it is heard (docs/script-host.md, signal analysis).
local looping = { CLICKS = -3 }

local NO_LOOP, LOOP = 2, 0  -- playback types

local function withQuality(loops)
  for _, loop in ipairs(loops) do loop.quality = -loop.seam end
  return loops
end

-- The best loops of a sound, best first: tables as of sound:loops with quality. wanted: shortest
-- (frames or nil), period (frames, nil if there is no pitch), most, crossfade (frames or nil), all
-- (crossfade every loop). The loops are crossfaded if the best of them would click otherwise; such
-- loops have `crossfade` (frames), and quality is that after it.
function looping.find(sound, wanted)
  local search = { shortest = wanted.shortest, period = wanted.period, most = wanted.most }
  local loops = withQuality(sound:loops(search))
  local clicks = #loops > 0 and loops[1].quality < looping.CLICKS
  if not wanted.crossfade or not wanted.all and not clicks then return loops end
  search.crossfade = wanted.crossfade
  loops = withQuality(sound:loops(search))
  for _, loop in ipairs(loops) do
    loop.crossfade = math.min(wanted.crossfade, loop.first, (loop.last - loop.first + 1) // 2)
    if loop.crossfade > 0 then
      local faded = sound:copy(loop.first - loop.crossfade, loop.last + loop.crossfade)
      local first = loop.crossfade
      local last = loop.last - loop.first + first
      faded:crossfade(first, last, loop.crossfade)
      loop.quality = -math.max(table.unpack(faded:seam(first, last)))
    end
  end
  return loops
end

-- Writes the frames of `sound` that a crossfade changed to the sample's channels.
local function storeValues(program, path, sample, sound, first, count)
  local scale = 2.0 ^ (program:SampleBits(sample) - 1)
  local low, high = -math.tointeger(scale), math.tointeger(scale) - 1
  for channel = 0, sound:channels() - 1 do
    local target = program:ReadTempSample(path, channel)
    for i, value in ipairs(sound:values(channel, first, count)) do
      local rounded = math.floor(value * scale + 0.5)
      program:SampleValue(target, first + i - 1, math.min(math.max(rounded, low), high))
    end
    program:DeleteTempSample(target)
  end
end

-- Makes a loop the first one of an open sample, and crossfades the sound if the loop has a
-- crossfade. Does not write the file.
function looping.store(program, path, sample, sound, loop)
  if loop.crossfade and loop.crossfade > 0 then
    storeValues(program, path, sample, sound, sound:crossfade(loop.first, loop.last, loop.crossfade))
  end
  if program:SampleLoopCount(sample) == 0 then program:SampleLoopCount(sample, 1) end
  program:SampleLoopStart(sample, 0, loop.first)
  program:SampleLoopEnd(sample, 0, loop.last)
  program:SampleLoopFineLen(sample, 0, 0.0)
  program:SampleLoopTimes(sample, 0, 0)
  if program:SampleplaybackType(sample) == NO_LOOP then program:SampleplaybackType(sample, LOOP) end
end

return looping
