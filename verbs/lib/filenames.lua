-- Parses names of recordings: the note, as a letter with an octave (C#3, Bb2, F-1) or as a plain
-- MIDI number, the velocity layer and the take. The names of a batch are parsed together, because
-- parts that all names share do not distinguish the files.
local namemarks = require "namemarks"
local notes = require "notes"
local numbercolumns = require "numbercolumns"

local filenames = {}

local KEY_WORDS = { midi = true, note = true, key = true }

local function stem(path)
  local name = path:match("[^/]*$")
  return name:match("^(.+)%.[^.]*$") or name
end

-- Whether the text after a note ends it: empty, a separator, a capitalised word, or a layer.
local function ends(rest)
  if rest == "" or rest:match("^[^%w]") then return true end
  local word = rest:match("^%a+")
  return word ~= nil and (word:match("^%u%l") ~= nil or namemarks.isLayer(word))
end

-- The notes in a name: { text, step, flatStep }; step is in semitones from the C of octave 0.
-- flatStep is set for Es and As, which are flats in German and sharps in "Cs" notation.
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
        local step = notes.STEPS[letter:upper()] + 12 * number
        found[#found + 1] = { text = name:sub(at, #name - #rest), step = step + accidental[2],
                              flatStep = accidental[1] == "s" and letter:match("[EeAa]") and step - 1 or nil }
        break
      end
    end
  end
  return found
end

-- How many of the names contain each note.
local function frequencies(candidates)
  local everywhere = {}
  for _, list in ipairs(candidates) do
    local seen = {}
    for _, note in ipairs(list) do
      if not seen[note.text] then everywhere[note.text] = (everywhere[note.text] or 0) + 1 end
      seen[note.text] = true
    end
  end
  return everywhere
end

-- The last note that is not in all names, otherwise the last one.
local function distinctNote(candidates, everywhere, names)
  local note, noteIsCommon
  for _, candidate in ipairs(candidates) do
    local common = names > 1 and everywhere[candidate.text] == names
    if not note or not common or noteIsCommon then note, noteIsCommon = candidate, common end
  end
  return note
end

local function numberedKey(name)
  local key
  for _, number in ipairs(namemarks.numbers(name)) do
    if KEY_WORDS[number.word] and number.value >= 0 and number.value <= 127 then key = number.value end
  end
  return key
end

-- Applies one of the ways of numbercolumns.read to the parsed names.
function filenames.apply(read, way)
  for i, it in ipairs(read) do
    it.key, it.text, it.how = way.keys[i], tostring(way.keys[i]), "number"
    it.layer = it.markedLayer or way.velocities and { velocity = way.velocities[i] } or nil
  end
end

-- Splits the paths into { folder, name }. If the names of two files of a folder differ only in the
-- side, both lose the mark, and the left one has `right`, the index of the other.
local function split(paths)
  local read, pairsOf = {}, {}
  for i, path in ipairs(paths) do
    read[i] = { name = stem(path), folder = path:match("^.*/") or "" }
    local side, rest = namemarks.side(read[i].name)
    if side then
      local id = read[i].folder .. rest
      local pair = pairsOf[id] or { rest = rest }
      pairsOf[id], pair[side], pair.isAmbiguous = pair, i, pair.isAmbiguous or pair[side] ~= nil
    end
  end
  for _, pair in pairs(pairsOf) do
    if pair.left and pair.right and not pair.isAmbiguous then
      read[pair.left].name, read[pair.right].name = pair.rest, pair.rest
      read[pair.left].right = pair.right
    end
  end
  return read
end

-- Returns for each path: folder, name (without folder and extension), right (see split), key (C4 is
-- 60) or nil, how ("note" or "number"), text (as in the name), flatKey (the key if Es or As is a
-- flat), layer and take (see namemarks.lua). Also returns the ways to read columns of numbers as
-- keys, for filenames.apply.
function filenames.read(paths)
  local candidates, read, anyKey = {}, split(paths), false
  for i, it in ipairs(read) do
    it.layer, it.take = namemarks.layer(it.name), namemarks.take(it.name)
    it.markedLayer = it.layer
    candidates[i] = filenames.notes(it.name)
  end
  local everywhere = frequencies(candidates)
  for i, it in ipairs(read) do
    local note = distinctNote(candidates[i], everywhere, #paths)
    if note then
      it.key, it.text, it.how = note.step + 12, note.text, "note"
      it.flatKey = note.flatStep and note.flatStep + 12
    else
      it.key, it.how = numberedKey(it.name), "number"
      it.text = it.key and tostring(it.key)
    end
    anyKey = anyKey or it.key ~= nil
  end
  if anyKey then return read, {} end
  local names = {}
  for i, it in ipairs(read) do names[i] = it.name end
  return read, numbercolumns.read(names)
end

return filenames
