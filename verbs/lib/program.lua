-- What the verbs over program files share. Notes are named as the editor's lists name them: C3 is
-- key 60.
local program = {}

local NAMES = { "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B" }

program.ZONES = 4

function program.note(key) return NAMES[key % 12 + 1] .. (key // 12 - 2) end

function program.range(low, high)
  return low == high and program.note(low) or program.note(low) .. "–" .. program.note(high)
end

-- The program of a file as a script object; an error when it cannot be read. `withSamples` false
-- leaves the samples on disk.
function program.read(path, withSamples)
  local object = host.new("ZylSProgram")
  if not object:Read(path, withSamples and 1 or 0) then error("this is no program file", 0) end
  return object
end

return program
