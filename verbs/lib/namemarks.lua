-- Marks in names of recordings: the velocity layer (v2, vel96, pp, hard), the take (rr1, or a
-- number at the end) and the side of a stereo pair (L, right).
local namemarks = {}

-- Dynamic marks and their velocities.
local DYNAMICS = { ppp = 16, pp = 32, p = 48, mp = 64, mf = 80, f = 96, ff = 112, fff = 127,
                   ghost = 20, quietest = 16, quieter = 28, quiet = 40, softest = 16, softer = 28, soft = 40,
                   med = 72, medium = 72, hard = 110, harder = 118, hardest = 126,
                   loud = 110, louder = 118, loudest = 126 }
local VELOCITY_WORDS = { vel = true, velocity = true }
local LAYER_WORDS = { v = true, layer = true, lay = true, dyn = true }
local SIDES = { l = "left", left = "left", r = "right", right = "right" }
local TAKE_WORDS = { rr = true, robin = true, roundrobin = true }

-- Whether a word may follow a note directly, because it marks a layer.
function namemarks.isLayer(word)
  return DYNAMICS[word] ~= nil or LAYER_WORDS[word:lower()] or VELOCITY_WORDS[word:lower()] or false
end

-- The numbers in a name with the word before each: { word, value, first, last }, where first and
-- last are the place of both in the name. The value of more than three digits is -1.
function namemarks.numbers(name)
  local list = {}
  for first, word, number, after in name:gmatch("()(%a*)[_%- ]?(%d+)()") do
    list[#list + 1] = { word = word:lower(), value = #number <= 3 and tonumber(number) or -1,
                        first = first, last = after - 1 }
  end
  return list
end

-- The layer in a name: { velocity } or { rank }, and its place; nil if there is none.
function namemarks.layer(name)
  for _, number in ipairs(namemarks.numbers(name)) do
    if number.value >= 0 and number.value <= 127 then
      local kind = VELOCITY_WORDS[number.word] and "velocity" or LAYER_WORDS[number.word] and "rank"
      if kind then return { [kind] = number.value }, number.first, number.last end
    end
  end
  local layer, from, to
  for first, word, after in name:gmatch("()(%a+)()") do
    local velocity = DYNAMICS[word] or #word > 1 and DYNAMICS[word:lower()]
    if velocity then layer, from, to = { velocity = velocity }, first, after - 1 end
  end
  return layer, from, to
end

local function without(name, first, last)
  return (name:sub(1, first - 1) .. " " .. name:sub(last + 1))
end

-- The take in a name: { number, base (the name without it), marked (whether the name calls it a
-- round robin) }; nil if there is none.
function namemarks.take(name)
  for _, number in ipairs(namemarks.numbers(name)) do
    if TAKE_WORDS[number.word] and number.value >= 0 then
      return { number = number.value, base = without(name, number.first, number.last), marked = true }
    end
  end
  local base, gap, digits = name:match("^(.-)([_%-%s%(%[]*)(%d+)[%)%]]?$")
  local isNote = base and gap == "" and base:match("%f[%a][A-Ga-g][#b]?$")
  if not base or base == "" or isNote then return nil end
  return { number = tonumber(digits), base = base, marked = false }
end

-- The name of a drum: lower case, without layer and take; the whole name if nothing remains.
function namemarks.drum(name)
  local rest = name
  local layer, first, last = namemarks.layer(rest)
  if layer then rest = without(rest, first, last):gsub("[_%-%s%(%)%[%]]+$", "") end
  local take = namemarks.take(rest)
  rest = (take and take.base or rest):lower():gsub("[_%-%s]+", " "):gsub("^ ", ""):gsub(" $", "")
  return rest ~= "" and rest or name
end

-- Whether names differ only in layer, take and numbers.
function namemarks.areSimilar(a, b)
  return namemarks.drum(a):gsub("%d+", "") == namemarks.drum(b):gsub("%d+", "")
end

-- The side that a word of the name marks ("left" or "right") and the name without it; nil if none does.
function namemarks.side(name)
  local side, rest
  for first, word, after in name:gmatch("%f[%w]()(%a+)()%f[%W]") do
    if SIDES[word:lower()] then
      side = SIDES[word:lower()]
      rest = name:sub(1, first - 1):gsub("[_%-%s%.%(%[]+$", "") .. name:sub(after):gsub("^[%)%]]", "")
    end
  end
  return side, rest
end

return namemarks
