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
  local sound = core.new(math.max(program:SampleSampleRate(sample), 1))
  local width = (program:SampleBits(sample) + 7) // 8
  local handle = host.var(0)
  for channel = 0, program:SampleChannelCount(sample) - 1 do
    local frames = program:SampleGetBuffer(sample, handle, channel)
    sound:addChannel(handle.value, frames, width)
  end
  return sound
end

return audio
