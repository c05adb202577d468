-- A surface to draw on that becomes an SVG or a PNG file. Lengths are pixels, y down; colours are
-- 0xRRGGBB. Both kinds have rect, line, area, text and encode.
local png = require "png"

local canvas = {}

-- SVG -------------------------------------------------------------------------------------------

local Svg = {}
Svg.__index = Svg

local function escaped(text)
  text = text:gsub("%c", "?"):gsub("[&<>]", { ["&"] = "&amp;", ["<"] = "&lt;", [">"] = "&gt;" })
  return utf8.len(text) and text or text:gsub("[\128-\255]", "?")
end

function Svg:add(format, ...) self.parts[#self.parts + 1] = format:format(...) end

function Svg:rect(x, y, width, height, colour)
  self:add('<rect x="%.1f" y="%.1f" width="%.1f" height="%.1f" fill="#%06x"/>', x, y, width, height,
           colour)
end

-- Points are { x, y } pairs.
function Svg:line(points, width, colour)
  local places = {}
  for i, point in ipairs(points) do places[i] = ("%.1f,%.1f"):format(point[1], point[2]) end
  self:add('<polyline points="%s" fill="none" stroke="#%06x" stroke-width="%.1f" '
           .. 'stroke-linejoin="round" stroke-linecap="round"/>', table.concat(places, " "), colour,
           width)
end

-- A filled shape: for column i at x + i - 1 from tops[i] to bottoms[i].
function Svg:area(x, tops, bottoms, colour)
  local places = {}
  for i, y in ipairs(tops) do places[#places + 1] = ("%d,%.1f"):format(x + i - 1, y) end
  for i = #bottoms, 1, -1 do
    places[#places + 1] = ("%d,%.1f"):format(x + i - 1, bottoms[i])
  end
  self:add('<polygon points="%s" fill="#%06x"/>', table.concat(places, " "), colour)
end

-- `y` is the baseline; anchor "start", "middle" or "end".
function Svg:text(x, y, text, size, colour, anchor)
  self:add('<text x="%.1f" y="%.1f" font-size="%d" fill="#%06x" text-anchor="%s">%s</text>', x, y,
           size, colour, anchor or "start", escaped(text))
end

function Svg:encode()
  return ('<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" viewBox="0 0 %d %d" '
          .. 'font-family="sans-serif">\n'):format(self.width, self.height, self.width, self.height)
         .. table.concat(self.parts, "\n") .. "\n</svg>\n"
end

-- PNG -------------------------------------------------------------------------------------------

local Raster = {}
Raster.__index = Raster

-- Letters as strokes on a grid of 4 by 6, y down: lines apart by "|", each point two digits.
local STROKES = {
  A = "0602204246|0444", B = "003041423303|334445360600", C = "4130100105163645",
  D = "00304145360600", E = "40000646|0333", F = "400006|0333", G = "41301001051636454323",
  H = "0006|4046|0343", I = "2026|1030|1636", J = "4045361605", K = "0006|400346", L = "000646",
  M = "0600234046", N = "06004640", O = "103041453616050110", P = "06003041423303",
  Q = "103041453616050110|2446", R = "06003041423303|2346", S = "413010010213334445361605",
  T = "0040|2026", U = "000516364540", V = "002640", W = "0016233640", X = "0046|4006",
  Y = "002340|2326", Z = "00400646", ["0"] = "103041453616050110", ["1"] = "112026|1636",
  ["2"] = "01103041420646", ["3"] = "01103041423313|334445361605", ["4"] = "36300444",
  ["5"] = "400002324345361605", ["6"] = "30100105163645443303", ["7"] = "004016",
  ["8"] = "103041423313020110|1304051636454433", ["9"] = "43130201103041453616",
  ["#"] = "1016|3036|0242|0444", ["-"] = "0343", ["+"] = "2125|0343", ["."] = "2526",
  [","] = "2517", ["/"] = "4006", ["%"] = "4006|0010110100|3545463635", ["("] = "30121436",
  [")"] = "10323416", ["_"] = "0646", ["'"] = "2022", [":"] = "2122|2526", ["="] = "0242|0444",
  [" "] = "",
}
local UNKNOWN = "0040460600"

function Raster:blend(index, colour, part)
  if part >= 1 then
    self.pixels[index] = colour
    return
  end
  local old, mixed = self.pixels[index], 0
  for shift = 0, 16, 8 do
    local from, to = old >> shift & 255, colour >> shift & 255
    mixed = mixed | math.floor(from + (to - from) * part + 0.5) << shift
  end
  self.pixels[index] = mixed
end

function Raster:rect(x, y, width, height, colour)
  local left, right = math.max(math.floor(x + 0.5), 0), math.floor(x + width + 0.5) - 1
  local top, bottom = math.max(math.floor(y + 0.5), 0), math.floor(y + height + 0.5) - 1
  for row = top, math.min(bottom, self.height - 1) do
    for column = left, math.min(right, self.width - 1) do
      self.pixels[row * self.width + column] = colour
    end
  end
end

-- Raises the cover of the pixels near the segment from a to b.
function Raster:cover(cover, a, b, radius)
  local dx, dy = b[1] - a[1], b[2] - a[2]
  local square = dx * dx + dy * dy
  local reach = radius + 1
  local top = math.max(math.floor(math.min(a[2], b[2]) - reach), 0)
  local bottom = math.min(math.ceil(math.max(a[2], b[2]) + reach), self.height - 1)
  local left = math.max(math.floor(math.min(a[1], b[1]) - reach), 0)
  local right = math.min(math.ceil(math.max(a[1], b[1]) + reach), self.width - 1)
  for y = top, bottom do
    for x = left, right do
      -- Pixel centres lie at halves.
      local px, py = x + 0.5 - a[1], y + 0.5 - a[2]
      local along = square > 0 and math.min(math.max((px * dx + py * dy) / square, 0), 1) or 0
      local ex, ey = px - along * dx, py - along * dy
      local part = math.min(radius + 0.5 - math.sqrt(ex * ex + ey * ey), 1)
      local index = y * self.width + x
      if part > (cover[index] or 0) then cover[index] = part end
    end
  end
end

function Raster:line(points, width, colour)
  local cover = {}
  for i = 1, #points do
    self:cover(cover, points[i], points[math.min(i + 1, #points)], width / 2)
  end
  for index, part in pairs(cover) do self:blend(index, colour, part) end
end

function Raster:area(x, tops, bottoms, colour)
  for i, top in ipairs(tops) do
    local bottom = math.max(bottoms[i], top + 1)
    for y = math.max(math.floor(top), 0), math.min(math.ceil(bottom) - 1, self.height - 1) do
      local part = math.min(y + 1, bottom) - math.max(y, top)
      self:blend(y * self.width + x + i - 1, colour, part)
    end
  end
end

function Raster:text(x, y, text, size, colour, anchor)
  local letters, length = {}, 0
  for letter in text:gmatch("[\0-\127\194-\253][\128-\191]*") do
    -- Small letters are capitals of less height.
    local unit = size * (letter:match("%l") and 0.09 or 0.115)
    letters[#letters + 1] = { strokes = STROKES[letter:upper()] or UNKNOWN, unit = unit }
    length = length + 5.6 * unit
  end
  if anchor == "end" then x = x - length elseif anchor == "middle" then x = x - length / 2 end
  for _, letter in ipairs(letters) do
    local unit = letter.unit
    for stroke in letter.strokes:gmatch("%d+") do
      local points = {}
      for column, row in stroke:gmatch("(%d)(%d)") do
        points[#points + 1] = { x + column * unit, y + (row - 6) * unit }
      end
      self:line(points, math.max(size / 10, 1), colour)
    end
    x = x + 5.6 * unit
  end
end

function Raster:encode() return png.encode(self.pixels, self.width, self.height) end

-- A white surface of that size; kind is "svg" or "png".
function canvas.new(kind, width, height)
  local surface
  if kind == "svg" then
    surface = setmetatable({ parts = {}, width = width, height = height }, Svg)
    surface:rect(0, 0, width, height, 0xFFFFFF)
    return surface
  end
  local pixels = {}
  for i = 0, width * height - 1 do pixels[i] = 0xFFFFFF end
  return setmetatable({ pixels = pixels, width = width, height = height }, Raster)
end

return canvas
