-- Reports how well a folder of notes is in tune: prints the deviation of each note from its key,
-- and draws the deviations over the keyboard.
--
--   zyl run examples/pitch-report.lua FOLDER PICTURE.svg

local folders, notes = require "folders", require "notes"
local samples = require "samples"

if not arg[2] then error("usage: zyl run pitch-report.lua FOLDER PICTURE.svg", 0) end
-- The picture: x is the key, y the deviation in cents, one dot per note.
local WIDTH, HEIGHT, LEFT, MIDDLE, REACH = 900, 300, 50, 150, 50
local INK, RULE, DOT = 0x24292F, 0xE3E7EB, 0xC2410C
local surface = host.picture(arg[2], { width = WIDTH, height = HEIGHT })

local files = folders.files(arg[1], "sounds")
local program = host.new("ZylSProgram")

local report = {}
samples.tracks(program, files, nil, {
  shown = function() end,
  failed = function(index, reason) print(files[index] .. ": " .. reason) end,
  done = function(index, _, track, _, sound)
    local pitch, reason = sound:root(track)
    if not pitch then return print(files[index] .. ": " .. reason) end
    local key, cents = notes.nearest(notes.fromHertz(pitch.hertz, 440))
    report[#report + 1] = { file = files[index]:match("[^/]*$"), key = key, cents = cents,
                            hertz = pitch.hertz }
  end,
})
table.sort(report, function(a, b)
  if a.key ~= b.key then return a.key < b.key end
  return a.file < b.file
end)
local sum = 0
for _, it in ipairs(report) do
  sum = sum + math.abs(it.cents)
  print(("%-9s %8.2f Hz  %+5.1f  %s"):format(notes.label(it.key), it.hertz, it.cents, it.file))
end
print(("%d notes, %.1f cents off on average"):format(#report, sum / math.max(#report, 1)))

local low, high = 60, 60
for _, it in ipairs(report) do low, high = math.min(low, it.key), math.max(high, it.key) end
local function x(key) return LEFT + (key - low + 0.5) / (high - low + 1) * (WIDTH - LEFT - 10) end
local function y(cents) return MIDDLE - cents / REACH * 120 end
for cents = -REACH, REACH, 25 do
  surface:rect(LEFT, y(cents), WIDTH - LEFT - 10, 1, RULE)
  surface:text(LEFT - 8, y(cents) + 4, ("%+d"):format(cents), 11, INK, "end")
end
for key = low, high do
  if key % 12 == 0 then surface:text(x(key), HEIGHT - 8, notes.name(key), 11, INK, "middle") end
end
for _, it in ipairs(report) do surface:rect(x(it.key) - 3, y(it.cents) - 3, 6, 6, DOT) end
surface:write()
