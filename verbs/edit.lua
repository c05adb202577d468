-- zyl edit: sets fields of programs.
local cli = require "cli"
local disk = require "disk"
local fields = require "fields"
local journal = require "journal"
local json = require "json"
local programs = require "programs"
local progress = require "progress"
local selection = require "selection"
local text = require "text"
local values = require "values"

local options, words = cli.parse {
  verb = "edit", notes = true, repeats = true, folders = "programs", mixed = true,
  operands = "PROGRAM|FOLDER… KEY=VALUE…",
  about = "Sets fields of programs and prints the changes. A program is written only if all\n"
       .. "changes are possible.",
  options = {
    { name = "keygroups", kind = "text", value = "LIST",
      help = "keygroups to edit: all, selected, or numbers from 1 as in\n1-8,12 (default all)" },
    { name = "zones", kind = "text", value = "LIST",
      help = "velocity zones to edit, numbers from 1 to 4 (default all)" },
    { name = "output", short = "o", kind = "text", value = "FILE",
      help = "write to FILE instead of PROGRAM" },
    { name = "raw", help = "values are the numbers that the program stores, without names,\nunits and usual ranges" },
    { name = "dry-run", help = "print the changes, but write nothing" },
    { name = "json", help = "print a JSON list, one object per program" },
  },
  more = "KEY is the method of a field (KGfilterFreq), or its name without the prefix (filterFreq): 'zyl\n"
      .. "methods KG' lists the fields of keygroups, PRG those of the program, Zone those of zones. If\n"
      .. "several fields have the name, --zones or --keygroups decides, or write the prefix. VALUE is\n\n"
      .. "  KEY=80          the new value\n"
      .. "  KEY=+5, KEY=-5  an increase or decrease; keys end at 0 and 127\n"
      .. "  KEY:=-5         the new value, also with a sign\n\n"
      .. "and is typed as it is printed: a note (C3), a name (LP4, Velocity, Omni), on or off, or a\n"
      .. "number, which must be in the range that 'zyl help KEY' names. Tunings take st (semitones) and\n"
      .. "ct (cents), intervals also oct, fixedRateDetune Hz, poly voices. Without a unit a tuning is in\n"
      .. "semitones: KGtune=+5ct adds 5 cents, KGtune=-0.5st and KGtune=-0.5 subtract 50.",
}

local chosen = selection.keygroups("--keygroups", options.keygroups or "all")
local zones = options.zones and options.zones ~= "all" and selection.numbers("--zones", options.zones, programs.ZONES)
              or { 0, 1, 2, 3 }
local family = options.zones and "Zone" or options.keygroups and "KG" or nil

local raw = options.raw
local MOST_KEY = 127

-- The place of a value, for messages.
local function placeOf(field, k, z)
  if field.family == "PRG" then return "the program" end
  return "keygroup " .. k + 1 .. (field.family == "Zone" and " zone " .. z + 1 or "")
end

-- A change: field, and either `value` or the increase `by`.
local function changeOf(key, sign, typed)
  local field, reason = fields.find(key, family)
  if not field then cli.usage(reason) end
  local value, by, obstacle = values.parse(field, typed, sign ~= ":=", raw)
  if obstacle then cli.usage(obstacle) end
  return { field = field, value = value, by = by }
end

