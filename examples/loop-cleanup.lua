-- Cleans up the loops of WAVE and AIFF files: removes loops that join badly, and adds the best loop
-- to files that have none left.
--
--   zyl run examples/loop-cleanup.lua FILE...

local loopsearch, samples, soundfile = require "loopsearch", require "samples", require "soundfile"

local GOOD = 0.9                      -- minimum quality; 1 is a perfect join
local LOOP, NO_LOOP = 0, 2            -- playback types
local program = host.new("ZylSProgram")
if #arg == 0 then error("usage: zyl run loop-cleanup.lua FILE...", 0) end

-- The good loops (first and last frame), and the number of others.
local function goodLoops(sample)
  local kept, dropped = {}, 0
  for i = 0, program:SampleLoopCount(sample) - 1 do
    -- The rating compares the start with the frame at the end, but the loop closes one frame later.
    local last = program:SampleLoopEnd(sample, i)
    program:SampleLoopEnd(sample, i, math.min(last + 1, program:SampleGetSize(sample) - 1))
    local quality = program:SampleLoopQual(sample, i) / samples.FULL
    program:SampleLoopEnd(sample, i, last)
    if quality >= GOOD then
      kept[#kept + 1] = { first = program:SampleLoopStart(sample, i), last = last }
    else
      dropped = dropped + 1
    end
  end
  return kept, dropped
end

local function tidy(index, sample, track, found)
  local path = arg[index]
  local obstacle = soundfile.whyNotWritable(path, found)
  if obstacle then error(obstacle, 0) end
  local loops, dropped = goodLoops(sample)
  if dropped == 0 and #loops > 0 then return print(path .. ": unchanged") end
  local made = 0
  if #loops == 0 then
    loops = loopsearch.find(program, path, sample, track, {
      most = 1, accepts = function(quality) return quality >= GOOD end,
    })
    made = #loops
  end
  program:SampleLoopCount(sample, #loops)
  for i, loop in ipairs(loops) do
    program:SampleLoopStart(sample, i - 1, loop.first)
    program:SampleLoopEnd(sample, i - 1, loop.last)
  end
  program:SampleplaybackType(sample, #loops > 0 and LOOP or NO_LOOP)
  if not program:SampleWrite(sample) then error("could not be written", 0) end
  print(("%s: %d dropped, %d found, %d loops now"):format(path, dropped, made, #loops))
end

samples.tracks(program, arg, {}, {
  shown = function() end, done = tidy,
  failed = function(index, reason) io.stderr:write(arg[index], ": ", reason, "\n") end,
})
