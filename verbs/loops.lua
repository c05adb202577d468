-- zyl loops: finds and rates loops in sample files, and stores the best one.
local cli = require "cli"
local journal = require "journal"
local json = require "json"
local looping = require "looping"
local progress = require "progress"
local samples = require "samples"
local soundfile = require "soundfile"
local text = require "text"

local options, files = cli.parse {
  verb = "loops", folders = "sounds",
  about = "Finds loops in sample files and ranks them by how well they join, by how steady level and\n"
       .. "timbre are, and by length.",
  options = {
    { name = "top", kind = "integer", value = "N", low = 1, high = 1000, default = 1,
      help = "print the N best loops (default 1)" },
    { name = "min-quality", kind = "number", value = "DB", low = -1000, high = 1000, default = -6,
      help = "minimum quality (default -6)" },
    { name = "min-length", kind = "number", value = "SECONDS", low = 0, high = 86400,
      help = "minimum length (default 0.3, less in short files)" },
    { name = "crossfade", kind = "number", value = "MS", low = 0, high = 10000,
      help = "if the best loop clicks (quality below -3): crossfade the sound\nbefore its end with that before its start" },
    { name = "crossfade-all", help = "with --crossfade: crossfade loops that do not click, too" },
    { name = "write", help = "store the best loop in the file as its first loop" },
    { name = "dry-run", help = "with --write: print what would be stored, but write nothing" },
    { name = "json", help = "print a JSON list, one object per file" },
  },
  more = "Quality is in dB, of the worst channel: 0 if the jump from the loop's end to its start is like\n"
      .. "any other moment of the sound, below -3 if it clicks, and the same for quiet and loud files.\n"
      .. "Level is the start relative to the end, in dB. Positions are frames from 0; the end is the last\n"
      .. "frame played. --write with --crossfade changes the sound near the end of the loop.",
}
if options["crossfade-all"] and not options.crossfade then
  cli.usage("--crossfade-all needs --crossfade MS")
end

if options.write and not options["dry-run"] then journal.expect(files) end
local program = host.new("ZylSProgram")
local printer = cli.printer(options.json)
local nameWidth = math.max(text.widest(files), #"file")

local function columns(name, rank, quality, first, last, length, seconds, level, fade, rest)
  local line = ("%s  %4s  %7s  %9s  %9s  %8s  %8s  %6s  %5s%s"):format(text.left(name, nameWidth),
               rank, quality, first, last, length, seconds, level, fade, rest and "  " .. rest or "")
  return line .. "\n"
end

local function lines(path, loops, rateHz, written)
  local list = {}
  for rank, loop in ipairs(loops) do
    local length = loop.last - loop.first + 1
    list[rank] = columns(rank == 1 and text.printable(path) or "", rank,
      ("%+.1f"):format(loop.quality), loop.first, loop.last, length,
      ("%.4f"):format(length / rateHz), ("%+.1f"):format(loop.level),
      loop.crossfade and ("%.0f"):format(1000 * loop.crossfade / rateHz) or "-",
      rank == 1 and written and (options["dry-run"] and "would be written" or "written") or nil)
  end
  if #loops == 0 then
    return columns(text.printable(path), "-", "-", "-", "-", "-", "-", "-", "-")
  end
  return table.concat(list)
end

local function record(path, loops, rateHz, written, failure)
  local list = {}
  for rank, loop in ipairs(loops) do
    local length = loop.last - loop.first + 1
    list[rank] = json.object("start", loop.first, "end", loop.last, "length", length,
      "seconds", length / rateHz, "quality_db", loop.quality, "likeness", loop.likeness,
      "level_db", loop.level, "spectrum_db", loop.spectrum, "crossfade", loop.crossfade or 0)
  end
  return json.object("file", path, "error", failure, "loops", json.list(list),
                     "written", written == true and not options["dry-run"])
end

local function store(path, sample, found, sound, loop)
  local obstacle = soundfile.whyNotWritable(path, found)
  if obstacle then error(obstacle, 0) end
  if options["dry-run"] then return true end
  looping.store(program, path, sample, sound, loop)
  if not samples.write(program, sample) then error("could not be written", 0) end
  return true
end

-- The loops that are good enough, and the best quality of all.
local function search(sample, track, sound, rateHz)
  local frames = program:SampleGetSize(sample)
  if frames < 64 then error(frames .. " frames are too few", 0) end
  if sound:peak() == -math.huge then error("silence", 0) end
  local function inFrames(seconds) return seconds and math.ceil(seconds * rateHz) end
  local shortest = inFrames(options["min-length"])
  if shortest and shortest > frames - 2 then
    error("the sound is shorter than the minimum loop length", 0)
  end
  local crossfade = inFrames(options.crossfade and options.crossfade / 1000)
  if crossfade and 4 * crossfade > frames then error("the crossfade is longer than a quarter of the sound", 0) end
  local root = sound:root(track)
  local all = looping.find(sound, {
    shortest = shortest, most = options.top,
    period = root and root.sure and rateHz / root.hertz or nil,
    crossfade = crossfade,
    all = options["crossfade-all"],
  })
  local good, best = {}, nil
  for _, loop in ipairs(all) do
    best = math.max(best or loop.quality, loop.quality)
    if loop.quality >= options["min-quality"] then good[#good + 1] = loop end
  end
  return good, best
end

local function done(index, sample, track, found, sound)
  local path, rateHz = files[index], program:SampleSampleRate(sample)
  if rateHz <= 0 then error("the file has no sample rate", 0) end
  local loops, best = search(sample, track, sound, rateHz)
  local written, failure
  if #loops == 0 then
    local reason = best and ("no loop of quality %g dB or better (the best found has %.1f dB%s)"):format(
                   options["min-quality"], best, options.crossfade and "" or "; see --crossfade")
                   or "no loop found"
    if options.write then failure = reason .. ": not written" else cli.note(path, reason) end
  elseif options.write then
    written, failure = cli.try(store, path, sample, found, sound, loops[1])
  end
  if failure then cli.failed(path, failure) end
  printer.result(index, options.json and record(path, loops, rateHz, written, failure)
                        or not options.json and lines(path, loops, rateHz, written))
end

local function fail(index, reason)
  cli.failed(files[index], reason)
  printer.result(index, options.json and record(files[index], {}, 1, nil, reason) or nil)
end

if not options.json then
  io.write(columns("file", "rank", "quality", "start", "end", "frames", "seconds", "level",
                   "xfade"))
end
samples.tracks(program, files, nil, { done = done, failed = fail, shown = progress.show })
printer.close()
cli.finish()