local paths, changes = {}, {}
for _, word in ipairs(words) do
  local key, sign, value = word:match("^(%a[%w_]*)(:?=)(.*)$")
  if not key then key, sign, value = word:match("^(%a[%w_]*%[%d+%])(:?=)(.*)$") end
  if key then
    changes[#changes + 1] = changeOf(key, sign, value)
  else
    paths[#paths + 1] = word
  end
end
if #paths == 0 then cli.usage("no PROGRAM given") end
paths = cli.withoutFolders(paths)
if #changes == 0 then cli.usage("no KEY=VALUE given") end
if options.output then
  if #paths > 1 then cli.usage("-o FILE takes one PROGRAM") end
  local obstacle = programs.whyNotReplaceable(options.output)
  if obstacle then cli.usage(options.output .. ": " .. obstacle) end
end

-- Applies a change to one keygroup or zone and returns the difference, or nil if there is none.
-- Increased and decreased keys stay in 0 to 127; those that reach an end are added to `clamped`.
local function apply(program, change, k, z, clamped)
  local field, old = change.field, fields.read(program, change.field, k, z)
  if field.method == "ZoneSamplePath" and old == "" and not options.zones then return nil end
  local new = change.by and old + change.by or change.value
  if change.by and values.isKey(field) and (new < 0 or new > MOST_KEY) then
    new = new < 0 and 0 or MOST_KEY
    clamped[#clamped + 1] = { field = field, keygroup = k, zone = z, values.text(field, new, raw) }
  end
  if new == old then return nil end
  local obstacle = values.whyNot(field, new, nil, raw)
  if obstacle then error(placeOf(field, k, z) .. ": " .. obstacle, 0) end
  fields.write(program, field, new, k, z)
  return { field = field, keygroup = k, zone = z, old = old, new = new }
end

-- Warns of key and velocity ranges that a change has made empty.
local function warn(path, program, done)
  local places, seen = {}, {}
  for _, change in ipairs(done) do
    local field, kind = change.field, change.field.short:match("^low(.+)$")
                                      or change.field.short:match("^high(.+)$")
    local k, z = change.keygroup, change.zone
    local where = placeOf(field, k, z)
    if (kind == "Key" or kind == "Vel") and not seen[where .. kind] then
      seen[where .. kind] = true
      local low = fields.read(program, fields.find(field.family .. "low" .. kind), k, z)
      local high = fields.read(program, fields.find(field.family .. "high" .. kind), k, z)
      if low > high then
        places[#places + 1] = ("%s, %s to %s"):format(where, values.text(field, low, raw),
                                                      values.text(field, high, raw))
      end
    end
  end
  if #places > 0 then
    cli.warn(path, "empty range, low is above high: " .. places[1]
             .. (#places > 1 and (" and %d more"):format(#places - 1) or ""))
  end
end

local function edit(path)
  local program = programs.read(path)
  local done, clamped, keygroups = {}, {}, chosen(program)
  for _, change in ipairs(changes) do
    local one = change.field.family == "PRG"
    for _, k in ipairs(one and { 0 } or keygroups) do
      for _, z in ipairs(change.field.family == "Zone" and zones or { 0 }) do
        done[#done + 1] = apply(program, change, k, z, clamped)
      end
    end
  end
  for _, row in ipairs(fields.rows(clamped)) do
    cli.note(path, ("%s%s clamped to %s"):format(row[1], row[2] == "" and "" or " of " .. row[2], row[3]))
  end
  for _, change in ipairs(changes) do
    if change.field.method == "ZoneSamplePath" and change.value ~= "" and not disk.isFile(change.value) then
      cli.note(path, change.value .. " does not exist")
    end
  end
  warn(path, program, done)
  local target = options.output or path
  local writes = not options["dry-run"] and (#done > 0 or options.output ~= nil)
  local write = options.output and programs.writeNamed or programs.write
  if writes and not write(program, target) then error("could not be written", 0) end
  return done, writes and target
end

local function shown(path, done, target)
  local rows = {}
  for i, change in ipairs(done) do
    rows[i] = { field = change.field, keygroup = change.keygroup, zone = change.zone,
                values.text(change.field, change.old, raw), "->",
                values.text(change.field, change.new, raw) }
  end
  local table = #rows > 0 and text.columns(fields.rows(rows), { true, true, false, true, true }) or ""
  local count = ("%d value%s changed"):format(#done, #done == 1 and "" or "s")
  return table .. text.printable(target or path) .. ": " .. count
         .. (target and "" or ", not written") .. "\n"
end

local function record(path, done, target, failure)
  local list = {}
  for i, change in ipairs(done or {}) do
    list[i] = json.object("field", change.field.name,
      "keygroup", change.field.family ~= "PRG" and change.keygroup + 1 or nil,
      "zone", change.field.family == "Zone" and change.zone + 1 or nil,
      "old", change.old, "new", change.new,
      "old_text", values.text(change.field, change.old), "new_text", values.text(change.field, change.new))
  end
  return json.object("file", path, "error", failure, "changes", json.list(list),
                     "written", done and target or nil)
end

if not options.output and not options["dry-run"] then journal.expect(paths) end
local printer = cli.printer(options.json)
for i, path in ipairs(paths) do
  progress.show((i - 1) / #paths, path)
  local done, target = cli.try(edit, path)
  local failure = not done and target or nil
  if failure then cli.failed(path, failure .. ": not changed") end
  if options.json then
    printer.result(i, record(path, done, target, failure))
  else
    printer.result(i, done and shown(path, done, target) or nil)
  end
end
printer.close()
cli.finish()
