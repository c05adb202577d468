-- Columns of plain numbers in the names of a batch of recordings, such as "Vib 064 55": which of
-- them may be keys, and which velocities.
local numbercolumns = {}

local MOST_COLUMNS = 8
local LOWEST_KEY = 12      -- lower numbers are not taken as keys
local LOWEST_PIANO = 21    -- numbers that count from below it only count the files
local MOST_TAKES = 8       -- numbers that count from 1 to at most this are takes, not velocities

-- The numbers in a name that are not adjacent to letters; -1 for more than three digits.
local function plainNumbers(name)
  local list, padded = {}, "_" .. name .. "_"
  for before, number, after in padded:gmatch("()%f[%d](%d+)()") do
    if not padded:sub(before - 1, before - 1):match("%a") and not padded:sub(after, after):match("%a") then
      list[#list + 1] = #number <= 3 and tonumber(number) or -1
    end
  end
  return list
end

-- Column c of the lists and its distinct values in rising order; nil unless all values exist and
-- are within low to high.
local function column(lists, c, low, high)
  local values, seen, distinct = {}, {}, {}
  for i, list in ipairs(lists) do
    local value = list[c]
    if not value or value < low or value > high then return nil end
    values[i] = value
    if not seen[value] then distinct[#distinct + 1] = value end
    seen[value] = true
  end
  table.sort(distinct)
  return values, distinct
end

local function counts(distinct) return distinct[#distinct] - distinct[1] == #distinct - 1 end

-- The column c as velocities: numbers from 1 to 127 that repeat for other keys, if there are any.
local function velocities(lists, c, isOneKey)
  local values, distinct = column(lists, c, 1, 127)
  if not values or #distinct < 2 or #distinct == #lists and not isOneKey then return nil end
  if counts(distinct) and distinct[1] == 1 and #distinct <= MOST_TAKES then return nil end
  return values
end

-- The ways to read the names: a list of { column, keys, isOneKey, velocityColumn, velocities }, the
-- last two optional. A column of keys is one that every name has, that is not below LOWEST_KEY and
-- does not just count the files; isOneKey is set if it has the same number in all names. The
-- velocities are in the column after it, or else before it.
function numbercolumns.read(names)
  local lists, ways = {}, {}
  for i, name in ipairs(names) do lists[i] = plainNumbers(name) end
  for c = 1, #names > 0 and MOST_COLUMNS or 0 do
    local keys, distinct = column(lists, c, LOWEST_KEY, 127)
    local isOneKey = keys and #distinct == 1
    if keys and (isOneKey or not (counts(distinct) and distinct[1] < LOWEST_PIANO)) then
      local way = { column = c, keys = keys, isOneKey = isOneKey }
      for _, other in ipairs { c + 1, c - 1 } do
        local values = not way.velocities and velocities(lists, other, isOneKey)
        if values then way.velocities, way.velocityColumn = values, other end
      end
      ways[#ways + 1] = way
    end
  end
  return ways
end

return numbercolumns
