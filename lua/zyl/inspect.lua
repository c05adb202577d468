-- Formats values for display: strings in quotes, tables completely with sorted keys, objects by
-- their class. Recursion into a table is named, not followed; output of more than a few screens is
-- cut, with the amount that is left out.
local WIDTH = 96          -- columns before a table uses one line per element
local MOST_DEPTH = 8
local MOST_ELEMENTS = 1000  -- in total
local MOST_BYTES = 2000     -- of one string

local function quoted(text)
  local left = #text - MOST_BYTES
  if left > 0 then text = text:sub(1, MOST_BYTES) end
  text = text:gsub('[%c"\\\127]', function(c)
    local known = { ["\n"] = "\\n", ["\t"] = "\\t", ["\r"] = "\\r", ['"'] = '\\"', ["\\"] = "\\\\" }
    return known[c] or ("\\x%02X"):format(c:byte())
  end)
  if not utf8.len(text) then
    text = text:gsub("[\128-\255]", function(c) return ("\\x%02X"):format(c:byte()) end)
  end
  return '"' .. text .. '"' .. (left > 0 and (" ... %d bytes more"):format(left) or "")
end

local function plain(value)
  if type(value) == "string" then return quoted(value) end
  return (tostring(value):gsub("%c", "?"))
end

local keywords = {}
for word in ([[and break do else elseif end false for function goto if in local nil not or repeat
               return then true until while]]):gmatch("%a+") do
  keywords[word] = true
end

local function keyText(key)
  if type(key) == "string" and key:find("^[%a_][%w_]*$") and not keywords[key] then return key end
  return "[" .. plain(key) .. "]"
end

-- Keys that are not list indexes: sorted numbers, then sorted strings, then the rest.
local function otherKeys(t, count)
  local keys = {}
  for key in next, t do
    local inList = math.type(key) == "integer" and key >= 1 and key <= count
    if not inList then keys[#keys + 1] = key end
  end
  local ranks = { number = 1, string = 2 }
  local function rank(key) return ranks[type(key)] or 3 end
  table.sort(keys, function(a, b)
    if rank(a) ~= rank(b) then return rank(a) < rank(b) end
    if rank(a) == 3 then return tostring(a) < tostring(b) end
    return a < b
  end)
  return keys
end

local show

local function showTable(t, state, indent)
  local meta = getmetatable(t)
  if type(meta) == "table" and meta.__tostring then return plain(t) end
  if state.inside[t] then return "(the table it is in)" end
  if next(t) == nil then return "{}" end
  if state.depth == MOST_DEPTH then return "{...}" end
  local parts, count = {}, rawlen(t)
  local function add(prefix, value)
    state.left = state.left - 1
    if state.left < 0 then return false end
    parts[#parts + 1] = prefix .. show(value, state, indent .. "  ")
    return true
  end
  state.inside[t] = true
  state.depth = state.depth + 1
  local shown, keys = 0, otherKeys(t, count)
  for i = 1, count do
    if not add("", rawget(t, i)) then break end
    shown = shown + 1
  end
  for _, key in ipairs(keys) do
    if not add(keyText(key) .. " = ", rawget(t, key)) then break end
    shown = shown + 1
  end
  state.depth = state.depth - 1
  state.inside[t] = nil
  local missing = count + #keys - shown
  if missing > 0 then parts[#parts + 1] = ("... %d more"):format(missing) end

  local line, multiline = "{ " .. table.concat(parts, ", ") .. " }", false
  for _, part in ipairs(parts) do multiline = multiline or part:find("\n", 1, true) end
  if not multiline and #indent + #line <= WIDTH then return line end
  if not multiline and #keys == 0 then
    -- A list of short values is wrapped.
    local lines, current = {}, indent .. "  "
    for i, part in ipairs(parts) do
      local piece = part .. (i < #parts and ", " or "")
      if #current + #piece > WIDTH and #current > #indent + 2 then
        lines[#lines + 1] = current:gsub(" $", "")
        current = indent .. "  "
      end
      current = current .. piece
    end
    lines[#lines + 1] = current
    return "{\n" .. table.concat(lines, "\n") .. "\n" .. indent .. "}"
  end
  return "{\n" .. indent .. "  " .. table.concat(parts, ",\n" .. indent .. "  ") .. "\n" .. indent ..
         "}"
end

function show(value, state, indent)
  if type(value) == "table" then return showTable(value, state, indent) end
  return plain(value)
end

return function(value)
  return show(value, { inside = {}, depth = 0, left = MOST_ELEMENTS }, "")
end
