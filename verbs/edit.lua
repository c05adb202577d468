-- zyl edit: sets fields of programs.
local cli = require "cli"
local fields = require "fields"
local journal = require "journal"
local json = require "json"
local notes = require "notes"
local programs = require "programs"
local text = require "text"

local options, words = cli.parse {
  verb = "edit", notes = true, repeats = true, operands = "PROGRAM… KEY=VALUE…",
  about = "Sets fields of programs and prints the changes. A program is written only if all\n"
       .. "changes are possible.",
  options = {
    { name = "keygroups", kind = "text", value = "LIST",
      help = "keygroups to edit: all, selected, or numbers from 1 as in\n1-8,12 (default all)" },
    { name = "zones", kind = "text", value = "LIST",
      help = "velocity zones to edit, numbers from 1 to 4 (default all)" },
    { name = "output", short = "o", kind = "text", value = "FILE",
      help = "write to FILE instead of PROGRAM" },
    { name = "dry-run", help = "print the changes, but write nothing" },
    { name = "json", help = "print a JSON list, one object per program" },
  },
  more = "KEY is the method of a field (KGfilterFreq), or its name without the prefix (filterFreq): 'zyl\n"
      .. "methods KG' lists the fields of keygroups, PRG those of the program, Zone those of zones. If\n"
      .. "several fields have the name, --zones or --keygroups decides, or write the prefix. VALUE is\n\n"
      .. "  KEY=80          the new value; keys may be notes (KGlowKey=C3 or C-2),\n"
      .. "                  switches on or off\n"
      .. "  KEY=+5, KEY=-5  an increase or decrease\n"
      .. "  KEY:=-5         the new value, also with a sign",
}

