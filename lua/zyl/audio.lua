-- Analysis of sample data for scripts:
--
--   local audio = require "zyl.audio"
--   local sound = audio.sound(prg, sample)
--   print(sound:loudness(), sound:peak())
--
-- docs/script-host.md describes the functions.
local core = require "zyl.audio.core"

local audio = {}

-- A copy of all channels of a sample for analysis. `sample` is the object of the whole sample.
function audio.sound(program, sample)
  local sound = core.new(math.max(program:SampleSampleRate(sample), 0))
  local width = (program:SampleBits(sample) + 7) // 8
  local handle = host.var(0)
  for channel = 0, program:SampleChannelCount(sample) - 1 do
    local frames = program:SampleGetBuffer(sample, handle, channel)
    sound:addChannel(handle.value, frames, width)
  end
  return sound
end

-- The values of a channel as bytes, with 16 bits, or 24 as the upper 16 and the lower 8. Rounds.
function audio.pcm(program, sample, channel, bits)
  local handle = host.var(0)
  local frames = program:SampleGetBuffer(sample, handle, channel)
  return core.pcm(handle.value, frames, (program:SampleBits(sample) + 7) // 8, bits or 16)
end

-- The arguments of CalcSamplePitch after the sample, for a note of any pitch and level: the gate is
-- 40 dB below the sound. `given` may set highest and lowest (Hz), smooth, correct and threshold.
function audio.trackSettings(sound, given)
  given = given or {}
  local gate = math.min(math.max(1e-4 * sound:power(), 1e-9), 1e-5)
  return { given.highest or 2000, given.lowest or 25, given.smooth or 0, given.correct or 10,
           given.threshold or gate }
end

return audio
