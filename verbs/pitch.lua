-- zyl pitch: finds, draws and stores the pitch of sample files.
local cli = require "cli"
local journal = require "journal"
local json = require "json"
local notes = require "notes"
local pictures = require "pictures"
local progress = require "progress"
local samples = require "samples"
local soundfile = require "soundfile"
local text = require "text"

local BLOCK = 128          -- frames per value of a track
local WINDOW = 4096        -- frames needed for a value

local options, files = cli.parse {
  verb = "pitch", notes = true, folders = "sounds",
  about = "Finds the pitch of sample files and prints the root key (the note nearest to the median\n"
       .. "pitch), the deviation in cents, the share of the file that has a pitch, and the spread (half\n"
       .. "the distance between the 16th and the 84th percentile, in cents).",
  options = {
    { name = "track", help = "print every value: time in seconds, Hz, note and cents" },
    { name = "set", help = "store key and tuning in the file, so that it plays in tune" },
    { name = "force", help = "with --set: store the pitch even if it is not steady" },
    { name = "dry-run", help = "print what would be stored and drawn, but write nothing" },
    { name = "plot", kind = "text", value = "PICTURE",
      help = "draw waveform, track and note grid to a .png or .svg file; with\n"
          .. "several files, to one picture per file: PICTURE-NAME.png" },
    { name = "json", help = "print a JSON list, one object per file" },
    { name = "highest", kind = "integer", value = "HZ", low = 1, high = 2147483647, default = 2000,
      help = "highest expected pitch (default 2000)" },
    { name = "lowest", kind = "integer", value = "HZ", low = 1, high = 2147483647, default = 25,
      help = "lowest expected pitch (default 25)" },
    { name = "threshold", kind = "number", value = "X", low = 0, high = 4,
      help = "mean square below which a block is silent (default 40 dB below\nthe sound, at most 1e-5)" },
    { name = "smooth", kind = "integer", value = "N", low = 0, high = 100000, default = 0,
      help = "smooth over N blocks of 128 frames on each side (default 0: off)" },
    { name = "correct", kind = "integer", value = "N", low = 0, high = 100000, default = 10,
      help = "correct octave errors by comparing N blocks on each side\n(default 10)" },
    { name = "a4", kind = "number", value = "HZ", low = 1, high = 20000, default = 440,
      help = "frequency of key 69, the A above middle C (default 440)" },
  },
}
local a4 = options.a4 + 0.0
if options.lowest >= options.highest then cli.usage("--lowest must be below --highest") end
local pictureOf = options.plot and pictures.names("--plot PICTURE", options.plot, #files)
if options.set and not options["dry-run"] then journal.expect(files) end
local program = host.new("ZylSProgram")
local printer = cli.printer(options.json)
local nameWidth = math.max(text.widest(files), #"file")

-- The pitch of a sample: the notes of its track (values, false without a pitch), voiced (0 to 1),
-- and if there is a pitch note, hertz, spread and sure.
local function measured(track, sound, rate)
  local values, voiced = {}, 0
  local count = math.max(#track - 1, 1)  -- the last value has no frames
  for i = 1, count do
    local period = track[i] or 0
    values[i] = period > 0 and notes.fromHertz(rate / period, a4)
    if values[i] then voiced = voiced + 1 end
  end
  local it = { values = values, voiced = voiced / count }
  local root, reason = sound:root(track)
  if not root then
    it.reason = reason
  else
    it.note, it.hertz = notes.fromHertz(root.hertz, a4), root.hertz
    it.spread, it.sure = root.spread, root.sure
  end
  return it
end

-- Stores the pitch as key and tune. Returns "set", or "unchanged" if the file already has them.
local function store(path, sample, found, it)
  if not it.note then error(it.reason .. ": key and tuning not changed", 0) end
  if not it.sure and not options.force then
    error("no steady pitch: key and tuning not changed (see --force)", 0)
  end
  local obstacle = soundfile.whyNotWritable(path, found)
  if obstacle then error(obstacle, 0) end
  local key, tune = notes.keyAndTune(it.note)
  local sameKey = program:Samplekey(sample, key) == key
  if program:Sampletune(sample, tune) == tune and sameKey then return "unchanged" end
  if options["dry-run"] then return "would be set" end
  if not samples.write(program, sample) then error("could not be written", 0) end
  return "set"
end

local function draw(path, sample, it, rate)
  local picture = pictureOf(path)
  if options["dry-run"] then return cli.note(picture, "would be drawn") end
  local plot = require "pitchplot"
  local bytes, format, width = samples.values(program, sample, 0)
  journal.save(picture, plot.draw, picture, {
    title = path:match("[^/]*$"), rate = rate, block = BLOCK, values = it.values, note = it.note,
    spread = it.spread, bytes = bytes, format = format, width = width,
    frames = program:SampleGetSize(sample),
  })
end

local function trackRecord(it, rate)
  local rows = {}
  for i, note in ipairs(it.values) do
    local time = (i - 1) * BLOCK / rate
    if note then
      local key, cents = notes.nearest(note)
      rows[i] = json.object("time", time, "hz", a4 * 2 ^ ((note - 69) / 12), "key", key,
                            "note", notes.name(key), "cents", cents)
    else
      rows[i] = json.object("time", time, "hz", json.null)
    end
  end
  return json.list(rows)
end

local function record(path, it, rate, stored, failure)
  local key, cents
  if it.note then key, cents = notes.nearest(it.note) end
  return json.object("file", path, "error", failure, "key", key, "note", key and notes.name(key), "cents", cents,
    "hz", it.hertz, "sure", it.sure,
    "voiced", it.voiced, "spread", it.spread, "rate", rate,
    "set", stored, "track", options.track and it.values and trackRecord(it, rate) or nil)
end

local function columns(name, note, cents, hertz, voiced, spread, rest)
  return ("%s  %s  %6s  %8s  %6s  %6s%s\n"):format(text.left(name, nameWidth),
         text.left(note, 9), cents, hertz, voiced, spread, rest and "  " .. rest or "")
end

local function line(path, it, stored)
  local name, voiced = text.printable(path), ("%.0f%%"):format(100 * it.voiced)
  if not it.note then return columns(name, "-", "-", "-", voiced, "-", stored) end
  local key, cents = notes.nearest(it.note)
  return columns(name, notes.label(key), ("%+.1f"):format(cents),
                 ("%.2f"):format(it.hertz), voiced, ("%.1f"):format(it.spread), stored or not it.sure and "uncertain" or nil)
end

local function trackText(path, it, rate)
  local rows = { { "time", "Hz", "note", "cents" } }
  for i, note in ipairs(it.values) do
    local time = ("%.4f"):format((i - 1) * BLOCK / rate)
    if note then
      local key, cents = notes.nearest(note)
      rows[#rows + 1] = { time, ("%.2f"):format(a4 * 2 ^ ((note - 69) / 12)), notes.label(key),
                          ("%+.1f"):format(cents) }
    else
      rows[#rows + 1] = { time, "-", "-", "-" }
    end
  end
  return text.printable(path) .. "\n" .. text.columns(rows, { [3] = true }, "  ")
end

local function fail(index, reason)
  cli.failed(files[index], reason)
  printer.result(index, options.json and record(files[index], {}, nil, nil, reason) or nil)
end

local function done(index, sample, track, found, sound)
  local path, rate = files[index], program:SampleSampleRate(sample)
  local frames = program:SampleGetSize(sample)
  if frames < WINDOW then
    error(("%d frames are too few, %d are needed"):format(frames, WINDOW), 0)
  end
  if rate <= 0 then error("the file has no sample rate", 0) end
  local it = measured(track, sound, rate)
  -- Print the result even if storing or drawing fails.
  local stored, failure
  if options.set then stored, failure = cli.try(store, path, sample, found, it) end
  if options.plot then
    local _, undrawn = cli.try(draw, path, sample, it, rate)
    failure = failure or undrawn
  end
  if failure then cli.failed(path, failure) end
  if options.json then
    printer.result(index, record(path, it, rate, stored, failure))
  elseif options.track then
    printer.result(index, trackText(path, it, rate))
  else
    printer.result(index, line(path, it, stored))
  end
end

if not options.json and not options.track then
  io.write(columns("file", "note", "cents", "Hz", "voiced", "spread"))
end
samples.tracks(program, files, options,
  { done = done, failed = fail, shown = progress.show })
printer.close()
cli.finish()
