-- What the verbs over program files share. Notes are named as the editor's lists name them: C3 is
-- key 60.
local programs = require "programs"

local program = {}

local NAMES = { "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B" }

program.ZONES = 4
program.MIDDLE_OCTAVE = 3  -- the octave of key 60

function program.note(key) return NAMES[key % 12 + 1] .. (key // 12 - 5 + program.MIDDLE_OCTAVE) end

function program.range(low, high)
  return low == high and program.note(low) or program.note(low) .. "–" .. program.note(high)
end

-- The program of a file as a script object; an error when it cannot be read. `withSamples` false
-- leaves the samples on disk.
function program.read(path, withSamples)
  local object, reason = programs.open(path, withSamples)
  if not object then error(reason, 0) end
  return object
end

return program
