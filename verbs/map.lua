-- zyl map: builds a multisampled program from recordings.
local cli = require "cli"
local fields = require "fields"
local filenames = require "filenames"
local json = require "json"
local keymap = require "keymap"
local notes = require "notes"
local programs = require "programs"
local progress = require "progress"
local rootpitch = require "rootpitch"
local samples = require "samples"
local soundfile = require "soundfile"
local text = require "text"

local PROBES = 12                    -- files measured to find the octave of the names
local CONSTANT, TO_THE_END = 1, 4    -- constantPitch and playbacktype of a drum
local UNSAID = 60                    -- written by programs that do not know the key

local options, files = cli.parse {
  verb = "map", folders = true, operands = "FOLDER|FILE… -o PROGRAM",
  about = "Builds a multisampled program from recordings: one keygroup per root key, with up to four\n"
       .. "velocity layers. Key ranges meet half-way between neighbouring roots.",
  options = {
    { name = "output", short = "o", kind = "text", value = "PROGRAM",
      help = "the program file to write" },
    { name = "from", kind = "text", value = "LIST", default = "chunk,name,pitch",
      help = "sources of root keys, in order of preference\n(default chunk,name,pitch)" },
    { name = "octave", kind = "text", value = "N", default = "auto",
      help = "octave of key 60 in file names: 4 if C4 is 60, 3 if C3 is 60\n"
          .. "(default auto: 4, unless the measured pitches differ)" },
    { name = "reach", kind = "integer", value = "N", low = 0, high = 127, default = 127,
      help = "maximum number of keys from the root to the ends of its range\n(default 127)" },
    { name = "drums", kind = "text", value = "KEY",
      help = "one key per file, from KEY (36 or C2) upwards, at the original\npitch, played to the end" },
    { name = "name", kind = "text", value = "NAME",
      help = "name of the program, up to 12 bytes (default: name of the file)" },
    { name = "check", help = "measure all files and report where chunk, name and pitch differ" },
    { name = "a4", kind = "number", value = "HZ", low = 1, high = 20000, default = 440,
      help = "frequency of A4 (default 440)" },
    { name = "dry-run", help = "print the layout, but write nothing" },
    { name = "json", help = "print a JSON list, one object per file" },
  },
  more = "Names: a letter with an octave (C#3, Bb2, Cs4, F-1), or plain MIDI numbers if all names have\n"
      .. "one. Layers: v1 to v4, vel96, pp to ff, soft, medium, hard. Sample files are not changed: the\n"
      .. "tuning is stored in the program.",
}

