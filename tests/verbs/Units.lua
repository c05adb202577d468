-- Values as text: every value that a field takes is the value of its text; a field with a unit takes
-- all stored values. The ranges that the help names can be stored. A stored number is the number of its
-- meaning, and the document lists the meanings.
package.path = arg[1] .. "/verbs/lib/?.lua;" .. package.path
local fields, units, values = require "fields", require "units", require "values"
local meanings = require "meanings"
local reference = require "zyl.reference"

local LOW, HIGH = -32768, 65535
local checked = {}  -- numbers of values, by method

for _, field in ipairs(fields.all()) do
  local wide = values.kind(field) == "integer" and not values.whyNot(field, 256, nil, true)
  local low, high = wide and LOW or -128, wide and HIGH or 255
  local count = 0
  for value = low, values.kind(field) == "integer" and high or low - 1 do
    if not values.whyNot(field, value) then
      local text = values.text(field, value)
      local parsed, _, reason = values.parse(field, text, false)
      assert(parsed == value, ("%s %d is shown as %s: %s"):format(field.name, value, text,
                                                                   reason or parsed))
      local curve = meanings.of(field.method)
      assert(not curve or curve.stored(curve.value(value)) == value, field.name .. " " .. value)
      count = count + 1
    end
  end
  checked[field.method] = count
  local lowest, highest = reference.method(field.method).meaning:match("(%-?%d+) to (%-?%d+)")
  for _, limit in ipairs { lowest or 0, highest or 0 } do
    assert(values.kind(field) ~= "integer" or not values.whyNot(field, math.tointeger(limit)),
           field.name .. " does not take the limit " .. limit)
  end
end
for _, method in ipairs(units.methods()) do
  local count = checked[method]
  assert(count == 256 or count == 65536, method)
end
for _, rate in ipairs { 0, 1, 44100, 4294967295 } do
  local frames = units.frames(rate)
  for value = 0, HIGH, 7 do assert(units.parse(frames, units.text(frames, value)) == value) end
end
local document = io.open(arg[1] .. "/docs/formats.md"):read("a")
for _, row in ipairs(meanings.rows()) do
  assert(document:find(row, 1, true), "docs/formats.md lacks " .. row)
end
