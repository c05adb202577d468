-- Parses names of recordings: the note, as a letter with an octave (C#3, Bb2, F-1) or as a plain
-- MIDI number, and the velocity layer (v2, vel96, pp, hard). The names of a batch are parsed
-- together, because parts that all names share do not distinguish the files.
local notes = require "notes"

local filenames = {}

-- The velocity of a dynamic mark.
local DYNAMICS = { ppp = 16, pp = 32, p = 48, mp = 64, mf = 80, f = 96, ff = 112, fff = 127,
                   ghost = 20, quiet = 40, soft = 40, med = 72, medium = 72, hard = 110, loud = 110 }
local VELOCITY_WORDS = { vel = true, velocity = true }
local LAYER_WORDS = { v = true, layer = true, lay = true, dyn = true }
local KEY_WORDS = { midi = true, note = true, key = true }

local function stem(path)
  local name = path:match("[^/]*$")
  return name:match("^(.+)%.[^.]*$") or name
end

-- Whether the text after a note ends it: empty, a separator, a capitalised word, or a layer.
local function ends(rest)
  if rest == "" or rest:match("^[^%w]") then return true end
  local word = rest:match("^%a+")
  return word ~= nil and (word:match("^%u%l") ~= nil or DYNAMICS[word] ~= nil
         or LAYER_WORDS[word:lower()] or VELOCITY_WORDS[word:lower()]) and true or false
end

-- The notes in a name: { text, step }; step is in semitones from the C of octave 0.
function filenames.notes(name)
  local found = {}
  for at in name:gmatch("()[A-Ga-g]") do
    local letter, before = name:sub(at, at), at > 1 and name:sub(at - 1, at - 1) or ""
    local apart = before == "" or before:match("^[%w\128-\255]") == nil
                  or letter:match("%u") and before:match("[%l%d]")
    for _, accidental in ipairs(apart and notes.ACCIDENTALS or {}) do
      local minus, octave, rest = name:match("^" .. accidental[1] .. "(%-?)(%d)(.*)$", at + 1)
      if octave and ends(rest) then
        -- The lowest octave is -2: before a greater number the dash is a separator.
        local number = tonumber(octave)
        if minus == "-" and number > 0 and number <= 2 then number = -number end
        found[#found + 1] = { text = name:sub(at, #name - #rest),
                              step = notes.STEPS[letter:upper()] + accidental[2] + 12 * number }
        break
      end
    end
  end
  return found
end

-- The numbers in a name with the word before each: { word, value }; and the list of words.
local function parts(name)
  local numbers, words = {}, {}
  for word, number in name:gmatch("(%a*)[_%- ]?(%d+)") do
    local digits = #number <= 3 and tonumber(number) or -1
    numbers[#numbers + 1] = { word = word:lower(), value = digits }
  end
  for word in name:gmatch("%a+") do words[#words + 1] = word end
  return numbers, words
end

-- The layer in a name: { velocity } or { rank }; nil if there is none.
local function layerOf(numbers, words)
  for _, number in ipairs(numbers) do
    if VELOCITY_WORDS[number.word] and number.value >= 0 and number.value <= 127 then
      return { velocity = number.value }
    end
    if LAYER_WORDS[number.word] and number.value >= 0 and number.value <= 127 then
      return { rank = number.value }
    end
  end
  for i = #words, 1, -1 do
    local velocity = DYNAMICS[words[i]] or #words[i] > 1 and DYNAMICS[words[i]:lower()]
    if velocity then return { velocity = velocity } end
  end
end

-- The numbers in a name that are not adjacent to letters.
local function plainNumbers(name)
  local list = {}
  for before, number, after in ("_" .. name .. "_"):gmatch("()%f[%d](%d+)()") do
    local left = ("_" .. name .. "_"):sub(before - 1, before - 1)
    local right = ("_" .. name .. "_"):sub(after, after)
    if not left:match("%a") and not right:match("%a") then
      list[#list + 1] = #number <= 3 and tonumber(number) or -1
    end
  end
  return list
end

-- Column c of the lists and its distinct values; nil unless all values exist and are within low to
-- high.
local function column(lists, c, low, high)
  local values, seen, distinct = {}, {}, {}
  for i, list in ipairs(lists) do
    local value = list[c]
    if not value or value < low or value > high then return nil end
    values[i] = value
    if not seen[value] then distinct[#distinct + 1] = value end
    seen[value] = true
  end
  table.sort(distinct)
  return values, distinct
end

-- The MIDI numbers of the names: the first column of numbers that every name has, that is not below
-- 12 and does not just count the files from below the piano's lowest key. A column after it with
-- numbers from 1 to 127 that repeat for other keys contains velocities.
local function midiNumbers(names, layers)
  if #names == 0 then return nil end
  local lists = {}
  for i, name in ipairs(names) do lists[i] = plainNumbers(name) end
  for c = 1, 8 do
    local keys, distinct = column(lists, c, 0, 127)
    if not keys then return nil end
    local counting = distinct[#distinct] - distinct[1] == #distinct - 1 and distinct[1] < 21
    if #distinct > 1 and not counting and distinct[1] >= 12 then
      local velocities, steps = column(lists, c + 1, 1, 127)
      if velocities and #steps > 1 and #steps < #names then
        for i, velocity in ipairs(velocities) do layers[i] = layers[i] or { velocity = velocity } end
      end
      return keys
    end
  end
end

-- Returns for each path: key (C4 is 60) or nil, how ("note" or "number"), text (as in the name),
-- and layer ({ velocity }, { rank } or nil).
function filenames.read(paths)
  local names, candidates, everywhere, layers = {}, {}, {}, {}
  local read, anyNote = {}, false
  for i, path in ipairs(paths) do
    names[i] = stem(path)
    candidates[i] = filenames.notes(names[i])
    layers[i] = layerOf(parts(names[i]))
    local seen = {}
    for _, note in ipairs(candidates[i]) do
      if not seen[note.text] then everywhere[note.text] = (everywhere[note.text] or 0) + 1 end
      seen[note.text] = true
    end
  end
  for i in ipairs(paths) do
    -- The last note that is not in all names, otherwise the last one.
    local note
    for _, candidate in ipairs(candidates[i]) do
      local common = #paths > 1 and everywhere[candidate.text] == #paths
      if not note or not common or note.common then
        note = { text = candidate.text, step = candidate.step, common = common }
      end
    end
    read[i] = { layer = layers[i] }
    if note then
      read[i].key, read[i].text, read[i].how = note.step + 12, note.text, "note"
      anyNote = true
    end
  end
  for i, name in ipairs(names) do
    if not read[i].key then
      for _, number in ipairs((parts(name))) do
        if KEY_WORDS[number.word] and number.value >= 0 and number.value <= 127 then
          read[i].key, read[i].text, read[i].how = number.value, tostring(number.value), "number"
          anyNote = true
        end
      end
    end
  end
  local keys = not anyNote and midiNumbers(names, layers)
  for i, key in ipairs(keys or {}) do
    read[i] = { key = key, text = tostring(key), how = "number", layer = layers[i] }
  end
  return read
end

return filenames