local order, use = {}, {}
for word in (options.from .. ","):gmatch("(.-),") do
  if word ~= "chunk" and word ~= "name" and word ~= "pitch" then
    cli.usage("--from LIST: '" .. word .. "' is not chunk, name or pitch")
  end
  order[#order + 1], use[word] = word, true
end
local octave = options.octave == "auto" and 4 or math.tointeger(tonumber(options.octave))
if not octave or octave < 2 or octave > 6 then
  cli.usage("--octave N: '" .. options.octave .. "' is not auto or 2 to 6")
end
if not options.output and not options["dry-run"] and not options.check then
  cli.usage("-o PROGRAM is missing (--dry-run only prints the layout)")
end
local firstDrum = options.drums and filenames.key(options.drums)
if options.drums and not firstDrum then
  cli.usage("--drums KEY: '" .. options.drums
            .. "' is neither a note (C4 = 60) nor a number from 0 to 127")
end
if options.name then
  local obstacle = fields.whyNot(fields.find("PRGname"), options.name)
  if obstacle then cli.usage(obstacle) end
end
if options.output then
  local obstacle = programs.whyNotReplaceable(options.output)
  if obstacle then cli.usage(options.output .. ": " .. obstacle) end
end

local program = host.new("ZylSProgram")
local list = {}   -- for each file: path, name (as parsed), and the results of the steps below

local function fail(it, reason)
  it.failure = reason
  cli.failed(it.path, reason)
end

-- Reads key, tuning and format of an open sample.
local function take(it, sample, found)
  if it.known then return end
  it.fileNote = program:Samplekey(sample) + program:Sampletune(sample) / 256
  it.rate, it.frames = program:SampleSampleRate(sample), program:SampleGetSize(sample)
  it.channels = program:SampleChannelCount(sample)
  local key = program:Samplekey(sample)
  -- Programs that do not know the root key write 0 with their loops.
  if soundfile.hasKey(found) and key > 0 and key <= 127 then it.chunk = key end
  it.known = true
end

-- Measures the pitch of the files in `wanted` that have not been measured.
local function measure(wanted)
  local paths, items = {}, {}
  for _, it in ipairs(list) do
    if wanted[it] and not it.measured and not it.failure then
      paths[#paths + 1], items[#items + 1] = it.path, it
    end
  end
  if #paths == 0 then return end
  samples.tracks(program, paths, function(sample) return rootpitch.settings(program, sample) end, {
    shown = progress.show,
    failed = function(index, reason) fail(items[index], reason) end,
    done = function(index, sample, track, found)
      local it = items[index]
      take(it, sample, found)
      it.measured = true
      local result, reason = rootpitch.of(program, sample, track)
      if not result or not result.sure then
        it.noPitch = reason or "no steady pitch"
      else
        it.pitch = notes.fromHertz(result.hertz, options.a4 + 0.0)
      end
    end,
  })
end

local function open(it)
  local sample, found = cli.try(samples.open, program, it.path)
  if not sample then return fail(it, found) end
  take(it, sample, found)
  samples.close(program, sample)
end

-- Up to PROBES files with a note in their name, evenly spread.
local function probes()
  local named, chosen = {}, {}
  for _, it in ipairs(list) do
    if it.name.key and not it.failure then named[#named + 1] = it end
  end
  local count = math.min(#named, PROBES)
  for i = 1, count do chosen[named[(i - 1) * #named // count + 1]] = true end
  return chosen
end

-- Compares names with measured pitches: sets the octave that most of them agree on, and discards
-- numbers that are not keys.
local function judgeNames(chosen)
  local counts, all, most = {}, 0, 0
  for it in pairs(chosen) do
    if it.pitch then
      local offset = notes.nearest(it.pitch) - it.name.key
      counts[offset] = (counts[offset] or 0) + 1
      all = all + 1
    end
  end
  local agreed
  for offset, count in pairs(counts) do
    if count > most or count == most and offset == 0 then agreed, most = offset, count end
  end
  if all < 2 or most < 2 then return end
  local isNumber = false
  for it in pairs(chosen) do isNumber = isNumber or it.name.how == "number" end
  if 3 * most < 2 * all or agreed % 12 ~= 0 then
    if isNumber then
      cli.note("names", "their numbers do not match the pitches: not used")
      for _, it in ipairs(list) do it.name.key = nil end
    else
      cli.note("names", ("%d of %d pitches differ from the names; see --check, --from pitch")
               :format(all - (counts[0] or 0), all))
    end
  elseif agreed ~= 0 and not isNumber and options.octave == "auto" then
    octave = octave - agreed // 12
    cli.note("names", ("%d of %d pitches indicate that C%d is key 60: --octave %d")
             :format(most, all, octave, octave))
  end
end

local function nameKey(it)
  if not it.name.key then return nil end
  local key = it.name.key + (it.name.how == "note" and 12 * (4 - octave) or 0)
  return key >= 0 and key <= 127 and key or nil
end

-- The root key in the file's chunk, unless it is in doubt.
local function chunkKey(it) return not it.doubted and it.chunk or nil end

-- The key that all chunks share although the names differ, and the number of chunks.
local function commonKey()
  local common, count, name, differ = nil, 0, nil, false
  for _, it in ipairs(list) do
    if it.chunk then
      if common and common ~= it.chunk then return nil end
      common, count = it.chunk, count + 1
      differ = differ or it.name.key and name and name ~= it.name.key
      name = name or it.name.key
    end
  end
  if differ and use.name and count >= (common == UNSAID and 2 or 3) then return common, count end
end

-- Marks chunks as doubtful: a root key common to all, and key 60 if neither name nor pitch confirms
-- it. Doubtful keys are used only after all other sources.
local function doubtChunks()
  local common, count = commonKey()
  if common then
    cli.note("chunks", ("all %d have the root key %s (%d): not used"):format(count,
             notes.name(common), common))
    for _, it in ipairs(list) do it.doubted = it.chunk ~= nil end
    return
  end
  local unsure, doubted = {}, 0
  for _, it in ipairs(list) do
    if it.chunk == UNSAID and nameKey(it) ~= UNSAID then unsure[it] = true end
  end
  if use.pitch then measure(unsure) end
  for it in pairs(unsure) do
    local contradicted = it.pitch and notes.nearest(it.pitch) ~= UNSAID
    it.doubted = contradicted or not it.pitch and use.name and nameKey(it) ~= nil
    if it.doubted then doubted = doubted + 1 end
  end
  if doubted > 0 then
    cli.note("chunks", ("the root key C4 (60) of %d file%s differs from name or pitch: not used")
             :format(doubted, doubted == 1 and "" or "s"))
  end
end

-- Sets key, source and note (the assumed pitch of the file).
local function decide(it)
  for _, source in ipairs(order) do
    if source == "chunk" and chunkKey(it) then
      it.key, it.note = it.chunk, it.fileNote
    elseif source == "name" and nameKey(it) then
      it.key = nameKey(it)
      it.note = it.key + 0.0
    elseif source == "pitch" and it.pitch then
      it.key, it.note = notes.nearest(it.pitch), it.pitch
      if it.key < 0 or it.key > 127 then it.key = nil end
    end
    if it.key then
      it.source = source
      return
    end
  end
  if it.doubted then
    it.key, it.note, it.source = it.chunk, it.fileNote, "chunk"
    return
  end
  fail(it, "no root key: " .. (it.noPitch and it.noPitch .. " (--drums maps files without pitch)"
                               or "none of " .. options.from .. " has one"))
end

local function needsPitch()
  local wanted = {}
  for _, it in ipairs(list) do
    local before = false
    for _, source in ipairs(order) do
      if source == "pitch" and not before then wanted[it] = true end
      before = before or source == "chunk" and chunkKey(it) ~= nil
               or source == "name" and nameKey(it) ~= nil
    end
  end
  return wanted
end

local function collect()
  local read = filenames.read(files)
  for i, path in ipairs(files) do list[i] = { path = path, name = read[i], index = i } end
  local everything = {}
  for _, it in ipairs(list) do everything[it] = true end
  if options.check or order[1] == "pitch" then measure(everything) end
  for i, it in ipairs(list) do
    if not it.known and not it.failure then
      progress.show((i - 1) / #list, it.path)
      open(it)
    end
  end
  if use.chunk then doubtChunks() end
  if use.name and options.octave == "auto" or options.check then
    local unsaid = {}
    for it in pairs(probes()) do
      if not (order[1] == "chunk" and chunkKey(it)) then unsaid[it] = true end
    end
    measure(unsaid)
    judgeNames(unsaid)
  end
  measure(needsPitch())
end

-- Prints chunk, name and pitch if they differ by a key or more.
local function check(it)
  local said, first, differ = {}, nil, false
  local function add(name, key)
    if not key then return end
    said[#said + 1] = ("%s %s (%d)"):format(name, notes.name(key), key)
    differ = differ or first ~= nil and key ~= first
    first = first or key
  end
  add("chunk", chunkKey(it))
  add("name", nameKey(it))
  add("pitch", it.pitch and notes.nearest(it.pitch))
  it.differ = differ
  if differ then cli.note(it.path, table.concat(said, ", ")) end
end

-- The zone tuning, in 1/256 semitone, at which the file has the pitch of its root key.
local function tuneOffset(it)
  return math.min(math.max(math.floor((it.fileNote - it.note) * 256 + 0.5), -32768), 32767)
end

local function drums()
  local keygroups, key = {}, firstDrum
  for _, it in ipairs(list) do
    if not it.failure then open(it) end
    if not it.failure and key > 127 then
      it.leftOut = "no key is left"
      cli.note(it.path, it.leftOut)
    elseif not it.failure then
      it.key, it.note, it.source = key, it.fileNote, "drums"
      keygroups[#keygroups + 1] = { key = key, low = key, high = key,
                                    zones = { { sample = it, low = 0, high = 127 } } }
      key = key + 1
    end
  end
  return keygroups
end

local function layout()
  local placed = {}
  for _, it in ipairs(list) do
    if not it.failure then decide(it) end
    if options.check and not it.failure then check(it) end
    if it.key then
      it.layer = it.name.layer
      placed[#placed + 1] = it
    end
  end
  local keygroups = keymap.layers(placed, function(it, reason)
    it.leftOut = reason
    cli.note(it.path, "left out: " .. reason)
  end)
  keymap.ranges(keygroups, options.reach)
  return keygroups
end

local function fill(keygroups)
  program:Create(host.null)
  program:PRGname(options.name or options.output:match("[^/]*$"):gsub("%.%w+$", ""))
  for k, group in ipairs(keygroups) do
    if k > 1 then program:KGCreate(k - 1) end
    program:KGlowKey(k - 1, group.low)
    program:KGhighKey(k - 1, group.high)
    for z, zone in ipairs(group.zones) do
      -- Sets only the path, which does not load the sound.
      program:ZoneSamplePath(k - 1, z - 1, zone.sample.path)
      program:ZonelowVel(k - 1, z - 1, zone.low)
      program:ZonehighVel(k - 1, z - 1, zone.high)
      program:ZonetuneOffset(k - 1, z - 1, tuneOffset(zone.sample))
      if options.drums then
        program:ZoneconstantPitch(k - 1, z - 1, CONSTANT)
        program:Zoneplaybacktype(k - 1, z - 1, TO_THE_END)
      end
    end
  end
end

local function cents(it) return 100 * (it.note - it.key) end

local function shown(keygroups)
  local rows = { { "keys", "root", "velocities", "from", "cents", "file" } }
  for _, group in ipairs(keygroups) do
    for z, zone in ipairs(group.zones) do
      rows[#rows + 1] = {
        z == 1 and ("%3d-%-3d"):format(group.low, group.high) or "",
        z == 1 and ("%s (%d)"):format(notes.name(group.key), group.key) or "",
        ("%d-%d"):format(zone.low, zone.high), zone.sample.source,
        ("%+.1f"):format(cents(zone.sample)), text.printable(zone.sample.path),
      }
    end
  end
  return text.columns(rows, { true, true, false, true, false, true }, "")
end

local function printRecords(keygroups, written)
  local printer = cli.printer(true)
  for k, group in ipairs(keygroups) do
    for z, zone in ipairs(group.zones) do
      zone.sample.place = { "keygroup", k, "zone", z, "low_key", group.low, "high_key", group.high,
                            "low_velocity", zone.low, "high_velocity", zone.high,
                            "written", written and options.output or json.null }
    end
  end
  local none = { "keygroup", nil, "zone", nil, "low_key", nil, "high_key", nil, "low_velocity", nil,
                 "high_velocity", nil, "written", nil }
  for i, it in ipairs(list) do
    local pitch = it.pitch and json.object("key", (notes.nearest(it.pitch)), "cents",
                                           (select(2, notes.nearest(it.pitch))))
    printer.result(i, json.object("file", it.path, "error", it.failure, "key", it.key,
      "note", it.key and notes.name(it.key), "cents", it.key and cents(it), "source", it.source,
      "chunk_key", it.chunk, "name_key", nameKey(it), "pitch", pitch, "differ", it.differ,
      "left_out", it.leftOut, table.unpack(it.place or none, 1, 14)))
  end
  printer.close()
end

local keygroups
if options.drums then
  for i, path in ipairs(files) do list[i] = { path = path, name = {}, index = i } end
  keygroups = drums()
else
  collect()
  keygroups = layout()
end
local written = false
if #keygroups > 0 and options.output and not options["dry-run"] then
  fill(keygroups)
  progress.hide()
  written = program:Write(options.output)
  if not written then cli.failed(options.output, "could not be written") end
elseif #keygroups == 0 and options.output then
  cli.failed(options.output, "not written: no file was placed")
end
progress.hide()
local leftOut = 0
for _, it in ipairs(list) do leftOut = leftOut + (it.leftOut and 1 or 0) end
if leftOut > 0 then
  cli.warn(options.output or "layout", ("%d of %d files left out"):format(leftOut, #list))
end
if options.json then
  printRecords(keygroups, written)
elseif #keygroups > 0 then
  local zones = 0
  for _, group in ipairs(keygroups) do zones = zones + #group.zones end
  io.write(shown(keygroups), ("%d keygroup%s, %d sample%s%s\n"):format(
           #keygroups, #keygroups == 1 and "" or "s", zones, zones == 1 and "" or "s",
           written and " in " .. text.printable(options.output) or ": nothing was written"))
end
cli.finish()
