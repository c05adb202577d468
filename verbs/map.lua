-- zyl map: builds a multisampled program from recordings.
local cli = require "cli"
local fields = require "fields"
local keymap = require "keymap"
local layering = require "layering"
local mapreport = require "mapreport"
local namemarks = require "namemarks"
local notes = require "notes"
local programs = require "programs"
local progress = require "progress"
local recordings = require "recordings"
local rootkeys = require "rootkeys"
local stereo = require "stereo"
local text = require "text"
local values = require "values"

local CONSTANT, TO_THE_END = 1, 4    -- constantPitch and playbacktype of a drum

local options, files = cli.parse {
  verb = "map", notes = true, folders = "sounds", operands = "FOLDER|FILE… -o PROGRAM",
  about = "Builds a multisampled program from recordings: one keygroup per root key, with its\n"
       .. "velocity layers, or several if four zones are too few. Key ranges meet half-way between\n"
       .. "neighbouring roots. A stereo file becomes two zones, left and right.",
  options = {
    { name = "output", short = "o", kind = "text", value = "PROGRAM",
      help = "the program file to write" },
    { name = "from", kind = "text", value = "LIST", default = "chunk,name,pitch",
      help = "sources of root keys, in order of preference\n(default chunk,name,pitch)" },
    { name = "name-octave", kind = "text", value = "N", default = "auto",
      help = "octave of key 60 in file names: 4 if C4 is 60, 3 if C3 is 60\n"
          .. "(default auto: 4, unless the measured pitches differ)" },
    { name = "reach", kind = "integer", value = "N", low = 0, high = 127, default = 127,
      help = "maximum number of keys from the root to the ends of its range\n(default 127)" },
    { name = "drums", kind = "text", value = "KEY",
      help = "one key per drum, from KEY (36, or a note) upwards, at the original\npitch, played to the end; numbered takes of a drum share its key" },
    { name = "unstacked", help = "with --drums: one key per file, also for numbered takes" },
    { name = "mono", kind = "text", value = "HOW",
      help = "play stereo files in the centre: left, right or mix (both channels);\ndefault: as a pair of zones, left and right" },
    { name = "layers", kind = "integer", value = "N", low = 1, high = keymap.MOST_LAYERS,
      default = keymap.MOST_LAYERS, help = "maximum number of velocity layers of a key (default 127)" },
    { name = "name", kind = "text", value = "NAME",
      help = "name of the program, up to 12 bytes (default: name of the file)" },
    { name = "check", help = "measure all files and report where chunk, name and pitch differ" },
    { name = "a4", kind = "number", value = "HZ", low = 1, high = 20000, default = 440,
      help = "frequency of key 69, the A above middle C (default 440)" },
    { name = "dry-run", help = "print the layout, but write nothing" },
    { name = "json", help = "print a JSON list, one object per file" },
  },
  more = "Names: a letter with an octave (C#3, Bb2, Cs4, F-1), or plain MIDI numbers if all names have\n"
      .. "one and measured pitches agree. Where a measured pitch contradicts a name, the pitch is used.\n"
      .. "Layers: v1 to v4, vel96, pp to ff, soft, medium, hard; without them the files of a key are\n"
      .. "ordered by loudness. Of round robins (rr1, rr2; the same loudness) one is used. Two mono files\n"
      .. "named L and R, or left and right, become a stereo pair. Sample files are not changed: the tuning\n"
      .. "is stored in the program.",
}

