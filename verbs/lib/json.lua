-- Writes JSON. json.object creates an object (names keep their order), json.list a list; json.null
-- is null. NaN and infinities become null.
local json = { null = {} }

function json.object(...) return { pairs = table.pack(...) } end
function json.list(items) return { items = items } end

local ESCAPES = { ['"'] = '\\"', ["\\"] = "\\\\", ["\n"] = "\\n", ["\r"] = "\\r", ["\t"] = "\\t" }

local function escaped(text)
  return (text:gsub('[%c"\\\127]', function(c)
    return ESCAPES[c] or ("\\u%04x"):format(c:byte())
  end))
end

-- Bytes that are not UTF-8 are replaced with U+FFFD.
local function quoted(text)
  local parts, from = {}, 1
  while from <= #text do
    local _, bad = utf8.len(text, from)
    parts[#parts + 1] = escaped(text:sub(from, (bad or #text + 1) - 1))
    if not bad then break end
    parts[#parts + 1] = "\u{FFFD}"
    from = bad + 1
  end
  return '"' .. table.concat(parts) .. '"'
end

function json.encode(value)
  if value == nil or value == json.null then return "null" end
  if type(value) == "string" then return quoted(value) end
  if type(value) == "boolean" then return tostring(value) end
  if math.type(value) == "integer" then return ("%d"):format(value) end
  if type(value) == "number" then
    if value ~= value or math.abs(value) == math.huge then return "null" end
    return ("%.9g"):format(value)
  end
  local parts = {}
  if value.items then
    for i, item in ipairs(value.items) do parts[i] = json.encode(item) end
    return "[" .. table.concat(parts, ", ") .. "]"
  end
  for i = 1, value.pairs.n, 2 do
    parts[#parts + 1] = quoted(value.pairs[i]) .. ": " .. json.encode(value.pairs[i + 1])
  end
  return "{" .. table.concat(parts, ", ") .. "}"
end

return json
