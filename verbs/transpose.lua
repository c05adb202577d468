-- zyl transpose: moves the key ranges of programs.
local cli = require "cli"
local journal = require "journal"
local json = require "json"
local notes = require "notes"
local programs = require "programs"
local progress = require "progress"
local selection = require "selection"
local text = require "text"
local units = require "units"

local MOST_KEY, TUNE, MOST_TUNE = 127, 256, 32767

local options, words = cli.parse {
  verb = "transpose", notes = true, folders = "programs", mixed = true, repeats = true,
  operands = "PROGRAM|FOLDER… KEYS",
  about = "Moves the key ranges of programs up by KEYS semitones (12, 12st or 1oct), or down with -KEYS, and\n"
       .. "the sound with them: the new keys sound as the old ones did.",
  options = {
    { name = "keep-roots", help = "move only the ranges: each key keeps its pitch, but may play\nanother sample" },
    { name = "keygroups", kind = "text", value = "LIST",
      help = "keygroups to move: all, selected, or numbers from 1 as in\n1-8,12 (default all)" },
    { name = "dry-run", help = "print the new ranges, but write nothing" },
    { name = "json", help = "print a JSON list, one object per program" },
  },
  more = "Ranges are clamped to keys 0 to 127. The sound is moved by the tuning of the zones; zones with\n"
      .. "constant pitch keep it. The program's play range moves too, unless it ends at key 0 or 127.",
}
local typed = table.remove(words)
local by, malformed = units.parse(units.semitones, typed, true)
if not by then cli.usage("KEYS, the last word: " .. malformed) end
if by == 0 then cli.usage("KEYS is 0: nothing would move") end
if math.abs(by) > MOST_KEY then cli.usage(("KEYS: %s is outside -127 to 127 semitones"):format(typed)) end
if #words == 0 then cli.usage("no PROGRAM given") end
local files = cli.withoutFolders(words)
local chosen = selection.keygroups("--keygroups", options.keygroups or "all")

local function clamped(key) return math.min(math.max(key, 0), MOST_KEY) end

-- Moves the tuning of the zones of a keygroup that follow the key.
local function retune(program, k)
  for z = 0, programs.ZONES - 1 do
    local constant = program:ZoneconstantPitch(k, z) % 2 == 1
    if program:ZoneSamplePath(k, z) ~= "" and not constant then
      local tune = program:ZonetuneOffset(k, z) - by * TUNE
      if math.abs(tune) > MOST_TUNE then
        error(("the tuning of keygroup %d zone %d would exceed 128 semitones (see --keep-roots)"):format(k + 1, z + 1), 0)
      end
      program:ZonetuneOffset(k, z, tune)
    end
  end
end

local function transpose(path)
  local program = programs.read(path)
  local moved = {}
  for _, k in ipairs(chosen(program)) do
    local low, high = program:KGlowKey(k) + by, program:KGhighKey(k) + by
    moved[#moved + 1] = { keygroup = k, oldLow = low - by, oldHigh = high - by, low = clamped(low),
                          high = clamped(high), clamped = clamped(low) ~= low or clamped(high) ~= high,
                          outside = high < 0 or low > MOST_KEY }
    program:KGlowKey(k, clamped(low))
    program:KGhighKey(k, clamped(high))
    if not options["keep-roots"] then retune(program, k) end
  end
  if not options.keygroups then
    if program:PRGlowKey() > 0 then program:PRGlowKey(clamped(program:PRGlowKey() + by)) end
    if program:PRGhighKey() < MOST_KEY then program:PRGhighKey(clamped(program:PRGhighKey() + by)) end
  end
  if not options["dry-run"] and not programs.write(program, path) then error("could not be written", 0) end
  return moved
end

-- The keygroups of the list with the field, as in "1-3, 7".
local function numbers(moved, field)
  local list = {}
  for _, it in ipairs(moved) do
    if it[field] then list[#list + 1] = it.keygroup end
  end
  return selection.text(list)
end

local function shown(path, moved)
  local rows = { { "keygroup", "keys", "", "" } }
  for i, it in ipairs(moved) do
    rows[i + 1] = { tostring(it.keygroup + 1), notes.range(it.oldLow, it.oldHigh), "->", notes.range(it.low, it.high) }
  end
  return text.columns(rows, { [2] = true, [4] = true })
         .. ("%s: %d keygroup%s moved%s\n"):format(text.printable(path), #moved, #moved == 1 and "" or "s",
            options["dry-run"] and ", not written" or "")
end

local function record(path, moved, failure)
  local list = {}
  for i, it in ipairs(moved or {}) do
    list[i] = json.object("keygroup", it.keygroup + 1, "low_key", it.low, "high_key", it.high,
                          "old_low_key", it.oldLow, "old_high_key", it.oldHigh, "clamped", it.clamped)
  end
  return json.object("file", path, "error", failure, "keygroups", json.list(list),
                     "written", moved ~= nil and not options["dry-run"])
end

if not options["dry-run"] then journal.expect(files) end
local printer = cli.printer(options.json)
for i, path in ipairs(files) do
  progress.show((i - 1) / #files, path)
  local moved, failure = cli.try(transpose, path)
  if failure then cli.failed(path, failure .. ": not changed") end
  local outside, cut = numbers(moved or {}, "outside"), numbers(moved or {}, "clamped")
  if outside then
    cli.warn(path, "ranges entirely outside the keyboard, now a single key: keygroup " .. outside)
  end
  if cut then cli.note(path, "clamped to keys 0 to 127: keygroup " .. cut) end
  printer.result(i, options.json and record(path, moved, failure) or not options.json and moved and shown(path, moved) or nil)
end
printer.close()
cli.finish()
