-- zyl slice: cuts recordings of many notes into one file per note.
local audio = require "zyl.audio"
local cli = require "cli"
local disk = require "disk"
local folders = require "folders"
local json = require "json"
local midi = require "midi"
local notes = require "notes"
local progress = require "progress"
local references = require "references"
local samples = require "samples"
local slicing = require "slicing"
local text = require "text"

local MOST_NAMED = 3  -- of files in a message

local options, files = cli.parse {
  verb = "slice", notes = true, folders = "sounds", operands = "RECORDING|FOLDER… -o FOLDER",
  about = "Cuts recordings of many notes, with pauses or without, into one WAVE file per note, named by\n"
       .. "measured key and layer, such as \"Harp C3 v1.wav\".",
  options = {
    { name = "output", short = "o", kind = "text", value = "FOLDER", help = "the folder, created if necessary" },
    { name = "name", kind = "text", value = "NAME",
      help = "first part of the names (default: name of the recording)" },
    { name = "count", kind = "integer", value = "N", low = 1, high = 100000,
      help = "number of notes in each recording, if it is known" },
    { name = "grid", kind = "number", value = "SECONDS", low = 0.05, high = 86400,
      help = "a note begins every SECONDS from the first onset on" },
    { name = "midi", kind = "text", value = "SONG",
      help = "the notes are those of this MIDI file, with its keys and velocities" },
    { name = "from", kind = "number", value = "SECONDS", low = 0, high = 86400,
      help = "with --grid or --midi: time of the first note in the recording" },
    { name = "drums", help = "measure no pitch: number the files" },
    { name = "rise", kind = "number", value = "DB", low = 0, high = 1000,
      help = "how clearly a note must begin (default 15.25); less finds more" },
    { name = "shortest", kind = "number", value = "SECONDS", low = 0, high = 86400,
      help = "minimum time between two notes (default 0.15)" },
    { name = "a4", kind = "number", value = "HZ", low = 1, high = 20000, default = 440,
      help = "frequency of key 69, the A above middle C (default 440)" },
    { name = "force", help = "replace files in FOLDER" },
    { name = "dry-run", help = "print the slices, but write nothing" },
    { name = "json", help = "print a JSON list, one object per slice" },
  },
  more = "Layers of a key are numbered from soft to loud. Slices without a steady pitch are numbered in\n"
      .. "order: \"Harp 01.wav\". A note that still sounds when the next one begins fades out in 8 ms;\n"
      .. "nothing else is changed. Either all files are written, or none.",
}
local output = options.output
if not output then cli.usage("-o FOLDER is missing") end
if #output > 1 then output = output:gsub("/+$", "") end
if host.fileType(output) and not disk.isFolder(output) then cli.usage(output .. " is not a folder") end
if options.name and options.name:find("[/%c]") then
  cli.usage("--name NAME: a name has no / and no control character")
end
if options.grid and options.midi then cli.usage("give --grid or --midi") end
if options.midi and options.count then cli.usage("--count N: the MIDI file has the number of notes") end
if options.from and not options.grid and not options.midi then cli.usage("--from needs --grid or --midi") end
if (options.rise or options.shortest) and (options.grid or options.midi) then
  cli.usage("--rise and --shortest are not used with --grid and --midi")
end

local how = { count = options.count, grid = options.grid, from = options.from, rise = options.rise,
              shortest = options.shortest }
if options.midi then
  local song, reason = cli.try(midi.notes, options.midi)
  if not song then cli.usage(options.midi .. ": " .. reason) end
  local others
  how.song, others = slicing.separate(song)
  if #how.song == 0 then cli.usage(options.midi .. ": has no notes") end
  if others > 0 then
    cli.warn(options.midi, ("%d notes begin together with another: only the lowest of a chord counts"):format(others))
  end
end

local program = host.new("ZylSProgram")
local a4 = options.a4 + 0.0

-- Opens a recording and calls body(sample).
local function withRecording(path, body)
  local sample, reason = samples.open(program, path)
  if not sample then error(reason, 0) end
  local result, failure = cli.try(body, sample)
  samples.close(program, sample)
  return result or failure and error(failure, 0)
end

