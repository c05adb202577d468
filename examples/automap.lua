-- Builds a program from a folder of recorded notes. The pitch tracker finds the root keys; file
-- names are ignored. (zyl map does more: layers, names, checks.)
--
--   zyl run examples/automap.lua FOLDER PROGRAM

local folders, notes = require "folders", require "notes"
local samples = require "samples"

if not arg[2] then error("usage: zyl run automap.lua FOLDER PROGRAM", 0) end
local files = folders.files(arg[1], "sounds")
local program = host.new("ZylSProgram")

-- The tracks are computed in parallel, one file per core; `done` is called as each one is finished.
local heard = {}
samples.tracks(program, files, nil, {
  shown = function() end,
  failed = function(index, reason) print(files[index] .. ": " .. reason) end,
  done = function(index, sample, track, _, sound)
    local pitch = sound:root(track)
    if not pitch or not pitch.sure then return print(files[index] .. ": no steady pitch") end
    local note = notes.fromHertz(pitch.hertz, 440)
    local fileNote = program:Samplekey(sample) + program:Sampletune(sample) / 256
    heard[#heard + 1] = { path = files[index], note = note, key = (notes.nearest(note)),
                          tune = math.floor(256 * (fileNote - note) + 0.5) }
  end,
})
table.sort(heard, function(a, b)
  if a.key ~= b.key then return a.key < b.key end
  return a.path < b.path
end)
-- Use the first note for each key.
local roots = {}
for _, it in ipairs(heard) do
  if #roots == 0 or it.key ~= roots[#roots].key then roots[#roots + 1] = it end
end
if #roots == 0 then error("no note in " .. arg[1], 0) end

program:Create(host.null)
program:PRGname("Automap")
for k, it in ipairs(roots) do
  if k > 1 then program:KGCreate(k - 1) end
  local below, above = roots[k - 1], roots[k + 1]
  program:KGlowKey(k - 1, below and (below.key + it.key) // 2 + 1 or 0)
  program:KGhighKey(k - 1, above and (it.key + above.key) // 2 or 127)
  program:ZoneSamplePath(k - 1, 0, it.path)
  program:ZonetuneOffset(k - 1, 0, it.tune)
  print(("%-9s %+5.1f cents  %s"):format(notes.label(it.key), 100 * (it.note - it.key), it.path))
end
assert(program:Write(arg[2]), "the program could not be written")
print(("%d keygroups in %s"):format(#roots, arg[2]))
