-- The settings of a sample that can be typed, FIELD=VALUE: their texts, values and limits. A setting
-- is read from and changed in the facts of samples.facts, and then stored in the sample.
local fields = require "fields"
local notes = require "notes"
local printable = require "text".printable
local samples = require "samples"
local units = require "units"
local values = require "values"

local settings = {}

local MOST_KEY, MOST_TUNE = 127, 32767
local MOST_LOOPS, MOST_COUNTED = 16, 8   -- loops, and those with a number of repetitions
local FRACTIONS = 4294967296             -- steps of a loop's fraction per frame
local LOOP, UNTIL_RELEASE, NO_LOOPS = 0, 1, 2  -- playback types
local PLAYBACKS = 4
local CHECK_RATE = 44100                 -- to check the form of times before a file is open

-- The name of a playback type, as in the editor.
function settings.playback(value)
  return value >= 0 and value < PLAYBACKS and values.text(fields.find("Zoneplaybacktype"), value + 1)
         or tostring(value)
end

function settings.tune(value) return units.text(units.tuning, value) end

local function loopText(loop)
  local fraction = loop.fraction > 0 and ("%.10f"):format(loop.fraction):gsub("^0", "+"):gsub("0+$", "") or ""
  return ("%d-%d%s%s"):format(loop.first, loop.last, fraction,
                              (loop.times or 0) > 0 and " x" .. loop.times or "")
end

local function loopsText(loops)
  local list = {}
  for i, loop in ipairs(loops) do list[i] = loopText(loop) end
  return #list == 0 and "none" or table.concat(list, ", ")
end

-- START-END, optionally with +FRACTION of a frame and xTIMES, separated by commas.
local function parseLoops(text, rate)
  local loops, frames = {}, units.frames(rate)
  if text:lower() == "none" then return loops end
  for part in (text .. ","):gmatch("%s*(.-)%s*,") do
    local rest, times = part:match("^(.-)%s*[xX]%s*(%d+)$")
    rest = rest or part
    local from, to, fraction = rest:match("^([^-+]+)%-([^-+]+)%+(0?%.%d+)$")
    if not from then from, to = rest:match("^([^-+]+)%-([^-+]+)$") end
    if not from then
      return nil, ("'%s' is not START-END, as in 1000-2000 or 0.5s-1.2s x3"):format(part)
    end
    local first, reason = units.parse(frames, from)
    if not first then return nil, reason end
    local last, reason2 = units.parse(frames, to)
    if not last then return nil, reason2 end
    local count = math.tointeger(tonumber(times or 0))
    if not count then return nil, ("'%s' is not a number of repetitions"):format(times) end
    local steps = math.floor((tonumber(fraction) or 0) * FRACTIONS + 0.5)
    loops[#loops + 1] = { first = first, last = last, times = count,
                          fraction = math.min(steps, FRACTIONS - 1) / FRACTIONS }
  end
  return loops
end

local function parsePlayback(text)
  for value = 0, PLAYBACKS - 1 do
    if text:lower() == settings.playback(value):lower() or text == tostring(value) then return value end
  end
  local names = {}
  for value = 0, PLAYBACKS - 1 do names[value + 1] = settings.playback(value) end
  return nil, ("'%s' is not %s"):format(text, table.concat(names, ", "))
end

local function parseKey(text)
  local key = notes.key(text)
  if key then return key end
  return nil, ("'%s' is not %s"):format(text, notes.accepted())
end

local function parseName(text)
  if text:find("%c") then return nil, "the name has a control character" end
  return text
end

-- Each with `of`, its name in the facts, and text(value, rate). A number also has quantity(rate), any
-- other setting parse(text, rate); keys have both, for steps.
local FIELDS = {
  name = { of = "name", text = function(value) return '"' .. printable(value) .. '"' end, parse = parseName },
  key = { of = "key", text = notes.label, parse = parseKey, quantity = function() return units.number end },
  tune = { of = "tune", text = settings.tune, quantity = function() return units.tuning end },
  playback = { of = "playback", text = settings.playback, parse = parsePlayback },
  start = { of = "first", quantity = units.frames },
  ["end"] = { of = "last", quantity = units.frames },
  loops = { of = "loops", text = loopsText, parse = parseLoops },
}
local ORDER = { "name", "key", "tune", "playback", "start", "end", "loops" }

function settings.text(name, value, rate)
  local field = FIELDS[name]
  return field.text and field.text(value) or units.text(field.quantity(rate), value)
end

-- The value and the difference of a typed setting in a file of that rate; nil, nil and the reason if
-- it is malformed.
local function parsed(setting, rate)
  local field = FIELDS[setting.name]
  if field.quantity and setting.relative then
    local step, reason = units.parse(field.quantity(rate), setting.typed, true)
    return nil, step, step == nil and reason or nil
  end
  local value, reason
  if field.parse then value, reason = field.parse(setting.typed, rate)
  else value, reason = units.parse(field.quantity(rate), setting.typed) end
  return value, nil, value == nil and reason or nil
end

local function whyNotTune(value)
  if math.abs(value) <= MOST_TUNE then return nil end
  return ("%s is outside %s to %s"):format(settings.tune(value), settings.tune(-MOST_TUNE),
                                           settings.tune(MOST_TUNE))
