-- Writes pictures as PNG. The pixels are compressed by runs alone: rows are stored as differences to
-- the row above, which makes plain surfaces runs of zeros, in one deflate block of fixed codes.
local png = {}

local CRC = {}
for n = 0, 255 do
  local c = n
  for _ = 1, 8 do c = c & 1 == 1 and 0xEDB88320 ~ (c >> 1) or c >> 1 end
  CRC[n] = c
end

local function chunk(id, data)
  local body, crc = id .. data, 0xFFFFFFFF
  for i = 1, #body do crc = CRC[(crc ~ body:byte(i)) & 255] ~ (crc >> 8) end
  return string.pack(">I4", #data) .. body .. string.pack(">I4", crc ~ 0xFFFFFFFF)
end

local function reversed(code, bits)
  local result = 0
  for _ = 1, bits do
    result = result << 1 | code & 1
    code = code >> 1
  end
  return result
end

-- The fixed codes of deflate for the symbols 0 to 287, first bit lowest, and their lengths.
local CODES, BITS = {}, {}
for symbol = 0, 287 do
  local code, bits
  if symbol < 144 then code, bits = 0x30 + symbol, 8
  elseif symbol < 256 then code, bits = 0x190 + symbol - 144, 9
  elseif symbol < 280 then code, bits = symbol - 256, 7
  else code, bits = 0xC0 + symbol - 280, 8 end
  CODES[symbol], BITS[symbol] = reversed(code, bits), bits
end

-- For a match length of 3 to 258: its symbol, extra bits and their value.
local MATCH = {}
do
  local length = 3
  for symbol = 257, 284 do
    local extra = math.max((symbol - 261) // 4, 0)
    for value = 0, (1 << extra) - 1 do
      MATCH[length] = { symbol, extra, value }
      length = length + 1
    end
  end
  MATCH[258] = { 285, 0, 0 }
end

local function deflate(bytes)
  local out, held, count = {}, 3, 3  -- the last block, with fixed codes
  local function put(value, bits)
    held = held | value << count
    count = count + bits
    while count >= 8 do
      out[#out + 1] = string.char(held & 255)
      held, count = held >> 8, count - 8
    end
  end
  local i, size = 1, #bytes
  while i <= size do
    local byte = bytes[i]
    put(CODES[byte], BITS[byte])
    i = i + 1
    local length = 0
    while length < 258 and bytes[i + length] == byte do length = length + 1 end
    if length >= 3 then
      local match = MATCH[length]
      put(CODES[match[1]], BITS[match[1]])
      put(match[3], match[2])
      put(0, 5)  -- distance 1
      i = i + length
    end
  end
  put(CODES[256], BITS[256])
  if count > 0 then put(0, 8 - count) end
  return table.concat(out)
end

-- The PNG file of width x height pixels: pixels[y * width + x], 0xRRGGBB, from 0.
function png.encode(pixels, width, height)
  local bytes, a, b = {}, 1, 0
  local function add(byte)
    bytes[#bytes + 1] = byte
    a = (a + byte) % 65521
    b = (b + a) % 65521
  end
  for y = 0, height - 1 do
    add(2)
    for x = y * width, y * width + width - 1 do
      local pixel, above = pixels[x], y > 0 and pixels[x - width] or 0
      add((pixel >> 16) - (above >> 16) & 255)
      add((pixel >> 8) - (above >> 8) & 255)
      add(pixel - above & 255)
    end
  end
  return "\137PNG\r\n\26\n" .. chunk("IHDR", string.pack(">I4I4BBBBB", width, height, 8, 2, 0, 0, 0))
         .. chunk("IDAT", "\x78\x01" .. deflate(bytes) .. string.pack(">I4", b << 16 | a))
         .. chunk("IEND", "")
end

return png
