-- Values with units: texts such as "5.1 ct" or "-0.5 st" of stored numbers, and stored numbers of
-- texts. units.parse(q, units.text(q, v)) is v for every stored value v.
local units = {}

-- A quantity lists its units, each with its spellings (the first one is printed), the number of
-- stored steps per unit, and the digits after the point. A number without a unit is in the first one.
-- `whole`: a value between two steps is an error, otherwise it is rounded. `from`: the value of step 0.
local CENT, SEMITONE, OCTAVE = { "ct", "cent", "cents" }, { "st", "semitone", "semitones" },
                               { "oct", "octave", "octaves" }

local function unit(spellings, steps, digits)
  return { spellings = spellings, steps = steps, digits = digits or 0 }
end

local QUANTITIES = {
  tuning = { unit(SEMITONE, 256, 3), unit(CENT, 2.56, 1) },
  semitones = { unit(SEMITONE, 1), unit(CENT, 1 / 100), unit(OCTAVE, 12), whole = true },
  octaves = { unit(OCTAVE, 1), unit(SEMITONE, 1 / 12), whole = true },
  hertz = { unit({ "Hz" }, 1), whole = true },
  voices = { unit({ "voices", "voice" }, 1), whole = true, from = 1 },
  number = { unit({ "" }, 1), whole = true },
}

-- The quantities of fields; the others are numbers.
local FIELDS = {
  PRGtune = "tuning", KGtune = "tuning", ZonetuneOffset = "tuning", PRGbendRangeUp = "semitones",
  PRGpitchBendDown = "semitones", PRGpressurePitchBend = "semitones", PRGplayOctave = "octaves",
  KGfixedRateDetune = "hertz", PRGpoly = "voices",
}

units.tuning, units.semitones, units.number = QUANTITIES.tuning, QUANTITIES.semitones, QUANTITIES.number

-- Positions in a sound: frames, or times at that rate if it is not 0.
function units.frames(rate)
  local frames = unit({ "frames", "frame" }, 1)
  return rate > 0 and { frames, unit({ "s" }, rate), unit({ "ms" }, rate / 1000) } or { frames }
end

-- The quantity of a method.
function units.of(method) return QUANTITIES[FIELDS[method] or "number"] end

-- Methods with a quantity.
function units.methods()
  local list = {}
  for method in pairs(FIELDS) do list[#list + 1] = method end
  table.sort(list)
  return list
end

-- The text of a stored value, in the first unit that is not greater than it.
function units.text(quantity, value)
  local shown = value + (quantity.from or 0)
  local best = quantity[1]
  for _, one in ipairs(quantity) do
    best = one
    if shown == 0 or math.abs(shown) >= one.steps then break end
  end
  if shown == 0 then best = quantity[1] end
  local number = ("%." .. best.digits .. "f"):format(shown / best.steps)
  if number:find(".", 1, true) then number = number:gsub("%.?0+$", "") end
  local name = best.spellings[number == "1" and best.spellings[1] == "voices" and 2 or 1]
  return name == "" and number or number .. " " .. name
end

-- The stored value of a text, an integer, and the sign of the text ("+", "-" or ""). `isStep`: the
-- text is a difference. Returns nil and the reason if the text is no number of this quantity.
function units.parse(quantity, text, isStep)
  local sign, digits, name = text:match("^([+-]?)([%d.]+)%s*(.-)$")
  local number = digits and digits:match("^%d*%.?%d*$") and tonumber(digits)
  if not number or number == math.huge or name:find("^[^%a]") then return nil, ("'%s' is not a number"):format(text) end
  local found = name == "" and quantity[1] or nil
  local known = {}
  for _, one in ipairs(quantity) do
    for _, spelling in ipairs(one.spellings) do
      if spelling:lower() == name:lower() then found = found or one end
    end
    if one.spellings[1] ~= "" then known[#known + 1] = one.spellings[1] end
  end
  if not found then
    return nil, #known == 0 and ("'%s' is not a number without a unit"):format(text)
                or ("'%s' is not in %s"):format(text, table.concat(known, " or "))
  end
  local steps = (sign == "-" and -number or number) * found.steps
  if math.abs(steps) > 1 << 53 then steps = sign == "-" and -(1 << 53) or 1 << 53 end
  local value = math.floor(steps + 0.5)
  if quantity.whole and math.abs(value - steps) > 1e-6 then
    local step = quantity[1].spellings[1]
    return nil, ("'%s' is not a whole number%s"):format(text, step == "" and "" or " of " .. step)
  end
  return value - (isStep and 0 or quantity.from or 0), sign
end

return units
