-- Values of program fields: their types and ranges, their texts, and the values of texts.
--
-- A field is shown as the editor names its values (LP4, Velocity, Omni, C3), with its unit
-- (units.lua), or as a number, and is typed in the same way. With `raw`, all are stored numbers.
-- Types and stored ranges are found by trying values on a scratch program, names come from the
-- module, and the ranges in use from the methods' help.
local fields = require "fields"
local notes = require "notes"
local printable = require "text".printable
local reference = require "zyl.reference"
local units = require "units"

local values = {}

local LOWEST, HIGHEST = -2147483648, 2147483647  -- range of a method's integer argument
local LOWS, HIGHS = { LOWEST, -32768, -128, 0 }, { HIGHEST, 65535, 32767, 255, 127 }
local INVALID = "<invalid>"
local MOST_NAMED = 255  -- highest value of a field whose values have names
local SWITCH = { on = true, off = false, ["true"] = true, ["false"] = false, ["1"] = true, ["0"] = false }
-- Parameter numbers that the reference does not list.
local NUMBERS = { PRGmidiChannel = 3, PRGindyOutput = 10 }

local scratch, names, limits = nil, {}, {}

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
function values.kind(field)
  holds(field, nil)
  local value = fields.read(scratch, field, 0, 0)
  return math.type(value) or type(value)
end

local function help(field)
  local method = reference.method(field.method)
  return method and method.meaning or "", method and method.field and method.field.number
                                          or NUMBERS[field.method]
end

-- Whether the value of the field is a key.
function values.isKey(field) return help(field):find("a MIDI note", 1, true) ~= nil end

-- The module's text of the value that the scratch program holds; "" if it has none.
local function nameOfHeld(field, value, meaning, number)
  if meaning:find("^Modulation source") then
    return value >= 0 and value <= 23 and scratch:ModulationSource(value) or ""
  end
  if meaning:find("0 off, else on", 1, true) then return value == 0 and "Off" or "On" end
  if meaning:find("0 or 1", 1, true) then return value == 0 and "Off" or value == 1 and "On" or "" end
  if not number then return "" end
  if field.family == "PRG" then return scratch:PRGStringValue(number) end
  if field.family == "KG" then return scratch:KGStringValue(0, number) end
  return scratch:ZoneStringValue(0, 0, number)
end

-- The names of a field's values: { ofValue, ofName, has (set of values), list }, or nil if they have
-- none. A name that several values share is that of the first of them, from 0 up, then from -1 down.
local function namesOf(field)
  if not field.short then return nil end
  if names[field.method] ~= nil then return names[field.method] or nil end
  names[field.method] = false
  local meaning, number = help(field)
  if values.kind(field) ~= "integer" or units.of(field.method) ~= units.number then return nil end
  local found = { ofValue = {}, ofName = {}, has = {}, list = {} }
  local function add(value)
    local name = holds(field, value) and nameOfHeld(field, value, meaning, number) or ""
    found.has[value] = name ~= "" and name ~= INVALID
    if not found.has[value] or found.ofName[name:lower()] then return end
    found.ofValue[value], found.ofName[name:lower()] = name, value
    if not name:find("^%d+$") then
      found.list[#found.list + 1] = name
    elseif not found.numbered then
      found.numbered = #found.list + 1
      found.list[found.numbered] = name
    else
      found.list[found.numbered] = found.list[found.numbered]:match("^%d+") .. " to " .. name
    end
  end
  add(0)
  if not found.has[0] then return nil end  -- then no value has one
  for value = 1, MOST_NAMED do add(value) end
  for value = -1, -128, -1 do add(value) end
  names[field.method] = found
  return found
end

-- The lowest and highest value that the field can store, and those that its help names.
local function rangeOf(field)
  local range = limits[field.method]
  if range then return range end
  range = {}
  for _, limit in ipairs(LOWS) do
    if not range.low and holds(field, limit) then range.low = limit end
  end
  for _, limit in ipairs(HIGHS) do
    if not range.high and holds(field, limit) then range.high = limit end
  end
  local low, high = help(field):match("(%-?%d+) to (%-?%d+)")
  if low and not namesOf(field) then
    range.usualLow, range.usualHigh = math.tointeger(low), math.tointeger(high)
  end
  limits[field.method] = range
  return range
end

-- A value for display.
function values.text(field, value, raw)
  if value == nil then return "-" end
  if type(value) == "string" then return '"' .. printable(value) .. '"' end
  if type(value) == "boolean" then return value and "On" or "Off" end
  if raw then return tostring(value) end
  if values.isKey(field) then return notes.label(value) end
  local named = namesOf(field)
  return named and named.ofValue[value] or units.text(units.of(field.method), value)
end

-- nil if the value is valid for the field, otherwise the reason. `shown` is the value as it was
-- typed. Without `raw` the value must be in the range that the field's help names.
function values.whyNot(field, value, shown, raw)
  if type(value) ~= "number" then
    if holds(field, value) then return nil end
    return field.name .. (type(value) == "string" and " takes at most 12 bytes" or " does not take "
           .. tostring(value))
  end
  local range, stored, named = rangeOf(field), holds(field, value), not raw and namesOf(field)
  if named then
    if stored and named.has[value] then return nil end
    return ("%s: '%s' is not %s"):format(field.name, shown or value, table.concat(named.list, ", "))
  end
  local usual = range.usualLow and not raw
  if stored and not (usual and (value < range.usualLow or value > range.usualHigh)) then return nil end
  local low, high = usual and range.usualLow or range.low, usual and range.usualHigh or range.high
  if not low or not high or value >= low and value <= high then
    return ("%s does not take %s"):format(field.name, shown or values.text(field, value, raw))
  end
  return ("%s is outside %s to %s, the range of %s%s"):format(
         shown or values.text(field, value, raw), values.text(field, low, raw),
         values.text(field, high, raw), field.name,
         stored and ("; --raw stores %d to %d"):format(range.low, range.high) or "")
end

local function parseNumber(field, text, raw)
  if raw then return units.parse(units.number, text) end
  local named = namesOf(field)
  local value = named and named.ofName[text:lower()] or values.isKey(field) and notes.key(text)
  if value then return value, "" end
  local number, sign = units.parse(units.of(field.method), text)
  if number then return number, sign end
  if named then return nil, ("'%s' is not %s"):format(text, table.concat(named.list, ", ")) end
  if values.isKey(field) then return nil, ("'%s' is not %s"):format(text, notes.accepted()) end
  return nil, sign
end

-- Parses the text of a value, or, if `relative`, of a value or a difference, which starts with a
-- sign. Returns the value, or nil and the difference, or nil, nil and the reason.
function values.parse(field, text, relative, raw)
  local kind = values.kind(field)
  if kind == "string" then
    local obstacle = values.whyNot(field, text)
    if obstacle then return nil, nil, obstacle end
    return text
  end
  if kind == "boolean" then
    local value = SWITCH[text:lower()]
    if value == nil then return nil, nil, ("%s: '%s' is neither on nor off"):format(field.name, text) end
    return value
  end
  if relative and text:find("^[+-]") then
    local step, reason = units.parse(raw and units.number or units.of(field.method), text, true)
    return nil, step, step == nil and field.name .. ": " .. reason or nil
  end
  local value, reason = parseNumber(field, text, raw)
  if value == nil then return nil, nil, field.name .. ": " .. reason end
  local obstacle = values.whyNot(field, value, text, raw)
  if obstacle then return nil, nil, obstacle end
  return value
end

return values