local function find(recording, path)
  local rate = program:SampleSampleRate(recording)
  if rate <= 0 then error("the file has no sample rate", 0) end
  local sound = audio.sound(program, recording)
  local slices = slicing.find(sound, rate, how)
  for _, slice in ipairs(slices) do
    slice.recording, slice.rate = path, rate
    slice.loudness = sound:copy(slice.first, slice.last):loudness()
  end
  if how.song and #slices < #how.song then
    cli.warn(path, ("%d of the %d notes of the song are silent or after the end"):format(#how.song - #slices,
             #how.song))
  end
  return slices
end

-- Sets the pitch of the slices that have a steady one.
local function measure(recording, path, slices)
  local paths = {}
  for i in ipairs(slices) do paths[i] = ("%s/%d.wav"):format(output, i) end
  samples.tracks(program, paths, nil, {
    open = function(_, name, i) return slicing.sample(program, recording, slices[i], name), {} end,
    size = function(i) return slices[i].last - slices[i].first end,
    shown = function(fraction) progress.show(fraction, path) end,
    failed = function() end,  -- too short
    done = function(i, _, track, _, sound)
      local root = sound:root(track)
      local pitch = root and root.sure and notes.fromHertz(root.hertz, a4)
      if pitch and pitch > -0.5 and pitch < 127.5 then slices[i].pitch = pitch end
    end,
  })
end

-- Sets the key and tune that the file will have: those measured, or the key of the song.
local function setRoot(slice)
  if slice.key then
    local off = slice.pitch and slice.pitch - slice.key or 0
    slice.tune = math.abs(off) < 1 and math.floor(off * 256 + 0.5) or 0
  elseif slice.pitch then
    slice.key, slice.tune = notes.keyAndTune(slice.pitch)
  end
end

local function slicesOf(path)
  return withRecording(path, function(recording)
    local slices = find(recording, path)
    collectgarbage()  -- of the whole sound
    if not options.drums then measure(recording, path, slices) end
    for _, slice in ipairs(slices) do setRoot(slice) end
    return slices
  end)
end

-- Sets the files of the slices: the layers of a key in order of velocity, or else of loudness.
local function name(slices)
  local groups, byName = {}, {}
  for i, slice in ipairs(slices) do
    local stem = options.name or references.parts(references.base(slice.recording))
    local title = slice.key and stem .. " " .. notes.name(slice.key) or stem
    if not byName[title] then
      byName[title] = { title = title }
      groups[#groups + 1] = byName[title]
    end
    slice.order = i
    table.insert(byName[title], slice)
  end
  for _, group in ipairs(groups) do
    local digits = math.max(#tostring(#group), 2)
    if group[1].key then
      table.sort(group, function(a, b)
        local left, right = a.velocity or a.loudness, b.velocity or b.loudness
        if left ~= right then return left < right end
        return a.order < b.order
      end)
    end
    local takes = {}
    for i, slice in ipairs(group) do
      local mark = slice.key and "v" .. i or ("%0" .. digits .. "d"):format(i)
      if slice.velocity then
        local take = (takes[slice.velocity] or 0) + 1
        takes[slice.velocity] = take
        mark = "vel" .. slice.velocity .. (take > 1 and " rr" .. take or "")
      end
      slice.file = ("%s/%s %s.wav"):format(output, group.title, mark)
    end
  end
end

-- Why the slices may not be written; nil if they may.
local function obstacle(slices)
  local recordings, existing = {}, {}
  for _, path in ipairs(files) do recordings[host.absolutePath(path) or path] = true end
  for _, slice in ipairs(slices) do
    if host.fileType(slice.file) then
      if recordings[host.absolutePath(slice.file)] then return slice.file .. " is a recording" end
      if not disk.isFile(slice.file) then return slice.file .. " is not a file" end
      existing[#existing + 1] = slice.file
    end
  end
  if #existing == 0 or options.force then return nil end
  local more = #existing - MOST_NAMED
  return ("%s%s exist%s (see --force)"):format(table.concat(existing, ", ", 1, math.min(#existing, MOST_NAMED)),
         more > 0 and (" and %d more"):format(more) or "", #existing == 1 and "s" or "")
end

local function write(slices)
  local at = 1
  while at <= #slices do
    local path = slices[at].recording
    withRecording(path, function(recording)
      while slices[at] and slices[at].recording == path do
        local slice = slices[at]
        progress.show((at - 1) / #slices, slice.file)
        local sample = slicing.sample(program, recording, slice, slice.file)
        if slice.key then
          program:Samplekey(sample, slice.key)
          program:Sampletune(sample, slice.tune)
        end
        local written = samples.write(program, sample)
        samples.close(program, sample)
        if not written then error(slice.file .. " could not be written", 0) end
        at = at + 1
      end
    end)
  end
end

-- Writes all slices; returns whether they are written.
local function writeAll(slices)
  local reason = obstacle(slices)
  if not reason and not options["dry-run"] then reason = folders.writeInto(output, write, slices) end
  if reason then cli.failed(output, reason .. ": nothing was written") end
  return not reason and not options["dry-run"]
end

local function record(path, slice, reason, written)
  local it = slice or {}
  return json.object("file", it.file, "recording", path, "error", reason,
    "start", slice and it.first / it.rate, "end", slice and (it.last + 1) / it.rate, "first", it.first,
    "last", it.last, "cut", it.cut, "key", it.key, "note", it.key and notes.name(it.key), "tune", it.tune,
    "pitch", it.pitch, "velocity", it.velocity, "loudness", it.loudness, "written", written)
end

local function printTable(slices)
  local rows = { { "start", "seconds", "note", "cents", "LUFS", "file" } }
  for i, slice in ipairs(slices) do
    rows[i + 1] = { ("%.3f"):format(slice.first / slice.rate),
      ("%.3f"):format((slice.last - slice.first + 1) / slice.rate), slice.key and notes.label(slice.key) or "-",
      slice.pitch and ("%+.1f"):format(100 * (slice.pitch - slice.key)) or "-",
      ("%.1f"):format(slice.loudness), text.printable(slice.file), slice.cut and "cut" or nil }
  end
  io.write(text.columns(rows, { [3] = true, [6] = true, [7] = true }))
end

local all, failures = {}, {}
for i, path in ipairs(files) do
  progress.show((i - 1) / #files, path)
  local slices, reason = cli.try(slicesOf, path)
  if not slices then
    cli.failed(path, reason)
    failures[#failures + 1] = record(path, nil, reason, false)
  end
  table.move(slices or {}, 1, #(slices or {}), #all + 1, all)
end
name(all)
local numbered = 0
for _, slice in ipairs(all) do numbered = numbered + (slice.key and 0 or 1) end
if numbered > 0 and not options.drums then
  cli.note(output, ("%d of %d slices have no steady pitch: numbered"):format(numbered, #all))
end
local written = #all > 0 and writeAll(all)
progress.hide()
if options.json then
  local printer = cli.printer(true)
  for i, slice in ipairs(all) do printer.result(i, record(slice.recording, slice, nil, written)) end
  for i, failure in ipairs(failures) do printer.result(#all + i, failure) end
  printer.close()
elseif #all > 0 then
  printTable(all)
  io.write(("%d slice%s%s\n"):format(#all, #all == 1 and "" or "s",
           written and " in " .. text.printable(output) or ": nothing was written"))
end
cli.finish()