end

-- Whether the word has the form FIELD=VALUE of a setting.
function settings.isSetting(word)
  local name = word:match("^(%a+):?=")
  return name ~= nil and FIELDS[name:lower()] ~= nil
end

-- Parses FIELD=VALUE or FIELD:=VALUE. Returns nil and the reason if it is malformed.
function settings.parse(word)
  local name, sign, typed = word:match("^(%a+)(:?=)(.*)$")
  if not name then return nil, ("'%s' is not FIELD=VALUE"):format(word) end
  local setting = { name = name:lower(), typed = typed,
                    relative = sign == "=" and typed:find("^[+-]") ~= nil }
  if not FIELDS[setting.name] then
    return nil, ("there is no field '%s'%s"):format(name, host.suggestion(name, ORDER))
  end
  local value, _, reason = parsed(setting, CHECK_RATE)
  if setting.name == "tune" and value then reason = whyNotTune(value) end
  if reason then return nil, name .. ": " .. reason end
  return setting
end

-- Raises an error if the positions are not in the sound.
local function checkPositions(it, given)
  local last = it.frames - 1
  local function check(name, value, low, high)
    if value < low or value > high then
      error(("%s: frame %d is outside %d to %d"):format(name, value, low, high), 0)
    end
  end
  if given.start or given["end"] then
    check("end", it.last, 0, last)
    check("start", it.first, 0, it.last)
  end
  for i, loop in ipairs(given.loops and it.loops or {}) do
    if i > MOST_LOOPS then error(("loops: at most %d loops"):format(MOST_LOOPS), 0) end
    if i > MOST_COUNTED and loop.times > 0 then
      error(("loops: only the first %d loops can have a number of repetitions"):format(MOST_COUNTED), 0)
    end
    check(("loop %d end"):format(i), loop.last, 0, last)
    check(("loop %d start"):format(i), loop.first, 0, loop.last)
  end
end

-- The facts with the settings in them. Returns them, and the names of the settings that were clamped.
-- Raises an error if one is impossible.
function settings.applied(list, it)
  local new, given, clamped = {}, {}, {}
  for name, value in pairs(it) do new[name] = value end
  for _, setting in ipairs(list) do
    local of = FIELDS[setting.name].of
    local value, step, reason = parsed(setting, it.rate)
    if reason then error(setting.name .. ": " .. reason, 0) end
    value = step and new[of] + step or value
    if setting.name == "key" and (value < 0 or value > MOST_KEY) then
      value, clamped[#clamped + 1] = math.min(math.max(value, 0), MOST_KEY), setting.name
    end
    local obstacle = setting.name == "tune" and whyNotTune(value)
    if obstacle then error("tune: " .. obstacle, 0) end
    new[of], given[setting.name] = value, true
    new.setsKey = given.key
  end
  checkPositions(new, given)
  -- With loops the playback type must loop, and without loops it must not.
  if given.loops and not given.playback then
    if #new.loops > 0 and new.playback == NO_LOOPS then new.playback = LOOP end
    if #new.loops == 0 and (new.playback == LOOP or new.playback == UNTIL_RELEASE) then
      new.playback = NO_LOOPS
    end
  end
  return new, clamped
end

-- The differences, and with `noKey` (the file stores none) also a key that was set: a list of { name, old, new, oldText, newText }.
function settings.differences(it, new, noKey)
  local list = {}
  for _, name in ipairs(ORDER) do
    local old, value = it[FIELDS[name].of], new[FIELDS[name].of]
    local oldText, newText = settings.text(name, old, it.rate), settings.text(name, value, it.rate)
    local storesKey = name == "key" and noKey and new.setsKey
    if storesKey then oldText = "none" end
    if oldText ~= newText or name == "name" and old ~= value then
      list[#list + 1] = { name = name, old = old, new = value, oldText = oldText, newText = newText }
    end
  end
  return list
end

local function storeLoops(program, sample, loops)
  program:SampleLoopCount(sample, #loops)
  for i, loop in ipairs(loops) do
    program:SampleLoopStart(sample, i - 1, loop.first)
    program:SampleLoopEnd(sample, i - 1, loop.last)
    program:SampleLoopFineLen(sample, i - 1, loop.fraction * FRACTIONS)
    if i <= MOST_COUNTED then program:SampleLoopTimes(sample, i - 1, loop.times) end
  end
end

-- Stores the differences in the open sample. Raises an error if it rejects a value.
function settings.store(program, sample, differences)
  local calls = { name = "SampleName", key = "Samplekey", tune = "Sampletune", start = "SampleStart",
                  ["end"] = "SampleEnd", playback = "SampleplaybackType" }
  for _, it in ipairs(differences) do
    if it.name == "loops" then storeLoops(program, sample, it.new)
    else program[calls[it.name]](program, sample, it.new) end
  end
  local facts = samples.facts(program, sample)
  for _, it in ipairs(differences) do
    if settings.text(it.name, facts[FIELDS[it.name].of], facts.rate) ~= it.newText then
      error(("%s: the sample rejects %s"):format(it.name, it.newText), 0)
    end
  end
end

return settings
