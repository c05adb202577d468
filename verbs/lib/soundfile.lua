-- Inspects a sound file: container, encoding and chunks. Reads WAVE and AIFF chunk by chunk and
-- checks all declared sizes.
local disk = require "disk"

local soundfile = {}

local MOST_CHUNKS = 4096
local FLAC_CHANNELS = 20   -- place of the byte whose bits 1 to 3 are the number of channels minus 1
local WAVE_CODES = { [1] = "PCM", [2] = "ADPCM", [3] = "float", [6] = "A-law", [7] = "µ-law",
                     [0x11] = "IMA ADPCM", [0x31] = "GSM", [0x55] = "MP3" }
local AIFC_PLAIN = { NONE = true, twos = true, sowt = true, in24 = true, in32 = true,
                     ["42ni"] = true, ["23ni"] = true }
-- The extensions with which a file is written in the same container.
local EXTENSIONS = { WAVE = { wav = true, wave = true },
                     AIFF = { aif = true, aiff = true, aifc = true } }

local function waveEncoding(data)
  if #data < 16 then return nil end
  local code, bits = string.unpack("<I2", data), string.unpack("<I2", data, 15)
  if code == 0xFFFE and #data >= 26 then code = string.unpack("<I2", data, 25) end
  return (WAVE_CODES[code] or ("code 0x%04X"):format(code)) .. " " .. bits .. " bits", code == 1
end

local function aiffEncoding(data, form)
  if #data < 18 then return nil end
  local bits = string.unpack(">I2", data, 7)
  local kind = form == "AIFC" and data:sub(19, 22) or "NONE"
  if AIFC_PLAIN[kind] then return "PCM " .. bits .. " bits", true end
  return kind:gsub("[^%w ]", "?") .. " " .. bits .. " bits", false
end

-- Reads the chunks after the 12-byte file header into found.chunks.
local function walk(file, found, order, fileSize)
  local position, size64 = 12, nil
  while position + 8 <= fileSize do
    if #found.chunks == MOST_CHUNKS then
      found.problem = "more than " .. MOST_CHUNKS .. " chunks"
      return
    end
    file:seek("set", position)
    local head = file:read(8)
    if not head or #head < 8 then break end
    local id, size = head:sub(1, 4), string.unpack(order .. "I4", head, 5)
    if id == "data" and size == 0xFFFFFFFF and size64 then size = size64 end
    local there = math.min(size, fileSize - position - 8)
    local chunk = { id = id:gsub("[^\32-\126]", "?"), size = there, declared = size,
                    cut = size > there }
    found.chunks[#found.chunks + 1] = chunk
    if id == "ds64" or id == "fmt " or id == "COMM" then
      local data = file:read(math.min(there, 64)) or ""
      if id == "ds64" and #data >= 16 then size64 = string.unpack("<I8", data, 9) & (1 << 62) - 1
      elseif id == "fmt " and not found.encoding then
        found.encoding, found.plain = waveEncoding(data)
        found.channels = found.encoding and string.unpack("<I2", data, 3)
      elseif id == "COMM" and not found.encoding then
        found.encoding, found.plain = aiffEncoding(data, found.form)
        found.channels = found.encoding and string.unpack(">I2", data)
      end
    end
    if chunk.cut then found.problem = "chunk '" .. chunk.id .. "' is truncated" end
    position = position + 8 + there + there % 2
  end
  if not found.problem and position < fileSize then
    found.problem = (fileSize - position) .. " bytes after the last chunk"
  end
end

-- Returns container ("WAVE", "AIFF" or nil for others), form (as in the file), encoding (text),
-- plain (whether it is PCM), channels (nil if unknown), chunks (id, available size, declared size, cut), and problem (text);
-- or nil and the reason if the file cannot be read.
function soundfile.inspect(path)
  local file, reason = disk.open(path)
  if not file then return nil, reason end
  local head, failure = file:read(12)
  if not head then
    file:close()
    return nil, failure and failure:gsub("^.*: ", "") or "the file is empty"
  end
  local found = { chunks = {} }
  local outer, inner = head:sub(1, 4), head:sub(9, 12)
  local size = file:seek("end")
  if (outer == "RIFF" or outer == "RF64" or outer == "BW64") and inner == "WAVE" then
    found.container, found.form = "WAVE", outer == "RIFF" and "WAVE" or "WAVE (" .. outer .. ")"
    walk(file, found, "<", size)
  elseif outer == "FORM" and (inner == "AIFF" or inner == "AIFC") then
    found.container, found.form = "AIFF", inner
    walk(file, found, ">", size)
  else
    found.form = outer == "fLaC" and "FLAC" or outer == "OggS" and "Ogg" or "other"
    file:seek("set", FLAC_CHANNELS)
    local byte = outer == "fLaC" and file:read(1)
    found.channels = byte and (byte:byte() >> 1 & 7) + 1 or nil
  end
  file:close()
  return found
end

-- Whether the file has a chunk with a root key.
function soundfile.hasKey(found)
  for _, chunk in ipairs(found.chunks) do
    local id = chunk.id
    if id == "INST" or (id == "smpl" or id == "inst" or id == "zyls") and found.container then
      return true
    end
  end
  return false
end

-- nil if the file can be rewritten without changing its sound or container, otherwise the reason.
function soundfile.whyNotWritable(path, found)
  if not found.container then return "only WAVE and AIFF files can be written" end
  local extension = path:lower():match("%.([^./]*)$") or ""
  if not EXTENSIONS[found.container][extension] then
    return "extension does not match its format (" .. found.container .. "): not written"
  end
  if not found.plain then
    return "its sound (" .. (found.encoding or "unknown") .. ") would be converted: not written"
  end
  if found.problem then return found.problem .. ": not written" end
  local probe, reason = disk.open(path, "r+b")
  if not probe then return reason end
  probe:close()
  return nil
end

return soundfile
