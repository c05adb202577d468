-- Markers in the bytes of a WAVE or AIFF file: moves those that are not loops.
local markers = {}

local MOST = 0xFFFFFFFF

function markers.has(found)
  for _, chunk in ipairs(found.chunks) do
    if chunk.id == "cue " or chunk.id == "MARK" then return true end
  end
  return false
end

-- Calls use(id, position, size) for each chunk; position is that of its content, from 1.
local function eachChunk(bytes, order, use)
  local at = 13
  while at + 8 <= #bytes + 1 do
    local id, size = bytes:sub(at, at + 3), string.unpack(order .. "I4", bytes, at + 4)
    size = math.min(size, #bytes - at - 7)
    use(id, at + 8, size)
    at = at + 8 + size + size % 2
  end
end

-- Collects replacements of 4-byte numbers.
local function patch(order)
  local list = {}
  return {
    set = function(at, value)
      list[#list + 1] = { at = at, bytes = string.pack(order .. "I4", math.min(math.max(value, 0), MOST)) }
    end,
    applied = function(bytes)
      table.sort(list, function(a, b) return a.at < b.at end)
      local parts, from = {}, 1
      for _, it in ipairs(list) do
        parts[#parts + 1], parts[#parts + 2] = bytes:sub(from, it.at - 1), it.bytes
        from = it.at + 4
      end
      return table.concat(parts) .. bytes:sub(from)
    end,
  }
end

-- Cue points, and the lengths of regions (ltxt) that start at them.
local function wave(bytes, move)
  local places, changes = {}, patch("<")
  eachChunk(bytes, "<", function(id, at, size)
    if id ~= "cue " or size < 4 then return end
    for i = 0, math.min(string.unpack("<I4", bytes, at), (size - 4) // 24) - 1 do
      local entry = at + 4 + 24 * i
      local name, place = string.unpack("<I4I4", bytes, entry)
      local frame = string.unpack("<I4", bytes, entry + 20)
      places[name] = frame
      changes.set(entry + 4, move(place))
      changes.set(entry + 20, move(frame))
    end
  end)
  eachChunk(bytes, "<", function(id, at, size)
    if id ~= "LIST" or bytes:sub(at, at + 3) ~= "adtl" then return end
    local entry, stop = at + 4, at + size
    while entry + 8 <= stop do
      local kind, length = bytes:sub(entry, entry + 3), string.unpack("<I4", bytes, entry + 4)
      if kind == "ltxt" and length >= 8 and entry + 16 <= stop then
        local name, frames = string.unpack("<I4I4", bytes, entry + 8)
        local place = places[name]
        if place then changes.set(entry + 12, move(place + frames) - move(place)) end
      end
      entry = entry + 8 + length + length % 2
    end
  end)
  return changes.applied(bytes)
end

-- Skips the markers of loops, which have been moved already: those that INST or zyls refer to and that
-- are at the start or after the end of a loop.
local function aiff(bytes, move, loops)
  local named, places, changes = {}, {}, patch(">")
  for _, loop in ipairs(loops) do places[loop.first], places[loop.last + 1] = true, true end
  eachChunk(bytes, ">", function(id, at, size)
    local order, first, step = ">", at + 10, 6
    if id == "zyls" then order, first, step = "<", at + 60, 24 end
    if id ~= "INST" and id ~= "zyls" then return end
    for place = first, at + size - 4, step do
      local from, to = string.unpack(order .. "I2I2", bytes, place)
      named[from], named[to] = true, true
    end
  end)
  eachChunk(bytes, ">", function(id, at, size)
    if id ~= "MARK" or size < 2 then return end
    local entry = at + 2
    for _ = 1, string.unpack(">I2", bytes, at) do
      if entry + 7 > at + size then break end
      local number, place, length = string.unpack(">I2I4B", bytes, entry)
      if not (named[number] and places[place]) then changes.set(entry + 2, move(place)) end
      entry = entry + 7 + length + (length + 1) % 2
    end
  end)
  return changes.applied(bytes)
end

-- The bytes of a file with its markers moved; move(frame) returns the new place of a frame, and `loops`
-- are those of the file.
function markers.moved(bytes, move, loops)
  if bytes:sub(9, 12) == "WAVE" then return wave(bytes, move) end
  if bytes:sub(1, 4) == "FORM" then return aiff(bytes, move, loops) end
  return bytes
end

return markers
