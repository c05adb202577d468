-- Cleans up the loops of WAVE and AIFF files: removes loops that join badly, and adds the best loop
-- to files that have none left.
--
--   zyl run examples/loop-cleanup.lua FILE...

local looping, samples, soundfile = require "looping", require "samples", require "soundfile"

local GOOD = -6                       -- minimum quality in dB; 0 is inaudible
local LOOP, NO_LOOP = 0, 2            -- playback types
local program = host.new("ZylSProgram")
if #arg == 0 then error("usage: zyl run loop-cleanup.lua FILE...", 0) end

-- The good loops (first and last frame), and the number of others.
local function goodLoops(sample, sound)
  local kept, dropped = {}, 0
  for i = 0, program:SampleLoopCount(sample) - 1 do
    local first, last = program:SampleLoopStart(sample, i), program:SampleLoopEnd(sample, i)
    if -math.max(table.unpack(sound:seam(first, last))) >= GOOD then
      kept[#kept + 1] = { first = first, last = last }
    else
      dropped = dropped + 1
    end
  end
  return kept, dropped
end

local function tidy(index, sample, _, found, sound)
  local path = arg[index]
  local obstacle = soundfile.whyNotWritable(path, found)
  if obstacle then error(obstacle, 0) end
  local loops, dropped = goodLoops(sample, sound)
  if dropped == 0 and #loops > 0 then return print(path .. ": unchanged") end
  local made = 0
  if #loops == 0 then
    local loop = looping.find(sound, { most = 1 })[1]
    if loop and loop.quality >= GOOD then loops = { loop } end
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

samples.tracks(program, arg, nil, {
  shown = function() end, done = tidy,
  failed = function(index, reason) io.stderr:write(arg[index], ": ", reason, "\n") end,
})