-- Parses "1-8,12" to a list of indexes from 0; `most` is the highest number.
local function numbers(option, list, most)
  local chosen = {}
  for part in (list .. ","):gmatch("(.-),") do
    local first, last = part:match("^(%d+)%-(%d+)$")
    first = tonumber(first or part:match("^%d+$"))
    last = tonumber(last) or first
    if not first or first < 1 or last < first then
      cli.usage(("--%s: '%s' is neither a number from 1 nor a range"):format(option, part))
    elseif last > most then
      cli.usage(("--%s: '%s' is outside 1 to %d"):format(option, part, most))
    end
    for i = first, last do chosen[#chosen + 1] = i - 1 end
  end
  return chosen
end

local MOST_KEYGROUPS = 65536
local which = options.keygroups or "all"
local listed = which ~= "all" and which ~= "selected" and numbers("keygroups", which, MOST_KEYGROUPS)
               or nil
local zones = options.zones and options.zones ~= "all" and numbers("zones", options.zones, 4)
              or { 0, 1, 2, 3 }
local family = options.zones and "Zone" or options.keygroups and "KG" or nil

-- A change: field, and either `value` or the increase `by`.
local function changeOf(key, sign, value)
  local field, reason = fields.find(key, family)
  if not field then cli.usage(reason) end
  local kind = fields.kind(field)
  if kind == "string" then return { field = field, value = value } end
  if kind == "boolean" then
    local switch = ({ on = true, off = false, ["true"] = true, ["false"] = false, ["1"] = true,
                      ["0"] = false })[value:lower()]
    if switch == nil then cli.usage(("%s: '%s' is neither on nor off"):format(field.name, value)) end
    return { field = field, value = switch }
  end
  local number = value:match("^[+-]?%d+$") and tonumber(value)
  if math.type(number) == "float" then  -- exceeds Lua's integers
    number = number < 0 and math.mininteger or math.maxinteger
  end
  if number and sign ~= ":=" and value:match("^[+-]") then return { field = field, by = number } end
  number = number or fields.isKey(field) and notes.key(value)
  if not number then
    cli.usage(("%s: '%s' is %s"):format(field.name, value, fields.isKey(field)
              and "not " .. notes.accepted() or "not a whole number"))
  end
  return { field = field, value = number, shown = value }
end

local paths, changes = {}, {}
for _, word in ipairs(words) do
  local key, sign, value = word:match("^(%a[%w_]*)(:?=)(.*)$")
  if not key then key, sign, value = word:match("^(%a[%w_]*%[%d+%])(:?=)(.*)$") end
  if key then
    local change = changeOf(key, sign, value)
    local obstacle = change.by == nil and fields.whyNot(change.field, change.value, change.shown)
    if obstacle then cli.usage(obstacle) end
    changes[#changes + 1] = change
  else
    paths[#paths + 1] = word
  end
end
if #paths == 0 then cli.usage("no PROGRAM given") end
if #changes == 0 then cli.usage("no KEY=VALUE given") end
if options.output then
  if #paths > 1 then cli.usage("-o FILE takes one PROGRAM") end
  local obstacle = programs.whyNotReplaceable(options.output)
  if obstacle then cli.usage(options.output .. ": " .. obstacle) end
end

local function addressed(program)
  local count, chosen = program:PRGkeyGroups(), {}
  if listed then
    for _, k in ipairs(listed) do
      if k >= count then
        error(("--keygroups %s: keygroup %d is outside 1 to %d"):format(which, k + 1, count), 0)
      end
    end
    return listed
  end
  for k = 0, count - 1 do
    if which == "all" or program:KGSelect(k) then chosen[#chosen + 1] = k end
  end
  if which == "selected" and #chosen == 0 then error("no keygroup is selected", 0) end
  return chosen
end

-- Applies a change to one keygroup or zone and returns the difference, or nil if there is none.
local function apply(program, change, k, z)
  local field, old = change.field, fields.read(program, change.field, k, z)
  local new = change.by and old + change.by or change.value
  if new == old then return nil end
  local obstacle = fields.whyNot(field, new)
  if obstacle then error(obstacle, 0) end
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
    local where = field.family == "PRG" and "the program" or "keygroup " .. k + 1
                  .. (field.family == "Zone" and " zone " .. z + 1 or "")
    if (kind == "Key" or kind == "Vel") and not seen[where .. kind] then
      seen[where .. kind] = true
      local low = fields.read(program, fields.find(field.family .. "low" .. kind), k, z)
      local high = fields.read(program, fields.find(field.family .. "high" .. kind), k, z)
      if low > high then
        places[#places + 1] = ("%s, %s to %s"):format(where, fields.shown(field, low),
                                                      fields.shown(field, high))
      end
    end
  end
  if #places > 0 then
    cli.warn(path, "empty range, low is above high: " .. places[1]
             .. (#places > 1 and (" and %d more"):format(#places - 1) or ""))
  end
end

local function edit(path)
  local program, reason = programs.open(path)
  if not program then error(reason, 0) end
  local done, keygroups = {}, addressed(program)
  for _, change in ipairs(changes) do
    local one = change.field.family == "PRG"
    for _, k in ipairs(one and { 0 } or keygroups) do
      for _, z in ipairs(change.field.family == "Zone" and zones or { 0 }) do
        done[#done + 1] = apply(program, change, k, z)
      end
    end
  end
  warn(path, program, done)
  local target = options.output or path
  local writes = not options["dry-run"] and (#done > 0 or options.output ~= nil)
  if writes and not programs.write(program, target) then error("could not be written", 0) end
  return done, writes and target
end

local function shown(path, done, target)
  local rows = {}
  for i, change in ipairs(done) do
    rows[i] = { field = change.field, keygroup = change.keygroup, zone = change.zone,
                fields.shown(change.field, change.old), "->", fields.shown(change.field, change.new) }
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
      "old", change.old, "new", change.new)
  end
  return json.object("file", path, "error", failure, "changes", json.list(list),
                     "written", done and target or nil)
end

if not options.output and not options["dry-run"] then journal.expect(paths) end
local printer = cli.printer(options.json)
for i, path in ipairs(paths) do
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
