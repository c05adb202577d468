-- Notes and frequencies. Note numbers may be fractional: 69 is A4, 69.5 is half a semitone above.
local notes = {}

local NAMES = { "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B" }

-- The octave of key 60: in scientific pitch notation, and in the editor's lists.
notes.MIDDLE_OCTAVE, notes.EDITOR_OCTAVE = 4, 3

-- `middle` is the octave of key 60, default MIDDLE_OCTAVE.
function notes.name(key, middle)
  return NAMES[key % 12 + 1] .. (key // 12 - 5 + (middle or notes.MIDDLE_OCTAVE))
end
function notes.range(low, high, middle)
  local first = notes.name(low, middle)
  return low == high and first or first .. "–" .. notes.name(high, middle)
end
function notes.isBlack(key) return #NAMES[key % 12 + 1] == 2 end

-- `a4` is the frequency of A4 in Hz.
function notes.fromHertz(hertz, a4) return 69 + 12 * math.log(hertz / a4, 2) end

-- The nearest key and the cents above it.
function notes.nearest(note)
  local key = math.floor(note + 0.5)
  return key, 100 * (note - key)
end

-- Root key and tune (1/256 semitone) for a sample of that pitch.
function notes.keyAndTune(note)
  local key = math.min(math.max(math.floor(note + 0.5), 0), 127)
  local tune = math.floor((note - key) * 256 + 0.5)
  return key, math.min(math.max(tune, -128), 128)
end

return notes
