-- Draws a program as the sampler's editor shows it: the keyboard of one keygroup, the list of
-- keygroups, and the list of one keygroup's zones.
--
--   zyl run examples/editor-picture.lua [FOLDER]
--
-- writes keyboard.png and editor.png to FOLDER (default: the current folder).

local folder = arg[1] or "."

-- A program with six instruments side by side, without sound data.
local INSTRUMENTS = {
  { "double bass", low = "C0", high = "B1", tune = -12, filter = 45, attack = 12, release = 30, vel = 18 },
  { "cello", low = "C2", high = "F#2", tune = 4, filter = 62, attack = 30, release = 45, vel = 10 },
  { "viola", low = "G2", high = "F3", tune = 0, filter = 71, attack = 26, release = 42, vel = 4 },
  { "violin", low = "F#3", high = "C5", tune = -3, filter = 84, attack = 18, release = 38, vel = -6 },
  { "flute", low = "C#5", high = "C6", tune = 7, filter = 92, attack = 9, release = 22, vel = -20 },
  { "bell", low = "C#6", high = "C#7", tune = 64, filter = 99, attack = 0, release = 80, vel = 38 },
}
local NOTES = { C = 0, D = 2, E = 4, F = 5, G = 7, A = 9, B = 11 }

-- The key of a note: C3 is key 60.
local function key(note)
  local octave, sharp = note:match("%d"), note:find("#")
  return NOTES[note:sub(1, 1)] + (sharp and 1 or 0) + 12 * (octave + 2)
end

local function instrument(program, k, it)
  if k > 0 then program:KGCreate(k) end
  program:KGlowKey(k, key(it.low))
  program:KGhighKey(k, key(it.high))
  program:KGtune(k, it.tune)
  program:KGfilterFreq(k, it.filter)
  program:KGampEnvAttack(k, it.attack)
  program:KGampEnvRelease(k, it.release)
  program:KGfilterVel(k, it.vel)
  program:KGvelZoneCrossFade(k, k % 3 == 0 and 1 or 0)
  for zone, style in ipairs { "soft", "medium", "loud" } do
    program:SampleCreate(k, zone - 1, "wav")
    local sample = program:SampleGet(k, zone - 1)
    program:SampleFilePath(sample, ("%s %s.wav"):format(it[1], style))
    program:ZonelowVel(k, zone - 1, ({ 0, 48, 96 })[zone])
    program:ZonehighVel(k, zone - 1, ({ 47, 95, 127 })[zone])
    program:ZoneloudnessOffset(k, zone - 1, ({ -8, 0, 6 })[zone])
    program:ZonepanOffset(k, zone - 1, ({ -20, 0, 20 })[zone])
  end
end

local program = host.new("ZylSProgram")
program:Create(host.null)
for k, it in ipairs(INSTRUMENTS) do instrument(program, k - 1, it) end

-- One keyboard.
local keyboard = host.keyboard { height = 40 }
program:DrawKeyGroupKB(3, keyboard, host.null)
host.render({ keyboard }, folder .. "/keyboard.png")

-- The lists: each column has a parameter number, a display type and a range.
local FIXED = 0x10000
local keygroups = host.editor { columns = {
  { title = "No", width = 20, 142, 4, 0, 0 }, { title = "Low", width = 30, 100, 5, 0, 127 },
  { title = "High", width = 30, 101, 5, 0, 127 }, { title = "Keys", width = 378, 199, 10, 0, 0 },
  { title = "Tune", width = 36, 102, 6, 0, 0 }, { title = "Filter", width = 60, 103, 1, 0, 99 },
  { title = "Attack", width = 44, 108, 1, 0, 99 }, { title = "Release", width = 44, 111, 1, 0, 99 },
  { title = "Velocity", width = 60, 105, 2, -50, 50 }, { title = "X-fade", width = 20, 126, 3, 0, 1 },
} }
program:ListFillKeygroups(keygroups)
-- Highlight the keyboards of the keygroups that play key 72.
program:UpdateKeyboardSelection(72, 0x8DB8F0 + 0.0, 0x2B67BD + 0.0, 0xF5B04D + 0.0, 0xB8700F + 0.0,
                                keygroups)

local zones = host.editor { columns = {
  { title = "Zone", width = 24, style = FIXED, 299, 4, 0, 0 },
  { title = "From", width = 24, style = FIXED, 204, 4, 0, 127 },
  { title = "To", width = 24, style = FIXED, 205, 4, 0, 127 }, { title = "Sample", 307, 7, 0, 0 },
  { title = "Level", width = 60, style = FIXED, 207, 2, -50, 50 },
  { title = "Pan", width = 60, style = FIXED, 209, 2, -50, 50 },
  { title = "Playback", 210, 7, 0, 0 }, { title = "Pitch", 200, 7, 0, 0 },
} }
program:ListFillZones(3, zones)

host.render({ "Keygroups", keygroups, "Zones of the violin", zones }, folder .. "/editor.png")
