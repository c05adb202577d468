-- The fields of a program, accessed through script methods: header (PRG), keygroups (KG), zones
-- (Zone). Types and ranges are found by trying values on a scratch program, so they are not
-- repeated here.
local notes = require "notes"
local text = require "text"

local fields = {}

-- Methods of these families that are not fields: they act, are computed, or duplicate other fields.
local NO_FIELDS = {}
for name in ([[PRGkeyGroups PRGIntValue PRGStringValue PRGtmMidiChannel KGCreate KGDelete KGFindByKey
               KGMove KGSort KGIntValue KGStringValue ZoneSampleSet ZoneSampleExists Zonename
               ZoneIntValue ZoneStringValue]]):gmatch("%a+") do
  NO_FIELDS[name] = true
end
local DETUNES = 13
-- Fields with a MIDI key or velocity, by name without the family.
local MIDI = { lowKey = "keys", highKey = "keys", extTriggerNote = "keys", lowVel = "velocities",
               highVel = "velocities",
               key = "keys" }
local MOST_MIDI = 127
local LOWEST, HIGHEST = -2147483648, 2147483647  -- range of a method's integer argument
local LOWS, HIGHS = { LOWEST, -32768, -128, 0 }, { HIGHEST, 65535, 32767, 255, 127 }

local all, scratch

-- All fields in method table order: method, name (as shown), short (without the family), family,
-- and for an element of a list its index.
function fields.all()
  if all then return all end
  all = {}
  for _, method in ipairs(host.methods()) do
    local family = method:match("^PRG") or method:match("^KG") or method:match("^Zone")
    if family and not NO_FIELDS[method] then
      for index = 0, method == "PRGmasterDetune" and DETUNES - 1 or 0 do
        local name = method == "PRGmasterDetune" and method .. "[" .. index .. "]" or method
        all[#all + 1] = { method = method, name = name, short = name:sub(#family + 1),
                          family = family, index = name ~= method and index or nil }
      end
    end
  end
  return all
end

-- Keygroup and zone count from 0; families without them ignore them.
function fields.read(program, field, keygroup, zone)
  local call = program[field.method]
  if field.family == "KG" then return call(program, keygroup) end
  if field.family == "Zone" then return call(program, keygroup, zone) end
  return call(program, field.index)
end

function fields.write(program, field, value, keygroup, zone)
  local call = program[field.method]
  if field.family == "KG" then
    call(program, keygroup, value)
  elseif field.family == "Zone" then
    call(program, keygroup, zone, value)
  elseif field.index then
    call(program, field.index, value)
  else
    call(program, value)
  end
end

-- Whether the field can store the value: a scratch program must return it unchanged.
local function holds(field, value)
  if math.type(value) == "integer" and (value < LOWEST or value > HIGHEST) then return false end
  if not scratch then
    scratch = host.new("ZylSProgram")
    scratch:Create(host.null)
  end
  fields.write(scratch, field, value, 0, 0)
  return fields.read(scratch, field, 0, 0) == value
end

-- "integer", "boolean" or "string".
function fields.kind(field)
  holds(field, nil)
  local value = fields.read(scratch, field, 0, 0)
  return math.type(value) or type(value)
end

-- Whether the value of the field is a key.
function fields.isKey(field) return MIDI[field.short] == "keys" end

-- A value for display.
function fields.shown(field, value)
  if value == nil then return "-" end
  if type(value) == "string" then return '"' .. text.printable(value) .. '"' end
  return fields.isKey(field) and notes.label(value) or tostring(value)
end

-- nil if the value is valid for the field, otherwise the reason. `shown` is the value as it was
-- typed.
function fields.whyNot(field, value, shown)
  local midi = MIDI[field.short]
  if midi and (value < 0 or value > MOST_MIDI) then
    return ("%s is outside 0 to %d, the %s that %s takes"):format(shown or value, MOST_MIDI, midi,
                                                                   field.name)
  end
  if holds(field, value) then return nil end
  if type(value) == "string" then return field.name .. " takes at most 12 bytes" end
  local low, high
  for _, limit in ipairs(LOWS) do
    if not low and holds(field, limit) then low = limit end
  end
  for _, limit in ipairs(HIGHS) do
    if not high and holds(field, limit) then high = limit end
  end
  if not low or not high or value >= low and value <= high then
    return ("%s does not take %s"):format(field.name, value)
  end
  return ("%s is outside %d to %d, the range of %s"):format(shown or value, low, high, field.name)
end

-- Finds a field by name, with or without its family, ignoring case; `family` decides between
-- several fields with the name. Returns nil and the reason if there is none, or more than one.
function fields.find(name, family)
  local lower, found, exact = name:lower(), {}, nil
  for _, field in ipairs(fields.all()) do
    if field.name == name then exact = field end
    if field.name:lower() == lower then return field end
    if field.short:lower() == lower then found[#found + 1] = field end
  end
  if exact or #found == 1 then return exact or found[1] end
  for _, field in ipairs(found) do
    if field.family == family then return field end
  end
  if #found > 1 then
    local names = {}
    for i, field in ipairs(found) do names[i] = field.name end
    return nil, ("'%s' is ambiguous: %s"):format(name, table.concat(names, " or "))
  end
  local known, seen = {}, {}
  for _, field in ipairs(fields.all()) do
    for _, spelling in ipairs { field.name, field.short } do
      if not seen[spelling] then known[#known + 1] = spelling end
      seen[spelling] = true
    end
  end
  return nil, ("there is no field '%s'%s"):format(name, host.suggestion(name, known))
end

-- Calls each(field, keygroup, zone) for every field of a program with that many keygroups.
function fields.walk(keygroups, each)
  for _, field in ipairs(fields.all()) do
    for k = 0, field.family == "PRG" and 0 or keygroups - 1 do
      for z = 0, field.family == "Zone" and 3 or 0 do each(field, k, z) end
    end
  end
end

-- Formats rows { field, keygroup, zone, text… }, in the order of fields.walk, for display.
-- Keygroups and zones count from 1; rows of consecutive keygroups with the same text are merged.
function fields.rows(list)
  local runs, open = {}, {}
  for _, row in ipairs(list) do
    local key = table.concat({ row.field.name, row.field.family == "Zone" and row.zone or "",
                               table.unpack(row, 1, #row) }, "\0")
    local run = open[key]
    if run and row.field.family ~= "PRG" and run.last == row.keygroup - 1 then
      run.last = row.keygroup
    else
      run = { row = row, first = row.keygroup, last = row.keygroup }
      open[key], runs[#runs + 1] = run, run
    end
  end
  local texts = {}
  for i, run in ipairs(runs) do
    local where = ""
    if run.row.field.family ~= "PRG" then
      where = "keygroup " .. run.first + 1 .. (run.last > run.first and "-" .. run.last + 1 or "")
    end
    if run.row.field.family == "Zone" then where = where .. " zone " .. run.row.zone + 1 end
    texts[i] = { run.row.field.name, where, table.unpack(run.row, 1, #run.row) }
  end
  return texts
end

return fields
