-- Notes and frequencies. Note numbers may be fractional: 69 is A above middle C, 69.5 is half a
-- semitone above it.
--
-- Key 60 is C of the octave notes.middle(): 3, as the editor names notes, unless the environment
-- variable ZYL_MIDDLE_C or the verbs' option --octave sets another one.
local notes = { LOWEST_MIDDLE = 2, HIGHEST_MIDDLE = 6, EDITOR_MIDDLE = 3 }

local NAMES = { "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B" }
local MOST_KEY = 127

notes.STEPS = { C = 0, D = 2, E = 4, F = 5, G = 7, A = 9, B = 11 }
-- Patterns and semitones; longer spellings first.
notes.ACCIDENTALS = { { "[Ss]harp", 1 }, { "[Ff]lat", -1 }, { "♯", 1 }, { "♭", -1 }, { "#", 1 },
                      { "s", 1 }, { "b", -1 }, { "", 0 } }

local chosen

-- Parses an octave of key 60; nil if the text is not one.
function notes.middleOf(text)
  local octave = math.tointeger(tonumber(text))
  return octave and octave >= notes.LOWEST_MIDDLE and octave <= notes.HIGHEST_MIDDLE and octave or nil
end

-- The octave of key 60. Raises an error if ZYL_MIDDLE_C is not an octave.
function notes.middle()
  if chosen then return chosen end
  local given = os.getenv("ZYL_MIDDLE_C") or ""
  local octave = given == "" and notes.EDITOR_MIDDLE or notes.middleOf(given)
  if not octave then
    error(("ZYL_MIDDLE_C: '%s' is not an octave from %d to %d"):format(given, notes.LOWEST_MIDDLE,
          notes.HIGHEST_MIDDLE), 0)
  end
  chosen = octave
  return octave
end

function notes.setMiddle(octave) chosen = octave end

-- C3. `middle` is the octave of key 60, default notes.middle().
function notes.name(key, middle)
  return NAMES[key % 12 + 1] .. (key // 12 - 5 + (middle or notes.middle()))
end

-- C3 (60)
function notes.label(key) return ("%s (%d)"):format(notes.name(key), key) end

-- C3–B3 (60–71)
function notes.range(low, high)
  if low == high then return notes.label(low) end
  return ("%s–%s (%d–%d)"):format(notes.name(low), notes.name(high), low, high)
end

-- Parses a key from 0 to 127: a note (C#3, Bb-1), a number, or both as in notes.label. Returns nil
-- if the text is neither.
function notes.key(text)
  local name, number = text:match("^(.-)%s*%((%d+)%)$")
  local key = math.tointeger(text:match("^%d+$"))
  for _, accidental in ipairs(notes.ACCIDENTALS) do
    local letter, octave = (name or text):match("^([A-Ga-g])" .. accidental[1] .. "(%-?%d%d?)$")
    if letter then
      key = notes.STEPS[letter:upper()] + accidental[2] + 12 * (octave + 5 - notes.middle())
      break
    end
  end
  if number and math.tointeger(tonumber(number)) ~= key then return nil end
  return key and key >= 0 and key <= MOST_KEY and key or nil
end

-- What notes.key accepts, for messages.
function notes.accepted()
  return ("a note (C%d = 60) or a number from 0 to %d"):format(notes.middle(), MOST_KEY)
end

function notes.isBlack(key) return #NAMES[key % 12 + 1] == 2 end

-- `a4` is the frequency of key 69 in Hz.
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
