-- Creates a folder of test recordings: plucked notes in two velocity layers, identical on every
-- machine. C3 is key 60 in their names.
--
--   zyl run examples/tones.lua FOLDER

local folder = arg[1] or error("usage: zyl run tones.lua FOLDER", 0)
local RATE, SECONDS, PARTIALS = 44100, 1.0, 6
local NAMES = { [0] = "C", [3] = "D#", [6] = "F#", [9] = "A" }
local LAYERS = { { name = "soft", level = 0.25, bright = 0.45 },
                 { name = "hard", level = 0.80, bright = 0.75 } }

local function note(hertz, layer)
  local values = {}
  for i = 1, math.floor(SECONDS * RATE) do
    local time, sum = i / RATE, 0
    for k = 1, PARTIALS do
      sum = sum + layer.bright ^ (k - 1) * math.exp(-(1 + k) * time)
                  * math.sin(2 * math.pi * k * hertz * time)
    end
    values[i] = string.pack("<i2", math.floor(16384 * layer.level * sum))
  end
  return table.concat(values)
end

local function write(path, sound)
  assert(host.writeFile(path, "RIFF" .. string.pack("<I4", 36 + #sound) .. "WAVEfmt "
         .. string.pack("<I4I2I2I4I4I2I2", 16, 1, 1, RATE, 2 * RATE, 2, 16)
         .. "data" .. string.pack("<I4", #sound) .. sound))
end

assert(os.execute("mkdir -p '" .. folder:gsub("'", "'\\''") .. "'"))
local count = 0
for key = 36, 72, 3 do
  for _, layer in ipairs(LAYERS) do
    local name = ("Pluck_%s%d_%s.wav"):format(NAMES[key % 12], key // 12 - 2, layer.name)
    write(folder .. "/" .. name, note(440 * 2 ^ ((key - 69) / 12), layer))
    count = count + 1
  end
end
print(count .. " recordings in " .. folder)