local order, use = {}, {}
for word in (options.from .. ","):gmatch("(.-),") do
  if word ~= "chunk" and word ~= "name" and word ~= "pitch" then
    cli.usage("--from LIST: '" .. word .. "' is not chunk, name or pitch")
  end
  order[#order + 1], use[word] = word, true
end
local nameOctave = options["name-octave"]
local octave = nameOctave == "auto" and rootkeys.OCTAVE or notes.middleOf(nameOctave)
if not octave then cli.usage("--name-octave N: '" .. nameOctave .. "' is not auto or 2 to 6") end
if not options.output and not options["dry-run"] and not options.check then
  cli.usage("-o PROGRAM is missing (--dry-run only prints the layout)")
end
local firstDrum = options.drums and notes.key(options.drums)
if options.drums and not firstDrum then
  cli.usage("--drums KEY: '" .. options.drums .. "' is not " .. notes.accepted())
end
if options.mono and not stereo.isMono(options.mono) then
  cli.usage("--mono HOW: '" .. options.mono .. "' is not left, right or mix")
end
if options.name then
  local obstacle = values.whyNot(fields.find("PRGname"), options.name)
  if obstacle then cli.usage(obstacle) end
end
if options.output then
  local obstacle = programs.whyNotReplaceable(options.output)
  if obstacle then cli.usage(options.output .. ": " .. obstacle) end
end

local batch = recordings.batch(files, options.a4 + 0.0)
local program = batch.program
local how = { order = order, use = use, from = options.from, octave = octave,
              automatic = nameOctave == "auto", check = options.check }

-- The zone tuning, in 1/256 semitone, at which the file has the pitch of its root key.
local function tuneOffset(it)
  return math.min(math.max(math.floor((it.fileNote - it.note) * 256 + 0.5), -32768), 32767)
end

local function leaveOutFile(it, reason)
  if it.leftOut then return end
  it.leftOut = reason
  cli.note(it.path, "left out: " .. reason)
end

local function leaveOut(it, reason)
  leaveOutFile(it, reason)
  if it.right then leaveOutFile(it.right, reason) end
end

-- Gives each drum a key: the takes of a drum share one.
local function placeDrums()
  recordings.open(batch)
  local keys, free = {}, firstDrum
  for _, it in ipairs(batch.list) do
    local drum = options.unstacked and it.path or it.name.folder .. namemarks.drum(it.name.name)
    local isOne = not it.failure and not it.isRight
    if isOne and not keys[drum] then keys[drum], free = free, free + 1 end
    if isOne and keys[drum] > 127 then
      leaveOut(it, "no key is left")
    elseif isOne then
      for _, half in ipairs { it, it.right } do
        half.key, half.note, half.source = keys[drum], half.fileNote, "drums"
      end
    end
  end
end

-- Sets the zones of a recording, or of the two halves of a stereo recording.
local function setParts(it)
  local said
  it.parts, said = stereo.parts(it.right and 2 or it.channels, options.mono)
  if said then cli.note(it.path, ("%d channels: %s"):format(it.channels, said)) end
  if it.right then it.parts = stereo.ofFiles(it.parts, it, it.right) end
  for _, part in ipairs(it.parts) do
    local sample = part.sample or it
    sample.zones = (sample.zones or 0) + 1
  end
end

local function layout()
  if options.drums then placeDrums() else rootkeys.find(batch, how) end
  local placed = {}
  for _, it in ipairs(batch.list) do
    if it.key and not it.isRight then
      setParts(it)
      placed[#placed + 1] = it
    end
  end
  local ordered
  placed, ordered = layering.find(batch, placed, leaveOut)
  if ordered > 0 then
    cli.note("layers", ("those of %d key%s are in order of loudness"):format(ordered,
             ordered == 1 and "" or "s"))
  end
  local roots = keymap.layers(placed, options.layers, leaveOut)
  for _, it in ipairs(batch.list) do
    if it.key and not it.zones then leaveOutFile(it, "--mono " .. options.mono) end
  end
  keymap.ranges(roots, options.drums and 0 or options.reach)
  return keymap.keygroups(roots)
end

-- Puts a channel of a file into a zone without loading the sound.
local function setZone(k, z, path, channel)
  -- A zone without a sample keeps channel 0. An empty sample can have the others.
  if channel > 0 then
    program:SampleCreate(k, z, "wav", channel + 1)
    program:SampleChannel(k, z, channel)
  end
  program:ZoneSamplePath(k, z, path)
end

local function fill(keygroups)
  program:Create(host.null)
  program:PRGname(options.name or options.output:match("[^/]*$"):gsub("%.%w+$", ""))
  for k, group in ipairs(keygroups) do
    if k > 1 then program:KGCreate(k - 1) end
    program:KGlowKey(k - 1, group.low)
    program:KGhighKey(k - 1, group.high)
    for z, zone in ipairs(group.zones) do
      setZone(k - 1, z - 1, zone.sample.path, zone.channel)
      program:ZonelowVel(k - 1, z - 1, zone.low)
      program:ZonehighVel(k - 1, z - 1, zone.high)
      program:ZonepanOffset(k - 1, z - 1, zone.pan)
      program:ZonetuneOffset(k - 1, z - 1, tuneOffset(zone.sample))
      if options.drums then
        program:ZoneconstantPitch(k - 1, z - 1, CONSTANT)
        program:Zoneplaybacktype(k - 1, z - 1, TO_THE_END)
      end
    end
  end
end

local keygroups = layout()
local written = false
if #keygroups > 0 and options.output and not options["dry-run"] then
  fill(keygroups)
  progress.hide()
  written = programs.writeNamed(program, options.output)
  if not written then cli.failed(options.output, "could not be written") end
elseif #keygroups == 0 and options.output then
  cli.failed(options.output, "not written: no file was placed")
end
progress.hide()
local leftOut = 0
for _, it in ipairs(batch.list) do leftOut = leftOut + (it.leftOut and 1 or 0) end
if leftOut > 0 then
  cli.warn(options.output or "layout", ("%d of %d files left out"):format(leftOut, #batch.list))
end
if options.json then
  local printer = cli.printer(true)
  mapreport.records(batch.list, keygroups, how, written and options.output, printer.result)
  printer.close()
elseif #keygroups > 0 then
  local used = 0
  for _, group in ipairs(keygroups) do
    for _, zone in ipairs(group.zones) do used = used + (zone.first and 1 or 0) end
  end
  io.write(mapreport.table(keygroups), ("%d keygroup%s, %d sample%s%s\n"):format(
           #keygroups, #keygroups == 1 and "" or "s", used, used == 1 and "" or "s",
           written and " in " .. text.printable(options.output) or ": nothing was written"))
end
cli.finish()
