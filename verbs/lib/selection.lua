-- Keygroups and zones on the command line: numbers from 1, as in 1-8,12.
local cli = require "cli"

local selection = {}

local MOST_KEYGROUPS = 65536

-- Parses "1-8,12" to a list of indexes from 0; `most` is the highest number. A wrong list is an error
-- of the command line; `label` names the option.
function selection.numbers(label, list, most)
  local chosen = {}
  for part in (list .. ","):gmatch("(.-),") do
    local first, last = part:match("^(%d+)%-(%d+)$")
    first = tonumber(first or part:match("^%d+$"))
    last = tonumber(last) or first
    if not first or first < 1 or last < first then
      cli.usage(("%s: '%s' is neither a number from 1 nor a range"):format(label, part))
    elseif last > most then
      cli.usage(("%s: '%s' is outside 1 to %d"):format(label, part, most))
    end
    for i = first, last do chosen[#chosen + 1] = i - 1 end
  end
  return chosen
end

-- Parses "all", "selected" or a list of numbers. Returns a function that returns the indexes of these
-- keygroups of a program, and raises an error if one does not exist.
function selection.keygroups(label, text)
  local listed = text ~= "all" and text ~= "selected" and selection.numbers(label, text, MOST_KEYGROUPS)
  return function(program)
    local count, chosen = program:PRGkeyGroups(), {}
    for _, k in ipairs(listed or {}) do
      if k >= count then error(("%s %s: keygroup %d is outside 1 to %d"):format(label, text, k + 1, count), 0) end
    end
    for k = 0, listed and -1 or count - 1 do
      if text == "all" or program:KGSelect(k) then chosen[#chosen + 1] = k end
    end
    if text == "selected" and #chosen == 0 then error("no keygroup is selected", 0) end
    return listed or chosen
  end
end

-- Formats sorted indexes from 0 as "1-3, 7"; nil if there are none.
function selection.text(indexes)
  local parts, first = {}, nil
  for i, index in ipairs(indexes) do
    first = first or index
    if indexes[i + 1] ~= index + 1 then
      parts[#parts + 1] = first == index and tostring(index + 1) or first + 1 .. "-" .. index + 1
      first = nil
    end
  end
  return #parts > 0 and table.concat(parts, ", ") or nil
end

return selection
