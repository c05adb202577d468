-- Creates a folder of test recordings: plucked notes in two velocity layers, identical on every
-- machine. C3 is key 60 in their names. With a file name, creates one recording of all notes.
--
--   zyl run examples/tones.lua FOLDER
--   zyl run examples/tones.lua RECORDING.wav

local target = arg[1] or error("usage: zyl run tones.lua FOLDER|RECORDING.wav", 0)
local RATE, SECONDS, PARTIALS = 44100, 1.0, 6
local NAMES = { [0] = "C", [3] = "D#", [6] = "F#", [9] = "A" }
local LAYERS = { { name = "soft", level = 0.25, bright = 0.45 },
                 { name = "hard", level = 0.80, bright = 0.75 } }
local RELEASE = 0.1  -- seconds, of the notes in a recording

local function note(hertz, layer, release)
  local values = {}
  for i = 1, math.floor(SECONDS * RATE) do
    local time, sum = i / RATE, 0
    for k = 1, PARTIALS do
      sum = sum + layer.bright ^ (k - 1) * math.exp(-(1 + k) * time)
                  * math.sin(2 * math.pi * k * hertz * time)
    end
    local level = release and math.min((SECONDS - time) / release, 1) or 1
    values[i] = string.pack("<i2", math.floor(16384 * layer.level * level * sum))
  end
  return table.concat(values)
end

local function write(path, sound)
  assert(host.writeFile(path, "RIFF" .. string.pack("<I4", 36 + #sound) .. "WAVEfmt "
         .. string.pack("<I4I2I2I4I4I2I2", 16, 1, 1, RATE, 2 * RATE, 2, 16)
         .. "data" .. string.pack("<I4", #sound) .. sound))
end

local recording, count, parts = target:match("%.wav$"), 0, {}
if not recording then assert(os.execute("mkdir -p '" .. target:gsub("'", "'\\''") .. "'")) end
for key = 36, 72, 3 do
  for _, layer in ipairs(LAYERS) do
    local hertz = 440 * 2 ^ ((key - 69) / 12)
    count = count + 1
    if recording then
      parts[count] = ("\0"):rep(RATE) .. note(hertz, layer, RELEASE)  -- a pause of half a second
    else
      write(("%s/Pluck_%s%d_%s.wav"):format(target, NAMES[key % 12], key // 12 - 2, layer.name),
            note(hertz, layer))
    end
  end
end
if recording then write(target, table.concat(parts) .. ("\0"):rep(RATE)) end
print(count .. (recording and " notes in " or " recordings in ") .. target)
